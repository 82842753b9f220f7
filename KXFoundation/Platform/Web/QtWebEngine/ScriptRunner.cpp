// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/ScriptRunner.h>

#include <KXFoundation/Platform/Web/QtWebEngine/ClientQueue.h>
#include <KXFoundation/Platform/Web/QtWebEngine/MessageTransport.h>
#include <KXFoundation/Platform/Web/QtWebEngine/PlainCall.h>
#include <KXFoundation/Platform/Web/WebErrors.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QRandomGenerator>
#include <QtWebEngineCore/QWebEnginePage>

#include <utility>

namespace kx {

namespace {

KXError scriptError(const QString &text)
{
    return {WebErrorDomain, WebErrorJavaScriptException, text, {}};
}

KXError invalidatedError()
{
    return {WebErrorDomain, WebErrorViewInvalidated,
        QStringLiteral("The page or its process went away before the script was answered."), {}};
}

// How the engine begins the console line for an exception that nobody caught. One of a promise is no script's end.
const QString uncaught = QStringLiteral("Uncaught ");
const QString uncaughtInPromise = QStringLiteral("Uncaught (in promise)");

} // namespace

ScriptRunner::ScriptRunner(ClientQueue &queue)
    : m_queue(queue)
    , m_word(QStringLiteral("kx%1").arg(QRandomGenerator::system()->generate64(), 0, 36))
{
}

ScriptRunner::~ScriptRunner()
{
    std::vector<EvaluationHandler> left;
    for (auto &[id, completion] : m_waiting)
        left.push_back(std::move(completion));
    for (Command &command : m_commands)
        left.push_back(std::move(command.completion));
    for (EvaluationHandler &completion : left) {
        if (completion && QCoreApplication::instance()) {
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [completion = std::move(completion)] { completion(QJsonValue::Undefined, invalidatedError()); },
                Qt::QueuedConnection);
        }
    }
}

void ScriptRunner::setPage(QWebEnginePage *page)
{
    m_page = page;
}

void ScriptRunner::evaluate(const QString &script, EvaluationHandler completion)
{
    enqueue({script, false, std::move(completion)});
}

void ScriptRunner::execute(const QString &script, ExecutionHandler completion)
{
    EvaluationHandler forwarded;
    if (completion)
        forwarded = [completion = std::move(completion)](const QJsonValue &, const auto &error) { completion(error); };
    enqueue({script, isPlainCall(script), std::move(forwarded)});
}

void ScriptRunner::enqueue(Command command)
{
    m_commands.push_back(std::move(command));
    if (!m_flushPosted) {
        m_flushPosted = true;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }
}

bool ScriptRunner::event(QEvent *event)
{
    if (event->type() != QEvent::User)
        return QObject::event(event);
    m_flushPosted = false;
    flush();
    return true;
}

void ScriptRunner::flush()
{
    std::vector<Command> together;
    for (Command &command : std::exchange(m_commands, {})) {
        if (!m_page) {
            answer(wait(std::move(command.completion)), QJsonValue::Undefined, invalidatedError());
        } else if (command.plain) {
            together.push_back(std::move(command));
        } else {
            runTogether(std::exchange(together, {}));
            runAlone(std::move(command));
        }
    }
    runTogether(std::move(together));
}

// { let e = 0, t = text; try { command 0 } catch (x) { (e || (e = {}))[0] = t(x); } … e }
void ScriptRunner::runTogether(std::vector<Command> commands)
{
    if (commands.empty())
        return;
    QString script =
        QStringLiteral("{let %1e=0,%1t=function(x){try{return ''+x}catch(y){return 'unknown error'}};").arg(m_word);
    const QString head = QStringLiteral("try{");
    const QString tail = QStringLiteral("\n}catch(%1x){(%1e||(%1e={__proto__:null}))[").arg(m_word);
    const QString end = QStringLiteral("]=%1t(%1x)}").arg(m_word);
    std::vector<Id> ids;
    for (Command &command : commands) {
        script += head % command.script % tail % QString::number(ids.size()) % end;
        ids.push_back(wait(std::move(command.completion)));
    }
    script += m_word % QLatin1String("e}");
    m_page->runJavaScript(script, [self = QPointer(this), ids = std::move(ids)](const QVariant &result) {
        if (!self)
            return;
        const QVariantMap errors = result.toMap();
        for (std::size_t i = 0; i < ids.size(); ++i) {
            const auto text = errors.constFind(QString::number(i));
            if (!result.isValid())
                self->answer(ids[i], QJsonValue::Undefined, invalidatedError());
            else if (text != errors.cend())
                self->answer(ids[i], QJsonValue::Undefined, scriptError(text->toString()));
            else
                self->answer(ids[i], QJsonValue::Undefined, std::nullopt);
        }
    });
}

void ScriptRunner::runAlone(Command command)
{
    const Id id = wait(std::move(command.completion));
    const QPointer<ScriptRunner> self(this);
    m_page->runJavaScript(QStringLiteral("0"), MessageTransport::WorldId, [self](const QVariant &) {
        if (self)
            self->m_exception = QString();
    });
    // The name tells the script's own exceptions from those of the page.
    const QString script = command.script + QLatin1String("\n//# sourceURL=") + m_word;
    m_page->runJavaScript(script, [self, id](const QVariant &value) {
        if (!self)
            return;
        const QString exception = std::exchange(self->m_exception, std::nullopt).value_or(QString());
        if (value.isValid())
            self->answer(id, QJsonValue::fromVariant(value), std::nullopt);
        else if (!exception.isNull())
            self->answer(id, QJsonValue::Undefined, scriptError(exception));
        else
            self->answer(id, QJsonValue::Undefined, std::nullopt);
    });
}

bool ScriptRunner::consoleLine(const QString &line, const QString &source)
{
    if (!m_exception || !line.startsWith(uncaught) || line.startsWith(uncaughtInPromise))
        return false;
    if (m_exception->isNull() || source == m_word)
        m_exception = line.mid(uncaught.size());
    return source == m_word;
}

ScriptRunner::Id ScriptRunner::wait(EvaluationHandler completion)
{
    m_waiting.emplace(m_nextId, std::move(completion));
    return m_nextId++;
}

void ScriptRunner::answer(Id id, const QJsonValue &value, const std::optional<KXError> &error)
{
    const auto waiting = m_waiting.find(id);
    if (waiting == m_waiting.end())
        return;
    const EvaluationHandler completion = std::move(waiting->second);
    m_waiting.erase(waiting);
    if (completion)
        m_queue.post([completion, value, error] { completion(value, error); });
}

void ScriptRunner::invalidate(Id before)
{
    while (!m_waiting.empty() && m_waiting.begin()->first < before)
        answer(m_waiting.begin()->first, QJsonValue::Undefined, invalidatedError());
}

void ScriptRunner::documentStarted()
{
    if (m_waiting.empty() || !m_page)
        return;
    m_page->runJavaScript(
        QStringLiteral("0"), MessageTransport::WorldId, [self = QPointer(this), before = m_nextId](const QVariant &) {
            if (self)
                self->invalidate(before);
        });
}

void ScriptRunner::processTerminated()
{
    m_page = nullptr;
    invalidate(m_nextId);
}

} // namespace kx

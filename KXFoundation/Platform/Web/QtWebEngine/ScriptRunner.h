// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Web/WebEngine.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QVariant>

#include <map>
#include <memory>

class QWebEnginePage;

namespace kx {

class ClientQueue;

/// Runs scripts in a page's main frame and sees to it that each is answered exactly once, through the queue.
///
/// The engine tells neither exceptions nor that nobody will answer. Scripts that are run for their effect and are plain
/// calls travel together in one engine call at the end of the turn, each in a try statement of its own. Any other is
/// evaluated as it is, since wrapping would change what its declarations mean; its exception is the one that the
/// console shows between the answer to an empty script just before it and its own. (An uncaught error of the page's in
/// that very gap counts as the script's if the script has no value.) The page's own error listeners hear of it too.
class ScriptRunner final : public QObject {
    Q_OBJECT
public:
    explicit ScriptRunner(ClientQueue &queue);
    /// Scripts without an answer yet get theirs from the application's event loop: invalidated.
    ~ScriptRunner() override;

    /// The page that scripts run in from now on; none while it is dead. The page must outlive its being set here.
    void setPage(QWebEnginePage *page);

    void evaluate(const QString &script, EvaluationHandler completion);
    void execute(const QString &script, ExecutionHandler completion);

    /// Takes a line of the console; returns whether it is nobody else's.
    bool consoleLine(const QString &line, const QString &source);
    /// The main frame has a new document: scripts that were sent to the old one and have no answer are invalidated as
    /// soon as one that is sent now is answered.
    void documentStarted();
    /// Invalidates all that waits.
    void processTerminated();

protected:
    bool event(QEvent *event) override;

private:
    struct Command {
        QString script;
        bool plain; ///< A plain call whose value nobody wants.
        EvaluationHandler completion;
    };
    using Id = quint64;

    void enqueue(Command command);
    void flush();
    void runTogether(std::vector<Command> commands);
    void runAlone(Command command);
    [[nodiscard]] Id wait(EvaluationHandler completion);
    void answer(Id id, const QJsonValue &value, const std::optional<KXError> &error);
    void invalidate(Id before);

    ClientQueue &m_queue;
    QPointer<QWebEnginePage> m_page;
    std::vector<Command> m_commands; // of this turn of the event loop
    bool m_flushPosted = false;
    std::map<Id, EvaluationHandler> m_waiting; // sent and not answered; empty functions where nobody listens
    Id m_nextId = 1;
    QString m_word; // begins the names of our own variables, so that no script means them
    std::optional<QString> m_exception; // of the script that runs alone just now; null while it has thrown none
};

} // namespace kx

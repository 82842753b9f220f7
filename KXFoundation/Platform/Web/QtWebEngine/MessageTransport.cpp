// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Web/QtWebEngine/MessageTransport.h>

#include <KXFoundation/Platform/Web/SourceFrames/SourceFrameTracker.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRandomGenerator>
#include <QtCore/QResource>
#include <QtWebEngineCore/QWebEngineScript>

namespace kx {

namespace {

QString resource(const QString &name)
{
    return QString::fromUtf8(QResource(QLatin1String(":/KXFoundation/Web/") + name).uncompressedData());
}

QString randomWord()
{
    QString word;
    for (int i = 0; i < 4; ++i)
        word += QStringLiteral("%1").arg(QRandomGenerator::system()->generate(), 8, 16, QLatin1Char('0'));
    return word;
}

QWebEngineScript documentStartScript(const QString &name, const QString &source, quint32 world)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(world);
    script.setRunsOnSubFrames(true);
    return script;
}

std::optional<TransportRecord::Kind> kindFor(QChar letter)
{
    switch (letter.unicode()) {
    case u'd': return TransportRecord::Kind::DocumentStart;
    case u'f': return TransportRecord::Kind::SourceFrame;
    case u's': return TransportRecord::Kind::String;
    case u'j': return TransportRecord::Kind::Json;
    case u'u': return TransportRecord::Kind::Other;
    default: return std::nullopt;
    }
}

} // namespace

QJsonValue TransportRecord::body() const
{
    if (kind == Kind::String)
        return text;
    if (kind == Kind::Json) {
        const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
        if (document.isObject())
            return document.object();
    }
    return QJsonValue::Undefined;
}

MessageTransport::MessageTransport(const QStringList &handlerNames)
    : m_secret(randomWord())
    , m_handOver(randomWord())
    , m_handlerNames(handlerNames)
{
}

QList<QWebEngineScript> MessageTransport::scripts() const
{
    // The words are hexadecimal, so that they need no escapes.
    const QString isolated = resource(QStringLiteral("transport.js"))
        + QStringLiteral("('%1', '%2', %3, ").arg(m_secret, m_handOver).arg(m_handlerNames.size())
        + SourceFrameTracker::isolatedWorldScript() + QLatin1String(");");
    QList<QWebEngineScript> result = {documentStartScript(QStringLiteral("kx-transport"), isolated, WorldId),
        documentStartScript(QStringLiteral("kx-source-frames"),
            SourceFrameTracker::pageWorldScript() + QLatin1String("();"), QWebEngineScript::MainWorld)};
    if (!m_handlerNames.isEmpty()) {
        const QByteArray names =
            QJsonDocument(QJsonArray::fromStringList(m_handlerNames)).toJson(QJsonDocument::Compact);
        const QString page = resource(QStringLiteral("transport_page.js")) + QLatin1String("('") + m_handOver
            + QLatin1String("', ") + QString::fromUtf8(names) + QLatin1String(");");
        result.append(documentStartScript(QStringLiteral("kx-message-handlers"), page, QWebEngineScript::MainWorld));
    }
    return result;
}

std::optional<QList<TransportRecord>> MessageTransport::read(const QString &consoleLine) const
{
    if (!consoleLine.startsWith(m_secret))
        return std::nullopt;
    QList<TransportRecord> records;
    for (qsizetype at = m_secret.size(); at < consoleLine.size();) {
        const qsizetype indexEnd = consoleLine.indexOf(u',', at);
        const qsizetype lengthEnd = consoleLine.indexOf(u',', indexEnd + 1);
        if (indexEnd < 0 || lengthEnd < 0)
            break;
        const QStringView line(consoleLine);
        const auto kind = kindFor(line.at(at));
        const qsizetype handler = line.mid(at + 1, indexEnd - at - 1).toLongLong();
        const qsizetype length = line.mid(indexEnd + 1, lengthEnd - indexEnd - 1).toLongLong();
        at = lengthEnd + 1 + length;
        if (!kind || handler < 0 || length < 0 || at > consoleLine.size())
            break;
        records.append({*kind, handler, consoleLine.mid(lengthEnd + 1, length)});
    }
    return records;
}

} // namespace kx

// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QStringList>
#include <QtCore/QThread>

// What the bridge's tests share: writing messages as a page does, and reading commands.
namespace kx::test {

inline const QJsonValue absent(QJsonValue::Undefined);

inline QJsonValue json(const QByteArray &text)
{
    return QJsonDocument::fromJson("[" + text + "]").array().at(0);
}

/// `depth` arrays inside each other.
inline QJsonValue nestedArrays(int depth)
{
    QJsonValue value = QJsonArray();
    for (int i = 1; i < depth; ++i)
        value = QJsonArray{value};
    return value;
}

/// The message inside a command string; no JSON when the wrapping is not exact.
inline QString messageText(const QString &command)
{
    const QString head = QStringLiteral("if(window._vexa){window._vexa.invokeH5(");
    const QString tail = QStringLiteral(");}");
    if (!command.startsWith(head) || !command.endsWith(tail))
        return QStringLiteral("not a command: ") + command;
    return command.sliced(head.size(), command.size() - head.size() - tail.size());
}

inline QJsonObject message(const QString &command)
{
    return QJsonDocument::fromJson(messageText(command).toUtf8()).object();
}

inline QJsonObject body(const QString &command)
{
    return message(command).value(u"message").toObject();
}

inline QString pageMessage(const QByteArray &type, const QByteArray &bodyText)
{
    return QString::fromUtf8(R"({"type":")" + type + R"(","message":)" + bodyText + "}");
}

/// Collects commands and the thread each arrived on.
struct Recorder {
    QStringList commands;
    QList<QThread *> threads;

    KXWebViewJSBridge::ReplySender sender()
    {
        return [this](const QString &command) {
            commands.append(command);
            threads.append(QThread::currentThread());
        };
    }
};

inline void answerDone(const QJsonValue &, const KXWebViewJSBridge::Completion &completion)
{
    completion(QStringLiteral("done"));
}

} // namespace kx::test

// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QVariant>

namespace {

using kx::bench::timed;

// A list of clips, as a page and a player exchange it; about 2 kB as compact JSON.
QJsonArray clips()
{
    QJsonArray list;
    for (int i = 0; i < 14; ++i) {
        list.append(QJsonObject{
            {QStringLiteral("id"), QStringLiteral("clip-%1").arg(1000 + i)},
            {QStringLiteral("title"),
                i % 3 ? QStringLiteral("A walk along the river") : QStringLiteral("\u6cb3\u8fb9\u6563\u6b65")},
            {QStringLiteral("start"), 61.25 * i},
            {QStringLiteral("length"), 90 + i},
            {QStringLiteral("size"), qint64(5000000000) + i},
            {QStringLiteral("watched"), i % 2 == 0},
            {QStringLiteral("tags"), QJsonArray{QStringLiteral("outdoor"), QStringLiteral("4k")}},
        });
    }
    return list;
}

QJsonObject message(const QString &type)
{
    return {{QStringLiteral("type"), type},
        {QStringLiteral("message"),
            QJsonObject{{QStringLiteral("method"), QStringLiteral("updateClips")}, {QStringLiteral("data"), clips()},
                {QStringLiteral("once"), 1}, {QStringLiteral("mid"), 42}}}};
}

// In: from the text that the page posted to the parameters in the method's hands.
void receive(benchmark::State &state)
{
    const QString text =
        QString::fromUtf8(QJsonDocument(message(QStringLiteral("method"))).toJson(QJsonDocument::Compact));
    KXWebViewJSBridge bridge;
    qint64 received = 0;
    bridge.registerMethod(QStringLiteral("updateClips"),
        [&received](const QJsonValue &parameters, const auto &) { received += parameters.isArray(); });
    const KXWebViewJSBridge::ReplySender sender = [](const QString &) {};
    while (state.KeepRunning())
        bridge.handleH5Message(text, sender);
    if (received != qint64(state.iterations()))
        state.SkipWithError("a message was lost");
}

void receivePeer(benchmark::State &state)
{
    const QString text =
        QString::fromUtf8(QJsonDocument(message(QStringLiteral("method"))).toJson(QJsonDocument::Compact));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(QJsonDocument::fromJson(text.toUtf8()).toVariant());
}

// Out: from the answer's value to the command for the page; the peer has its message built already.
void send(benchmark::State &state)
{
    const QJsonValue data = clips();
    const QString method = QStringLiteral("updateClips");
    while (state.KeepRunning())
        benchmark::DoNotOptimize(KXWebViewJSBridge::packageCmd(KXWebViewJSBridge::HandlerMessage, method, data, 42));
}

void sendPeer(benchmark::State &state)
{
    const QJsonDocument document(message(QStringLiteral("handler")));
    while (state.KeepRunning())
        benchmark::DoNotOptimize(document.toJson(QJsonDocument::Indented));
}

const bool registered = timed({"bridge.in.2kB", "us", 0.8, "UTF-8 check"}, receive, receivePeer)
    && timed({"bridge.out.2kB", "us", 0.8, "escape copy"}, send, sendPeer);

} // namespace

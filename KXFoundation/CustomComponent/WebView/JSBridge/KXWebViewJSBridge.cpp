// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>

#include "JSONText.h"
#include "JSONWriter.h"

#include <KXFoundation/Platform/Core/Format.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>

#include <limits>
#include <utility>

const QString kInvokeSucced = QStringLiteral("invokeSucced");

namespace {

// Where the answer to one call from the page goes. Nothing here changes after it is made, so that a native method may
// answer from several threads.
struct Reply {
    std::weak_ptr<const bool> bridge;
    KXWebViewJSBridge::ReplySender sender;
    QString method;
    QJsonValue mid;
    QThread *home = QThread::currentThread();
};

void postToMainThread(std::function<void()> work)
{
    if (QCoreApplication *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(work), Qt::QueuedConnection);
}

// A native method may keep its completion on another thread; what the sender has captured belongs to the main thread.
void deleteReply(const Reply *reply)
{
    if (reply->home == QThread::currentThread() || !QCoreApplication::instance())
        delete reply;
    else
        postToMainThread([owned = std::shared_ptr<const Reply>(reply)] {});
}

void deliver(const std::shared_ptr<const Reply> &reply, const QJsonValue &result)
{
    if (!reply->bridge.expired()) {
        reply->sender(
            KXWebViewJSBridge::packageCmd(KXWebViewJSBridge::HandlerMessage, reply->method, result, reply->mid));
    }
}

// By value: the sender may destroy the completion that this call comes from.
void sendAnswer(std::shared_ptr<const Reply> reply, const QJsonValue &result)
{
    if (reply->home == QThread::currentThread())
        deliver(reply, result);
    else
        postToMainThread([reply = std::move(reply), result] { deliver(reply, result); });
}

} // namespace

KXWebViewJSBridge::KXWebViewJSBridge()
    : m_alive(std::make_shared<const bool>(true))
{
}

KXWebViewJSBridge::~KXWebViewJSBridge()
{
    m_alive.reset(); // first: destroying the callables below may complete a call
    setMethodHandlerMap({});
    setCallbackMap({});
}

// A callable that dies may register others. So it leaves the table first and dies when the table is whole again.

void KXWebViewJSBridge::setMethodHandlerMap(QHash<QString, NativeMethodHandler> map)
{
    m_methodHandlerMap.swap(map);
}

void KXWebViewJSBridge::setCallbackMap(QHash<QString, Callback> map)
{
    m_callbackMap.swap(map);
}

void KXWebViewJSBridge::registerMethod(const QString &name, const NativeMethodHandler &handler)
{
    if (name.size() < 2 || !handler)
        return;
    NativeMethodHandler replaced = handler;
    m_methodHandlerMap[name].swap(replaced);
}

void KXWebViewJSBridge::registerCallback(const QString &key, const Callback &callBack)
{
    if (key.size() < 2)
        return;
    Callback replaced = callBack;
    if (replaced)
        m_callbackMap[key].swap(replaced);
    else
        replaced = m_callbackMap.take(key);
}

QString KXWebViewJSBridge::makeInvokeH5Cmd(
    const QString &method, const QJsonValue &data, const Callback &callBack, bool once)
{
    QJsonValue mid(QJsonValue::Undefined);
    QString key = method;
    if (once) {
        if (m_mid < std::numeric_limits<qint64>::max())
            ++m_mid;
        mid = m_mid;
        key += QString::number(m_mid);
    }
    registerCallback(key, callBack);
    return packageCmd(MethodMessage, method, data, mid);
}

QString KXWebViewJSBridge::packageCmd(int kind, const QString &method, const QJsonValue &data, const QJsonValue &mid)
{
    return makeInvokeH5Cmd(_packageMessage(kind, method, data, mid));
}

QString KXWebViewJSBridge::_packageMessage(
    int kind, const QString &method, const QJsonValue &data, const QJsonValue &mid)
{
    QJsonObject body{{QStringLiteral("method"), method}};
    if (!mid.isUndefined()) {
        body.insert(QStringLiteral("once"), 1);
        body.insert(QStringLiteral("mid"), mid);
    }
    if (!data.isUndefined())
        body.insert(QStringLiteral("data"), data);
    const QString type = kind == MethodMessage ? QStringLiteral("method")
        : kind == HandlerMessage               ? QStringLiteral("handler")
                                               : QStringLiteral("");
    return kx::indentedJSON(
        QJsonObject{{QStringLiteral("type"), type}, {QStringLiteral("message"), body}}, NestingLimit);
}

void KXWebViewJSBridge::handleH5Message(const QString &message, const ReplySender &callBack)
{
    handleMessage(kx::parseJSONObject(message), callBack);
}

void KXWebViewJSBridge::handleH5Message(const QJsonValue &message, const ReplySender &callBack)
{
    if (message.isString())
        handleMessage(kx::parseJSONObject(message.toString()), callBack);
    else if (message.isObject() && !kx::nestsDeeper(message, NestingLimit))
        handleMessage(message.toObject(), callBack);
}

void KXWebViewJSBridge::handleMessage(const QJsonObject &message, const ReplySender &callBack)
{
    const QString type = message.value(u"type").toString();
    const QJsonObject body = message.value(u"message").toObject();
    const QJsonValue methodValue = body.value(u"method");
    if (!methodValue.isString())
        return;
    const QString method = methodValue.toString();
    const QJsonValue data = body.value(u"data");
    const QJsonValue mid = body.value(u"mid");

    if (type == QLatin1String("method")) {
        invokeNativeMethod(method, data, callBack, mid);
    } else if (type == QLatin1String("handler")) {
        const bool once = !mid.isUndefined();
        const QString key = once ? method + kx::describe(mid) : method;
        const Callback callback = m_callbackMap.value(key); // a copy: the call may replace or remove it
        if (!callback)
            return;
        const std::weak_ptr<const bool> alive = m_alive;
        callback(data);
        // Deliberate: this removes whatever waits under the key by now, even what the callback has just registered.
        if (once && !alive.expired())
            const Callback removed = m_callbackMap.take(key);
    } else if (type == QLatin1String("invokeTest")) {
        const QString known = m_methodHandlerMap.contains(method) ? QStringLiteral("1") : QStringLiteral("0");
        if (callBack)
            callBack(packageCmd(HandlerMessage, method, known, mid));
    }
}

void KXWebViewJSBridge::invokeNativeMethod(
    const QString &method, const QJsonValue &parameter, const ReplySender &callBack, const QJsonValue &mid)
{
    if (!callBack) {
        invokeNativeMethod(method, parameter, Completion());
        return;
    }
    const std::shared_ptr<const Reply> reply(new Reply{m_alive, callBack, method, mid}, deleteReply);
    invokeNativeMethod(method, parameter, [reply](const QJsonValue &result) { sendAnswer(reply, result); });
}

void KXWebViewJSBridge::invokeNativeMethod(
    const QString &method, const QJsonValue &parameter, const Completion &completion)
{
    const NativeMethodHandler handler = m_methodHandlerMap.value(method); // a copy, as above
    if (handler)
        handler(
            removeJSONNullValues(parameter), completion ? completion : [](const QJsonValue &) {});
}

QJsonValue KXWebViewJSBridge::removeJSONNullValues(const QJsonValue &value)
{
    return kx::withoutJSONNulls(value, NestingLimit);
}

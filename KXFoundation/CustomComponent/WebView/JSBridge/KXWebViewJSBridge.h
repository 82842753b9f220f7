// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

#include <QtCore/QHash>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <functional>
#include <memory>

/// A success value that native methods and pages may agree on: "invokeSucced". The library itself never reads it.
KX_CORE_EXPORT extern const QString kInvokeSucced;

/// The native end of the message bridge between a page and the program. It knows no web engine: its owner feeds in what
/// the page posts (handleH5Message) and runs the command strings that come out in the page's main frame.
///
/// A message is one JSON object, {"type": kind, "message": {"method", "data", "mid", "once"}}. "mid" and "once" stand
/// only in a one-shot exchange, where "mid" tells one call from the next; it comes back as it was sent, a string as a
/// string and a number as a number. A waiting callback has the method's name as its key, in a one-shot exchange
/// followed by the text of the mid. Wherever a JSON value may be absent, QJsonValue::Undefined says so; JSON null is a
/// value.
///
/// Numbers keep what a 64-bit signed integer or a double keeps; "-0" reads as 0. Of equal keys the last one counts. A
/// lone surrogate passes when it is written as an escape, as pages write it; raw, it reads as "?". A text that is no
/// JSON object, names a number outside the range of a double or nests deeper than NestingLimit is no message: nothing
/// happens. The same holds for a message whose "method" is not a string.
///
/// Main thread only, except for the completions given to native methods: see NativeMethodHandler. Every callable may
/// register and unregister others, itself too, and may delete the bridge; what dies with a callable may register too.
class KX_CORE_EXPORT KXWebViewJSBridge {
public:
    /// Takes a native method's answer; Undefined answers without data.
    using Completion = std::function<void(const QJsonValue &result)>;

    /// A method that the page may call. `parameters` hold no JSON null at any depth and are Undefined when there are
    /// none. It answers by calling `completion`, during the call or later, from any thread:
    /// - On the main thread the answer goes to the reply sender before the completion returns. From another thread
    ///   it is posted to the application object and goes out on the main thread, in the order of that thread's answers.
    /// - An answer that has not gone out when the bridge is deleted, or is given later, goes nowhere; nor does one from
    ///   another thread while there is no application object. Threads must not answer while that object is being
    ///   destroyed.
    /// - By convention a method answers once at most. Each further answer is sent too; if the call was a one-shot, the
    ///   page has no callback left for it.
    using NativeMethodHandler = std::function<void(const QJsonValue &parameters, const Completion &completion)>;

    /// Takes the page's answer, as it came (nulls included); Undefined when it has no data.
    using Callback = std::function<void(const QJsonValue &data)>;

    /// Runs a command string in the page. Only called, and destroyed, on the main thread.
    using ReplySender = std::function<void(const QString &command)>;

    /// Kinds of message that packageCmd() makes.
    enum MessageKind : int { MethodMessage = 0, HandlerMessage = 1 };

    /// How many arrays and objects may stand inside each other in a message, the message itself counted.
    static constexpr int NestingLimit = 1024;

    KXWebViewJSBridge();
    ~KXWebViewJSBridge();
    Q_DISABLE_COPY_MOVE(KXWebViewJSBridge)

    /// The id of the last one-shot call to the page; 0 before the first.
    [[nodiscard]] qint64 mid() const { return m_mid; }
    void setMid(qint64 mid) { m_mid = mid; }

    [[nodiscard]] const QHash<QString, NativeMethodHandler> &methodHandlerMap() const { return m_methodHandlerMap; }
    void setMethodHandlerMap(QHash<QString, NativeMethodHandler> map);
    [[nodiscard]] const QHash<QString, Callback> &callbackMap() const { return m_callbackMap; }
    void setCallbackMap(QHash<QString, Callback> map);

    /// Offers a native method to the page, in place of an earlier one of that name. A name of fewer than two UTF-16
    /// units does nothing.
    /// Deliberate: an empty handler does nothing either, it does not withdraw the method (setMethodHandlerMap can).
    void registerMethod(const QString &name, const NativeMethodHandler &handler);

    /// Stores the callback that waits under `key`; an empty one removes what waits there. A key of fewer than two
    /// UTF-16 units does nothing.
    void registerCallback(const QString &key, const Callback &callBack);

    /// The command that calls `method` in the page; `data` is Undefined for none. With `once` the call gets the next
    /// mid, and its callback goes after the first answer; without, the callback stays under the method's name, and an
    /// empty one removes it. The mid counts up to the largest 64-bit number and stays there.
    [[nodiscard]] QString makeInvokeH5Cmd(
        const QString &method, const QJsonValue &data, const Callback &callBack, bool once);

    /// The command that delivers one message to the page. `kind` is a MessageKind; any other number makes a message
    /// with the type "". `data` and `mid` are left out when Undefined.
    [[nodiscard]] static QString packageCmd(
        int kind, const QString &method, const QJsonValue &data, const QJsonValue &mid);

    /// The message of packageCmd() alone: indented JSON that is safe inside a script (U+2028, U+2029 and lone
    /// surrogates are escaped). NaN, infinities and what nests deeper than NestingLimit below the message become null.
    /// An object's member named "__proto__" becomes its prototype in the page, as in any script.
    [[nodiscard]] static QString _packageMessage(
        int kind, const QString &method, const QJsonValue &data, const QJsonValue &mid);

    /// Handles one message from the page: its JSON text, or the object itself; any other value does nothing.
    /// - "method" calls a native method, whose answer goes to `callBack` (see NativeMethodHandler); one that is not
    ///   registered gives no answer.
    /// - "handler" calls the waiting callback; after it has returned, the key is removed if the message has a mid.
    /// - "invokeTest" sends "1" or "0" to `callBack` at once: whether the native method exists.
    /// `callBack` may be empty: what it would be given is dropped.
    void handleH5Message(const QString &message, const ReplySender &callBack);
    void handleH5Message(const QJsonValue &message, const ReplySender &callBack);

    /// Runs a native method as if the page had called it: its answer goes to `callBack` as a command with that mid.
    void invokeNativeMethod(
        const QString &method, const QJsonValue &parameter, const ReplySender &callBack, const QJsonValue &mid);

    /// Runs a native method with the nulls of its parameters removed. `completion` may be empty; it is called as the
    /// method calls it, on that thread. Nothing happens when the method is not registered.
    void invokeNativeMethod(const QString &method, const QJsonValue &parameter, const Completion &completion);

    /// The value without JSON nulls at any depth: array elements and object members that are null are left out; null
    /// itself becomes Undefined. What nests deeper than NestingLimit is left out as well.
    [[nodiscard]] static QJsonValue removeJSONNullValues(const QJsonValue &value);

    /// The page's global bridge object: "_vexa".
    [[nodiscard]] static QString h5BridgeObjectName();
    /// The script-message handler that the page posts to: "_vexaNativeObject".
    [[nodiscard]] static QString h5NativeMapBridgeName();
    /// "_vexa://iamready", for hosts whose pages announce themselves by a navigation.
    [[nodiscard]] static QString jsBridgeReadyIdentity();
    /// The command that hands the JSON text of a message to the page's bridge object, if the page has one.
    [[nodiscard]] static QString makeInvokeH5Cmd(const QString &json);
    /// A script template with its two placeholders, "__h5BridgeName__" and "__h5NativeMapBridgeName__", filled in.
    [[nodiscard]] static QString fillReplaceholder(const QString &scriptTemplate);
    /// The page's end of the bridge: run it at document start in every frame. Running it again changes nothing.
    [[nodiscard]] static QString javasctipt4Inject();
    /// A script for debugging that shows a page's uncaught errors in an alert.
    [[nodiscard]] static QString javasctipt4Debug();

private:
    void handleMessage(const QJsonObject &message, const ReplySender &callBack);

    qint64 m_mid = 0;
    QHash<QString, NativeMethodHandler> m_methodHandlerMap;
    QHash<QString, Callback> m_callbackMap;
    std::shared_ptr<const bool> m_alive; // expires with the bridge: what outlives it holds a weak pointer
};

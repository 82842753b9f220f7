// SPDX-License-Identifier: MIT
#include "Fuzz.h"

#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>
#include <tests/CustomComponent/WebView/JSBridge/BridgeMessages.h>

using kx::fuzz::check;

namespace {

// The same value made anew. Qt's parser sorts keys beyond U+FFFF as UTF-8 has them, its objects as UTF-16 does, so that
// what it has parsed may differ from what it has parsed of its own output.
QJsonValue rebuilt(const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray array;
        for (const auto &element : value.toArray())
            array.append(rebuilt(element));
        return array;
    }
    if (!value.isObject())
        return value;
    const QJsonObject object = value.toObject();
    QJsonObject result;
    for (auto member = object.begin(); member != object.end(); ++member)
        result.insert(member.key(), rebuilt(member.value()));
    return result;
}

} // namespace

// Any bytes as a message from the page, to a bridge that has methods and waits for answers.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    KXWebViewJSBridge bridge;
    QJsonValue received(QJsonValue::Undefined);
    bridge.registerMethod(QStringLiteral("play"), [&](const QJsonValue &parameters, const auto &completion) {
        received = parameters;
        completion(parameters);
        bridge.registerCallback(QStringLiteral("done7"), {}); // tables may change meanwhile
    });
    int answers = 0;
    for (const char *const key : {"done", "done7"})
        bridge.registerCallback(QString::fromLatin1(key), [&](const QJsonValue &) { ++answers; });

    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), qsizetype(size));
    kx::test::Recorder recorder;
    bridge.handleH5Message(text, recorder.sender());
    check(answers + recorder.commands.size() <= 1, "one message has one effect");
    check(rebuilt(KXWebViewJSBridge::removeJSONNullValues(received)) == rebuilt(received), "a method gets no nulls");
    for (const QString &command : recorder.commands) {
        check(!kx::test::message(command).isEmpty(), "a command holds one object");
        check(!command.contains(QChar(0x2028)) && !command.contains(QChar(0x2029)), "a command is one script");
        if (!received.isUndefined())
            check(rebuilt(kx::test::body(command).value(u"data")) == rebuilt(received), "what was sent comes back");
    }
    return 0;
}

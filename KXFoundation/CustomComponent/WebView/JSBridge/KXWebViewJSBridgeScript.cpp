// SPDX-License-Identifier: MIT
// The operations of KXWebViewJSBridge about names and scripts in the page.
#include <KXFoundation/CustomComponent/WebView/JSBridge/KXWebViewJSBridge.h>

#include <QtCore/QResource>

namespace {

QString ownScript(const QString &name)
{
    return QString::fromUtf8(QResource(QStringLiteral(":/KXFoundation/JSBridge/") + name).uncompressedData().trimmed());
}

} // namespace

QString KXWebViewJSBridge::h5BridgeObjectName()
{
    return QStringLiteral("_vexa");
}

QString KXWebViewJSBridge::h5NativeMapBridgeName()
{
    return QStringLiteral("_vexaNativeObject");
}

QString KXWebViewJSBridge::jsBridgeReadyIdentity()
{
    return QString(h5BridgeObjectName() + QStringLiteral("://iamready")).toLower();
}

QString KXWebViewJSBridge::makeInvokeH5Cmd(const QString &json)
{
    const QString name = h5BridgeObjectName();
    return QStringLiteral("if(window.") + name + QStringLiteral("){window.") + name + QStringLiteral(".invokeH5(")
        + json + QStringLiteral(");}");
}

QString KXWebViewJSBridge::fillReplaceholder(const QString &scriptTemplate)
{
    QString script = scriptTemplate;
    script.replace(QStringLiteral("__h5BridgeName__"), h5BridgeObjectName());
    script.replace(QStringLiteral("__h5NativeMapBridgeName__"), h5NativeMapBridgeName());
    return script;
}

QString KXWebViewJSBridge::javasctipt4Inject()
{
    static const QString script = fillReplaceholder(ownScript(QStringLiteral("bridge.js")));
    return script;
}

QString KXWebViewJSBridge::javasctipt4Debug()
{
    static const QString script = ownScript(QStringLiteral("debug.js"));
    return script;
}

// SPDX-License-Identifier: MIT
#pragma once

#include "Support/FakeWebEngine.h"

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <memory>

namespace kx::test {

/// The script-message handler of every host.
inline const QString handlerName = QStringLiteral("_vexaNativeObject");

/// A page's call of a native method; `rest` is more of the message, from a comma on.
inline QString methodMessage(const QString &method, const QString &rest = {})
{
    return QStringLiteral("{\"type\":\"method\",\"message\":{\"method\":\"%1\"%2}}").arg(method, rest);
}

/// What the tests of a host on the fake engine have in common.
class FakeHostTest : public QObject {
protected:
    /// A fresh host; the one before leaves nothing behind.
    void makeHost()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        m_host.reset();
        QVERIFY(m_engine.pages.isEmpty());
        m_engine.configurations.clear();
        m_host = std::make_unique<KXWKWebView>(QRectF(0, 0, 320, 200), m_engine);
    }

    FakeWebPage *page() { return m_engine.page(); }

    FakeWebEngine m_engine;
    std::unique_ptr<KXWKWebView> m_host;
};

} // namespace kx::test

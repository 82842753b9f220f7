// SPDX-License-Identifier: MIT
#include "Support/FakeWebEngine.h"

#include <KXFoundation/CustomComponent/WebView/Proxy/KXURLSchemeManager.h>
#include <KXFoundation/Platform/Web/WebViewConfiguration.h>

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

class WebViewConfigurationTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void routesASchemeToItsLastHandler()
    {
        KXURLSchemeManager &manager = KXURLSchemeManager::sharedManager();
        m_configuration.setURLSchemeHandler(&manager, u"clip"_qs);
        m_configuration.setURLSchemeHandler(&manager, u"cover"_qs);
        m_configuration.setURLSchemeHandler(nullptr, u"clip"_qs);
        const QMap<QString, kx::URLSchemeHandler *> expected{{u"cover"_qs, &manager}};
        QCOMPARE(m_configuration.urlSchemeHandlers(), expected);
        m_configuration.setURLSchemeHandler(nullptr, u"never set"_qs);
        QCOMPARE(m_configuration.urlSchemeHandlers(), expected);
    }

private:
    kx::test::FakeWebEngine m_engine;
    kx::WebViewConfiguration m_configuration{m_engine};
};

QTEST_GUILESS_MAIN(WebViewConfigurationTest)
#include "WebViewConfigurationTest.moc"

// SPDX-License-Identifier: MIT
#include "../WebPageContract.h"
#include "PageFixture.h"

#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <csignal>

namespace kx::test {

/// The contract on the real engine.
class RealPageTest : public WebPageContract {
    Q_OBJECT
public:
    RealPageTest()
    {
        m_server.serve("/good", {"<p>good</p>", "text/html", 200, {}, -1, false});
        m_server.serve("/silent", {{}, "text/html", 200, {}, -1, true});
    }

protected:
    WebEngine &engine() override { return WebEngine::real(); }
    void startEngine() override { PageFixture::startEngine(); }
    QUrl goodUrl() override { return m_server.url("/good"); }
    QUrl silentUrl() override { return m_server.url("/silent"); }
    void killRenderer(WebPage &page) override
    {
        QVERIFY(page.rendererProcessId() > 0);
        ::kill(pid_t(page.rendererProcessId()), SIGKILL);
    }
    void post(WebPage &page, const QString &handler, const QString &text) override
    {
        page.evaluateJavaScript(QStringLiteral("webkit.messageHandlers.%1.postMessage('%2')").arg(handler, text), {});
    }
    void alert(WebPage &page, const QString &text) override
    {
        page.evaluateJavaScript(QStringLiteral("alert('%1')").arg(text), {});
    }

private:
    HttpServer m_server;
};

} // namespace kx::test

QTEST_MAIN(kx::test::RealPageTest)
#include "RealPageTest.moc"

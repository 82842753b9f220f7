// SPDX-License-Identifier: MIT
#include "Support/FakeWebEngine.h"
#include "WebPageContract.h"

#include <KXFoundation/Platform/Web/WebErrors.h>

namespace kx::test {

/// The contract on the fake engine, so that what is tested with it holds for the real one.
class FakePageTest : public WebPageContract {
    Q_OBJECT
protected:
    WebEngine &engine() override { return m_engine; }
    QUrl goodUrl() override { return QUrl(QStringLiteral("https://a.example/good")); }
    QUrl silentUrl() override { return QUrl(QStringLiteral("https://a.example/silent")); }
    void letFinish(WebPage &page) override { fake(page).finish(); }
    void letFailAsMissing(WebPage &page) override
    {
        fake(page).fail({URLErrorDomain, URLErrorFileDoesNotExist, QStringLiteral("missing"),
            {{FailingURLStringKey, page.url().toString(QUrl::FullyEncoded)}}});
    }
    void killRenderer(WebPage &page) override { fake(page).die(); }
    void post(WebPage &page, const QString &handler, const QString &text) override { fake(page).post(handler, text); }
    void alert(WebPage &page, const QString &text) override { fake(page).alert(text); }

private:
    static FakeWebPage &fake(WebPage &page) { return dynamic_cast<FakeWebPage &>(page); }

    FakeWebEngine m_engine;
};

} // namespace kx::test

QTEST_MAIN(kx::test::FakePageTest)
#include "FakePageTest.moc"

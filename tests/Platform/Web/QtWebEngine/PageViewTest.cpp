// SPDX-License-Identifier: MIT
#include "Support/EngineWarnings.h"

#include "PageFixture.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QFileDialog>

using kx::test::PageFixture;

namespace {

const char *const listeningPage =
    "<body style='margin:0;height:100vh'><script>var log = [];"
    "['mousedown', 'mouseup', 'mousemove', 'dblclick', 'contextmenu'].forEach(function (type) {"
    "  document.documentElement.addEventListener(type, function (event) { log.push(type + event.button);"
    "    event.preventDefault(); }); });</script>";

/// The engine drops presses for a while after a document has been shown: clicks until one arrives, as `condition`
/// tells.
template <class Condition> void clickUntil(QWidget *widget, Qt::MouseButton button, Condition condition)
{
    QVERIFY(QTest::qWaitForWindowExposed(widget));
    for (int i = 0; i < 100 && !condition(); ++i) {
        QTest::mouseMove(widget->windowHandle(), {40, 40 + i % 2});
        QTest::mouseClick(widget->windowHandle(), button, {}, {50, 50});
        static_cast<void>(QTest::qWaitFor(condition, 100));
    }
    QVERIFY(condition());
}

} // namespace

/// What a page's widget shows and which events it lets through, its panels and its windows.
class PageViewTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { PageFixture::startEngine(); }
    void init() { QTest::failOnWarning(kx::test::anyWarningButTheEngines()); }

    void letsTheColourBelowShineThrough_data()
    {
        QTest::addColumn<bool>("draws");
        QTest::newRow("draws its background") << true;
        QTest::newRow("does not") << false;
    }
    void letsTheColourBelowShineThrough()
    {
        QFETCH(bool, draws);
        PageFixture fixture;
        QWidget parent;
        parent.resize(100, 100);
        parent.setPalette(QPalette(Qt::magenta));
        fixture.make().setDrawsBackground(draws);
        fixture.page->widget()->setParent(&parent);
        fixture.page->widget()->setGeometry(0, 0, 100, 100);
        fixture.page->widget()->show();
        parent.show();
        fixture.loadHtml("<body style='margin:0'><div style='width:50px;height:50px;background:#00ff00'></div>");
        const auto pixel = [&](int x, int y) { return parent.grab().toImage().pixelColor(x, y); };
        QTRY_COMPARE(pixel(20, 20), QColor(0, 255, 0));
        QCOMPARE(pixel(80, 80), draws ? QColor(Qt::white) : QColor(Qt::magenta));
        fixture.page->setDrawsBackground(!draws);
        QTRY_COMPARE(pixel(80, 80), draws ? QColor(Qt::magenta) : QColor(Qt::white));
    }

    void ignoresTheMouseWhileItIsToldTo()
    {
        PageFixture fixture;
        fixture.loadHtml(listeningPage);
        QWidget *const widget = fixture.page->widget();
        const auto count = [&](const char *type) {
            return fixture
                .evaluate(QStringLiteral("log.filter(function (e) { return e === '%1'; }).length")
                              .arg(QString::fromLatin1(type)))
                .value.toInt();
        };
        clickUntil(widget, Qt::LeftButton, [&] { return count("mousedown0") > 0 && count("mousemove0") > 0; });

        fixture.page->setIgnoresMouseEvents(true);
        const auto clickWithoutEffect = [&] {
            QTest::mouseMove(widget->windowHandle(), {60, 60});
            QTest::mouseClick(widget->windowHandle(), Qt::LeftButton, {}, {50, 50});
            QTest::mouseDClick(widget->windowHandle(), Qt::LeftButton, {}, {50, 50});
            clickUntil(widget, Qt::RightButton, [&] { return count("mousedown2") > 0; }); // passes, and comes later
            for (const char *swallowed : {"mousedown0", "dblclick0", "mousemove0"})
                QVERIFY2(count(swallowed) == 0, swallowed);
        };
        fixture.evaluate(QStringLiteral("log = []"));
        clickWithoutEffect();

        // A page of another site comes with another widget for the input.
        fixture.serve("/other", listeningPage);
        fixture.load(fixture.server.url("/other", "localhost"));
        clickWithoutEffect();

        fixture.page->setIgnoresMouseEvents(false);
        clickUntil(widget, Qt::LeftButton, [&] { return count("mousedown0") > 0; });
    }

    void showsPanelsThroughItsClient()
    {
        PageFixture fixture;
        fixture.loadHtml("");
        fixture.client.confirmAnswer = true;
        fixture.client.promptAnswer = QStringLiteral("");
        QCOMPARE(fixture.evaluate(QStringLiteral("alert('a'); [confirm('b'), prompt('c', 'd'), prompt('e')].join('|')"))
                     .value,
            QJsonValue(QStringLiteral("true||")));
        QCOMPARE(fixture.evaluate(QStringLiteral("prompt('f') === ''")).value, QJsonValue(true));
        fixture.client.confirmAnswer = false;
        QCOMPARE(fixture.evaluate(QStringLiteral("confirm('g')")).value, QJsonValue(false));
        QCOMPARE(fixture.client.panels,
            QStringList({QStringLiteral("alert a"), QStringLiteral("confirm b"), QStringLiteral("prompt c|d"),
                QStringLiteral("prompt e|"), QStringLiteral("prompt f|"), QStringLiteral("confirm g")}));
    }

    void mayBeDeletedWhileTheUserChoosesAFile()
    {
        PageFixture fixture;
        fixture.loadHtml("<label style='position:fixed;inset:0'><input type=file></label>");
        // The offscreen platform says so for every dialog.
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support propagateSizeHints()");
        bool chosen = false;
        QTimer user;
        connect(&user, &QTimer::timeout, this, [&] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            user.stop();
            fixture.page.reset();
            dialog->reject();
            chosen = true;
        });
        user.start(1);
        clickUntil(fixture.page->widget(), Qt::LeftButton, [&] { return chosen; });
        QTRY_VERIFY(QApplication::topLevelWidgets().isEmpty());
    }

    void asksForWindowsWithoutOpeningThem()
    {
        PageFixture fixture;
        fixture.configuration->preferences.javaScriptCanOpenWindowsAutomatically = true;
        fixture.loadHtml("<a id=a target=_blank href='/link'>x</a>");
        const qsizetype asked = fixture.client.actions.size();
        fixture.evaluate(QStringLiteral("window.w = open('/new', '_blank', 'left=10,top=20,width=300,height=200'); 0"));
        QTRY_COMPARE(fixture.client.windows.size(), 1);
        const kx::NavigationAction action = fixture.client.windows.constFirst();
        QCOMPARE(action.url, fixture.server.url("/new"));
        QVERIFY(!action.targetFrame);
        QVERIFY(action.sourceFrame.mainFrame);
        QCOMPARE(fixture.client.actions.size(), asked + 1); // the policy first
        QVERIFY(!fixture.client.actions.constLast().targetFrame);
        const kx::WindowFeatures features = fixture.client.windowFeatures.constFirst();
        QCOMPARE(features.width, std::optional(300.0));
        QCOMPARE(features.height, std::optional(200.0));
        QTRY_COMPARE(fixture.evaluate(QStringLiteral("w.closed")).value, QJsonValue(true));
        QVERIFY(!fixture.server.requests().contains("/new"));

        fixture.client.decide = [](const kx::NavigationAction &) { return kx::NavigationPolicy::Cancel; };
        fixture.evaluate(QStringLiteral("a.click()"));
        QTRY_COMPARE(fixture.client.actions.size(), asked + 2);
        QCOMPARE(fixture.client.actions.constLast().url, fixture.server.url("/link"));
        fixture.evaluate(QStringLiteral("0"));
        QCOMPARE(fixture.client.windows.size(), 1);
    }

    void fillsTheScreenWhereThatIsEnabled()
    {
        PageFixture fixture;
        fixture.configuration->preferences.fullScreenEnabled = true;
        fixture.loadHtml("<body onclick='document.body.requestFullscreen()'>");
        QWidget *const widget = fixture.page->widget();
        const auto fullScreenWindow = [] {
            const QWidgetList windows = QApplication::topLevelWidgets();
            const auto found = std::find_if(
                windows.begin(), windows.end(), [](QWidget *w) { return w->isVisible() && w->isFullScreen(); });
            return found == windows.end() ? nullptr : *found;
        };
        const auto isFull = [&] { return fullScreenWindow() != nullptr; };
        const QString asked = QStringLiteral("!!document.fullscreenElement");
        clickUntil(widget, Qt::LeftButton, isFull);
        QTRY_COMPARE(fixture.evaluate(asked).value, QJsonValue(true));
        QTest::keyClick(fullScreenWindow()->windowHandle(), Qt::Key_Escape);
        QTRY_VERIFY(!isFull());
        QTRY_COMPARE(fixture.evaluate(asked).value, QJsonValue(false));
        clickUntil(widget, Qt::LeftButton, isFull); // back in its own widget
        fixture.page.reset(); // with the window
        QVERIFY(!isFull());
    }

    void staysInItsPlaceWhereFullScreenIsOff()
    {
        PageFixture fixture;
        fixture.loadHtml("");
        QCOMPARE(fixture.evaluate(QStringLiteral("document.fullscreenEnabled")).value, QJsonValue(false));
    }
};

QTEST_MAIN(PageViewTest)
#include "PageViewTest.moc"

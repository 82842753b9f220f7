// SPDX-License-Identifier: MIT
#include "Support/FakeWebEngine.h"
#include "Support/Panels.h"

#include <KXFoundation/CustomComponent/WebView/WKWebView/KXWKWebView.h>

#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using kx::test::FakeWebEngine;
using kx::test::whenPanelOpens;

namespace {

QStringList buttonTexts(const QMessageBox *panel)
{
    QStringList texts;
    for (const QAbstractButton *button : panel->buttons())
        texts.append(button->text());
    return texts;
}

void click(QMessageBox *panel, int index)
{
    QAbstractButton *button = panel->buttons().at(index);
    QTest::mouseClick(panel->windowHandle(), Qt::LeftButton, {}, button->mapTo(panel, button->rect().center()));
}

} // namespace

class KXWKWebViewPanelsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup() { QVERIFY(!QApplication::activeModalWidget()); }

    void alertShowsItsTextAndOneButton();
    void textIsNeverMarkUp();
    void confirmHasTwoButtonsInOrder();
    void confirmTakesTheAnswer_data();
    void confirmTakesTheAnswer();
    void promptGetsTheEmptyStringWithoutAPanel();
    void pageWaitsUntilTheAlertIsClosed();
    void hostMayGoWhileAPanelIsOpen_data();
    void hostMayGoWhileAPanelIsOpen();

private:
    FakeWebEngine m_engine;
    std::unique_ptr<QWidget> m_window;
    QPointer<KXWKWebView> m_host;
};

void KXWKWebViewPanelsTest::init()
{
    // The offscreen platform says of every dialog of a fixed size that it does not hand the size on.
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support propagateSizeHints)"_qs));
    m_window = std::make_unique<QWidget>();
    m_window->resize(400, 300);
    m_host = new KXWKWebView(QRectF(0, 0, 400, 300), m_engine, m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void KXWKWebViewPanelsTest::alertShowsItsTextAndOneButton()
{
    bool shown = false;
    whenPanelOpens([&](QMessageBox *panel) {
        shown = true;
        QCOMPARE(panel->text(), u"Out of space"_qs);
        QCOMPARE(buttonTexts(panel), QStringList{u"好"_qs});
        QCOMPARE(panel->windowModality(), Qt::ApplicationModal);
        QCOMPARE(panel->parentWidget(), m_window.get());
        click(panel, 0);
    });
    m_engine.page()->alert(u"Out of space"_qs);
    QVERIFY(shown);
}

void KXWKWebViewPanelsTest::textIsNeverMarkUp()
{
    whenPanelOpens([&](QMessageBox *panel) {
        QCOMPARE(panel->textFormat(), Qt::PlainText);
        QCOMPARE(panel->text(), u"<b>1 < 2</b> & <img src='http://a.example/'>"_qs);
        click(panel, 0);
    });
    m_engine.page()->alert(u"<b>1 < 2</b> & <img src='http://a.example/'>"_qs);
}

void KXWKWebViewPanelsTest::confirmHasTwoButtonsInOrder()
{
    whenPanelOpens([](QMessageBox *panel) {
        QCOMPARE(panel->text(), u"Delete?"_qs);
        QCOMPARE(buttonTexts(panel), (QStringList{u"确定"_qs, u"取消"_qs}));
        QVERIFY(panel->buttons().at(0)->x() < panel->buttons().at(1)->x());
        QCOMPARE(panel->windowModality(), Qt::ApplicationModal);
        click(panel, 0);
    });
    QVERIFY(m_engine.page()->confirm(u"Delete?"_qs));
}

void KXWKWebViewPanelsTest::confirmTakesTheAnswer_data()
{
    using Action = std::function<void(QMessageBox *)>;
    QTest::addColumn<Action>("action");
    QTest::addColumn<bool>("confirmed");
    const auto key = [](Qt::Key pressed) {
        return Action([pressed](QMessageBox *panel) { QTest::keyClick(panel->windowHandle(), pressed); });
    };
    QTest::newRow("first button") << Action([](QMessageBox *panel) { click(panel, 0); }) << true;
    QTest::newRow("second button") << Action([](QMessageBox *panel) { click(panel, 1); }) << false;
    QTest::newRow("return") << key(Qt::Key_Return) << true;
    QTest::newRow("escape") << key(Qt::Key_Escape) << false;
    QTest::newRow("closed") << Action([](QMessageBox *panel) { panel->close(); }) << false;
}

void KXWKWebViewPanelsTest::confirmTakesTheAnswer()
{
    QFETCH(std::function<void(QMessageBox *)>, action);
    whenPanelOpens(action);
    QTEST(m_engine.page()->confirm(u"Delete?"_qs), "confirmed");
}

void KXWKWebViewPanelsTest::promptGetsTheEmptyStringWithoutAPanel()
{
    const QString answer = m_engine.page()->prompt(u"Your name?"_qs);
    QVERIFY(!answer.isNull());
    QVERIFY(answer.isEmpty());
}

void KXWKWebViewPanelsTest::pageWaitsUntilTheAlertIsClosed()
{
    QStringList order;
    whenPanelOpens([&order](QMessageBox *panel) {
        order.append(u"open"_qs);
        QTimer::singleShot(0, panel, [&order, panel] {
            order.append(u"closing"_qs);
            click(panel, 0);
        });
    });
    m_host->webViewRunJavaScriptAlertPanelWithMessage(
        m_host->wkWebView(), u"x"_qs, {}, [&order] { order.append(u"answered"_qs); });
    QCOMPARE(order, (QStringList{u"open"_qs, u"closing"_qs, u"answered"_qs}));
}

void KXWKWebViewPanelsTest::hostMayGoWhileAPanelIsOpen_data()
{
    QTest::addColumn<bool>("withItsWindow");
    QTest::newRow("host") << false;
    QTest::newRow("window") << true;
}

void KXWKWebViewPanelsTest::hostMayGoWhileAPanelIsOpen()
{
    QFETCH(bool, withItsWindow);
    whenPanelOpens([&](QMessageBox *panel) {
        if (withItsWindow) {
            m_window.reset();
        } else {
            delete m_host;
            click(panel, 0);
        }
    });
    QCOMPARE(m_engine.page()->confirm(u"x"_qs), !withItsWindow);
    QVERIFY(!m_host);
}

QTEST_MAIN(KXWKWebViewPanelsTest)
#include "KXWKWebViewPanelsTest.moc"

// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Application.h>

#include "Support/Activation.h"

#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMenu>

using namespace Qt::StringLiterals;

class ApplicationTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_qs)); }

    void hasNoModalWindowByItself();
    void knowsTheLatestApplicationModalWindow();
    void passesOverWindowsThatAreModalToAnotherOne();
    void doesNotCountPopups();
    void isActiveWhileAWindowHasTheKeyboard();
};

void ApplicationTest::hasNoModalWindowByItself()
{
    QWidget window;
    window.show();
    QDialog plain;
    plain.show();
    QVERIFY(!kx::modalWindow());
}

void ApplicationTest::knowsTheLatestApplicationModalWindow()
{
    QDialog first;
    first.setModal(true);
    QVERIFY(!kx::modalWindow());
    first.show();
    QCOMPARE(kx::modalWindow(), static_cast<QWidget *>(&first));
    {
        QDialog second;
        second.setModal(true);
        second.show();
        QCOMPARE(kx::modalWindow(), static_cast<QWidget *>(&second));
    }
    QCOMPARE(kx::modalWindow(), static_cast<QWidget *>(&first));
    first.hide();
    QVERIFY(!kx::modalWindow());
}

void ApplicationTest::passesOverWindowsThatAreModalToAnotherOne()
{
    QWidget window;
    window.show();
    QDialog application;
    application.setModal(true);
    application.show();
    QDialog sheet(&window);
    sheet.setWindowModality(Qt::WindowModal);
    sheet.show();
    QCOMPARE(kx::modalWindow(), static_cast<QWidget *>(&application));
    application.hide();
    QVERIFY(!kx::modalWindow());
}

void ApplicationTest::doesNotCountPopups()
{
    if (QGuiApplication::platformName() == u"offscreen"_s) {
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    }
    QMenu menu;
    menu.addAction(u"An entry"_s);
    menu.popup({});
    QVERIFY(menu.isVisible());
    QVERIFY(!kx::modalWindow());
}

void ApplicationTest::isActiveWhileAWindowHasTheKeyboard()
{
    QWidget window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(kx::applicationIsActive());
    activate(nullptr);
    QVERIFY(!kx::applicationIsActive());
    activate(&window);
    QVERIFY(kx::applicationIsActive());
}

QTEST_MAIN(ApplicationTest)
#include "ApplicationTest.moc"

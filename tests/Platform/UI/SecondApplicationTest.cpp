// SPDX-License-Identifier: MIT
#include "Support/EveryControl.h"
#include "Support/Pointer.h"

#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/TextField.h>
#include <KXFoundation/RichTextView/KXLabel.h>
#include <KXFoundation/UIBase/View/PNBaseView.h>

#include <QtCore/QHash>
#include <QtCore/QRegularExpression>
#include <QtGui/QAccessible>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

using namespace Qt::StringLiterals;

using kx::test::Control;

namespace {

QList<Control> everyAccessibleControl()
{
    QList<Control> controls = kx::test::everyControl();
    controls.removeIf([](const Control &control) { return QByteArrayView(control.name).endsWith("ButtonView"); });
    return controls
        + QList<Control>{
            {"KXLabel", [](QWidget &parent) -> QWidget * { return new KXLabel(u"Text"_s, &parent); }},
            {"TextField",
                [](QWidget &parent) -> QWidget * {
                    auto *field = new kx::TextField(&parent);
                    field->setStringValue(u"Text"_s);
                    return field;
                }},
        };
}

/// What assistive technology finds.
struct Found {
    QAccessible::Role role = QAccessible::NoRole;
    QString name;
    bool hasValue = false;
    bool hasText = false;

    bool operator==(const Found &other) const = default;
};

class Application {
    int m_argumentCount = 1;
    QByteArray m_name = "SecondApplicationTest";
    char *m_arguments[2] = {m_name.data(), nullptr};
    QApplication m_application{m_argumentCount, m_arguments};
};

// Under an application object of their own.
QHash<QString, Found> findAll()
{
    const Application application;
    QHash<QString, Found> all;
    for (const Control &control : everyAccessibleControl()) {
        QWidget window;
        QAccessibleInterface &accessible = *QAccessible::queryAccessibleInterface(control.make(window));
        all.insert(QString::fromLatin1(control.name),
            {accessible.role(), accessible.text(QAccessible::Name), accessible.valueInterface() != nullptr,
                accessible.textInterface() != nullptr});
    }
    return all;
}

} // namespace

/// A process may have one application object after another.
class SecondApplicationTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();

    void findsWhatTheFirstOneFinds_data() { kx::test::addRows(everyAccessibleControl()); }
    void findsWhatTheFirstOneFinds();
    void followsThePointer_data();
    void followsThePointer();

private:
    QHash<QString, Found> m_byTheFirst;
    QHash<QString, Found> m_byTheSecond;
};

void SecondApplicationTest::initTestCase()
{
    m_byTheFirst = findAll();
    m_byTheSecond = findAll();
}

void SecondApplicationTest::findsWhatTheFirstOneFinds()
{
    QFETCH(Control, control);
    const QString name = QString::fromLatin1(control.name);
    QVERIFY(m_byTheFirst[name].role != QAccessible::Client); // which every plain widget is
    QVERIFY(m_byTheSecond[name] == m_byTheFirst[name]);
}

void SecondApplicationTest::followsThePointer_data()
{
    QTest::addColumn<int>("round");
    for (int round = 0; round < 2; ++round)
        QTest::addRow("%d", round) << round;
}

void SecondApplicationTest::followsThePointer()
{
    const Application application;
    QTest::failOnWarning(QRegularExpression(u".*"_qs));
    QWidget window;
    window.resize(200, 100);
    PNButton button(QRectF(20, 20, 60, 40), &window);
    PNBaseView view(QRectF(100, 20, 60, 40), &window);
    view.setNeedTracking(true);
    QStringList heard;
    button.setHoverStateListener([&](bool hovered) { heard << (hovered ? u"in"_qs : u"out"_qs); });
    connect(&button, &PNButton::clicked, &button, [&] { heard << u"clicked"_qs; });
    connect(&view, &PNBaseView::entered, &view, [&] { heard << u"view"_qs; });
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(QGuiApplication::applicationState(), Qt::ApplicationActive);

    Pointer pointer(button);
    pointer.moveTo({-10, 20});
    pointer.moveTo({30, 20});
    QCOMPARE(kx::Cursor::current().shape(), Qt::PointingHandCursor);
    pointer.click({30, 20});
    pointer.moveTo({110, 20});
    QCOMPARE(heard, (QStringList{u"in"_qs, u"clicked"_qs, u"out"_qs, u"view"_qs}));
}

QTEST_APPLESS_MAIN(SecondApplicationTest)
#include "SecondApplicationTest.moc"

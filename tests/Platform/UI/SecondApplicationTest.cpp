// SPDX-License-Identifier: MIT
#include "Support/EveryControl.h"

#include <KXFoundation/Platform/UI/TextField.h>
#include <KXFoundation/RichTextView/KXLabel.h>

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

// Under an application object of their own.
QHash<QString, Found> findAll()
{
    int argc = 1;
    QByteArray program("SecondApplicationTest");
    char *argv[] = {program.data(), nullptr};
    const QApplication application(argc, argv);
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

QTEST_APPLESS_MAIN(SecondApplicationTest)
#include "SecondApplicationTest.moc"

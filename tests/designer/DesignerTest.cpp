// SPDX-License-Identifier: MIT
// Qt Designer itself, without its windows: what becomes of a control that is put into a form.
#include <QtDesigner/QDesignerComponents>
#include <QtDesigner/QDesignerFormEditorInterface>
#include <QtDesigner/QDesignerFormWindowInterface>
#include <QtDesigner/QDesignerFormWindowManagerInterface>
#include <QtDesigner/QDesignerIntegration>
#include <QtDesigner/QDesignerWidgetBoxInterface>
#include <QtGui/QAction>
#include <QtGui/QClipboard>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <memory>

using namespace Qt::StringLiterals;

class DesignerTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void showsTheControlsInItsBox();
    void savesThatAControlAwakes_data();
    void savesThatAControlAwakes();

private:
    [[nodiscard]] QList<QDesignerWidgetBoxInterface::Widget> controls() const;

    std::unique_ptr<QWidget> m_tools;
    std::unique_ptr<QDesignerFormEditorInterface> m_designer;
};

void DesignerTest::initTestCase()
{
    // Only what is tested here: others may be installed, and have their own to say.
    QCoreApplication::setLibraryPaths({QStringLiteral(KX_PLUGIN_ROOT)});
    QDesignerComponents::initializeResources();
    m_tools = std::make_unique<QWidget>();
    m_designer.reset(QDesignerComponents::createFormEditor(nullptr));
    auto *designer = m_designer.get();
    QDesignerWidgetBoxInterface *box = QDesignerComponents::createWidgetBox(designer, m_tools.get());
    box->setFileName(u":/qt-project.org/widgetbox/widgetbox.xml"_s);
    QVERIFY(box->load());
    designer->setWidgetBox(box);
    designer->setTopLevel(m_tools.get());
    designer->setPropertyEditor(QDesignerComponents::createPropertyEditor(designer, m_tools.get()));
    designer->setObjectInspector(QDesignerComponents::createObjectInspector(designer, m_tools.get()));
    designer->setActionEditor(QDesignerComponents::createActionEditor(designer, m_tools.get()));
    new QDesignerIntegration(designer, designer);
    QDesignerComponents::initializePlugins(designer);
}

void DesignerTest::cleanupTestCase()
{
    m_tools.reset();
    m_designer.reset();
}

QList<QDesignerWidgetBoxInterface::Widget> DesignerTest::controls() const
{
    const QDesignerWidgetBoxInterface *box = m_designer->widgetBox();
    QList<QDesignerWidgetBoxInterface::Widget> controls;
    for (int i = 0; i < box->categoryCount(); ++i) {
        const QDesignerWidgetBoxInterface::Category category = box->category(i);
        for (int j = 0; category.name() == u"KXFoundation" && j < category.widgetCount(); ++j)
            controls.append(category.widget(j));
    }
    return controls;
}

void DesignerTest::showsTheControlsInItsBox()
{
    QStringList names;
    for (const QDesignerWidgetBoxInterface::Widget &control : controls())
        names.append(control.name());
    QCOMPARE(names, QStringLiteral(KX_CLASSES).split(u' '));
}

void DesignerTest::savesThatAControlAwakes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");
    for (const QDesignerWidgetBoxInterface::Widget &control : controls())
        QTest::newRow(qPrintable(control.name())) << control.name() << control.domXml();
}

void DesignerTest::savesThatAControlAwakes()
{
    QFETCH(QString, name);
    QFETCH(QString, description);
    QDesignerFormWindowManagerInterface *forms = m_designer->formWindowManager();
    QDesignerFormWindowInterface *form = forms->createFormWindow();
    QVERIFY(
        form->setContents(u"<ui version=\"4.0\"><class>Form</class><widget class=\"QWidget\" name=\"Form\"/></ui>"_s));
    forms->setActiveFormWindow(form);

    // Pasting goes the way of a drop from the box.
    const QString widget = description.section(u"<ui language=\"c++\">"_s, 1).section(u"</ui>"_s, 0, 0);
    QVERIFY(widget.startsWith(u"<widget"));
    QGuiApplication::clipboard()->setText(
        u"<ui version=\"4.0\"><widget class=\"QWidget\" name=\"__qt_fake_top_level\">"_s + widget
        + u"</widget><resources/></ui>"_s);
    form->selectWidget(form->mainContainer());
    QAction *paste = forms->action(QDesignerFormWindowManagerInterface::PasteAction);
    QTRY_VERIFY(paste->isEnabled());
    paste->trigger();
    QTRY_VERIFY(form->contents().contains(u"<widget class=\"%1\""_s.arg(name)));

    const QString saved = form->contents().simplified();
    QVERIFY2(saved.contains(u"<property name=\"awakesFromNib\"> <bool>true</bool> </property>"_s), qPrintable(saved));
    QVERIFY2(saved.contains(u"<header location=\"global\">KXFoundation/"_s), qPrintable(saved));
    const QString before = form->contents();
    QVERIFY(form->setContents(before));
    QCOMPARE(form->contents(), before);
    delete form;
}

QTEST_MAIN(DesignerTest)
#include "DesignerTest.moc"

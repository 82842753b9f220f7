// SPDX-License-Identifier: MIT
// What a plugin says of each control, and whether that makes the control.
#include <QtCore/QBuffer>
#include <QtCore/QFileInfo>
#include <QtCore/QPluginLoader>
#include <QtTest/QTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiTools/QUiLoader>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

#include <memory>

using namespace Qt::StringLiterals;

class ControlsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();

    void offersItsControls();
    void makesTheControl_data() { controls(); }
    void makesTheControl();
    void namesAHeader_data() { controls(); }
    void namesAHeader();
    void describesAFormThatLoads_data() { controls(); }
    void describesAFormThatLoads();

private:
    void controls() const;

    QPluginLoader m_loader{QStringLiteral(KX_PLUGIN)};
    QList<QDesignerCustomWidgetInterface *> m_controls;
};

void ControlsTest::initTestCase()
{
    QCoreApplication::addLibraryPath(QStringLiteral(KX_PLUGIN_ROOT));
    auto *plugin = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(m_loader.instance());
    QVERIFY2(plugin, qPrintable(m_loader.errorString()));
    m_controls = plugin->customWidgets();
}

void ControlsTest::init()
{
    // What a web engine says that comes with a plugin, where there is no OpenGL, as on the offscreen platform.
    QTest::failOnWarning(QRegularExpression(
        u"^(?!No suitable graphics backend found|WebEngineContext used before QtWebEngineCore::initialize\\(\\) or OpenGL)"_s));
}

void ControlsTest::controls() const
{
    QTest::addColumn<QDesignerCustomWidgetInterface *>("control");
    for (QDesignerCustomWidgetInterface *control : m_controls)
        QTest::newRow(qPrintable(control->name())) << control;
}

void ControlsTest::offersItsControls()
{
    QStringList names;
    for (const QDesignerCustomWidgetInterface *control : std::as_const(m_controls)) {
        names.append(control->name());
        QCOMPARE(control->group(), u"KXFoundation"_s);
        QVERIFY(!control->toolTip().isEmpty());
    }
    QCOMPARE(names, QStringLiteral(KX_CLASSES).split(u' '));
}

void ControlsTest::makesTheControl()
{
    QFETCH(QDesignerCustomWidgetInterface *, control);
    QWidget parent;
    const QWidget *widget = control->createWidget(&parent);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), control->name());
    QCOMPARE(widget->parentWidget(), &parent);
}

void ControlsTest::namesAHeader()
{
    QFETCH(QDesignerCustomWidgetInterface *, control);
    const QString name = control->includeFile();
    QVERIFY(name.startsWith(u'<') && name.endsWith(u'>'));
    QFile header(QStringLiteral(KX_INCLUDE_ROOT "/") + name.mid(1, name.size() - 2));
    QVERIFY(header.open(QIODevice::ReadOnly));
    QVERIFY(QString::fromUtf8(header.readAll()).contains(u"_EXPORT %1 :"_s.arg(control->name())));
}

void ControlsTest::describesAFormThatLoads()
{
    QFETCH(QDesignerCustomWidgetInterface *, control);
    QByteArray form = control->domXml().toUtf8();
    QBuffer buffer(&form);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QUiLoader loader; // loads the plugins of the library paths
    const std::unique_ptr<QWidget> widget(loader.load(&buffer));
    QVERIFY2(widget, qPrintable(loader.errorString()));
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), control->name());
    QVERIFY(!widget->objectName().isEmpty());
    QVERIFY(!widget->size().isEmpty());
    QCOMPARE(widget->property("awakesFromNib"), QVariant(true));
}

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts); // as Designer does, for the sake of web engines
    QApplication application(argc, argv);
    ControlsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "ControlsTest.moc"

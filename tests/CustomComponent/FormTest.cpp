// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/View.h>

#include "ui_Buttons.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

QColor colorOf(const kx::Image &image)
{
    return image ? image.toQImage(1).pixelColor(5, 5) : QColor();
}

/// Counts how often it awakes.
class Awaking : public kx::View {
public:
    using kx::View::View;
    int times = 0;
    bool wasVisible = false;
    bool deletesItself = false;
    void awakeFromNib() override
    {
        ++times;
        wasVisible = isVisible();
        if (deletesItself)
            delete this;
    }
};

} // namespace

/// Controls that a form makes, as the user interface compiler does it.
class FormTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_window.reset(); }

    void buttonsTakeTheImageOfTheForm();
    void thoseThatAreNotToAwakeDoNot();
    void faintButtonsTakeTheImageOfTheForm();
    void textButtonsShowTheirColours();
    void imageViewsInteractAgain();
    void viewsAwakeOnceBeforeTheyAreShown();
    void viewsMadeInCodeDoNotAwake();
    void mayBeDeletedWhenItAwakes();

private:
    QTemporaryDir m_images;
    std::unique_ptr<QWidget> m_window;
    Ui::Buttons m_form;
};

void FormTest::initTestCase()
{
    QVERIFY(m_images.isValid());
    QVERIFY(QDir::setCurrent(m_images.path())); // where the form finds its image
    QImage image(10, 10, QImage::Format_ARGB32);
    image.fill(Qt::blue);
    QVERIFY(image.save(u"play.png"_s));
}

void FormTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_window = std::make_unique<QWidget>();
    m_form.setupUi(m_window.get());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void FormTest::buttonsTakeTheImageOfTheForm()
{
    QCOMPARE(colorOf(m_form.play->normalImage()), QColor(Qt::blue));
    QCOMPARE(m_form.play->normalImage().size(), QSizeF(10, 10));
    QCOMPARE(m_form.play->toolTip(), u"Play"_s);
    QVERIFY(m_form.play->userInteraction()); // whatever the form says
    m_form.play->mouseEntered(nullptr);
    QCOMPARE(colorOf(m_form.play->image()), QColor(255, 46, 67));
}

void FormTest::thoseThatAreNotToAwakeDoNot()
{
    QVERIFY(!m_form.asleep->normalImage());
    QCOMPARE(colorOf(m_form.asleep->image()), QColor(Qt::blue));
}

void FormTest::faintButtonsTakeTheImageOfTheForm()
{
    QCOMPARE(colorOf(m_form.stop->hoverImage()), QColor(Qt::blue));
    QCOMPARE(colorOf(m_form.stop->image()).alpha(), 115); // 0.45 of 255
    QCOMPARE(m_form.stop->shadowOffset(), QSizeF(1, -2));
}

void FormTest::textButtonsShowTheirColours()
{
    const kx::TextAttributes attributes = m_form.playAll->attributedTitle().attributesAt(0);
    QCOMPARE(m_form.playAll->title(), u"Play all"_s);
    QCOMPARE(attributes.foregroundColor.toQColor(), QColor(255, 255, 0));
    QCOMPARE(m_form.playAll->layer()->backgroundColor().toQColor(), QColor(0, 0, 255));
    QCOMPARE(m_form.playAll->layer()->cornerRadius(), 6.0);
}

void FormTest::imageViewsInteractAgain()
{
    QVERIFY(m_form.cover->userInteraction());
    QVERIFY(m_form.cover->needIBeamCursor());
}

void FormTest::viewsAwakeOnceBeforeTheyAreShown()
{
    Awaking view;
    view.setProperty("awakesFromForm", true);
    QCOMPARE(view.times, 0);
    for (int i = 0; i < 2; ++i) {
        view.show();
        QCOMPARE(view.times, 1);
        QVERIFY(!view.wasVisible);
        view.hide();
    }
}

void FormTest::viewsMadeInCodeDoNotAwake()
{
    Awaking view;
    view.show();
    QCOMPARE(view.times, 0);
}

void FormTest::mayBeDeletedWhenItAwakes()
{
    const QPointer<Awaking> view = new Awaking(m_window.get());
    view->setProperty("awakesFromForm", true);
    view->deletesItself = true;
    view->ensurePolished();
    QVERIFY(!view);
}

QTEST_MAIN(FormTest)
#include "FormTest.moc"

// SPDX-License-Identifier: MIT
// One form with every control, compiled by uic and loaded at run time.
#include "ui_Controls.h"

#include <KXFoundation/Platform/UI/Layer.h>

#include <QtCore/QFile>
#include <QtTest/QTest>
#include <QtUiTools/QUiLoader>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<QWidget> compiledForm()
{
    auto form = std::make_unique<QWidget>();
    Ui::Controls().setupUi(form.get());
    return form;
}

std::unique_ptr<QWidget> loadedForm()
{
    QUiLoader loader; // loads the plugins of the library paths
    QFile file(QFINDTESTDATA("Controls.ui"));
    if (!file.open(QIODevice::ReadOnly))
        return nullptr;
    return std::unique_ptr<QWidget>(loader.load(&file));
}

QColor titleColor(const PNTextColorButton &button)
{
    return button.attributedTitle().attributesAt(0).foregroundColor.toQColor();
}

bool isRed(const kx::Image &image)
{
    return image && image.toQImage(1).pixelColor(4, 4) == QColor(Qt::red);
}

} // namespace

class FormsTest : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase_data();
    void init();
    void cleanup() { m_form.reset(); }

    void setsTheProperties();
    void makesTheClassesThemselves();
    void awakesItsControls();
    void leavesAControlAsleepThatDoesNotAskForIt();
    void awakesWithTranslatedTextsOnEveryPage();
    void undoesUserInteractionWhereTheControlSaysSo();
    void isDrawnAwake();

private:
    template <class Control> Control *control(const char *name) const
    {
        return m_form->findChild<Control *>(QString::fromLatin1(name));
    }

    std::unique_ptr<QWidget> m_form;
};

void FormsTest::initTestCase_data()
{
    QCoreApplication::setLibraryPaths({QStringLiteral(KX_PLUGIN_ROOT)});
    QTest::addColumn<bool>("isCompiled");
    QTest::newRow("compiled by uic") << true;
    QTest::newRow("loaded by QUiLoader") << false;
}

void FormsTest::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QFETCH_GLOBAL(bool, isCompiled);
    m_form = isCompiled ? compiledForm() : loadedForm();
    QVERIFY(m_form);
}

void FormsTest::setsTheProperties()
{
    const auto *button = control<PNButton>("imageButton");
    QVERIFY(isRed(button->image()));
    QCOMPARE(button->toolTips(), u"Play it"_s);
    QVERIFY(button->isIgnoreHover());
    QCOMPARE(button->geometry(), QRect(0, 0, 32, 32));
    QCOMPARE(control<PNAlphBtn>("alphBtn")->shadowOffset(), QSizeF(2, -1));
    QVERIFY(control<KXImageView>("imageView")->needIBeamCursor());
    const auto *textButton = control<PNTextColorButton>("textColorButton");
    QCOMPARE(textButton->title(), u"Play"_s);
    QCOMPARE(textButton->normalTextColor().toQColor(), QColor(Qt::blue));
    QCOMPARE(textButton->cornerRadius(), 6.0);
    const auto *base = control<PNBaseView>("baseView");
    QCOMPARE(base->backgroundColor().toQColor(), QColor(0, 128, 0));
    QVERIFY(base->needTracking());
    QCOMPARE(base->name(), u"base"_s);
    QCOMPARE(base->tag(), qint64(1) << 32);
    const auto *label = control<KXLabel>("label");
    QCOMPARE(label->text(), u"A label"_s);
    QCOMPARE(label->textColor().toQColor(), QColor(Qt::magenta));
    QCOMPARE(label->fontSize(), 15);
    QCOMPARE(label->superview(), base);
    QVERIFY(control<KXRichTextView>("richTextView")->userCursor());
    const auto *indicator = control<PNProgressIndicator>("progressIndicator");
    QCOMPARE(indicator->maxValue(), 60.0);
    QCOMPARE(indicator->playedValue(), 15.5);
    QCOMPARE(indicator->playedStartColor().toQColor(), QColor(1, 2, 3));
    const auto *slider = control<PNProgressSlider>("progressSlider");
    QCOMPARE(slider->segementCount(), 4);
    QCOMPARE(slider->currentValue(), 0.5);
    QVERIFY(control<PNStandardWindowButtonView>("standardWindowButtonView")->closeBtn());
}

void FormsTest::makesTheClassesThemselves()
{
    for (const QString &name : QStringLiteral(KX_CLASSES).split(u' ')) {
        const QList<QWidget *> children = m_form->findChildren<QWidget *>();
        QVERIFY2(std::any_of(children.begin(), children.end(),
                     [&](const QWidget *child) { return QLatin1String(child->metaObject()->className()) == name; }),
            qPrintable(name));
    }
}

void FormsTest::awakesItsControls()
{
    const auto *button = control<PNButton>("imageButton");
    const auto *alpha = control<PNAlphBtn>("alphBtn");
    auto *text = control<PNTextColorButton>("textColorButton");
    QVERIFY(button->awakesFromNib());
    QVERIFY(!button->normalImage());
    QVERIFY(!alpha->normalImage());
    QCOMPARE(text->layer()->cornerRadius(), 0.0);
    m_form->show();
    QVERIFY(isRed(button->normalImage()));
    QCOMPARE(button->toolTip(), u"Play it"_s);
    QVERIFY(isRed(alpha->hoverImage()));
    QCOMPARE(alpha->image().toQImage(1).pixelColor(4, 4).alpha(), 115); // the faint look
    QCOMPARE(text->layer()->cornerRadius(), 6.0);
    QCOMPARE(text->layer()->backgroundColor().toQColor(), QColor(Qt::yellow));
    QCOMPARE(titleColor(*text), QColor(Qt::blue));
}

void FormsTest::leavesAControlAsleepThatDoesNotAskForIt()
{
    const auto *asleep = control<PNButton>("imageButtonAsleep");
    m_form->show();
    QCoreApplication::processEvents();
    QVERIFY(isRed(asleep->image()));
    QVERIFY(!asleep->normalImage());
}

// The first page of a stack is polished while the form is being set up, before its texts are translated.
void FormsTest::awakesWithTranslatedTextsOnEveryPage()
{
    const auto *seen = control<PNTextColorButton>("buttonSeen");
    const auto *unseen = control<PNTextColorButton>("buttonUnseen");
    m_form->show();
    QCOMPARE(seen->attributedTitle().string(), u"Seen"_s);
    QCOMPARE(titleColor(*seen), QColor(Qt::white));
    QTRY_COMPARE(titleColor(*unseen), QColor(Qt::white));
    QCOMPARE(unseen->attributedTitle().string(), u"Unseen"_s);
    QVERIFY(!unseen->isVisible());
}

void FormsTest::undoesUserInteractionWhereTheControlSaysSo()
{
    const auto *button = control<PNButton>("imageButton");
    const auto *image = control<KXImageView>("imageView");
    QVERIFY(!button->userInteraction());
    QVERIFY(!image->userInteraction());
    m_form->show();
    QVERIFY(button->userInteraction());
    QVERIFY(image->userInteraction());
}

void FormsTest::isDrawnAwake()
{
    const QImage picture = m_form->grab().toImage();
    const double ratio = picture.devicePixelRatio();
    QCOMPARE(picture.pixelColor(QPoint(16, 16) * ratio), QColor(Qt::red));
    const QColor faint = picture.pixelColor(QPoint(96, 16) * ratio); // over the form's own background
    QVERIFY(faint.red() > faint.blue());
    QVERIFY(faint.blue() > 0);
    QCOMPARE(picture.pixelColor(QPoint(200, 2) * ratio), QColor(Qt::yellow));
    QVERIFY(picture.pixelColor(QPoint(160, 0) * ratio) != QColor(Qt::yellow)); // outside the round corner
}

QTEST_MAIN(FormsTest)
#include "FormsTest.moc"

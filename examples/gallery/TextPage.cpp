// SPDX-License-Identifier: MIT
#include "TextPage.h"

#include "common/Icons.h"

#include <KXFoundation/CustomComponent/KXVerticalCenterTextFieldCell.h>
#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/TextField.h>
#include <KXFoundation/RichTextView/KXAttributedString.h>
#include <KXFoundation/RichTextView/KXLabel.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>

using namespace Qt::StringLiterals;

namespace {

using Run = std::shared_ptr<KXAttributedString>;

Run run(const QString &text, const kx::Color &color = {}, const kx::Color &background = {})
{
    auto run = std::make_shared<KXAttributedString>(text);
    if (color)
        run->setTextColor(color);
    if (background)
        run->setBackgroundColor(background);
    return run;
}

Run link(const QString &text)
{
    const Run link = run(text, QColor(120, 200, 255));
    link->setOnClick([](const Run &) {});
    return link;
}

KXRichTextView *textView(const KXRichTextView::Runs &runs)
{
    auto *view = new KXRichTextView;
    view->setKXAttributedStrings(runs);
    return view;
}

kx::Font large()
{
    return kx::Font::named(u"PingFangSC-Regular"_s, 24);
}

} // namespace

TextPage::TextPage()
{
    addKXRichTextViews();
    addKXLabels();
    addCells();
}

void TextPage::addKXRichTextViews()
{
    beginFamily(u"KXRichTextView"_s, 3);
    const auto addText = [this](const QString &name, KXRichTextView *view,
                             const std::function<void()> &enter = {}) -> State & {
        return add(name, view, view->sizeHint(), enter);
    };
    const kx::Color red = QColor(255, 46, 67);
    const kx::Color amber = QColor(255, 151, 0);
    addText(u"runs"_s, textView({run(u"Season 2, "_s), run(u"episode 7"_s, red), run(u" (new)"_s, amber)}));
    addText(u"backgrounds"_s, textView({run(u"Rated "_s), run(u" 9.1 "_s, Qt::black, amber), run(u" by 12 people"_s)}));
    const Run title = run(u"Large"_s, red);
    title->setFont(large());
    addText(u"two sizes"_s, textView({title, run(u" and small, gjpqy"_s)}));
    addText(u"lines"_s, textView({run(u"First line\nsecond, "_s), run(u"longer line\nthird"_s, amber)}));
    addText(u"links"_s, textView({run(u"By "_s), link(u"Ann"_s), run(u" and "_s), link(u"Ben"_s)}));
    KXRichTextView *view = textView({run(u"By "_s), link(u"Ann"_s), run(u" and "_s), link(u"Ben"_s)});
    addText(u"link reached by Tab"_s, view, [view] { view->setFocus(Qt::TabFocusReason); });
    view = textView(
        {run(u"By many people,\namong them "_s), link(u"Ann Example\nand Ben Sample"_s), run(u"\nand others"_s)});
    view->setInsets({3, 1, 3, 1}); // room for the ring
    addText(u"link on two lines reached by Tab"_s, view, [view] { view->setFocus(Qt::TabFocusReason); });
    const auto image = std::make_shared<KXAttributedString>(
        kx::AttributedString(std::make_shared<kx::TextAttachment>(icons::heart(red))));
    addText(u"image"_s, textView({image, run(u" 1,024 likes"_s)}));
    view = textView({run(u"Round corners"_s)});
    view->setBackgroundColor(QColor(90, 60, 70));
    view->setInsets({12, 6, 12, 6});
    view->setUseRoundCorner(true);
    addText(u"round corners"_s, view);
    // The background of the text stays at the view's origin.
    view = textView({run(u"Insets and background"_s, Qt::white, QColor(70, 110, 70))});
    view->setBackgroundColor(QColor(60, 64, 74));
    view->setInsets({10, 8, 10, 8});
    addText(u"insets"_s, view);
    addText(u"other scripts"_s, textView({run(u"Ελληνικά, кириллица, "_s), run(u"עברית"_s, amber), run(u" é ü ñ"_s)}));
}

void TextPage::addKXLabels()
{
    beginFamily(u"KXLabel"_s, 4);
    const auto addLabel = [this](const QString &name, KXLabel *label) { add(name, label, label->sizeHint()); };
    addLabel(u"plain"_s, new KXLabel(u"A plain label"_s));
    auto *label = new KXLabel(u"A plain label"_s);
    label->setTextColor(QColor(255, 151, 0));
    addLabel(u"coloured"_s, label);
    label = new KXLabel(u"A plain label"_s);
    label->setFontSize(24);
    addLabel(u"font size 24"_s, label);
    label = new KXLabel(u"A plain label"_s);
    label->setTextColor(kx::Color::white(1, 0.45));
    label->setFontSize(11);
    addLabel(u"faint and small"_s, label);
}

void TextPage::addCells()
{
    const auto addField = [this](const QString &name, std::unique_ptr<kx::TextFieldCell> cell, const QSize &size) {
        auto *field = new kx::TextField;
        field->setCell(std::move(cell));
        field->layer()->setBorderColor(kx::Color::white(1, 0.3));
        field->layer()->setBorderWidth(1);
        add(name, field, size);
    };
    const auto centered = [](const QString &text) { return std::make_unique<KXVerticalCenterTextFieldCell>(text); };
    const QString wide = u"This text is broken into lines"_s;
    beginFamily(u"KXVerticalCenterTextFieldCell"_s, 4);
    addField(u"one line"_s, centered(u"In the middle"_s), {160, 60});
    addField(u"several lines"_s, centered(wide), {160, 60});
    addField(u"too high"_s, centered(wide + u' ' + wide), {160, 40});
    addField(u"a plain cell"_s, std::make_unique<kx::TextFieldCell>(u"In the middle"_s), {160, 60});
}

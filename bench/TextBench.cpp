// SPDX-License-Identifier: MIT
#include "Row.h"

#include <KXFoundation/Platform/Core/Format.h>
#include <KXFoundation/RichTextView/KXAttributedString.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>

#include <QtGui/QImage>
#include <QtWidgets/QLabel>

#include <cstdlib>
#include <memory>

namespace {

using kx::bench::timed;

// 20 runs of 10 characters, each in a colour of its own, some bold and some on a coloured ground. Two texts of the same
// length, so that setting them in turn is never setting the same one again.
constexpr int runCount = 20;
constexpr QSize area(1800, 40);

QString runText(int text, int run)
{
    return kx::format(u"%d run %02d, ", text, run);
}

QColor runColor(int run)
{
    return QColor::fromHsv(run * 17, 200, 140);
}

bool isBold(int run)
{
    return run % 4 == 0;
}

bool hasGround(int run)
{
    return run % 5 == 0;
}

KXRichTextView::Runs runs(int text, const QFont &font)
{
    QFont bold = font;
    bold.setBold(true);
    const kx::Font boldFont = bold;
    KXRichTextView::Runs list;
    for (int i = 0; i < runCount; ++i) {
        const auto run = std::make_shared<KXAttributedString>(runText(text, i));
        run->setTextColor(runColor(i));
        if (isBold(i))
            run->setFont(boldFont);
        if (hasGround(i))
            run->setBackgroundColor(Qt::yellow);
        list.append(run);
    }
    return list;
}

QString markup(int text)
{
    QString markup;
    for (int i = 0; i < runCount; ++i) {
        markup += kx::format(u"<span style=\"color:%@;%@%@white-space:pre\">%@</span>", runColor(i).name(),
            isBold(i) ? QStringLiteral("font-weight:bold;") : QString(QLatin1String("")),
            hasGround(i) ? QStringLiteral("background-color:yellow;") : QString(QLatin1String("")), runText(text, i));
    }
    return markup;
}

QImage canvas()
{
    QImage image(area, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

void paint(QWidget &widget, QImage &image)
{
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
}

// The columns that are not white: both sides have to draw as much.
int inkedColumns(const QImage &image)
{
    int columns = 0;
    for (int x = 0; x < image.width(); ++x) {
        bool inked = false;
        for (int y = 0; y < image.height() && !inked; ++y)
            inked = image.pixel(x, y) != 0xFFFFFFFFU;
        columns += inked ? 1 : 0;
    }
    return columns;
}

struct View {
    View() { view.resize(area); }
    KXRichTextView view;
    const KXRichTextView::Runs texts[2]{runs(0, view.font()), runs(1, view.font())};
    QImage image = canvas();

    void repaint() { paint(view, image); }
    void set(int text)
    {
        view.setKXAttributedStrings(texts[text]);
        benchmark::DoNotOptimize(view.sizeHint());
        repaint();
    }
};

struct Label {
    Label()
    {
        label.setTextFormat(Qt::RichText);
        label.resize(area);
    }
    QLabel label;
    const QString texts[2]{markup(0), markup(1)};
    QImage image = canvas();

    void repaint() { paint(label, image); }
    void set(int text)
    {
        label.setText(texts[text]);
        benchmark::DoNotOptimize(label.sizeHint());
        repaint();
    }
};

bool drawTheSame(benchmark::State &state)
{
    View ours;
    Label peer;
    ours.set(0);
    peer.set(0);
    const int columns = inkedColumns(ours.image);
    if (columns > 500 && std::abs(columns - inkedColumns(peer.image)) < 20)
        return true;
    state.SkipWithError("the two sides draw different texts");
    return false;
}

template <class Side> void set(benchmark::State &state)
{
    if (!drawTheSame(state))
        return;
    Side side;
    for (int text = 0; state.KeepRunning(); text = 1 - text)
        side.set(text);
}

template <class Side> void repaint(benchmark::State &state)
{
    if (!drawTheSame(state))
        return;
    Side side;
    side.set(0);
    for (auto _ : state)
        side.repaint();
}

const bool registered = timed({"text.set", "us", 0.25, "prepared glyph runs"}, set<View>, set<Label>)
    && timed({"text.repaint", "us", 0.5, "prepared glyph runs"}, repaint<View>, repaint<Label>);

} // namespace

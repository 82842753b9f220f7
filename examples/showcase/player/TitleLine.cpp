// SPDX-License-Identifier: MIT
#include "TitleLine.h"

#include "../Look.h"
#include "../clips/Clip.h"

#include <KXFoundation/Platform/UI/Font.h>
#include <KXFoundation/RichTextView/KXAttributedString.h>

#include <QtCore/QUrl>

using namespace Qt::StringLiterals;

namespace {

using Run = std::shared_ptr<KXAttributedString>;

Run run(const QString &text, const kx::Color &color, double size)
{
    auto run = std::make_shared<KXAttributedString>(text);
    run->setTextColor(color);
    run->setFont(kx::Font::named(look::fontName, size));
    return run;
}

} // namespace

TitleLine::TitleLine(QWidget *parent)
    : KXRichTextView(parent)
{
    setBackgroundColor(look::overlay);
    setInsets({14, 8, 16, 8});
    setUseRoundCorner(true);
    setUserCursor(true);
}

void TitleLine::showClip(const Clip &clip)
{
    Runs runs{run(clip.title, look::text, 17), run(u"   "_s + look::time(double(clip.seconds)), look::faintText, 12)};
    for (const QString &tag : clip.tags) {
        runs.append(run(u"   "_s, look::text, 12));
        runs.append(
            link(u'#' + tag, u"kx://action.cmd/tag?name="_s + QString::fromLatin1(QUrl::toPercentEncoding(tag))));
    }
    runs.append(run(u"   "_s, look::text, 12));
    runs.append(link(tr("from the middle"), u"kx://action.cmd/seek?to=%1"_s.arg(clip.seconds / 2)));
    setKXAttributedStrings(runs);
    resize(sizeHint());
}

// A press on the title is none on the picture beneath.
void TitleLine::mouseDown(kx::Event * /*event*/) { }

Run TitleLine::link(const QString &text, const QString &actionUrl)
{
    const Run link = run(text, look::link, 12);
    link->setOnClick([this, actionUrl](const Run &) { Q_EMIT actionRequested(actionUrl); });
    return link;
}

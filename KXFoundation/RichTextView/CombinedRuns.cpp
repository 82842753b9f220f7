// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/CombinedRuns.h>

#include <KXFoundation/RichTextView/KXAttributedString.h>

using kx::TextAttributes;

namespace {

_KXAttributedItem::Backgrounds backgroundsIn(const kx::AttributedString &text, qint32 location)
{
    QList<_KXOtherAttributedItem> backgrounds;
    text.enumerateAttribute(
        &TextAttributes::backgroundColor, {0, text.length()}, [&](const kx::Color &color, const kx::TextRange &range) {
            if (!color)
                return;
            _KXOtherAttributedItem item;
            item.setBgColorRange({quint64(location) + range.location, range.length});
            backgrounds.append(item);
        });
    if (backgrounds.isEmpty())
        return {};
    return backgrounds;
}

// Deliberate: the attachments are the run's own, so that the run changes by being shown.
void wrapAttachmentImages(const kx::AttributedString &text)
{
    text.enumerateAttribute(&TextAttributes::attachment, {0, text.length()},
        [](const kx::TextAttachmentRef &attachment, const kx::TextRange &) {
            if (attachment)
                attachment->wrapImage();
        });
}

} // namespace

CombinedRuns combined(const QList<std::shared_ptr<KXAttributedString>> &runs)
{
    kx::MutableAttributedString text;
    QList<_KXAttributedItem> items;
    qint32 location = 0;
    for (const auto &run : runs) {
        if (!run)
            continue;
        const kx::AttributedString copy = run->toAttributedString();
        text.appendAttributedString(copy);
        _KXAttributedItem item;
        item.setKxas(run);
        item.setRange({quint64(location), copy.length()});
        item.setBgRangArr(backgroundsIn(copy, location));
        items.append(item);
        location = locationAfter(location, copy.length());
        wrapAttachmentImages(copy);
    }
    return {text, items};
}

// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/RichTextBody.h>

#include <KXFoundation/RichTextView/KXAttributedString.h>

QString RichTextBody::textIn(const kx::TextRange &range) const
{
    const kx::AttributedString &text = textStorage.attributedString();
    return range.isWithin(text.length()) ? text.string().mid(qsizetype(range.location), qsizetype(range.length))
                                         : QString();
}

QString RichTextBody::spokenIn(const kx::TextRange &range) const
{
    QString spoken;
    const auto add = [&](const kx::TextAttachmentRef &attachment, const kx::TextRange &part) {
        spoken += textIn(part).replace(kx::attachmentCharacter, attachment ? attachment->description() : QString());
    };
    textStorage.attributedString().enumerateAttribute(&kx::TextAttributes::attachment, range, add);
    return spoken;
}

QRectF RichTextBody::rectOf(const _KXAttributedItem &item)
{
    return layoutManager.boundingRectForGlyphRange(item.range()).translated(insets.left(), insets.top());
}

QList<QRectF> RichTextBody::rectsOf(const kx::TextRange &range)
{
    QList<QRectF> rects = layoutManager.rectsForGlyphRange(range);
    for (QRectF &rect : rects)
        rect.translate(insets.left(), insets.top());
    return rects;
}

bool RichTextBody::isLink(qsizetype index) const
{
    return index >= 0 && index < items.size() && items.at(index).range().length > 0
        && items.at(index).kxas()->onClick();
}

QList<qsizetype> RichTextBody::links() const
{
    QList<qsizetype> links;
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (isLink(i))
            links.append(i);
    }
    return links;
}

qsizetype RichTextBody::linkBeside(qsizetype index, bool forward) const
{
    const qsizetype step = forward ? 1 : -1;
    for (qsizetype i = index + step; i >= 0 && i < items.size(); i += step) {
        if (isLink(i))
            return i;
    }
    return -1;
}

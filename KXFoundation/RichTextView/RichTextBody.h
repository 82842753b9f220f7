// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/KeyboardFocus.h>
#include <KXFoundation/Platform/UI/LayoutManager.h>
#include <KXFoundation/Platform/UI/TextContainer.h>
#include <KXFoundation/Platform/UI/TextStorage.h>
#include <KXFoundation/RichTextView/_KXAttributedItem.h>

#include <QtCore/QList>
#include <QtCore/QMarginsF>
#include <QtCore/QRectF>

/// What a rich text view shows, and which part of it the user deals with. Rectangles count in the view.
class RichTextBody {
public:
    kx::TextStorage textStorage;
    kx::TextContainer textContainer;
    kx::LayoutManager layoutManager{textStorage, textContainer};
    QList<_KXAttributedItem> items;
    QMarginsF insets;

    kx::TextRange selection; ///< chosen by assistive technology
    int caret = 0; ///< where assistive technology reads, in characters of the text
    qsizetype currentLink = -1; ///< the index of the item that the keyboard has reached
    kx::KeyboardFocus keyboardFocus;

    /// The part of the text that lies in it.
    [[nodiscard]] QString textIn(const kx::TextRange &range) const;
    /// The same as it is read aloud: descriptions in the places of images.
    [[nodiscard]] QString spokenIn(const kx::TextRange &range) const;
    /// Around all characters of an item.
    [[nodiscard]] QRectF rectOf(const _KXAttributedItem &item);
    /// The parts of a range, line by line.
    [[nodiscard]] QList<QRectF> rectsOf(const kx::TextRange &range);

    /// Whether there is something to click at this index.
    [[nodiscard]] bool isLink(qsizetype index) const;
    [[nodiscard]] bool hasLinks() const { return linkBeside(-1, true) >= 0; }
    /// The indexes of all links.
    [[nodiscard]] QList<qsizetype> links() const;
    /// The next link behind or before an index, which may lie outside of the list; -1 for none.
    [[nodiscard]] qsizetype linkBeside(qsizetype index, bool forward) const;
};

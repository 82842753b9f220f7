// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QList>
#include <QtGui/QAccessible>
#include <QtWidgets/QAccessibleWidget>

class KXRichTextView;
class RichTextBody;

/// Lets assistive technology find rich text views. May be called any number of times.
void makeRichTextAccessible();
/// Tells assistive technology that a view shows another text.
void tellOfNewText(KXRichTextView &view, const QString &before, const QString &now);
/// Tells it that the view's links are others than before.
void tellOfNewLinks(KXRichTextView &view);
/// Tells it which link the keyboard has reached, if any, when the caller is done.
void tellOfCurrentLink(KXRichTextView &view);

/// A rich text view as assistive technology meets it: a text that can be read and selected, with a child for each link.
class AccessibleRichText : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit AccessibleRichText(KXRichTextView &view);

    /// Does what a click on the record's run does. The view may be gone afterwards.
    static void follow(KXRichTextView &view, qsizetype index);
    /// Moves the keyboard to a link.
    static void focus(KXRichTextView &view, qsizetype index);
    /// A rectangle of the view in Qt's global coordinates; null where it has no place.
    [[nodiscard]] static QRect onScreen(const KXRichTextView &view, const QRectF &rect);

    void *interface_cast(QAccessible::InterfaceType type) override;
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
    [[nodiscard]] QAccessibleInterface *focusChild() const override;

    void selection(int selectionIndex, int *startOffset, int *endOffset) const override;
    [[nodiscard]] int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    [[nodiscard]] int cursorPosition() const override;
    void setCursorPosition(int position) override;
    [[nodiscard]] QString text(int startOffset, int endOffset) const override;
    [[nodiscard]] int characterCount() const override;
    [[nodiscard]] QRect characterRect(int offset) const override;
    [[nodiscard]] int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int, int) override { }
    [[nodiscard]] QString attributes(int offset, int *startOffset, int *endOffset) const override;

private:
    ~AccessibleRichText() override;

    [[nodiscard]] KXRichTextView &view() const;
    [[nodiscard]] RichTextBody &body() const;
    const QList<QAccessible::Id> &links() const;
    [[nodiscard]] QAccessibleInterface *currentLink() const;

    mutable QList<QAccessible::Id> m_links; // of the text of this revision
    mutable quint64 m_revision = 0;
};

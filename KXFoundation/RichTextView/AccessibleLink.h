// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QPointer>
#include <QtGui/QAccessible>

class KXRichTextView;
class RichTextBody;

/// A run with an onClick() as assistive technology meets it: a link in the text of its view. Stands for the text that
/// the view showed when it was made, and is invalid from the next one on.
class AccessibleLink : public QAccessibleInterface,
                       public QAccessibleActionInterface,
                       public QAccessibleHyperlinkInterface {
public:
    /// `index` is that of the run's record. `body` belongs to the view.
    AccessibleLink(KXRichTextView &view, RichTextBody &body, qsizetype index);

    [[nodiscard]] qsizetype index() const { return m_index; }

    [[nodiscard]] bool isValid() const override;
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QWindow *window() const override;
    [[nodiscard]] QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString &) override { }
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Link; }
    [[nodiscard]] QAccessible::State state() const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &actionName) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &actionName) const override;

    [[nodiscard]] QString anchor() const override;
    [[nodiscard]] QString anchorTarget() const override;
    [[nodiscard]] int startIndex() const override;
    [[nodiscard]] int endIndex() const override;

private:
    const QPointer<KXRichTextView> m_view;
    RichTextBody &m_body; // only while m_view is there
    const qsizetype m_index;
    const quint64 m_revision;
};

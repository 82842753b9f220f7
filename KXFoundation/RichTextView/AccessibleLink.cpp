// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/AccessibleLink.h>

#include <KXFoundation/RichTextView/AccessibleRichText.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>
#include <KXFoundation/RichTextView/RichTextBody.h>

AccessibleLink::AccessibleLink(KXRichTextView &view, RichTextBody &body, qsizetype index)
    : m_view(&view)
    , m_body(body)
    , m_index(index)
    , m_revision(body.textStorage.revision())
{
}

bool AccessibleLink::isValid() const
{
    return m_view && m_revision == m_body.textStorage.revision();
}

QWindow *AccessibleLink::window() const
{
    return isValid() ? m_view->window()->windowHandle() : nullptr;
}

QAccessibleInterface *AccessibleLink::parent() const
{
    return m_view ? QAccessible::queryAccessibleInterface(m_view) : nullptr;
}

QString AccessibleLink::text(QAccessible::Text kind) const
{
    return kind == QAccessible::Name ? anchor() : QString();
}

QRect AccessibleLink::rect() const
{
    return isValid() ? AccessibleRichText::onScreen(*m_view, m_body.rectOf(m_body.items.at(m_index))) : QRect();
}

QAccessible::State AccessibleLink::state() const
{
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.linked = true;
    state.disabled = !m_view->isEnabled() || !m_view->userInteraction();
    state.focusable = !state.disabled && m_view->focusPolicy() != Qt::NoFocus;
    state.focused = !state.disabled && m_view->hasFocus() && m_body.currentLink == m_index;
    state.invisible = !m_view->isVisible();
    return state;
}

void *AccessibleLink::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::ActionInterface)
        return static_cast<QAccessibleActionInterface *>(this);
    if (type == QAccessible::HyperlinkInterface)
        return static_cast<QAccessibleHyperlinkInterface *>(this);
    return nullptr;
}

QStringList AccessibleLink::actionNames() const
{
    const QAccessible::State now = state();
    QStringList names;
    if (!now.invalid && !now.disabled)
        names.append(pressAction());
    if (now.focusable)
        names.append(setFocusAction());
    return names;
}

void AccessibleLink::doAction(const QString &actionName)
{
    if (!actionNames().contains(actionName))
        return;
    if (actionName == pressAction())
        AccessibleRichText::follow(*m_view, m_index); // the view may be gone, and this with it
    else
        AccessibleRichText::focus(*m_view, m_index);
}

QStringList AccessibleLink::keyBindingsForAction(const QString &) const
{
    return {};
}

QString AccessibleLink::anchor() const
{
    return isValid() ? m_body.spokenIn(m_body.items.at(m_index).range()) : QString();
}

QString AccessibleLink::anchorTarget() const
{
    return {};
}

int AccessibleLink::startIndex() const
{
    return isValid() ? int(m_body.items.at(m_index).range().location) : 0;
}

int AccessibleLink::endIndex() const
{
    return isValid() ? startIndex() + int(m_body.items.at(m_index).range().length) : 0;
}

// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/AccessibleControl.h>

#include <QtGui/QTextDocumentFragment>

namespace kx {

namespace {

QString plain(const QString &text)
{
    return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

} // namespace

QString AccessibleControl::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name)
        return name();
    const QString text = QAccessibleWidget::text(kind);
    if (kind != QAccessible::Description || text != widget()->toolTip())
        return text;
    const QString toolTip = plain(text);
    return toolTip == name() ? QString() : toolTip;
}

QString AccessibleControl::ownName() const
{
    return widget()->toolTip();
}

QString AccessibleControl::name() const
{
    const QString given = QAccessibleWidget::text(QAccessible::Name);
    return given.isEmpty() ? plain(ownName()) : given;
}

} // namespace kx

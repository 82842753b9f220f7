// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/AccessibleImage.h>

#include <KXFoundation/Platform/UI/ButtonContent.h>
#include <KXFoundation/Platform/UI/ImageView.h>

namespace kx {

namespace {

// Only for the class itself: what somebody made for a subclass goes first.
QAccessibleInterface *accessibleImage(const QString &className, QObject *object)
{
    if (className != QLatin1String(ImageView::staticMetaObject.className()))
        return nullptr;
    return new AccessibleImage(*qobject_cast<ImageView *>(object));
}

} // namespace

void AccessibleImage::install()
{
    QAccessible::installFactory(accessibleImage); // once, however often it is called
}

AccessibleImage::AccessibleImage(ImageView &view)
    : AccessibleControl(&view, QAccessible::Graphic)
{
}

void *AccessibleImage::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ImageInterface ? static_cast<QAccessibleImageInterface *>(this)
                                               : AccessibleControl::interface_cast(type);
}

QString AccessibleImage::imageDescription() const
{
    const QString description = text(QAccessible::Description);
    return description.isEmpty() ? text(QAccessible::Name) : description;
}

QSize AccessibleImage::imageSize() const
{
    return view().imageRect().size().toSize();
}

QPoint AccessibleImage::imagePosition() const
{
    return view().mapToGlobal(view().imageRect().topLeft()).toPoint();
}

QStringList AccessibleImage::actionNames() const
{
    QStringList names = AccessibleControl::actionNames();
    if (view().isEnabled() && view().isPressable())
        names.prepend(pressAction());
    return names;
}

void AccessibleImage::doAction(const QString &action)
{
    if (action != pressAction())
        AccessibleControl::doAction(action);
    else if (view().isEnabled() && view().isPressable()) // later: its handlers may take their time, or delete it
        QMetaObject::invokeMethod(
            &view(), [view = &view()] { view->press(); }, Qt::QueuedConnection);
}

ImageView &AccessibleImage::view() const
{
    return *static_cast<ImageView *>(widget());
}

} // namespace kx

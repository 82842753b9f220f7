// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtGui/QCursor>

namespace kx {

/// The image of the pointer, set at once by whoever handles its events; a widget's own cursor (QWidget::setCursor())
/// shows wherever nobody does.
///
/// What is set stays while the pointer is over the same widget, and is dropped when it goes on to another one. Only
/// while the pointer is over a window of this application. A cursor set by QGuiApplication::setOverrideCursor() goes
/// before. Main thread only.
class KX_UI_EXPORT Cursor {
public:
    Cursor() = delete;

    /// Qt::ArrowCursor, Qt::PointingHandCursor and Qt::IBeamCursor convert to a QCursor.
    static void set(const QCursor &cursor);
    /// The widget's own cursor shows again.
    static void reset();
    /// What shows over the widget that the pointer is over; an arrow when it is over none.
    [[nodiscard]] static QCursor current();
};

} // namespace kx

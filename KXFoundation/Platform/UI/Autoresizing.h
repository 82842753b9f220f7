// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/QFlags>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>

namespace kx {

/// Which parts of a view's place in its superview take up the change when the superview's size changes. "Min" margins
/// are the left and the bottom one. What is not named keeps its length.
enum class Autoresizing {
    None = 0,
    MinXMargin = 1,
    Width = 2,
    MaxXMargin = 4,
    MinYMargin = 8,
    Height = 16,
    MaxYMargin = 32,
};
Q_DECLARE_FLAGS(AutoresizingMask, Autoresizing)
Q_DECLARE_OPERATORS_FOR_FLAGS(AutoresizingMask)

/// The y-up frame after the superview went from `oldSize` to `newSize`. Several flexible parts of one direction share
/// the change in proportion to their lengths, equally if all of those are 0. With none, the far margin takes it, so the
/// view stays where it is, counted from the bottom left. A length never becomes negative.
[[nodiscard]] KX_UI_EXPORT QRectF autoresized(
    const QRectF &frame, const QSizeF &oldSize, const QSizeF &newSize, AutoresizingMask mask);

} // namespace kx

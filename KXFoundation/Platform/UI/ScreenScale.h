// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace kx {

/// The device pixel ratio of the window that a widget is in: QWidget::devicePixelRatioF(), without its long way. What
/// counts positions of the pointer takes it from here alone, so that none differs by a rounding error.
[[nodiscard]] double pixelRatio(const QWidget &widget);

/// The largest device pixel ratio of all screens, at least 1; 1 without screens, as in a program without windows.
/// Main thread.
[[nodiscard]] double largestScreenScale();

} // namespace kx

// SPDX-License-Identifier: MIT
#pragma once

class QRect;
class QWidget;

/// Waits until a top-level widget is where it was put last, its decorations not counted. An X server and its window
/// manager take their time, and until they have done all that they were asked, the widget goes once more through what
/// was asked before. At once elsewhere.
void settleGeometry(const QWidget &window, const QRect &target);

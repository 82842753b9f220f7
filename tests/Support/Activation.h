// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

/// Gives the keyboard to a shown top-level widget at once, as the window system does, and with it the application the
/// foreground; null gives both to another application.
void activate(QWidget *window);

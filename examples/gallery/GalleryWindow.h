// SPDX-License-Identifier: MIT
#pragma once

#include "State.h"

#include <QtCore/QList>
#include <QtWidgets/QScrollArea>

class GalleryPage;

/// All pages, one below the other.
class GalleryWindow : public QScrollArea {
public:
    GalleryWindow();

    [[nodiscard]] QList<State> states() const;

    /// Shows a widget that may be a window of its own, and returns when its controls are at rest.
    static void showAndSettle(QWidget &widget);
    /// Handles the events at hand and what they bring about.
    static void settle();

private:
    QList<GalleryPage *> m_pages;
};

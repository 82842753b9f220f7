// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QList>
#include <QtCore/QRectF>

class QColor;
class QPainter;
class QSizeF;
class QWidget;
class RichTextBody;

// The parts of a rich text view's drawing, in the view's coordinates.

/// Clips to the view's outline for a part of this size at the origin. Sizes that are none clip nothing.
void clipToRoundCorner(QPainter &painter, const QSizeF &size);

/// The backgrounds of the runs, the selection in its colour, and the text on top of them, in the colour of the
/// painter's pen where it has none.
void drawBody(QPainter &painter, RichTextBody &body, const QColor &selectionColor, const QRectF &dirtyRect);

/// The rings around the lines of what the keyboard has reached, as far as the widget goes.
void drawFocusRings(QPainter &painter, const QWidget &widget, const QList<QRectF> &rects);

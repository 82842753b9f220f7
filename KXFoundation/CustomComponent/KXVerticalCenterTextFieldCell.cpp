// SPDX-License-Identifier: MIT
#include <KXFoundation/CustomComponent/KXVerticalCenterTextFieldCell.h>

KXVerticalCenterTextFieldCell::~KXVerticalCenterTextFieldCell() = default;

QRectF KXVerticalCenterTextFieldCell::drawingRectForBounds(const QRectF &bounds) const
{
    QRectF rect = kx::TextFieldCell::drawingRectForBounds(bounds);
    const double height = cellSizeForBounds(rect).height();
    const double room = rect.height() - height;
    if (room > 0)
        rect = QRectF(rect.x(), rect.y() + room * 0.5, rect.width(), height);
    return rect;
}

// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/TextFieldCell.h>

/// Draws its text in the middle of the height of its bounds. A text that is higher than they are starts at their top.
class KX_UI_EXPORT KXVerticalCenterTextFieldCell : public kx::TextFieldCell {
public:
    using kx::TextFieldCell::TextFieldCell;
    ~KXVerticalCenterTextFieldCell() override;

    [[nodiscard]] QRectF drawingRectForBounds(const QRectF &bounds) const override;
};

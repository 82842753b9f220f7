// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/qglobal.h>

#include <limits>

namespace kx {

/// The area into which a LayoutManager lays out text: open at its bottom, without padding.
class KX_UI_EXPORT TextContainer {
public:
    TextContainer() = default;
    Q_DISABLE_COPY_MOVE(TextContainer)

    /// In points. Endless at first: lines end only where the text says so, and all start at x = 0. Anything else turns
    /// on alignment and line breaking. What is no number is taken as endless, what is negative as 0.
    [[nodiscard]] double width() const { return m_width; }
    void setWidth(double width);

private:
    double m_width = std::numeric_limits<double>::infinity();
};

} // namespace kx

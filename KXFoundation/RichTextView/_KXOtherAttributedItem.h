// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/TextRange.h>

/// What a rich text view keeps about one stretch of a run that has a background colour.
class _KXOtherAttributedItem {
public:
    /// In the text of all runs.
    [[nodiscard]] kx::TextRange bgColorRange() const { return m_bgColorRange; }
    void setBgColorRange(const kx::TextRange &bgColorRange) { m_bgColorRange = bgColorRange; }

private:
    kx::TextRange m_bgColorRange;
};

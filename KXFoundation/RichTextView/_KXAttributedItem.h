// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/TextRange.h>
#include <KXFoundation/RichTextView/_KXOtherAttributedItem.h>

#include <QtCore/QList>

#include <memory>
#include <optional>

class KXAttributedString;

/// What a rich text view keeps about one run.
class _KXAttributedItem {
public:
    using Backgrounds = std::optional<QList<_KXOtherAttributedItem>>;

    [[nodiscard]] std::shared_ptr<KXAttributedString> kxas() const { return m_kxas; }
    void setKxas(const std::shared_ptr<KXAttributedString> &kxas) { m_kxas = kxas; }

    /// The stretches with a background colour, in ascending order; none, never an empty list, for a run without one.
    [[nodiscard]] Backgrounds bgRangArr() const { return m_bgRangArr; }
    void setBgRangArr(const Backgrounds &bgRangArr) { m_bgRangArr = bgRangArr; }

    /// Where the run lies in the text of all runs.
    [[nodiscard]] kx::TextRange range() const { return m_range; }
    void setRange(const kx::TextRange &range) { m_range = range; }

private:
    std::shared_ptr<KXAttributedString> m_kxas;
    Backgrounds m_bgRangArr;
    kx::TextRange m_range;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/AttributedString.h>

namespace kx {

/// Holds the text that a LayoutManager lays out. Main thread only.
class KX_UI_EXPORT TextStorage {
public:
    TextStorage() = default;
    Q_DISABLE_COPY_MOVE(TextStorage)

    [[nodiscard]] const AttributedString &attributedString() const { return m_attributedString; }
    /// Also tells that attachments of the text have changed.
    void setAttributedString(const AttributedString &attributedString);

    /// Grows with each text that is set.
    [[nodiscard]] quint64 revision() const { return m_revision; }

private:
    AttributedString m_attributedString;
    quint64 m_revision = 0;
};

} // namespace kx

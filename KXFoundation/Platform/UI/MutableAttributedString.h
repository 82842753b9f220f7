// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/Core/Absence.h>
#include <KXFoundation/Platform/UI/AttributedString.h>

#include <functional>
#include <type_traits>

namespace kx {

/// An attributed string that can be changed in place. Hand it on as an AttributedString for a copy that stays.
///
/// A call with a range or an index outside the text, or with an absent value, changes nothing.
class KX_UI_EXPORT MutableAttributedString : public AttributedString {
public:
    using AttributedString::AttributedString;
    // NOLINTNEXTLINE(google-explicit-constructor): a copy, as between any two values
    MutableAttributedString(const AttributedString &string);

    /// In the place of the value that the characters of the range have.
    template <class T>
    void addAttribute(TextAttributeKey<T> key, const std::type_identity_t<T> &value, const TextRange &range)
    {
        if (!isAbsent(value))
            changeAttributes(range, [&](TextAttributes &attributes) { attributes.*key = value; });
    }
    /// Those of them that are present.
    void addAttributes(const TextAttributes &attributes, const TextRange &range);
    template <class T> void removeAttribute(TextAttributeKey<T> key, const TextRange &range)
    {
        changeAttributes(range, [&](TextAttributes &attributes) { attributes.*key = T(); });
    }
    /// Calls `change` once for each run within the range, parted at its ends.
    void changeAttributes(const TextRange &range, const std::function<void(TextAttributes &attributes)> &change);

    // What is put in brings its own attributes and takes none from its neighbours.

    void replaceCharactersInRange(const TextRange &range, const AttributedString &withAttributedString);
    void insertAttributedString(const AttributedString &string, quint64 atIndex);
    void appendAttributedString(const AttributedString &string);
    void deleteCharactersInRange(const TextRange &range);
    void setAttributedString(const AttributedString &string);

private:
    qsizetype startRunAt(qsizetype location);
    void mergeRuns(qsizetype first, qsizetype end);
};

} // namespace kx

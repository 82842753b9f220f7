// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/Absence.h>

#include <cstddef>
#include <iterator>
#include <utility>

/// Lists (QList, QJsonArray, std::vector and their like) that take no offence at a wrong index or a missing object.
/// "None" is what kx::Absence says: a null pointer or string, an undefined JSON value; std::nullopt for plain types.

/// The element at `index`, or none when the index is not less than the count; a negative one is too large.
template <class List>
[[nodiscard]] kx::Maybe<typename List::value_type> pn_objectAtIndex(const List &list, std::size_t index)
{
    using Value = typename List::value_type;
    if (index >= std::size_t(list.size()))
        return kx::Absence<kx::Maybe<Value>>::absent();
    return Value(*std::next(list.begin(), static_cast<typename List::difference_type>(index)));
}

/// Appends the object, unless it is none.
template <class List> void pn_addObject(List &list, kx::Maybe<typename List::value_type> object)
{
    if (!kx::isAbsent(object))
        list.push_back(kx::present<typename List::value_type>(std::move(object)));
}

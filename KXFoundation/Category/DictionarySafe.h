// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/Core/Absence.h>

#include <utility>

/// Dictionaries (QHash, QMap, QJsonObject, std::map and their like) that take no offence at a missing object.

/// Stores the object under the key and replaces what was there. Does nothing when either is none (see kx::Absence): an
/// entry of that key stays as it is, none does not remove it.
template <class Dictionary>
void pn_SetObject(Dictionary &dictionary, kx::Maybe<typename Dictionary::mapped_type> object,
    kx::Maybe<typename Dictionary::key_type> forKey)
{
    using Object = typename Dictionary::mapped_type;
    using Key = typename Dictionary::key_type;
    if (kx::isAbsent(object) || kx::isAbsent(forKey))
        return;
    Object value = kx::present<Object>(std::move(object));
    Key key = kx::present<Key>(std::move(forKey));
    if constexpr (requires { dictionary.insert_or_assign(std::move(key), std::move(value)); })
        dictionary.insert_or_assign(std::move(key), std::move(value));
    else
        dictionary.insert(std::move(key), std::move(value));
}

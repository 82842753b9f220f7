// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

/// One entry of a KXMemoryCache.
template <class Key, class Value> class _KXMemoryCachePair {
public:
    _KXMemoryCachePair(Key key, Value value)
        : m_key(std::move(key))
        , m_value(std::move(value))
    {
    }

    const Key &key() const { return m_key; }
    void setKey(Key key) { m_key = std::move(key); }

    const Value &value() const { return m_value; }
    void setValue(Value value) { m_value = std::move(value); }

    friend bool operator==(const _KXMemoryCachePair &, const _KXMemoryCachePair &) = default;

private:
    Key m_key;
    Value m_value;
};

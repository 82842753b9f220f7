// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QByteArrayView>

#include <cerrno>
#include <utility>

namespace kx {

/// Owns a file descriptor of the system, or none.
class Descriptor {
public:
    explicit Descriptor(int number = -1)
        : m_number(number)
    {
    }
    Descriptor(Descriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    Descriptor &operator=(Descriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { close(); }

    void close();
    /// Negative when there is none.
    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] bool isOpen() const { return m_number >= 0; }

private:
    int m_number;
};

/// What the system call answers, called again as long as a signal of the host's interrupts it.
template <class Call> auto uninterrupted(const Call &call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// Writes in as many turns as the system takes. False when it took only a part or nothing.
bool writeAll(int descriptor, QByteArrayView bytes);

} // namespace kx

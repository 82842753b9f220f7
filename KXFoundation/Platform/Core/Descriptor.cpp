// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/Core/Descriptor.h>

#include <unistd.h>

namespace kx {

void Descriptor::close()
{
    if (isOpen())
        ::close(std::exchange(m_number, -1));
}

bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = uninterrupted([&] { return ::write(descriptor, bytes.data(), size_t(bytes.size())); });
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

} // namespace kx

// SPDX-License-Identifier: MIT
#include <KXFoundation/Category/Base64.h>

#include "Base64Codec.h"

#include <cstdlib>
#include <cstring>

namespace codec = kx::base64;

namespace {

void setLength(size_t *outputLength, std::size_t length)
{
    if (outputLength)
        *outputLength = length;
}

// malloc(0) may answer null, which would read as exhausted memory.
void *allocated(std::size_t size)
{
    return std::malloc(size > 0 ? size : 1);
}

} // namespace

char *NewBase64Encode(const void *bytes, size_t length, bool breakLines, size_t *outputLength)
{
    auto *text = static_cast<char *>(allocated(codec::encodedCapacity(length, breakLines)));
    std::size_t used = 0;
    if (text) {
        used = codec::encode(static_cast<const unsigned char *>(bytes), length, breakLines, text, codec::bestKernel());
        text[used] = '\0';
    }
    setLength(outputLength, used);
    return text;
}

void *NewBase64Decode(const char *text, size_t length, size_t *outputLength)
{
    if (length == static_cast<size_t>(-1))
        length = std::strlen(text);
    auto *bytes = static_cast<unsigned char *>(allocated(codec::decodedCapacity(length)));
    setLength(outputLength,
        bytes ? codec::decode(reinterpret_cast<const unsigned char *>(text), length, bytes, codec::bestKernel()) : 0);
    return bytes;
}

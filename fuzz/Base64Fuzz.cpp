// SPDX-License-Identifier: MIT
#include "Fuzz.h"

#include <KXFoundation/Category/Base64.h>
#include <KXFoundation/Category/Base64Codec.h>
#include <tests/Category/NaiveBase64.h>

#include <memory>
#include <string>

using kx::fuzz::check;

// Any bytes, as data to encode and as text to decode: the fast kernel, the portable one and plain sight agree.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    namespace codec = kx::base64;
    const std::string bytes(data, data + size);
    std::size_t length = 0;
    for (const bool breakLines : {false, true}) {
        const std::string expected = kx::test::naiveEncode(bytes, breakLines);
        const std::unique_ptr<char, decltype(&std::free)> text(
            NewBase64Encode(data, size, breakLines, &length), &std::free);
        check(std::string(text.get(), length) == expected, "the text is right");
        std::string portable(codec::encodedCapacity(size, breakLines), '\0');
        portable.resize(codec::encode(data, size, breakLines, portable.data(), codec::portableKernel));
        check(portable == expected, "the portable text is right");
    }
    const std::string expected = kx::test::naiveDecode(bytes);
    const std::unique_ptr<void, decltype(&std::free)> decoded(NewBase64Decode(bytes.data(), size, &length), &std::free);
    check(std::string(static_cast<const char *>(decoded.get()), length) == expected, "the bytes are right");
    std::string portable(codec::decodedCapacity(size), '\0');
    portable.resize(
        codec::decode(data, size, reinterpret_cast<unsigned char *>(portable.data()), codec::portableKernel));
    check(portable == expected, "the portable bytes are right");
    return 0;
}

// SPDX-License-Identifier: MIT
#pragma once

// Plain C (C99) as well as C++: child programs in C may use these two.

#include <KXFoundation/KXCoreExport.h>

#include <stdbool.h> // NOLINT(modernize-deprecated-headers): C has no other
#include <stddef.h> // NOLINT(modernize-deprecated-headers)

#ifdef __cplusplus
extern "C" {
#endif

/// Base64 text of `length` bytes, in the standard alphabet with "=" padding (RFC 4648, section 4), NUL-terminated.
/// With `breakLines`, every 48 bytes make a line of 64 characters; CR LF stands between lines, none after the last one.
/// The caller frees the text with free(). Null when memory is exhausted. `*outputLength` (which may be null) becomes
/// the number of characters without the NUL. `bytes` may be null when `length` is 0.
KX_CORE_EXPORT char *NewBase64Encode(const void *bytes, size_t length, bool breakLines, size_t *outputLength);

/// The bytes that `length` characters of Base64 text spell; a length of (size_t)-1 means that the text is
/// NUL-terminated. Characters outside the alphabet are skipped, "=" and line ends included. The caller frees the bytes
/// with free(). Null when memory is exhausted. `*outputLength` (which may be null) becomes the number of bytes.
///
/// Deliberate: the text is read in rounds of up to four alphabet characters, and a round of n characters moves the
/// length by n - 1. A last round that finds none (characters to skip stand behind a complete group of four) therefore
/// drops the last byte: "QUJD\n" gives two bytes. The length never goes below 0.
KX_CORE_EXPORT void *NewBase64Decode(const char *text, size_t length, size_t *outputLength);

#ifdef __cplusplus
}
#endif

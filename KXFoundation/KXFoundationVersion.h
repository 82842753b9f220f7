// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXCoreExport.h>

/// The library's version as major.minor, for example 1.2 for version 1.2.3.
KX_CORE_EXPORT extern const double KXFoundationVersionNumber;

/// The library's name and full version as NUL-terminated ASCII text, for example "KXFoundation 1.2.3".
KX_CORE_EXPORT extern const unsigned char KXFoundationVersionString[];

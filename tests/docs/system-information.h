// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Logger/KXLogger.h>
#include <KXFoundation/Util/KXUtil.h>

inline QString path;

class Page { };

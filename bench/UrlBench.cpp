// SPDX-License-Identifier: MIT
#include "Row.h"

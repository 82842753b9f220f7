// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QDebug>

inline QString path;

class Page { };

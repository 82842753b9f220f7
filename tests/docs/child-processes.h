// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Task/KXAsyncTask.h>

#include <QtCore/QDebug>

inline QString path;

class Page { };

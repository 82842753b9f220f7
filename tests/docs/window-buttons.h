// SPDX-License-Identifier: MIT
#pragma once

#include <QtWidgets/QHBoxLayout>

class Page {
protected:
    QHBoxLayout *titleRow = nullptr;
};

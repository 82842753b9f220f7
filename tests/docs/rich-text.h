// SPDX-License-Identifier: MIT
#pragma once

class Page {
protected:
    void showSimilar();

    QWidget *window = nullptr;
    QImage icon;
};

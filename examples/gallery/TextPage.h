// SPDX-License-Identifier: MIT
#pragma once

#include "GalleryPage.h"

/// Rich text, labels and cells.
class TextPage : public GalleryPage {
public:
    TextPage();

private:
    void addKXRichTextViews();
    void addKXLabels();
    void addCells();
};

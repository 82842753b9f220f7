// SPDX-License-Identifier: MIT
#pragma once

#include "GalleryPage.h"

/// Window buttons, base views and base windows.
class WindowPage : public GalleryPage {
public:
    WindowPage();

private:
    void addPNStandardWindowButtonViews();
    void addPNBaseViews();
    void addPNBaseWindows();
};

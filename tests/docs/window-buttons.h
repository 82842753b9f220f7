// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/CustomComponent/PNStandardWindowButtonView.h>
#include <KXFoundation/Platform/UI/StandardWindowButton.h>
#include <KXFoundation/UIBase/Window/PNBaseWindow.h>

#include <QtWidgets/QHBoxLayout>

class Page {
protected:
    QHBoxLayout *titleRow = nullptr;
    PNBaseWindow *window = nullptr;
};

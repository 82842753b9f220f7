// SPDX-License-Identifier: MIT
#include <KXFoundation/UIBase/ViewController/PNBaseViewController.h>

#include <KXFoundation/Platform/UI/NotificationCenter.h>

PNBaseViewController::~PNBaseViewController()
{
    kx::NotificationCenter::defaultCenter().removeObserver(this);
}

void PNBaseViewController::viewDidLoad()
{
    kx::ViewController::viewDidLoad();
}

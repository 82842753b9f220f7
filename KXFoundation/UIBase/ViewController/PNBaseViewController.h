// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/ViewController.h>

/// The base of the application's view controllers: a view controller that stops observing by itself. Subclasses add
/// themselves to the default notification centre and need not remove themselves; what is posted while their view and
/// their children are destroyed does not reach them any more.
class KX_UI_EXPORT PNBaseViewController : public kx::ViewController {
    Q_OBJECT

public:
    using kx::ViewController::ViewController;
    ~PNBaseViewController() override;

protected:
    void viewDidLoad() override;
};

// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>

#include <QtCore/qglobal.h>

#include <memory>

namespace kx {
class Event;
}

class PNBaseView;

/// Hears what the mouse does to a PNBaseView, on the main thread. Operations do nothing of themselves; the cursor is
/// updated. In any of them a delegate may delete the view, or itself.
class KX_UI_EXPORT PNBaseViewDelegate {
public:
    PNBaseViewDelegate();
    virtual ~PNBaseViewDelegate();
    Q_DISABLE_COPY_MOVE(PNBaseViewDelegate)

    virtual void baseViewMouseEntered(PNBaseView *baseView, kx::Event *mouseEntered);
    /// Without an event when the view itself ends a hover.
    virtual void baseViewMouseExited(PNBaseView *baseView, kx::Event *mouseExited);
    virtual void baseViewMouseMoved(PNBaseView *baseView, kx::Event *mouseMoved);
    virtual void baseViewMouseDown(PNBaseView *baseView, kx::Event *mouseDown);
    virtual void baseViewMouseUp(PNBaseView *baseView, kx::Event *mouseUp);
    virtual void baseViewMouseDragged(PNBaseView *baseView, kx::Event *mouseDragged);
    /// False leaves the cursor as it is, or as this operation has set it.
    [[nodiscard]] virtual bool baseViewCursorNeedUpdate(PNBaseView *baseView, kx::Event *cursorNeedUpdate);

    /// Expires when the delegate is destroyed; does not keep it alive.
    [[nodiscard]] std::weak_ptr<PNBaseViewDelegate> weakReference() const { return m_self; }

private:
    std::shared_ptr<PNBaseViewDelegate> m_self;
};

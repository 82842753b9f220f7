// SPDX-License-Identifier: MIT
#include <KXFoundation/UIBase/View/PNBaseViewDelegate.h>

PNBaseViewDelegate::PNBaseViewDelegate()
    : m_self(this, [](PNBaseViewDelegate *) {})
{
}

PNBaseViewDelegate::~PNBaseViewDelegate() = default;

void PNBaseViewDelegate::baseViewMouseEntered(PNBaseView *, kx::Event *) { }

void PNBaseViewDelegate::baseViewMouseExited(PNBaseView *, kx::Event *) { }

void PNBaseViewDelegate::baseViewMouseMoved(PNBaseView *, kx::Event *) { }

void PNBaseViewDelegate::baseViewMouseDown(PNBaseView *, kx::Event *) { }

void PNBaseViewDelegate::baseViewMouseUp(PNBaseView *, kx::Event *) { }

void PNBaseViewDelegate::baseViewMouseDragged(PNBaseView *, kx::Event *) { }

bool PNBaseViewDelegate::baseViewCursorNeedUpdate(PNBaseView *, kx::Event *)
{
    return true;
}

// SPDX-License-Identifier: MIT
// A window and a view of the library.
#include "Strokes.h"

#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/Platform/UI/Window.h>

#include <QtWidgets/QApplication>

namespace {

class Content : public kx::View {
public:
    int told = 0;

    void updateTrackingAreas() override
    {
        if (trackingAreas().isEmpty())
            addTrackingArea(std::make_shared<kx::TrackingArea>(QRectF(),
                kx::TrackingOption::MouseMoved | kx::TrackingOption::ActiveAlways | kx::TrackingOption::InVisibleRect,
                this));
    }
    void mouseMoved(kx::Event *) override { ++told; }
    void mouseDown(kx::Event *) override { ++told; }
    void mouseDragged(kx::Event *) override { ++told; }
    void mouseUp(kx::Event *) override { ++told; }
};

/// Counts what passes, as a window does that looks for presses in its areas.
class CountingWindow : public kx::Window {
public:
    int passed = 0;

    void sendEvent(kx::Event *event) override
    {
        ++passed;
        kx::Window::sendEvent(event);
    }
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    CountingWindow window;
    auto *content = new Content;
    show(window, content);
    const int sent = printTimeOfAnEvent(window);
    return window.passed == sent && content->told == sent ? 0 : 1;
}

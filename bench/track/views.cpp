// SPDX-License-Identifier: MIT
// The pointer moves over 1,000 views, each with the tracking area of a control.
#include "PointerPath.h"

#include <KXFoundation/Platform/UI/View.h>

#include <QtWidgets/QApplication>

namespace {

class Tracked : public kx::View {
public:
    explicit Tracked(QWidget *parent, int &told)
        : kx::View(parent)
        , m_told(told)
    {
    }
    void updateTrackingAreas() override
    {
        if (trackingAreas().isEmpty())
            addTrackingArea(std::make_shared<kx::TrackingArea>(QRectF(), kx::TrackingOptions(0x347), this));
    }
    void mouseEntered(kx::Event *) override { ++m_told; }
    void mouseExited(kx::Event *) override { ++m_told; }
    void mouseMoved(kx::Event *) override { ++m_told; }
    void cursorUpdate(kx::Event *) override { ++m_told; }

private:
    int &m_told;
};

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    int told = 0;
    fill(window, [&told](QWidget *parent) { return new Tracked(parent, told); });
    printTimeOfAMove(window);
    return told > 10'000 ? 0 : 1; // every move is told
}

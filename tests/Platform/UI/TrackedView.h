// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/View.h>

#include <QtWidgets/QLayout>
#include <QtWidgets/QMainWindow>

#include <functional>
#include <memory>

/// A view that writes what its tracking areas tell it into a list that it shares with others: "<name> entered".
class TrackedView : public kx::View {
public:
    TrackedView(const QString &name, QStringList &log, QWidget *parent = nullptr)
        : kx::View(parent)
        , m_log(log)
    {
        setObjectName(name);
    }

    /// Called last in each handler, with what was written. May delete the view.
    std::function<void(const QString &entry)> handler;
    QPointF location; ///< Of the last event, in the view.
    bool flipped = false;

    /// Adds an area and keeps it.
    kx::TrackingAreaRef track(int options, const QRectF &rect = {})
    {
        auto area = std::make_shared<kx::TrackingArea>(rect, kx::TrackingOptions(options), this);
        addTrackingArea(area);
        return area;
    }

    void mouseEntered(kx::Event *event) override { note(QStringLiteral("entered"), event); }
    void mouseExited(kx::Event *event) override { note(QStringLiteral("exited"), event); }
    void mouseMoved(kx::Event *event) override { note(QStringLiteral("moved"), event); }
    void cursorUpdate(kx::Event *event) override { note(QStringLiteral("cursor"), event); }
    bool isFlipped() const override { return flipped; }

private:
    void note(const QString &what, const kx::Event *event)
    {
        const QString entry = objectName() + QChar(u' ') + what;
        m_log << entry;
        location = locationInView(*event);
        if (const auto act = handler)
            act(entry);
    }

    QStringList &m_log;
};

/// The common options: always active, told of everything, over the whole visible part.
constexpr int always = 0x287;

/// A window with a plain widget as its content.
inline std::unique_ptr<QMainWindow> makeWindow(const QSize &size = QSize(300, 200))
{
    auto window = std::make_unique<QMainWindow>();
    window->layout()->setSizeConstraint(QLayout::SetNoConstraint); // the tests' platform warns about limits
    window->setCentralWidget(new QWidget);
    window->resize(size);
    return window;
}

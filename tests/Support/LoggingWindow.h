// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/Window.h>

#include <QtGui/QMouseEvent>

#include <functional>

/// A widget that notes every input event and UngrabMouse, and accepts them.
class LoggingWidget : public QWidget {
public:
    using QWidget::QWidget;

    struct Entry {
        QEvent::Type type;
        QPointF position;
    };
    QList<Entry> entries;
    std::function<void(QEvent &event)> handler;

    [[nodiscard]] QList<QEvent::Type> types() const
    {
        QList<QEvent::Type> list;
        for (const Entry &entry : entries)
            list << entry.type;
        return list;
    }
    /// Without the moves: Qt leaves out one that leads nowhere.
    [[nodiscard]] QList<QEvent::Type> clicks() const
    {
        QList<QEvent::Type> list = types();
        list.removeAll(QEvent::MouseMove);
        return list;
    }
    QList<QEvent::Type> takeTypes()
    {
        const QList<QEvent::Type> list = types();
        entries.clear();
        return list;
    }

protected:
    bool event(QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
            entries.append(Entry{event->type(), static_cast<QSinglePointEvent *>(event)->position()});
            break;
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
        case QEvent::ContextMenu:
        case QEvent::UngrabMouse: entries.append(Entry{event->type(), {}}); break;
        default: return QWidget::event(event);
        }
        event->accept();
        if (handler)
            handler(*event);
        return true;
    }
};

/// A borderless window with one such widget as its content. It notes what passes, and lets a test handle that.
class LoggingWindow : public kx::Window {
public:
    LoggingWindow()
        : kx::Window(QRectF(100, 100, 400, 300), kx::WindowStyle::Borderless)
        , view(new LoggingWidget)
    {
        view->setMouseTracking(true);
        view->setFocusPolicy(Qt::StrongFocus);
        setCentralWidget(view);
    }

    LoggingWidget *const view;
    QList<kx::EventType> seen;
    /// Called instead of the base class, where there is one.
    std::function<void(kx::Event *event)> handler;

    void sendEvent(kx::Event *event) override
    {
        seen << event->type();
        if (handler)
            handler(event);
        else
            passOn(event);
    }
    void passOn(kx::Event *event) { kx::Window::sendEvent(event); }
    [[nodiscard]] bool canBecomeKeyWindow() const override { return true; }
};

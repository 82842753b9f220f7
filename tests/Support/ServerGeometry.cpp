// SPDX-License-Identifier: MIT
#include "Support/ServerGeometry.h"

#include <QtGui/QGuiApplication>
#include <QtTest/QTest>
#include <QtWidgets/QWidget>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace {

struct Free {
    void operator()(void *reply) const { std::free(reply); }
};

// Where the server has the window; empty when it has none.
QRect serverGeometry(xcb_connection_t *server, xcb_window_t window)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    const auto sizeRequest = xcb_get_geometry(server, window);
    const auto placeRequest = xcb_translate_coordinates(server, window, root, 0, 0);
    const std::unique_ptr<xcb_get_geometry_reply_t, Free> size(xcb_get_geometry_reply(server, sizeRequest, nullptr));
    const std::unique_ptr<xcb_translate_coordinates_reply_t, Free> place(
        xcb_translate_coordinates_reply(server, placeRequest, nullptr));
    return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

} // namespace

void settleGeometry(const QWidget &window, const QRect &target)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *server = x11 ? x11->connection() : nullptr;
    if (!server || !window.isVisible())
        return;
    // What the server says is older than the events that it has sent by then, and they are handled in between.
    const bool settled = QTest::qWaitFor([&] {
        const QRect there = serverGeometry(server, xcb_window_t(window.winId()));
        QCoreApplication::processEvents();
        return there == target && window.geometry() == target;
    });
    QVERIFY2(settled, "the window is not where it was put");
}

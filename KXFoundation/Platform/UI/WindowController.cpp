// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/WindowController.h>

#include <KXFoundation/Platform/UI/Window.h>

#include <QtCore/QScopedValueRollback>

namespace kx {

WindowController::WindowController(QObject *parent)
    : QObject(parent)
{
}

WindowController::~WindowController()
{
    const Window *window = m_window;
    setWindow(nullptr);
    delete window;
}

Window *WindowController::window()
{
    if (!m_window && !m_loading) {
        {
            const QScopedValueRollback loading(m_loading, true);
            loadWindow();
        }
        if (m_window)
            windowDidLoad();
    }
    return m_window;
}

void WindowController::setWindow(Window *window)
{
    if (window == m_window)
        return;
    if (m_window)
        m_window->m_controller = nullptr;
    m_window = window;
    if (!window)
        return;
    if (window->m_controller)
        window->m_controller->m_window = nullptr;
    window->m_controller = this;
}

void WindowController::loadWindow() { }

void WindowController::windowDidLoad() { }

} // namespace kx

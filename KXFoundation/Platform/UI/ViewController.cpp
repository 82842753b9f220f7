// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/ViewController.h>

#include <KXFoundation/Platform/UI/View.h>

#include <QtCore/QScopedValueRollback>

namespace kx {

ViewController::ViewController(ViewController *parent)
    : QObject(parent)
{
}

ViewController::~ViewController()
{
    ViewInterface *view = m_view;
    setView(nullptr);
    delete view;
}

ViewInterface *ViewController::view()
{
    if (!m_view && !m_loading) {
        {
            const QScopedValueRollback loading(m_loading, true);
            loadView();
        }
        if (m_view)
            viewDidLoad();
    }
    return m_view;
}

void ViewController::setView(ViewInterface *view)
{
    if (view == m_view)
        return;
    if (m_view)
        m_view->m_controller = nullptr;
    m_view = view;
    if (!view)
        return;
    if (view->m_controller)
        view->m_controller->m_view = nullptr;
    view->m_controller = this;
}

ViewController *ViewController::parentViewController() const
{
    return qobject_cast<ViewController *>(parent());
}

QList<ViewController *> ViewController::childViewControllers() const
{
    return findChildren<ViewController *>(QString(), Qt::FindDirectChildrenOnly);
}

void ViewController::addChildViewController(ViewController &child)
{
    for (const ViewController *above = this; above; above = above->parentViewController()) {
        if (above == &child)
            return;
    }
    child.setParent(nullptr); // setting the same parent again would leave it where it is
    child.setParent(this);
}

void ViewController::removeFromParentViewController()
{
    if (parentViewController())
        setParent(nullptr);
}

Responder *ViewController::nextResponder() const
{
    return m_view ? m_view->responderAbove() : nullptr;
}

void ViewController::loadView()
{
    setView(new View);
}

void ViewController::viewDidLoad() { }

} // namespace kx

// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Responder.h>

#include <QtCore/QList>
#include <QtCore/QObject>

namespace kx {

class ViewInterface;

/// Makes a view when it is first asked for and stands between it and what is above it in the responder chain.
/// Controllers form a tree of their own, that of QObject: a parent owns its children, and QObject::setParent() with
/// another controller changes it as well.
///
/// The controller owns its view and deletes it with itself, wherever the view is by then. When a superview deletes the
/// view first, the controller is without one again, and the next view() makes another. Main thread only.
class KX_UI_EXPORT ViewController : public QObject, public Responder {
    Q_OBJECT

public:
    explicit ViewController(ViewController *parent = nullptr);
    ~ViewController() override;

    /// Borrowed. Without a view: loads one, then calls viewDidLoad(). Null only while loadView() runs, and when that
    /// set none; viewDidLoad() is then not called.
    [[nodiscard]] ViewInterface *view();
    [[nodiscard]] bool isViewLoaded() const { return m_view; }
    /// Takes the view over, from another controller too. The old view stays alive, and whatever it is in becomes its
    /// only owner. Null is none. Neither loadView() nor viewDidLoad() is called.
    void setView(ViewInterface *view);

    [[nodiscard]] ViewController *parentViewController() const;
    /// In the order in which they were added.
    [[nodiscard]] QList<ViewController *> childViewControllers() const;
    /// Makes this controller the owner of `child` and puts it last. What would close a circle is ignored.
    void addChildViewController(ViewController &child);
    /// The caller becomes the owner. Does nothing without a parent controller.
    void removeFromParentViewController();

    /// What is above the view; null without a view.
    [[nodiscard]] Responder *nextResponder() const override;

protected:
    /// Makes the view and gives it to setView(). Here: an empty kx::View. Not meant to call view().
    virtual void loadView();
    /// Called once for each loaded view. Does nothing here.
    virtual void viewDidLoad();

private:
    ViewInterface *m_view = nullptr; // it clears this when it goes
    bool m_loading = false;
};

} // namespace kx

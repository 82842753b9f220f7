// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Color.h>
#include <KXFoundation/Platform/UI/View.h>
#include <KXFoundation/UIBase/View/PNBaseViewDelegate.h>

#include <QtCore/QMarginsF>
#include <QtCore/QString>
#include <QtGui/QColor>

#include <atomic>
#include <memory>

namespace kx {
struct Notification;
}

/// The base of the application's own views: a background colour, a switch that makes the view transparent to the mouse,
/// an optional tracking area, and a delegate that hears of the mouse. See docs/views.md.
///
/// Deliberate: the view swallows left clicks, drags and what its tracking area tells; neither its superview nor the
/// widget beneath gets them. Other buttons, the wheel and keys go on. It takes the keyboard when it is clicked. Main
/// thread only, except tag(); handlers may delete the view.
class KX_UI_EXPORT PNBaseView : public kx::View {
    Q_OBJECT
    Q_PROPERTY(QColor backgroundColor READ backgroundQColor WRITE setBackgroundColor NOTIFY backgroundColorChanged)
    Q_PROPERTY(bool userInteraction READ userInteraction WRITE setUserInteraction NOTIFY userInteractionChanged)
    Q_PROPERTY(bool needTracking READ needTracking WRITE setNeedTracking NOTIFY needTrackingChanged)
    Q_PROPERTY(QMarginsF inset READ inset WRITE setInset NOTIFY insetChanged DESIGNABLE false)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(qint64 tag READ tag WRITE setTag)

public:
    explicit PNBaseView(QWidget *parent = nullptr);
    explicit PNBaseView(const QRectF &frame, QWidget *parent = nullptr);
    ~PNBaseView() override;

    /// None at first. Setting it, to none as well, gives the view a layer.
    [[nodiscard]] kx::Color backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const kx::Color &color);

    /// Held weakly; null for none.
    [[nodiscard]] PNBaseViewDelegate *delegate() const { return m_delegate.lock().get(); }
    void setDelegate(PNBaseViewDelegate *delegate);

    /// False makes the view transparent to the mouse, with everything in it, and takes its tracking area away. True at
    /// first.
    [[nodiscard]] bool userInteraction() const { return m_userInteraction; }
    void setUserInteraction(bool interacts);

    /// Whether the view has a tracking area, without which it does not hear of the pointer coming, moving and going,
    /// nor of the cursor. False at first.
    [[nodiscard]] bool needTracking() const { return m_needTracking; }
    void setNeedTracking(bool needed);

    /// Shrinks the rectangle within which the cursor is updated; the bottom margin counts from below. The tracking area
    /// has the same rectangle, but covers the visible part of the view whatever that is. All 0 at first.
    [[nodiscard]] QMarginsF inset() const { return m_inset; }
    void setInset(const QMarginsF &inset);

    /// A free label for the owner; null at first.
    [[nodiscard]] QString name() const { return m_name; }
    void setName(const QString &name);

    /// A free number for the owner. May be used on any thread.
    [[nodiscard]] qint64 tag() const { return m_tag; }
    void setTag(qint64 tag) { m_tag = tag; }

    // --- kx::View ----------------------------------------------------------------------------------------------------

    [[nodiscard]] kx::ViewInterface *hitTest(const QPointF &point) override;
    [[nodiscard]] bool acceptsFirstResponder() const override;
    /// Updates the tracking areas after every call, also one that changes nothing.
    void setVisible(bool visible) override;
    /// Ends a hover, then replaces the tracking area.
    void updateTrackingAreas() override;
    void mouseEntered(kx::Event *event) override;
    void mouseExited(kx::Event *event) override;
    void mouseMoved(kx::Event *event) override;
    void mouseDown(kx::Event *event) override;
    void mouseUp(kx::Event *event) override;
    void mouseDragged(kx::Event *event) override;
    void cursorUpdate(kx::Event *event) override;

Q_SIGNALS:
    void backgroundColorChanged();
    void userInteractionChanged(bool interacts);
    void needTrackingChanged(bool needed);
    void insetChanged(const QMarginsF &inset);
    void nameChanged(const QString &name);

    // After the delegate has heard of it. Points count in the view.

    void entered();
    void exited();
    void moved(const QPointF &point);
    void pressed(const QPointF &point);
    void released(const QPointF &point);
    void dragged(const QPointF &point);

private:
    using Operation = void (PNBaseViewDelegate::*)(PNBaseView *, kx::Event *);

    void commonInit();
    void applicationDidResignActive(const kx::Notification &notification);
    [[nodiscard]] QColor backgroundQColor() const { return m_backgroundColor.toQColor(); }
    [[nodiscard]] QRectF trackingRect() const;
    [[nodiscard]] bool tell(Operation operation, kx::Event *event);
    void tellExited(kx::Event *event);

    kx::Color m_backgroundColor;
    std::weak_ptr<PNBaseViewDelegate> m_delegate;
    QString m_name;
    QMarginsF m_inset;
    std::atomic<qint64> m_tag = 0;
    kx::TrackingAreaRef m_trackingArea;
    bool m_userInteraction = false; // until commonInit()
    bool m_needTracking = false;
    bool m_hovered = false;
};

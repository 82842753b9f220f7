// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/KXUIExport.h>
#include <KXFoundation/Platform/UI/Window.h>

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QRectF>
#include <QtCore/QVariantMap>

#include <functional>

namespace kx {
class ViewInterface;
}

/// A window with its own chrome: a press in one of its movable areas moves it, and a press in its bottom-right corner
/// resizes it where that is movable. All other events go their usual way. See docs/windows.md.
///
/// ```
/// PNBaseWindow window(QRectF(200, 200, 960, 540), kx::WindowStyle::Borderless);
/// window.setIgnoreDragRect(false);
/// window.updateMoveExcludeRect({{"mainRect", QRectF(0, 0, 960, 540)}, {"exclude", QVariantList{controls}}});
/// ```
///
/// Rectangles are logical pixels from the bottom left of the window, y growing upwards; they do not follow its size. A
/// rectangle holds its left and bottom edges and not the others. Never movable are the top-left 80 x 35, which belong
/// to the window buttons, and the area of customStandardSuperView(). Main thread only.
class KX_UI_EXPORT PNBaseWindow : public kx::Window {
    Q_OBJECT
    Q_PROPERTY(bool ignoreDragRect READ ignoreDragRect WRITE setIgnoreDragRect NOTIFY ignoreDragRectChanged)
    Q_PROPERTY(
        QRectF specialMovableRect READ specialMovableRect WRITE setSpecialMovableRect NOTIFY specialMovableRectChanged)
    Q_PROPERTY(QList<QRectF> includeArr READ includeArr WRITE setIncludeArr NOTIFY includeArrChanged)
    Q_PROPERTY(QVariantMap excludeDic READ excludeDic WRITE setExcludeDic NOTIFY excludeDicChanged)
    Q_PROPERTY(bool useCustomStandardView READ useCustomStandardView WRITE setUseCustomStandardView NOTIFY
            useCustomStandardViewChanged)

public:
    using NativeEatEventBlock = std::function<void(kx::Event *event)>;

    explicit PNBaseWindow(QWidget *parent = nullptr, Qt::WindowFlags flags = {});
    /// See kx::Window.
    PNBaseWindow(const QRectF &contentRect, kx::WindowStyleMask styleMask,
        kx::BackingStore backing = kx::BackingStore::Buffered, bool defer = false, QScreen *screen = nullptr);
    ~PNBaseWindow() override;

    /// Part of every constructor: sets ignoreDragRect and a light appearance.
    void setUp();

    // --- where a press moves the window ----------------------------------------------------------------------------

    /// Whether the lists of rectangles are left alone. True at first, and then the window does nothing of its own until
    /// it has a specialMovableRect().
    [[nodiscard]] bool ignoreDragRect() const { return m_ignoreDragRect; }
    void setIgnoreDragRect(bool ignores);

    /// Unless all of its numbers are zero, as at first, it alone is movable.
    [[nodiscard]] QRectF specialMovableRect() const { return m_specialMovableRect; }
    void setSpecialMovableRect(const QRectF &rect);

    /// Always movable, whatever excludeDic() says.
    [[nodiscard]] QList<QRectF> includeArr() const { return m_includeArr; }
    void setIncludeArr(const QList<QRectF> &rects);
    void updateMoveIncludeRect(const QList<QRectF> &rects) { setIncludeArr(rects); }

    /// "mainRect", a QRectF, is movable but for noNeedToInterventionRects() and for "exclude", a list of QRectF.
    /// Missing entries, and those of other types, are empty.
    [[nodiscard]] QVariantMap excludeDic() const { return m_excludeDic; }
    void setExcludeDic(const QVariantMap &rects);
    void updateMoveExcludeRect(const QVariantMap &rects) { setExcludeDic(rects); }

    /// Strips along the top and right edges, 3 wide, and the top-right 12 x 12 between them: the window system's own
    /// resizing begins there. From the present frame.
    [[nodiscard]] virtual QList<QRectF> noNeedToInterventionRects() const;
    [[nodiscard]] bool isInNoNeedToInterventionRects(const QPointF &point) const;
    /// The bottom-right 20 x 20 of the present frame.
    [[nodiscard]] virtual QRectF resizeAreaRect() const;

    // --- moving and resizing ---------------------------------------------------------------------------------------

    /// Takes left presses in movable areas; all else goes to the base class. Returns when the button is up again. The
    /// press is handed to the base class then: once after a drag, and twice after a mere click. Deliberate, as is the
    /// order. When the drag is cut short (see nextEvent()), the base class gets it once, and it is taken back.
    void sendEvent(kx::Event *event) override;
    /// One step of such a drag: the frame of the press, shifted or resized by the way from the press to here. Resizing
    /// keeps the top-left corner and stays within minSize() and maxSize(). Where windows cannot place themselves, hands
    /// the drag to the window system. Null is ignored.
    virtual void handleMoveOrResize(kx::Event *event);

    /// Called with a press that the window takes, before it waits for the drag. The window may be deleted in it. Empty
    /// is none.
    [[nodiscard]] NativeEatEventBlock onNativeEatEventBlock() const { return m_onNativeEatEventBlock; }
    void setOnNativeEatEventBlock(NativeEatEventBlock block) { m_onNativeEatEventBlock = std::move(block); }
    void onNativeEatEvent(NativeEatEventBlock block) { setOnNativeEatEventBlock(std::move(block)); }

    /// Does nothing. Deliberate: this window stays where its host puts it.
    void center() override;

    /// True, borderless or not.
    [[nodiscard]] bool canBecomeKeyWindow() const override;
    [[nodiscard]] bool canBecomeMainWindow() const override;

    // --- window buttons --------------------------------------------------------------------------------------------

    /// What holds the system's own window buttons; null for none, or when it is gone. For PNStandardWindowButtonView.
    [[nodiscard]] kx::ViewInterface *systemStandardSuperView() const;
    void setSystemStandardSuperView(kx::ViewInterface *view);
    /// What holds the window's own buttons instead, never movable; null for none, or when it is gone.
    /// PNStandardWindowButtonView sets it.
    [[nodiscard]] kx::ViewInterface *customStandardSuperView() const;
    void setCustomStandardSuperView(kx::ViewInterface *view);
    /// False at first. For PNStandardWindowButtonView.
    [[nodiscard]] bool useCustomStandardView() const { return m_useCustomStandardView; }
    void setUseCustomStandardView(bool uses);

Q_SIGNALS:
    void ignoreDragRectChanged(bool ignores);
    void specialMovableRectChanged(const QRectF &rect);
    void includeArrChanged(const QList<QRectF> &rects);
    void excludeDicChanged(const QVariantMap &rects);
    void useCustomStandardViewChanged(bool uses);
    /// Beside onNativeEatEventBlock(), after it.
    void nativeEatEvent(kx::Event *event);

private:
    [[nodiscard]] bool leavesAlone(const kx::Event &event) const;
    [[nodiscard]] bool isMovableAt(const QPointF &point) const;
    void trackMoveOrResize(kx::Event &press);
    void resizeBy(const QPointF &shift);

    bool m_ignoreDragRect = false;
    QRectF m_specialMovableRect;
    QList<QRectF> m_includeArr;
    QVariantMap m_excludeDic;
    QPointer<QWidget> m_systemStandardSuperView;
    QPointer<QWidget> m_customStandardSuperView;
    bool m_useCustomStandardView = false;
    NativeEatEventBlock m_onNativeEatEventBlock;

    // Of the latest drag.
    bool m_mouseDraggedForMoveOrResize = false;
    bool m_mouseDownInResizeArea = false;
    QPointF m_mouseDownLocation; // on the screen
    QRectF m_mouseDownWindowFrame;
};

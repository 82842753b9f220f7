// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QEvent>
#include <QtCore/QLocale>
#include <QtGui/QAction>
#include <QtGui/QCursor>
#include <QtGui/QFontMetrics>
#include <QtGui/QIcon>
#include <QtGui/QPalette>
#include <QtGui/QPixmap>
#include <QtGui/QRegion>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QLayout>
#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

#include <concepts>

/// A class that may be used as the QWidget that it is: none of its own members stands before what is public there.
namespace kx::test {

template <class Widget>
concept TellsItsPlace = requires(const Widget &widget)
{
    {
        widget.geometry()
        } -> std::same_as<const QRect &>;
    {
        widget.frameGeometry()
        } -> std::same_as<QRect>;
    {
        widget.normalGeometry()
        } -> std::same_as<QRect>;
    {
        widget.rect()
        } -> std::same_as<QRect>;
    {
        widget.contentsRect()
        } -> std::same_as<QRect>;
    {
        widget.contentsMargins()
        } -> std::same_as<QMargins>;
    {
        widget.childrenRect()
        } -> std::same_as<QRect>;
    {
        widget.size()
        } -> std::same_as<QSize>;
    {
        widget.frameSize()
        } -> std::same_as<QSize>;
    {
        widget.pos()
        } -> std::same_as<QPoint>;
    {
        widget.x()
        } -> std::same_as<int>;
    {
        widget.y()
        } -> std::same_as<int>;
    {
        widget.width()
        } -> std::same_as<int>;
    {
        widget.height()
        } -> std::same_as<int>;
    {
        widget.minimumSize()
        } -> std::same_as<QSize>;
    {
        widget.maximumSize()
        } -> std::same_as<QSize>;
    {
        widget.minimumWidth()
        } -> std::same_as<int>;
    {
        widget.maximumHeight()
        } -> std::same_as<int>;
    {
        widget.sizeHint()
        } -> std::same_as<QSize>;
    {
        widget.minimumSizeHint()
        } -> std::same_as<QSize>;
    {
        widget.sizePolicy()
        } -> std::same_as<QSizePolicy>;
    {
        widget.devicePixelRatioF()
        } -> std::same_as<qreal>;
    {
        widget.mask()
        } -> std::same_as<QRegion>;
    {
        widget.visibleRegion()
        } -> std::same_as<QRegion>;
    {
        widget.mapToGlobal(QPoint())
        } -> std::same_as<QPoint>;
    {
        widget.mapFromGlobal(QPointF())
        } -> std::same_as<QPointF>;
    {
        widget.mapTo(&widget, QPoint())
        } -> std::same_as<QPoint>;
    {
        widget.mapFrom(&widget, QPoint())
        } -> std::same_as<QPoint>;
    {
        widget.mapToParent(QPoint())
        } -> std::same_as<QPoint>;
    {
        widget.childAt(QPoint())
        } -> std::same_as<QWidget *>;
};

template <class Widget>
concept TellsItsState = requires(const Widget &widget)
{
    {
        widget.isEnabled()
        } -> std::same_as<bool>;
    {
        widget.isVisible()
        } -> std::same_as<bool>;
    {
        widget.isHidden()
        } -> std::same_as<bool>;
    {
        widget.isWindow()
        } -> std::same_as<bool>;
    {
        widget.isActiveWindow()
        } -> std::same_as<bool>;
    {
        widget.isMaximized()
        } -> std::same_as<bool>;
    {
        widget.isMinimized()
        } -> std::same_as<bool>;
    {
        widget.isFullScreen()
        } -> std::same_as<bool>;
    {
        widget.isModal()
        } -> std::same_as<bool>;
    {
        widget.isAncestorOf(&widget)
        } -> std::same_as<bool>;
    {
        widget.hasFocus()
        } -> std::same_as<bool>;
    {
        widget.hasMouseTracking()
        } -> std::same_as<bool>;
    {
        widget.underMouse()
        } -> std::same_as<bool>;
    {
        widget.updatesEnabled()
        } -> std::same_as<bool>;
    {
        widget.acceptDrops()
        } -> std::same_as<bool>;
    {
        widget.testAttribute(Qt::WA_Hover)
        } -> std::same_as<bool>;
    {
        widget.focusPolicy()
        } -> std::same_as<Qt::FocusPolicy>;
    {
        widget.focusProxy()
        } -> std::same_as<QWidget *>;
    {
        widget.focusWidget()
        } -> std::same_as<QWidget *>;
    {
        widget.nextInFocusChain()
        } -> std::same_as<QWidget *>;
    {
        widget.contextMenuPolicy()
        } -> std::same_as<Qt::ContextMenuPolicy>;
    {
        widget.layoutDirection()
        } -> std::same_as<Qt::LayoutDirection>;
    {
        widget.locale()
        } -> std::same_as<QLocale>;
    {
        widget.layout()
        } -> std::same_as<QLayout *>;
    {
        widget.style()
        } -> std::same_as<QStyle *>;
    {
        widget.window()
        } -> std::same_as<QWidget *>;
    {
        widget.parentWidget()
        } -> std::same_as<QWidget *>;
    {
        widget.windowHandle()
        } -> std::same_as<QWindow *>;
    {
        widget.screen()
        } -> std::same_as<QScreen *>;
    {
        widget.windowFlags()
        } -> std::same_as<Qt::WindowFlags>;
    {
        widget.windowState()
        } -> std::same_as<Qt::WindowStates>;
    {
        widget.windowModality()
        } -> std::same_as<Qt::WindowModality>;
    {
        widget.windowOpacity()
        } -> std::same_as<qreal>;
    {
        widget.actions()
        } -> std::same_as<QList<QAction *>>;
    {
        widget.parent()
        } -> std::same_as<QObject *>;
    {
        widget.children()
        } -> std::same_as<const QObjectList &>;
    {
        widget.objectName()
        } -> std::same_as<QString>;
    {
        widget.property("")
        } -> std::same_as<QVariant>;
};

template <class Widget>
concept TellsItsLook = requires(const Widget &widget)
{
    {
        widget.palette()
        } -> std::same_as<const QPalette &>;
    {
        widget.backgroundRole()
        } -> std::same_as<QPalette::ColorRole>;
    {
        widget.foregroundRole()
        } -> std::same_as<QPalette::ColorRole>;
    {
        widget.fontMetrics()
        } -> std::same_as<QFontMetrics>;
    widget.font(); // of any type: KXLabel and the buttons have a kx::Font
    {
        widget.cursor()
        } -> std::same_as<QCursor>;
    {
        widget.styleSheet()
        } -> std::same_as<QString>;
    {
        widget.toolTip()
        } -> std::same_as<QString>;
    {
        widget.statusTip()
        } -> std::same_as<QString>;
    {
        widget.whatsThis()
        } -> std::same_as<QString>;
    {
        widget.accessibleName()
        } -> std::same_as<QString>;
    {
        widget.accessibleDescription()
        } -> std::same_as<QString>;
    {
        widget.windowTitle()
        } -> std::same_as<QString>;
    {
        widget.windowIcon()
        } -> std::same_as<QIcon>;
    {
        widget.autoFillBackground()
        } -> std::same_as<bool>;
};

template <class Widget>
concept CanBeSet = requires(Widget &widget)
{
    widget.setGeometry(QRect());
    widget.setGeometry(0, 0, 1, 1);
    widget.move(QPoint());
    widget.move(0, 0);
    widget.resize(QSize());
    widget.resize(1, 1);
    widget.setMinimumSize(QSize());
    widget.setMaximumSize(1, 1);
    widget.setMinimumWidth(1);
    widget.setFixedSize(QSize());
    widget.setFixedWidth(1);
    widget.setFixedHeight(1);
    widget.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    widget.setContentsMargins(QMargins());
    widget.setMask(QRegion());
    widget.clearMask();
    widget.setEnabled(true);
    widget.setDisabled(true);
    widget.setVisible(true);
    widget.setHidden(true);
    widget.setParent(static_cast<QWidget *>(nullptr));
    widget.setLayout(static_cast<QLayout *>(nullptr));
    widget.setStyle(static_cast<QStyle *>(nullptr));
    widget.setStyleSheet(QString());
    widget.setPalette(QPalette());
    widget.setFont(QFont());
    widget.setCursor(Qt::ArrowCursor);
    widget.unsetCursor();
    widget.setToolTip(QString());
    widget.setStatusTip(QString());
    widget.setWhatsThis(QString());
    widget.setAccessibleName(QString());
    widget.setAccessibleDescription(QString());
    widget.setWindowTitle(QString());
    widget.setWindowFlags(Qt::Window);
    widget.setWindowState(Qt::WindowNoState);
    widget.setWindowOpacity(1.0);
    widget.setAttribute(Qt::WA_Hover);
    widget.setMouseTracking(true);
    widget.setAcceptDrops(true);
    widget.setFocus();
    widget.setFocus(Qt::TabFocusReason);
    widget.setFocusPolicy(Qt::TabFocus);
    widget.setFocusProxy(static_cast<QWidget *>(nullptr));
    widget.clearFocus();
    widget.setContextMenuPolicy(Qt::NoContextMenu);
    widget.setLayoutDirection(Qt::LeftToRight);
    widget.setLocale(QLocale());
    widget.setObjectName(QString());
    widget.setProperty("", QVariant());
};

template <class Widget>
concept DoesAsItIsTold = requires(Widget &widget, QAction &action, QObject &filter)
{
    widget.update();
    widget.update(QRect());
    widget.repaint();
    widget.updateGeometry();
    widget.adjustSize();
    widget.ensurePolished();
    widget.show();
    widget.hide();
    widget.showFullScreen();
    widget.showNormal();
    widget.raise();
    widget.lower();
    widget.stackUnder(&widget);
    widget.scroll(0, 0);
    widget.activateWindow();
    {
        widget.close()
        } -> std::same_as<bool>;
    {
        widget.grab()
        } -> std::same_as<QPixmap>;
    widget.grabMouse();
    widget.releaseMouse();
    widget.addAction(&action);
    widget.removeAction(&action);
    widget.installEventFilter(&filter);
    widget.removeEventFilter(&filter);
    widget.blockSignals(true);
    widget.deleteLater();
};

template <class Widget>
concept UsableAsWidget = std::derived_from<Widget, QWidget> && TellsItsPlace<Widget> && TellsItsState<
    Widget> && TellsItsLook<Widget> && CanBeSet<Widget> && DoesAsItIsTold<Widget>;

} // namespace kx::test

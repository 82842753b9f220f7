// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/KXRichTextView.h>

#include <KXFoundation/Platform/UI/Cursor.h>
#include <KXFoundation/Platform/UI/Event.h>
#include <KXFoundation/Platform/UI/Geometry.h>
#include <KXFoundation/Platform/UI/WindowQueries.h>
#include <KXFoundation/RichTextView/AccessibleRichText.h>
#include <KXFoundation/RichTextView/CombinedRuns.h>
#include <KXFoundation/RichTextView/KXAttributedString.h>
#include <KXFoundation/RichTextView/RichTextBody.h>
#include <KXFoundation/RichTextView/RichTextPainting.h>

#include <QtCore/QPointer>
#include <QtGui/QKeyEvent>
#include <QtGui/QPainter>

KXRichTextView::KXRichTextView(QWidget *parent)
    : kx::View(parent)
    , m_body(std::make_unique<RichTextBody>())
{
    _init();
}

KXRichTextView::KXRichTextView(const QRectF &frame, QWidget *parent)
    : KXRichTextView(parent)
{
    setFrame(frame);
}

KXRichTextView::~KXRichTextView() = default;

void KXRichTextView::_init()
{
    m_body->layoutManager.setDefaultFont(font());
    setWantsLayer(true);
    makeRichTextAccessible();
}

void KXRichTextView::setKXAttributedStrings(const Runs &runs)
{
    const CombinedRuns content = combined(runs);
    const QString oldText = m_body->textStorage.attributedString().string();
    const bool hadLinks = m_body->hasLinks();
    m_body->items = content.items;
    m_body->textStorage.setAttributedString(content.text);
    m_body->selection = {};
    m_body->caret = 0;
    m_body->currentLink = hasFocus() ? m_body->linkBeside(-1, true) : -1;
    updateFocusPolicy();
    if (_isAutoLayout())
        invalidateIntrinsicContentSize();
    setNeedsDisplay(); // of the text's own area, too
    tellOfNewText(*this, oldText, content.text.string());
    if (hadLinks || m_body->hasLinks())
        tellOfNewLinks(*this);
    tellOfCurrentLink(*this);
}

void KXRichTextView::setUseRoundCorner(bool useRoundCorner)
{
    m_useRoundCorner = useRoundCorner;
    Q_EMIT useRoundCornerChanged(useRoundCorner);
}

void KXRichTextView::setUserInteraction(bool userInteraction)
{
    m_userInteraction = userInteraction;
    updateFocusPolicy();
    Q_EMIT userInteractionChanged(userInteraction);
}

void KXRichTextView::setUserCursor(bool userCursor)
{
    m_userCursor = userCursor;
    Q_EMIT userCursorChanged(userCursor);
}

void KXRichTextView::setBackgroundColor(const kx::Color &backgroundColor)
{
    m_backgroundColor = backgroundColor;
    Q_EMIT backgroundColorChanged(backgroundColor);
}

QMarginsF KXRichTextView::insets() const
{
    return m_body->insets;
}

void KXRichTextView::setInsets(const QMarginsF &insets)
{
    m_body->insets = insets;
    Q_EMIT insetsChanged(insets);
}

QRectF KXRichTextView::contentSizeRect() const
{
    return m_body->items.isEmpty() ? QRectF() : m_body->layoutManager.usedRect();
}

QSizeF KXRichTextView::intrinsicContentSize() const
{
    const QSizeF used = contentSizeRect().size();
    const QMarginsF &insets = m_body->insets;
    return {used.width() + insets.left() + insets.right(), used.height() + insets.top() + insets.bottom()};
}

kx::ViewInterface *KXRichTextView::hitTest(const QPointF &point)
{
    return m_userInteraction ? kx::View::hitTest(point) : nullptr;
}

void KXRichTextView::mouseUp(kx::Event *event)
{
    if (!event)
        return;
    const QPointF point = locationInView(*event);
    const QPointer<KXRichTextView> alive(this);
    const QList<_KXAttributedItem> items = m_body->items; // handlers may replace them
    for (const _KXAttributedItem &item : items) {
        if (!item.kxas()->onClick() || !kx::pointInRect(point, m_body->rectOf(item)))
            continue;
        clickRun(item.kxas());
        if (!alive)
            return;
    }
}

void KXRichTextView::clickRun(const std::shared_ptr<KXAttributedString> &run)
{
    const QPointer<KXRichTextView> alive(this);
    if (const KXAttributedString::ClickHandler handler = run->onClick())
        handler(run);
    if (alive)
        Q_EMIT runClicked(run);
}

void KXRichTextView::keyDown(kx::Event *event)
{
    const auto *key = event ? static_cast<const QKeyEvent *>(event->qtEvent()) : nullptr;
    const bool follows = key && !key->isAutoRepeat()
        && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter || key->key() == Qt::Key_Space
            || key->key() == Qt::Key_Select);
    if (follows && isAtLink())
        clickRun(m_body->items.at(m_body->currentLink).kxas());
    else
        kx::View::keyDown(event);
}

void KXRichTextView::cursorUpdate(kx::Event *)
{
    if (!kx::ignoresMouseEvents(shownWindow()) && m_userCursor)
        kx::Cursor::set(Qt::PointingHandCursor);
}

void KXRichTextView::updateTrackingAreas()
{
    using enum kx::TrackingOption;
    if (m_userInteraction && m_userCursor) {
        addTrackingArea(std::make_shared<kx::TrackingArea>(
            bounds(), CursorUpdate | ActiveInActiveApp | AssumeInside | InVisibleRect, this));
    }
}

void KXRichTextView::drawRect(QPainter &painter, const QRectF &dirtyRect)
{
    painter.save();
    painter.setPen(palette().color(foregroundRole()));
    if (m_useRoundCorner)
        clipToRoundCorner(painter, dirtyRect.size());
    if (m_backgroundColor)
        painter.fillRect(dirtyRect, m_backgroundColor.toQColor());
    drawBody(painter, *m_body, palette().color(QPalette::Highlight), dirtyRect);
    painter.restore();
    if (m_body->keyboardFocus.isShown(*this) && isAtLink())
        drawFocusRings(painter, *this, m_body->rectsOf(m_body->items.at(m_body->currentLink).range()));
}

bool KXRichTextView::event(QEvent *event)
{
    return m_body->keyboardFocus.refuses(*this, *event) || kx::View::event(event);
}

void KXRichTextView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange) {
        m_body->layoutManager.setDefaultFont(font());
        invalidateIntrinsicContentSize();
        setNeedsDisplay();
    }
    kx::View::changeEvent(event);
}

void KXRichTextView::focusInEvent(QFocusEvent *event)
{
    const bool backwards = event->reason() == Qt::BacktabFocusReason;
    const bool starts = backwards || event->reason() == Qt::TabFocusReason || !m_body->isLink(m_body->currentLink);
    setCurrentLink(
        starts ? m_body->linkBeside(backwards ? m_body->items.size() : -1, !backwards) : m_body->currentLink);
    kx::View::focusInEvent(event);
}

void KXRichTextView::focusOutEvent(QFocusEvent *event)
{
    kx::View::focusOutEvent(event);
    setNeedsDisplay();
}

bool KXRichTextView::focusNextPrevChild(bool next)
{
    const qsizetype link = hasFocus() && m_userInteraction ? m_body->linkBeside(m_body->currentLink, next) : -1;
    if (link < 0)
        return kx::View::focusNextPrevChild(next);
    m_body->keyboardFocus.wasMovedWithin();
    setCurrentLink(link);
    return true;
}

// Whether there is a link for the keys to follow.
bool KXRichTextView::isAtLink() const
{
    return m_userInteraction && m_body->isLink(m_body->currentLink);
}

void KXRichTextView::setCurrentLink(qsizetype index)
{
    m_body->currentLink = index;
    setNeedsDisplay();
    tellOfCurrentLink(*this);
}

// Follows the content as long as the host leaves it to the view.
void KXRichTextView::updateFocusPolicy()
{
    if (focusPolicy() != m_ownFocusPolicy)
        return;
    m_ownFocusPolicy = m_userInteraction && m_body->hasLinks() ? Qt::TabFocus : Qt::NoFocus;
    setFocusPolicy(m_ownFocusPolicy);
}

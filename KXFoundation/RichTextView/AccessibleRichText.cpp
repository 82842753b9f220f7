// SPDX-License-Identifier: MIT
#include <KXFoundation/RichTextView/AccessibleRichText.h>

#include <KXFoundation/Platform/UI/PaintableRect.h>
#include <KXFoundation/RichTextView/AccessibleLink.h>
#include <KXFoundation/RichTextView/KXRichTextView.h>
#include <KXFoundation/RichTextView/RichTextBody.h>

#include <algorithm>

namespace {

QAccessibleInterface *accessibleRichText(const QString &, QObject *object)
{
    auto *const view = qobject_cast<KXRichTextView *>(object);
    return view ? new AccessibleRichText(*view) : nullptr;
}

QString rgb(const kx::Color &color)
{
    const QColor c = color.toQColor();
    return QStringLiteral("rgb(%1,%2,%3)").arg(c.red()).arg(c.green()).arg(c.blue());
}

// Of a text of this length, from offsets in any order; -1 stands for its end.
kx::TextRange rangeBetween(int startOffset, int endOffset, quint64 textLength)
{
    const auto offset = [&](int given) { return given < 0 ? textLength : std::min(quint64(given), textLength); };
    const auto [start, end] = std::minmax({offset(startOffset), offset(endOffset)});
    return {start, end - start};
}

} // namespace

void makeRichTextAccessible()
{
    QAccessible::installFactory(accessibleRichText); // once for each application object, however often it is asked to
}

void tellOfNewText(KXRichTextView &view, const QString &before, const QString &now)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleTextUpdateEvent update(&view, 0, before, now);
    QAccessible::updateAccessibility(&update);
    QAccessibleEvent name(&view, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&name);
}

void tellOfNewLinks(KXRichTextView &view)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent children(&view, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&children);
}

void tellOfCurrentLink(KXRichTextView &view)
{
    if (!QAccessible::isActive())
        return;
    // Qt tells of the view after it has got the focus, and what is told last counts.
    const auto tell = [&view] {
        QAccessibleInterface *text = QAccessible::queryAccessibleInterface(&view);
        QAccessibleInterface *link = text ? text->focusChild() : nullptr;
        if (!link || link == text)
            return;
        QAccessibleEvent focus(link, QAccessible::Focus);
        QAccessible::updateAccessibility(&focus);
    };
    QMetaObject::invokeMethod(&view, tell, Qt::QueuedConnection);
}

AccessibleRichText::AccessibleRichText(KXRichTextView &view)
    : QAccessibleWidget(&view, QAccessible::StaticText)
{
}

AccessibleRichText::~AccessibleRichText()
{
    for (const QAccessible::Id link : std::as_const(m_links))
        QAccessible::deleteAccessibleInterface(link);
}

void AccessibleRichText::follow(KXRichTextView &view, qsizetype index)
{
    if (view.m_body->isLink(index))
        view.clickRun(view.m_body->items.at(index).kxas());
}

void AccessibleRichText::focus(KXRichTextView &view, qsizetype index)
{
    if (view.hasFocus()) {
        view.setCurrentLink(index);
        return;
    }
    view.m_body->currentLink = index; // the focus stays at it when it comes
    view.setFocus(Qt::OtherFocusReason);
}

QRect AccessibleRichText::onScreen(const KXRichTextView &view, const QRectF &rect)
{
    return kx::pixelsAround(rect.translated(view.mapToGlobal(QPointF(0, 0)))).value_or(QRect());
}

KXRichTextView &AccessibleRichText::view() const
{
    return static_cast<KXRichTextView &>(*widget());
}

RichTextBody &AccessibleRichText::body() const
{
    return *view().m_body;
}

void *AccessibleRichText::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface *>(this)
                                              : QAccessibleWidget::interface_cast(type);
}

QString AccessibleRichText::text(QAccessible::Text kind) const
{
    const QString own = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && own.isEmpty() ? body().spokenIn({0, quint64(characterCount())}) : own;
}

QAccessible::State AccessibleRichText::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.selectableText = true;
    state.multiLine = true;
    return state;
}

// --- the links are children behind the view's subviews ---------------------------------------------------------------

const QList<QAccessible::Id> &AccessibleRichText::links() const
{
    const quint64 revision = body().textStorage.revision();
    if (revision == m_revision)
        return m_links;
    for (const QAccessible::Id link : std::as_const(m_links))
        QAccessible::deleteAccessibleInterface(link);
    m_links.clear();
    m_revision = revision;
    const QList<qsizetype> indexes = body().links();
    for (const qsizetype index : indexes)
        m_links.append(QAccessible::registerAccessibleInterface(new AccessibleLink(view(), body(), index)));
    return m_links;
}

int AccessibleRichText::childCount() const
{
    return QAccessibleWidget::childCount() + int(links().size());
}

QAccessibleInterface *AccessibleRichText::child(int index) const
{
    const int link = index - QAccessibleWidget::childCount();
    if (link < 0)
        return QAccessibleWidget::child(index);
    return link < links().size() ? QAccessible::accessibleInterface(links().at(link)) : nullptr;
}

int AccessibleRichText::indexOfChild(const QAccessibleInterface *child) const
{
    for (int i = 0; i < links().size(); ++i) {
        if (QAccessible::accessibleInterface(links().at(i)) == child)
            return QAccessibleWidget::childCount() + i;
    }
    return QAccessibleWidget::indexOfChild(child);
}

QAccessibleInterface *AccessibleRichText::focusChild() const
{
    QAccessibleInterface *link = view().hasFocus() ? currentLink() : nullptr;
    return link ? link : QAccessibleWidget::focusChild();
}

QAccessibleInterface *AccessibleRichText::currentLink() const
{
    for (const QAccessible::Id id : links()) {
        auto *const link = static_cast<AccessibleLink *>(QAccessible::accessibleInterface(id));
        if (link->index() == body().currentLink)
            return link;
    }
    return nullptr;
}

// --- the text --------------------------------------------------------------------------------------------------------

void AccessibleRichText::selection(int selectionIndex, int *startOffset, int *endOffset) const
{
    const kx::TextRange selection = selectionIndex == 0 ? body().selection : kx::TextRange();
    *startOffset = int(selection.location);
    *endOffset = int(selection.location + selection.length);
}

int AccessibleRichText::selectionCount() const
{
    return body().selection.length > 0 ? 1 : 0;
}

void AccessibleRichText::addSelection(int startOffset, int endOffset)
{
    setSelection(0, startOffset, endOffset);
}

void AccessibleRichText::removeSelection(int selectionIndex)
{
    setSelection(selectionIndex, 0, 0);
}

void AccessibleRichText::setSelection(int selectionIndex, int startOffset, int endOffset)
{
    if (selectionIndex != 0)
        return;
    body().selection = rangeBetween(startOffset, endOffset, quint64(characterCount()));
    view().update();
    int start = 0;
    int end = 0;
    selection(0, &start, &end);
    body().caret = end;
    QAccessibleTextSelectionEvent event(&view(), start, end);
    QAccessible::updateAccessibility(&event);
}

int AccessibleRichText::cursorPosition() const
{
    return body().caret;
}

void AccessibleRichText::setCursorPosition(int position)
{
    body().caret = std::clamp(position, 0, characterCount());
    QAccessibleTextCursorEvent event(&view(), body().caret);
    QAccessible::updateAccessibility(&event);
}

QString AccessibleRichText::text(int startOffset, int endOffset) const
{
    return body().textIn(rangeBetween(startOffset, endOffset, quint64(characterCount())));
}

int AccessibleRichText::characterCount() const
{
    return int(body().textStorage.attributedString().length());
}

QRect AccessibleRichText::characterRect(int offset) const
{
    if (offset < 0 || offset > characterCount())
        return {};
    const QList<QRectF> rects = body().rectsOf({quint64(offset), 1});
    return onScreen(view(), rects.first());
}

int AccessibleRichText::offsetAtPoint(const QPoint &point) const
{
    const QPointF inView = view().mapFromGlobal(QPointF(point));
    const quint64 character =
        body().layoutManager.characterIndexForPoint(inView - QPointF(body().insets.left(), body().insets.top()));
    return character == kx::notFound ? -1 : int(character);
}

QString AccessibleRichText::attributes(int offset, int *startOffset, int *endOffset) const
{
    // As Qt's own texts have it: -2 is the caret, -1 the end, and there the last character is meant.
    if (offset == -2)
        offset = cursorPosition();
    if (offset == -1 || offset == characterCount())
        offset = characterCount() - 1;
    if (offset < 0 || offset >= characterCount()) {
        *startOffset = -1;
        *endOffset = -1;
        return {};
    }
    const kx::AttributedString &string = body().textStorage.attributedString();
    const qsizetype run = string.runAt(quint64(offset));
    const kx::TextRange range = string.rangeOfRun(run);
    *startOffset = int(range.location);
    *endOffset = int(range.location + range.length);
    const kx::TextAttributes &attributes = string.runs().at(run).attributes;
    const QFont font = attributes.font ? *attributes.font : view().font();
    QString result = QStringLiteral("font-family:\"%1\";").arg(font.family());
    if (font.bold())
        result += QStringLiteral("font-weight:bold;");
    if (font.italic())
        result += QStringLiteral("font-style:italic;");
    if (attributes.foregroundColor)
        result += QStringLiteral("color:%1;").arg(rgb(attributes.foregroundColor));
    if (attributes.backgroundColor.alphaComponent() > 0)
        result += QStringLiteral("background-color:%1;").arg(rgb(attributes.backgroundColor));
    return result;
}

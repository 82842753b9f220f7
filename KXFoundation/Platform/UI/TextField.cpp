// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TextField.h>

#include <QtGui/QAccessible>
#include <QtGui/QPainter>
#include <QtWidgets/QAccessibleWidget>

#include <limits>
#include <utility>

namespace kx {

namespace {

class AccessibleTextField : public QAccessibleWidget {
public:
    explicit AccessibleTextField(TextField &field)
        : QAccessibleWidget(&field, QAccessible::StaticText)
    {
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        const QString own = QAccessibleWidget::text(kind);
        return kind == QAccessible::Name && own.isEmpty() ? static_cast<TextField *>(widget())->stringValue() : own;
    }
};

QAccessibleInterface *accessibleTextField(const QString &, QObject *object)
{
    auto *const field = qobject_cast<TextField *>(object);
    return field ? new AccessibleTextField(*field) : nullptr;
}

} // namespace

TextField::TextField(QWidget *parent)
    : View(parent)
{
    QAccessible::installFactory(accessibleTextField); // once, however often it is called
    setCell(nullptr);
}

TextField::~TextField() = default;

void TextField::setCell(std::unique_ptr<TextFieldCell> cell)
{
    m_cell = cell ? std::move(cell) : std::make_unique<TextFieldCell>();
    m_cell->setHostFont(font());
    m_cell->setChangeHandler([this] { cellChanged(); });
    cellChanged();
}

void TextField::cellChanged()
{
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
    if (QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
    Q_EMIT valueChanged();
}

QSizeF TextField::intrinsicContentSize() const
{
    constexpr double endless = std::numeric_limits<double>::infinity();
    return m_cell->cellSizeForBounds({0, 0, endless, endless});
}

void TextField::drawRect(QPainter &painter, const QRectF &)
{
    painter.setPen(palette().color(foregroundRole()));
    m_cell->drawWithFrame(painter, bounds());
}

void TextField::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange)
        m_cell->setHostFont(font());
    View::changeEvent(event);
}

} // namespace kx

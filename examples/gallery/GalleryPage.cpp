// SPDX-License-Identifier: MIT
#include "GalleryPage.h"

#include <KXFoundation/Platform/UI/ScreenGeometry.h>
#include <KXFoundation/Platform/UI/ViewInterface.h>

#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int room = 12; // around a control, for what it casts beyond its edges

} // namespace

GalleryPage::GalleryPage()
    : m_families(new QVBoxLayout(this))
{
    m_families->setContentsMargins(0, 0, 0, 0);
}

void GalleryPage::beginFamily(const QString &name, int columns)
{
    m_family = name;
    m_columns = columns;
    auto *title = new QLabel(name);
    QFont font = title->font();
    font.setBold(true);
    title->setFont(font);
    m_families->addWidget(title);
    m_grid = new QGridLayout;
    m_grid->setSpacing(8);
    m_grid->setColumnStretch(columns, 1);
    m_families->addLayout(m_grid);
}

State &GalleryPage::add(const QString &name, QWidget *control, const QSize &size, const std::function<void()> &enter)
{
    auto *stage = new QWidget;
    stage->setBackgroundRole(QPalette::Base);
    stage->setAutoFillBackground(true);
    stage->setFixedSize(size + QSize(2 * room, 2 * room));
    control->setParent(stage);
    control->setGeometry({QPoint(room, room), size});
    return addCell({m_family, name, stage, enter, {}}, stage);
}

State &GalleryPage::addWindow(const QString &name, QWidget *window, const std::function<void()> &enter)
{
    window->setParent(this, window->windowFlags() | Qt::Window);
    auto *open = new QPushButton(QStringLiteral("Open"));
    connect(open, &QPushButton::clicked, window, &QWidget::show);
    return addCell({m_family, name, window, enter, {}}, open);
}

State &GalleryPage::addCell(const State &state, QWidget *shown)
{
    const int index = m_grid->count();
    auto *cell = new QVBoxLayout;
    cell->addWidget(shown, 0, Qt::AlignLeft);
    cell->addWidget(new QLabel(state.name), 0, Qt::AlignTop);
    m_grid->addLayout(cell, index / m_columns, index % m_columns, Qt::AlignTop);
    m_states.append(state);
    return m_states.last();
}

std::function<void()> GalleryPage::reaching(QWidget *control)
{
    return [control] { control->setFocus(Qt::TabFocusReason); };
}

kx::Event GalleryPage::pressAt(const kx::ViewInterface &view, const QPointF &point)
{
    QWidget *window = view.widget()->window();
    const QPointF inWindow = view.convertRectToView(QRectF(point, QSizeF())).topLeft();
    return {kx::EventType::LeftMouseDown, window, kx::screenFrame(*window).topLeft() + inWindow};
}

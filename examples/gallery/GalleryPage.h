// SPDX-License-Identifier: MIT
#pragma once

#include "State.h"

#include <KXFoundation/Platform/UI/Event.h>

#include <QtCore/QList>
#include <QtCore/QSize>
#include <QtWidgets/QWidget>

class QGridLayout;
class QVBoxLayout;
namespace kx {
class ViewInterface;
}

/// The states of one family of controls after another, each state with its name beneath.
class GalleryPage : public QWidget {
public:
    [[nodiscard]] const QList<State> &states() const { return m_states; }

protected:
    GalleryPage();

    /// What is added from here on are states of this class, so many of them in a row.
    void beginFamily(const QString &name, int columns);
    /// Shows a control, which becomes the page's, at this size. The state is good until the next one is added.
    State &add(const QString &name, QWidget *control, const QSize &size, const std::function<void()> &enter = {});
    /// As add(), for a control that is a window: the page has a button that opens it.
    State &addWindow(const QString &name, QWidget *window, const std::function<void()> &enter = {});

    /// Gives a control the focus as Tab does.
    [[nodiscard]] static std::function<void()> reaching(QWidget *control);
    /// A press at a point of a view, in its coordinates.
    [[nodiscard]] static kx::Event pressAt(const kx::ViewInterface &view, const QPointF &point);

private:
    State &addCell(const State &state, QWidget *shown);

    QVBoxLayout *m_families;
    QGridLayout *m_grid = nullptr; // of the present family
    QString m_family;
    int m_columns = 1;
    QList<State> m_states;
};

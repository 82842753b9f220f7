// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/ViewMap.h>

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

namespace kx {

/// Makes Qt find the widget that the views' hitTest() finds, while it delivers an event of the pointer.
///
/// Qt looks for a widget by geometry alone. Where that would not agree, what is in the way becomes transparent to the
/// mouse until Qt has looked; so the event reaches what is beneath, be it a view or not.
class HitTesting {
public:
    HitTesting() = default;
    ~HitTesting() { restore(); }
    Q_DISABLE_COPY_MOVE(HitTesting)

    /// `host` is the widget whose QWindow gets the event, `position` its pixel. `spots` are the views there.
    void prepare(QWidget &host, const QPoint &position, const ViewMap::Spots &spots);
    /// To be called when Qt has found its widget.
    void restore();

    /// The subviews of `view` that may have the point, which counts in the coordinates of `view`, from the topmost.
    /// While prepare() asks, these are those under the pointer instead of all.
    [[nodiscard]] static QVarLengthArray<ViewInterface *, 8> subviewsAt(
        const ViewInterface &view, const QPointF &point);

private:
    [[nodiscard]] bool agrees(const ViewMap::Spots &spots) const;
    [[nodiscard]] QWidget *obstacle(QWidget &host, QWidget &found, const ViewMap::Spots &spots) const;

    QList<QPointer<QWidget>> m_bypassed;
};

} // namespace kx

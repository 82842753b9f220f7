// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/LayoutConstraint.h>

#include <QtCore/QStringView>

#include <optional>

namespace kx {

/// Reads the text of LayoutConstraint::constraintsWithVisualFormat(), once, from left to right.
class VisualFormat {
public:
    using Metrics = QHash<QString, double>;
    using Views = QHash<QString, ViewInterface *>;

    VisualFormat(QStringView text, const Metrics &metrics, const Views &views);

    [[nodiscard]] QList<LayoutConstraintRef> constraints();

private:
    // Each takes what it reads off the text; false or none when that stands there as nothing it knows.
    [[nodiscard]] bool take(QStringView text);
    [[nodiscard]] QStringView takeName();
    [[nodiscard]] std::optional<double> takeNumber();
    [[nodiscard]] std::optional<double> takeDistance();
    [[nodiscard]] ViewInterface *takeView();
    [[nodiscard]] bool takeSize(ViewInterface &view);

    [[nodiscard]] bool read();
    [[nodiscard]] bool bind(ViewInterface *item, LayoutAttribute attribute, ViewInterface *toItem,
        LayoutAttribute toAttribute, double constant);

    QStringView m_rest;
    const Metrics &m_metrics;
    const Views &m_views;
    LayoutAttribute m_near = LayoutAttribute::Left;
    LayoutAttribute m_far = LayoutAttribute::Right;
    LayoutAttribute m_size = LayoutAttribute::Width;
    QList<LayoutConstraintRef> m_made;
};

} // namespace kx

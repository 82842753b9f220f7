// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Autoresizing.h>

#include <algorithm>

namespace kx {

namespace {

struct Span {
    double start;
    double length;
};

struct Flexible {
    bool near;
    bool length;
    bool far;
};

Span stretched(Span span, double oldExtent, double newExtent, Flexible flexible)
{
    const double change = newExtent - oldExtent;
    const double near = std::max(flexible.near ? span.start : 0, 0.0);
    const double length = std::max(flexible.length ? span.length : 0, 0.0);
    const double far = std::max(flexible.far ? oldExtent - span.start - span.length : 0, 0.0);
    const double sum = near + length + far;
    const int count = int(flexible.near) + int(flexible.length) + int(flexible.far);
    const auto share = [&](bool takes, double part) {
        if (!takes)
            return 0.0;
        return sum > 0 ? change * part / sum : change / count;
    };
    return {span.start + share(flexible.near, near), std::max(span.length + share(flexible.length, length), 0.0)};
}

} // namespace

QRectF autoresized(const QRectF &frame, const QSizeF &oldSize, const QSizeF &newSize, AutoresizingMask mask)
{
    const auto has = [mask](Autoresizing part) { return mask.testFlag(part); };
    const Span x = stretched({frame.x(), frame.width()}, oldSize.width(), newSize.width(),
        {has(Autoresizing::MinXMargin), has(Autoresizing::Width), has(Autoresizing::MaxXMargin)});
    const Span y = stretched({frame.y(), frame.height()}, oldSize.height(), newSize.height(),
        {has(Autoresizing::MinYMargin), has(Autoresizing::Height), has(Autoresizing::MaxYMargin)});
    return {x.start, y.start, x.length, y.length};
}

} // namespace kx

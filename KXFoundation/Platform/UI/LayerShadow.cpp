// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/LayerShadow.h>

#include <KXFoundation/Platform/UI/Layer.h>
#include <KXFoundation/Platform/UI/TextLayout/Finite.h>

#include <QtCore/QChildEvent>
#include <QtGui/QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace kx {

namespace {

constexpr double mostBlur = 64; // device pixels; a larger shadow is not told from none

// Widths of three box filters that come close to a Gaussian ("Fast almost-Gaussian filtering", P. Kovesi, 2010).
std::array<int, 3> boxWidths(double sigma)
{
    constexpr int count = 3;
    int lower = int(std::floor(std::sqrt(12 * sigma * sigma / count + 1)));
    lower -= lower % 2 == 0;
    const double ideal =
        (12 * sigma * sigma - count * lower * lower - 4 * count * lower - 3 * count) / (-4.0 * lower - 4);
    std::array<int, count> widths{};
    for (int i = 0; i < count; ++i)
        widths[std::size_t(i)] = i < std::lround(ideal) ? lower : lower + 2;
    return widths;
}

// One pass over `count` values that lie `step` apart.
void boxFilter(uchar *values, int count, qsizetype step, int width, std::vector<uchar> &copy)
{
    const int reach = width / 2;
    for (int i = 0; i < count; ++i)
        copy[std::size_t(i)] = values[i * step];
    int sum = 0;
    for (int i = 0; i < std::min(reach, count); ++i)
        sum += copy[std::size_t(i)];
    for (int i = 0; i < count; ++i) {
        if (i + reach < count)
            sum += copy[std::size_t(i + reach)];
        values[i * step] = uchar((sum + width / 2) / width);
        if (i - reach >= 0)
            sum -= copy[std::size_t(i - reach)];
    }
}

} // namespace

int blurMargin(double radius)
{
    return radius > 0 ? int(std::ceil(3 * std::min(radius, mostBlur))) : 0;
}

QImage blurredShadow(const QImage &image, const QColor &color, double radius)
{
    const int margin = blurMargin(radius);
    QImage alpha(image.size() + QSize(2 * margin, 2 * margin), QImage::Format_Alpha8);
    alpha.fill(0);
    const QImage source = image.convertToFormat(QImage::Format_Alpha8);
    for (int y = 0; y < source.height(); ++y)
        std::copy_n(source.constScanLine(y), source.width(), alpha.scanLine(y + margin) + margin);
    if (margin > 0) {
        std::vector<uchar> copy(std::size_t(std::max(alpha.width(), alpha.height())));
        for (const int width : boxWidths(std::min(radius, mostBlur))) {
            for (int y = 0; y < alpha.height(); ++y)
                boxFilter(alpha.scanLine(y), alpha.width(), 1, width, copy);
            for (int x = 0; x < alpha.width(); ++x)
                boxFilter(alpha.bits() + x, alpha.height(), alpha.bytesPerLine(), width, copy);
        }
    }
    QImage shadow(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter painter(&shadow);
    painter.drawImage(0, 0, alpha);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(shadow.rect(), color);
    return shadow;
}

LayerShadow::LayerShadow(QWidget &view)
    : m_view(&view)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    view.installEventFilter(this);
    enter(view.parentWidget());
}

void LayerShadow::cast(const QImage &caster, const Layer &layer, double alpha)
{
    const double ratio = caster.devicePixelRatio();
    QColor color = layer.shadowColor().toQColor();
    color.setAlphaF(float(color.alphaF() * std::clamp(layer.shadowOpacity() * alpha, 0.0, 1.0)));
    const double radius = std::isfinite(layer.shadowRadius()) ? std::max(layer.shadowRadius(), 0.0) * ratio : 0;
    if (m_caster != caster || m_radius != radius || m_color != color) {
        m_caster = caster;
        m_radius = radius;
        m_color = color;
        m_shadow = blurredShadow(caster, color, radius);
        m_shadow.setDevicePixelRatio(ratio);
        update();
    }
    const double margin = blurMargin(radius) / ratio;
    const QSizeF size = m_shadow.deviceIndependentSize();
    const QPointF offset(coordinate(layer.shadowOffset().width()), -coordinate(layer.shadowOffset().height()));
    const QPointF corner = offset - QPointF(margin, margin);
    const QRect place = QRectF(corner, size).toAlignedRect();
    m_corner = corner - place.topLeft();
    if (m_place == place)
        return;
    m_place = place;
    QMetaObject::invokeMethod(this, &LayerShadow::follow, Qt::QueuedConnection); // not while the view paints
}

bool LayerShadow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_view) // the parent: a splitter would make a pane of each child that it hears of
        return event->type() == QEvent::ChildAdded && static_cast<QChildEvent *>(event)->child() == this;
    switch (event->type()) {
    case QEvent::ParentChange: enter(m_view->parentWidget()); break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::ZOrderChange: follow(); break;
    default: break;
    }
    return false;
}

void LayerShadow::paintEvent(QPaintEvent *)
{
    QPainter(this).drawImage(m_corner, m_shadow);
}

void LayerShadow::enter(QWidget *parent)
{
    if (!parent || m_view->isWindow()) {
        hide();
        return;
    }
    parent->installEventFilter(this);
    setParent(parent);
    parent->removeEventFilter(this);
    follow();
}

void LayerShadow::follow()
{
    if (!m_view || parentWidget() != m_view->parentWidget())
        return;
    setGeometry(m_place.translated(m_view->pos()));
    stackUnder(m_view);
    setVisible(m_view->isVisibleTo(parentWidget()));
}

} // namespace kx

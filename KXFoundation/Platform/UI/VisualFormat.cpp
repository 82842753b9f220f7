// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/VisualFormat.h>

#include <KXFoundation/Platform/UI/ViewInterface.h>

namespace kx {

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
}

} // namespace

VisualFormat::VisualFormat(QStringView text, const Metrics &metrics, const Views &views)
    : m_rest(text)
    , m_metrics(metrics)
    , m_views(views)
{
}

QList<LayoutConstraintRef> VisualFormat::constraints()
{
    if (!read())
        m_made.clear();
    return m_made;
}

// [H:|V:] [| distance] view (distance view)* [distance |]
bool VisualFormat::read()
{
    if (take(u"V:")) {
        m_near = LayoutAttribute::Top;
        m_far = LayoutAttribute::Bottom;
        m_size = LayoutAttribute::Height;
    } else if (!take(u"H:") && m_rest.contains(u':')) {
        return false;
    }
    const bool fromEdge = take(u"|");
    std::optional<double> distance = fromEdge ? takeDistance() : 0;
    for (ViewInterface *before = nullptr; distance;) {
        ViewInterface *view = takeView();
        if (!view)
            return false;
        if (before && !bind(view, m_near, before, m_far, *distance))
            return false;
        if (!before && fromEdge && !bind(view, m_near, view->superview(), m_near, *distance))
            return false;
        if (!takeSize(*view))
            return false;
        if (m_rest.isEmpty())
            return true;
        distance = takeDistance();
        if (distance && take(u"|"))
            return m_rest.isEmpty() && bind(view, m_far, view->superview(), m_far, -*distance);
        before = view;
    }
    return false;
}

bool VisualFormat::bind(
    ViewInterface *item, LayoutAttribute attribute, ViewInterface *toItem, LayoutAttribute toAttribute, double constant)
{
    m_made.append(
        LayoutConstraint::constraintWithItem(item, attribute, LayoutRelation::Equal, toItem, toAttribute, 1, constant));
    return m_made.last() != nullptr;
}

bool VisualFormat::take(QStringView text)
{
    if (!m_rest.startsWith(text))
        return false;
    m_rest = m_rest.sliced(text.size());
    return true;
}

QStringView VisualFormat::takeName()
{
    qsizetype length = 0;
    while (length < m_rest.size() && (isLetter(m_rest[length]) || (length > 0 && isDigit(m_rest[length]))))
        ++length;
    const QStringView name = m_rest.first(length);
    m_rest = m_rest.sliced(length);
    return name;
}

std::optional<double> VisualFormat::takeNumber()
{
    if (const QStringView name = takeName(); !name.isEmpty()) {
        const auto metric = m_metrics.constFind(name.toString());
        return metric == m_metrics.cend() ? std::nullopt : std::optional(*metric);
    }
    qsizetype length = m_rest.startsWith(u'-') ? 1 : 0;
    while (length < m_rest.size() && (isDigit(m_rest[length]) || m_rest[length] == u'.'))
        ++length;
    bool isNumber = false;
    const double number = m_rest.first(length).toDouble(&isNumber);
    m_rest = m_rest.sliced(length);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<double> VisualFormat::takeDistance()
{
    if (!take(u"-"))
        return 0;
    const std::optional<double> distance = takeNumber();
    return take(u"-") ? distance : std::nullopt;
}

ViewInterface *VisualFormat::takeView()
{
    return take(u"[") ? m_views.value(takeName().toString()) : nullptr;
}

// [( size (, size)* )] ]
bool VisualFormat::takeSize(ViewInterface &view)
{
    if (take(u"(")) {
        do {
            (void)take(u"==");
            const QStringView rest = m_rest;
            ViewInterface *like = m_views.value(takeName().toString());
            if (!like)
                m_rest = rest;
            const std::optional<double> size = like ? 0 : takeNumber();
            const LayoutAttribute likes = like ? m_size : LayoutAttribute::NotAnAttribute;
            if (!size || !bind(&view, m_size, like, likes, *size))
                return false;
        } while (take(u","));
        if (!take(u")"))
            return false;
    }
    return take(u"]");
}

} // namespace kx

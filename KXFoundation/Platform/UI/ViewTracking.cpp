// SPDX-License-Identifier: MIT
// The tracking areas that a view has. PointerTracker follows the pointer over them.
#include <KXFoundation/Platform/UI/ViewInterface.h>
#include <KXFoundation/Platform/UI/ViewWatch.h>

#include <algorithm>

namespace kx {

namespace {

bool saySame(const TrackingArea &a, const TrackingArea &b)
{
    return a.rect() == b.rect() && a.options() == b.options() && a.owner() == b.owner() && a.userInfo() == b.userInfo();
}

} // namespace

void ViewInterface::addTrackingArea(const TrackingAreaRef &area)
{
    if (!area)
        return;
    const auto same = [&](const CountedArea &counted) { return saySame(*counted.area, *area); };
    const auto copies = std::find_if(m_trackingAreas.begin(), m_trackingAreas.end(), same);
    if (copies != m_trackingAreas.end()) {
        ++copies->count;
        return;
    }
    m_trackingAreas.append({area, 1});
    ViewWatch::instance().tracker().areaAdded(*this, area);
}

void ViewInterface::removeTrackingArea(const TrackingAreaRef &area)
{
    const auto same = [&](const CountedArea &counted) { return area && saySame(*counted.area, *area); };
    const auto copies = std::find_if(m_trackingAreas.begin(), m_trackingAreas.end(), same);
    if (copies == m_trackingAreas.end() || --copies->count > 0)
        return;
    ViewWatch::instance().tracker().areaRemoved(*this, copies->area);
    m_trackingAreas.erase(copies);
}

QList<TrackingAreaRef> ViewInterface::trackingAreas() const
{
    QList<TrackingAreaRef> areas;
    for (const CountedArea &counted : m_trackingAreas)
        areas.append(QList<TrackingAreaRef>(counted.count, counted.area));
    return areas;
}

bool ViewInterface::hasTrackingArea(const TrackingAreaRef &area) const
{
    return std::any_of(m_trackingAreas.begin(), m_trackingAreas.end(),
        [&](const CountedArea &counted) { return counted.area == area; });
}

void ViewInterface::updateTrackingAreas() { }

} // namespace kx

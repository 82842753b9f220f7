// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/TrackingArea.h>

namespace kx {

TrackingArea::TrackingArea(const QRectF &rect, TrackingOptions options, ViewInterface *owner, const QVariant &userInfo)
    : m_rect(rect)
    , m_options(options)
    , m_owner(owner)
    , m_userInfo(userInfo)
{
}

} // namespace kx

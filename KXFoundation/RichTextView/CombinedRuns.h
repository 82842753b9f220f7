// SPDX-License-Identifier: MIT
#pragma once

#include <KXFoundation/Platform/UI/AttributedString.h>
#include <KXFoundation/RichTextView/_KXAttributedItem.h>

#include <QtCore/QList>

#include <memory>

/// The runs of a rich text view as one text, and a record of each, in run order.
struct CombinedRuns {
    kx::AttributedString text;
    QList<_KXAttributedItem> items;
};

/// Also wraps the images of the runs' attachments. Runs that are none are left out.
[[nodiscard]] CombinedRuns combined(const QList<std::shared_ptr<KXAttributedString>> &runs);

/// The location after a run. Locations are counted in 32 bits, which wrap around.
[[nodiscard]] constexpr qint32 locationAfter(qint32 location, quint64 length)
{
    return qint32(quint32(location) + quint32(length));
}

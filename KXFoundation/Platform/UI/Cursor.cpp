// SPDX-License-Identifier: MIT
#include <KXFoundation/Platform/UI/Cursor.h>

#include <KXFoundation/Platform/UI/ViewWatch.h>

namespace kx {

void Cursor::set(const QCursor &cursor)
{
    if (ViewWatch *watch = ViewWatch::existing())
        watch->tracker().cursor().set(cursor);
}

void Cursor::reset()
{
    if (ViewWatch *watch = ViewWatch::existing())
        watch->tracker().cursor().reset();
}

QCursor Cursor::current()
{
    ViewWatch *watch = ViewWatch::existing();
    return watch ? watch->tracker().cursor().current() : QCursor();
}

} // namespace kx

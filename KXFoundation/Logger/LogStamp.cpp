// SPDX-License-Identifier: MIT
#include "LogStamp.h"

#include <KXFoundation/Platform/Core/Terminal.h>
#include <KXFoundation/Platform/Core/TimeZone.h>

#include <QtCore/QDateTime>

#include <algorithm>
#include <chrono>
#include <ctime>

namespace {

void putTwoDigits(char16_t *out, int value)
{
    out[0] = char16_t(u'0' + value / 10);
    out[1] = char16_t(u'0' + value % 10);
}

} // namespace

LocalTime LocalTime::now()
{
    return at(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()).time_since_epoch().count());
}

LocalTime LocalTime::at(qint64 secondsSinceEpoch)
{
    const QDateTime moment = QDateTime::fromSecsSinceEpoch(secondsSinceEpoch);
    const QTime time = moment.time();
    LocalTime local;
    moment.date().getDate(&local.year, &local.month, &local.dayOfMonth);
    local.hour = time.hour();
    local.minute = time.minute();
    local.second = time.second();
    return local;
}

QString LocalTime::day() const
{
    char16_t text[] = u"-00-00";
    putTwoDigits(text + 1, month);
    putTwoDigits(text + 4, dayOfMonth);
    return QString::number(year).rightJustified(4, u'0') + QStringView(text, 6);
}

QString LocalTime::timeOfDay() const
{
    char16_t text[] = u"00-00-00";
    putTwoDigits(text, hour);
    putTwoDigits(text + 3, minute);
    putTwoDigits(text + 6, second);
    return QString(reinterpret_cast<const QChar *>(text), 8);
}

const LogStamp &LogStamp::now()
{
    static constinit thread_local LogStamp stamp;
    // Right up to the clock tick, milliseconds ago: reading the exact time would be a tenth of the cost of a line.
    const qint64 second = std::time(nullptr);
    const quint64 zone = kx::timeZoneMark();
    if (stamp.second == second && stamp.zone == zone)
        return stamp;

    const LocalTime local = LocalTime::at(second);
    stamp.second = second;
    stamp.zone = kx::timeZoneMark(); // reading the calendar may have brought a new zone into force
    stamp.terminal = kx::standardOutputIsTerminal();
    std::copy_n(u"[00-00 00:00:00] ", stamp.text.size(), stamp.text.begin());
    putTwoDigits(&stamp.text[1], local.month);
    putTwoDigits(&stamp.text[4], local.dayOfMonth);
    putTwoDigits(&stamp.text[7], local.hour);
    putTwoDigits(&stamp.text[10], local.minute);
    putTwoDigits(&stamp.text[13], local.second);
    return stamp;
}

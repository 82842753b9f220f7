// SPDX-License-Identifier: MIT
#include "ReadAhead.h"

#include <QtCore/QByteArray>

#include <algorithm>

namespace {

constexpr qint64 pieceInBytes = 1 << 20; // a few milliseconds, at the worst, for each new position

} // namespace

void ReadAhead::open(const QString &path)
{
    m_file.close();
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        m_file.close();
}

double ReadAhead::advance(double position, double duration)
{
    if (!m_file.isOpen() || m_file.size() == 0 || duration <= 0)
        return 0;
    const double wanted = std::min(1.0, (position + seconds) / duration);
    const qint64 missing = qint64(wanted * double(m_file.size())) - m_file.pos();
    if (missing > 0)
        (void)m_file.read(std::min(missing, pieceInBytes));
    return double(m_file.pos()) / double(m_file.size()) * duration;
}

// SPDX-License-Identifier: MIT
#include "InputLines.h"

#include <QtCore/QSocketNotifier>

#include <array>
#include <utility>

#include <unistd.h>

InputLines::InputLines()
{
    connect(new QSocketNotifier(STDIN_FILENO, QSocketNotifier::Read, this), &QSocketNotifier::activated, this,
        &InputLines::read);
}

void InputLines::read()
{
    std::array<char, 4096> piece;
    const auto count = ::read(STDIN_FILENO, piece.data(), piece.size());
    if (count <= 0) {
        findChild<QSocketNotifier *>()->setEnabled(false);
        pass(std::exchange(m_rest, {}));
        Q_EMIT ended();
        return;
    }
    m_rest.append(piece.data(), count);
    for (qsizetype end = m_rest.indexOf('\n'); end >= 0; end = m_rest.indexOf('\n')) {
        const QByteArray text = m_rest.first(end);
        m_rest.remove(0, end + 1);
        pass(text);
    }
}

void InputLines::pass(const QByteArray &text)
{
    const QString trimmed = QString::fromUtf8(text).trimmed();
    if (!trimmed.isEmpty())
        Q_EMIT line(trimmed);
}

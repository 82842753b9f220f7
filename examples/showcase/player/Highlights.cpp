// SPDX-License-Identifier: MIT
#include "Highlights.h"

#include "Player.h"

#include <KXFoundation/CustomComponent/PNProgressIndicator.h>

#include <algorithm>
#include <array>
#include <utility>

Highlights::Highlights(PNProgressIndicator &bar, Player &player, QObject *parent)
    : QObject(parent)
    , m_bar(bar)
    , m_player(player)
{
    m_bar.setStarClipEndingAdvance(0.5); // 1.5 seconds before the end
    m_bar.onStarClipDurationWillEnd([this](qint32 index, PNProgressIndicator *) { clipWillEnd(index); });
    m_bar.onStarClipDurationDidEnd([this](qint32 index, PNProgressIndicator *) { clipDidEnd(index); });
    connect(&m_player, &Player::durationChanged, this, [this] { setOn(false); });
    connect(&m_player, &Player::positionChanged, this, &Highlights::forgetWhenPlayedAgain);
}

bool Highlights::isOn() const
{
    return m_bar.isStarMode();
}

void Highlights::setOn(bool on)
{
    m_announced = m_ended = -1;
    if (on) {
        choose(m_player.duration());
        m_bar.switch2StarMode(m_starts, m_ends);
        const auto next = std::upper_bound(m_ends.begin(), m_ends.end(), m_player.position());
        goTo(next == m_ends.end() ? 0 : next - m_ends.begin());
    } else {
        m_bar.reset2NormalMode();
    }
    Q_EMIT onChanged(on);
}

// A player gets these from its server. Here they are always in the same parts of a clip.
void Highlights::choose(double duration)
{
    constexpr std::array<std::pair<double, double>, 3> parts{{{0.1, 0.25}, {0.45, 0.6}, {0.8, 0.92}}};
    m_starts.clear();
    m_ends.clear();
    for (const auto &[start, end] : parts) {
        m_starts.append(start * duration);
        m_ends.append(end * duration);
    }
}

// The bar repeats its notices at every position that they are true for.
void Highlights::clipWillEnd(qint32 index)
{
    if (std::exchange(m_announced, index) != index)
        Q_EMIT willEnd(index);
}

void Highlights::clipDidEnd(qint32 index)
{
    if (std::exchange(m_ended, index) == index)
        return;
    Q_EMIT didEnd(index);
    if (index + 1 < count())
        goTo(index + 1);
    else
        setOn(false);
}

void Highlights::forgetWhenPlayedAgain(double position)
{
    for (int *told : {&m_announced, &m_ended}) {
        if (*told >= 0 && position < m_ends.value(*told) - 2)
            *told = -1;
    }
}

void Highlights::goTo(qsizetype index)
{
    m_player.seek(m_starts.at(index));
}

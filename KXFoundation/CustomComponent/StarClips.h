// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QList>

#include <limits>

/// Follows the played position through the highlighted clips of a playback bar and tells when the clip that is being
/// played is about to end and has ended. Positions are in the units of the bar's values; clip bounds are read as 32-bit
/// floats.
class StarClips {
public:
    /// Past the last clip's end, the current clip ends here.
    static constexpr double never = std::numeric_limits<double>::max();

    /// Star mode with these clips. The lists may differ in length.
    void start(const QList<double> &starts, const QList<double> &ends, double playedValue);
    /// Forgets the clips. Deliberate: the current index stays as it was.
    void stop();

    [[nodiscard]] bool isOn() const { return m_on; }
    [[nodiscard]] const QList<double> &starts() const { return m_starts; }
    [[nodiscard]] const QList<double> &ends() const { return m_ends; }
    /// The clip that is being played, or the next one; -1 past the last, and before the first start().
    [[nodiscard]] qint32 currentIndex() const { return m_currentIndex; }
    [[nodiscard]] double lastEnd() const { return m_lastEnd; }
    [[nodiscard]] double currentEnd() const { return m_currentEnd; }

    /// Finds the current clip anew when the position has left it.
    void follow(double playedValue);
    // Whether a notice is due at a position, which is then being followed. Each one is due again at every position
    // inside its window, and both windows may overlap.

    /// From `advance` + 1 before the current clip's end up to it.
    [[nodiscard]] bool isAboutToEnd(double playedValue, double advance) const;
    /// From 0.8 before the current clip's end on; 1.2 after it, there is another clip or none.
    [[nodiscard]] bool hasEnded(double playedValue) const;

private:
    void findCurrent(double playedValue);

    QList<double> m_starts;
    QList<double> m_ends;
    qint32 m_currentIndex = -1;
    double m_lastEnd = 0;
    double m_currentEnd = 0;
    bool m_on = false;
};

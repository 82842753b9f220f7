// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>

class Player;
class PNProgressIndicator;

/// Plays the best parts of a clip only: the bar's star mode tells when one is over, and the player goes on to the next.
class Highlights : public QObject {
    Q_OBJECT
public:
    /// Both must outlive the highlights.
    Highlights(PNProgressIndicator &bar, Player &player, QObject *parent = nullptr);

    [[nodiscard]] bool isOn() const;
    /// Shows the highlights on the bar and goes to the first one that is not over yet, or back to the whole clip.
    void setOn(bool on);
    [[nodiscard]] qsizetype count() const { return m_starts.size(); }

Q_SIGNALS:
    void onChanged(bool on);
    /// A highlight, counted from 0, is about to end, and has ended. Once for each time that it is played.
    void willEnd(int index);
    void didEnd(int index);

private:
    void choose(double duration);
    void clipWillEnd(qint32 index);
    void clipDidEnd(qint32 index);
    void forgetWhenPlayedAgain(double position);
    void goTo(qsizetype index);

    PNProgressIndicator &m_bar;
    Player &m_player;
    QList<double> m_starts;
    QList<double> m_ends;
    int m_announced = -1; // the highlight whose end was announced last
    int m_ended = -1;
};

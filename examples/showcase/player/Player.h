// SPDX-License-Identifier: MIT
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtMultimedia/QMediaDevices>
#include <QtMultimedia/QMediaPlayer>

#include <memory>

class QAudioOutput;
class QVideoSink;

/// Plays one file at a time, with sound where there is a device for it. Times are seconds.
class Player : public QObject {
    Q_OBJECT
public:
    /// Frames go to `sink`, which must outlive the player.
    explicit Player(QVideoSink &sink, QObject *parent = nullptr);
    ~Player() override;

    /// Plays from the beginning.
    void open(const QString &path);
    void setPlaying(bool playing);
    [[nodiscard]] bool isPlaying() const;
    /// At the end, playing begins anew.
    void togglePlaying();
    void seek(double seconds);
    [[nodiscard]] double position() const;
    [[nodiscard]] double duration() const;

    /// 0 to 1.
    void setVolume(double volume);
    [[nodiscard]] double volume() const { return m_volume; }
    void setMuted(bool muted);
    [[nodiscard]] bool isMuted() const { return m_muted; }

Q_SIGNALS:
    void positionChanged(double seconds);
    void durationChanged(double seconds);
    void playingChanged(bool playing);
    void reachedEnd();
    void failed(const QString &reason);

private:
    void connectToDevice();
    void applyVolume();

    QMediaDevices m_devices;
    std::unique_ptr<QAudioOutput> m_audio; // null without a device
    QMediaPlayer m_player; // goes before what it plays to
    double m_volume = 0.6;
    bool m_muted = false;
};

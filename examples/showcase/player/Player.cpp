// SPDX-License-Identifier: MIT
#include "Player.h"

#include <KXFoundation/Logger/KXLogger.h>

#include <QtCore/QUrl>
#include <QtMultimedia/QAudioDevice>
#include <QtMultimedia/QAudioOutput>
#include <QtMultimedia/QVideoSink>

#include <algorithm>

Player::Player(QVideoSink &sink, QObject *parent)
    : QObject(parent)
{
    m_player.setVideoSink(&sink);
    connectToDevice();
    connect(&m_devices, &QMediaDevices::audioOutputsChanged, this, &Player::connectToDevice);
    connect(&m_player, &QMediaPlayer::positionChanged, this, [this] { Q_EMIT positionChanged(position()); });
    connect(&m_player, &QMediaPlayer::durationChanged, this, [this] { Q_EMIT durationChanged(duration()); });
    connect(&m_player, &QMediaPlayer::playbackStateChanged, this, [this] { Q_EMIT playingChanged(isPlaying()); });
    connect(&m_player, &QMediaPlayer::mediaStatusChanged, this, [this](QMediaPlayer::MediaStatus status) {
        if (status == QMediaPlayer::EndOfMedia)
            Q_EMIT reachedEnd();
    });
    connect(&m_player, &QMediaPlayer::errorOccurred, this, [this](QMediaPlayer::Error, const QString &reason) {
        KXLogger::sharedLogger().writeLogFormat(2, "player", "%@: %@", m_player.source(), reason);
        Q_EMIT failed(reason);
    });
}

Player::~Player() = default;

void Player::open(const QString &path)
{
    m_player.setSource(QUrl::fromLocalFile(path));
    m_player.play();
}

void Player::setPlaying(bool playing)
{
    if (playing)
        m_player.play();
    else
        m_player.pause();
}

bool Player::isPlaying() const
{
    return m_player.playbackState() == QMediaPlayer::PlayingState;
}

void Player::togglePlaying()
{
    setPlaying(!isPlaying());
}

void Player::seek(double seconds)
{
    m_player.setPosition(qint64(std::clamp(seconds, 0.0, std::max(0.0, duration())) * 1000));
}

double Player::position() const
{
    return double(m_player.position()) / 1000;
}

double Player::duration() const
{
    return double(m_player.duration()) / 1000;
}

void Player::setVolume(double volume)
{
    m_volume = volume;
    applyVolume();
}

void Player::setMuted(bool muted)
{
    m_muted = muted;
    applyVolume();
}

// Qt 6.4 crashes in an audio output without a device, and plays well without any output, by the system's clock.
void Player::connectToDevice()
{
    const bool hasDevice = !QMediaDevices::defaultAudioOutput().isNull();
    if (hasDevice == bool(m_audio))
        return;
    m_player.setAudioOutput(nullptr);
    m_audio = hasDevice ? std::make_unique<QAudioOutput>() : nullptr;
    m_player.setAudioOutput(m_audio.get());
    applyVolume();
    KXLogger::sharedLogger().writeLogFormat(1, "player", hasDevice ? "sound" : "no sound: no audio device");
}

void Player::applyVolume()
{
    if (!m_audio)
        return;
    m_audio->setVolume(float(m_volume));
    m_audio->setMuted(m_muted);
}

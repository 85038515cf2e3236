#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QMediaPlayer;
class QAudioOutput;

namespace orvel {

// Plays one sound file at a time. An unplayable file is silent, never an error.
class AdhanPlayer : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)

public:
    explicit AdhanPlayer(QObject *parent = nullptr);
    ~AdhanPlayer() override;

    bool isPlaying() const { return isPlaying_; }
    // Whether a player is held (playing or not yet replaced).
    bool hasPlayer() const;

    void play(const QString &path, double volume);
    void stop();
    // Changes the running player's volume at once.
    void setVolume(double volume);

    // Whether the file can be decoded: the player reaches the loaded state within a short wait.
    static bool canDecode(const QString &path);

signals:
    void isPlayingChanged(bool playing);

private:
    // One verdict of the media backend on the file.
    static bool probe(const QString &path);
    void setPlaying(bool playing);
    // Playback ended or the file was rejected: drop the player and go idle.
    void finish();
    void releasePlayer();

    std::unique_ptr<QMediaPlayer> player_;
    std::unique_ptr<QAudioOutput> output_;
    bool isPlaying_ = false;
};

} // namespace orvel

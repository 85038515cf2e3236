#include "AdhanPlayer.h"

#include <QAudioOutput>
#include <QEventLoop>
#include <QFileInfo>
#include <QMediaPlayer>
#include <QMimeDatabase>
#include <QTimer>
#include <QUrl>

#include <algorithm>
#include <chrono>

namespace orvel {

namespace {

// A local file is probed in well under a second; the limit only guards against a backend
// that never answers, so the settings window cannot hang on an import.
constexpr std::chrono::milliseconds decodeWait{5000};

// A backend that is merely slow (a busy machine) has not said no: the file's contents decide.
bool looksLikeAudio(const QString &path)
{
    return QMimeDatabase().mimeTypeForFile(path, QMimeDatabase::MatchContent).name().startsWith(QLatin1String("audio/"));
}

// Qt 6.4 on Linux ships an FFmpeg and a GStreamer backend. The FFmpeg one crashes when no sound
// server runs, so GStreamer is chosen unless the environment names a backend. Qt reads the
// variable once, when the first media object is created.
void preferWorkingBackend()
{
    if (!qEnvironmentVariableIsSet("QT_MEDIA_BACKEND"))
        qputenv("QT_MEDIA_BACKEND", "gstreamer");
}

float clampedVolume(double volume)
{
    if (!(volume > 0)) // also NaN
        return 0.0f;
    return static_cast<float>(std::min(volume, 1.0));
}

bool isReadableFile(const QString &path)
{
    const QFileInfo info(path);
    return info.isFile() && info.isReadable();
}

QUrl localUrl(const QString &path)
{
    return QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
}

} // namespace

AdhanPlayer::AdhanPlayer(QObject *parent)
    : QObject(parent)
{
    preferWorkingBackend();
}

AdhanPlayer::~AdhanPlayer()
{
    // Torn down explicitly so that no signal of a dying player reaches this half-destroyed object.
    if (player_) {
        player_->disconnect(this);
        player_->stop();
    }
    player_.reset();
    output_.reset();
}

bool AdhanPlayer::hasPlayer() const
{
    return player_ != nullptr;
}

void AdhanPlayer::play(const QString &path, double volume)
{
    stop();
    if (!isReadableFile(path))
        return;

    releasePlayer();
    preferWorkingBackend();
    player_ = std::make_unique<QMediaPlayer>();
    output_ = std::make_unique<QAudioOutput>();
    output_->setVolume(clampedVolume(volume));
    player_->setAudioOutput(output_.get());

    connect(player_.get(), &QMediaPlayer::mediaStatusChanged, this,
            [this](QMediaPlayer::MediaStatus status) {
                if (status == QMediaPlayer::EndOfMedia || status == QMediaPlayer::InvalidMedia)
                    finish();
            });
    connect(player_.get(), &QMediaPlayer::errorOccurred, this, [this] { finish(); });

    // The file loads asynchronously: it counts as playing from here and falls back to idle when
    // the backend rejects it.
    player_->setSource(localUrl(path));
    if (player_) // a backend may reject the file while the source is set
        player_->play();
    setPlaying(player_ != nullptr);
}

void AdhanPlayer::stop()
{
    if (player_)
        player_->stop();
    setPlaying(false);
}

void AdhanPlayer::setVolume(double volume)
{
    if (output_)
        output_->setVolume(clampedVolume(volume));
}

bool AdhanPlayer::canDecode(const QString &path)
{
    if (!isReadableFile(path))
        return false;
    // On a busy machine the GStreamer backend now and then refuses a file it plays a moment
    // later; a file whose contents say it is sound is asked about twice before it is refused.
    return probe(path) || (looksLikeAudio(path) && probe(path));
}

bool AdhanPlayer::probe(const QString &path)
{
    preferWorkingBackend();
    QMediaPlayer player;
    if (!player.isAvailable())
        return false;

    // A local loop waits for the backend's verdict. User input stays queued meanwhile, so
    // nothing else can start while the caller waits.
    QEventLoop loop;
    bool settled = false;
    bool decodable = false;
    const auto settle = [&](bool result) {
        settled = true;
        decodable = result;
        loop.quit();
    };
    const auto onStatus = [&](QMediaPlayer::MediaStatus status) {
        switch (status) {
        case QMediaPlayer::LoadedMedia:
        case QMediaPlayer::BufferingMedia:
        case QMediaPlayer::BufferedMedia:
            settle(player.hasAudio());
            break;
        case QMediaPlayer::InvalidMedia:
            settle(false);
            break;
        default:
            break;
        }
    };
    connect(&player, &QMediaPlayer::mediaStatusChanged, &loop, onStatus);
    connect(&player, &QMediaPlayer::errorOccurred, &loop, [&] { settle(false); });
    QTimer::singleShot(decodeWait, &loop, [&] { settle(looksLikeAudio(path)); });

    player.setSource(localUrl(path));
    if (!settled)
        onStatus(player.mediaStatus());
    if (!settled)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    player.disconnect(&loop);
    return decodable;
}

void AdhanPlayer::setPlaying(bool playing)
{
    if (isPlaying_ == playing)
        return;
    isPlaying_ = playing;
    emit isPlayingChanged(playing);
}

void AdhanPlayer::finish()
{
    releasePlayer();
    setPlaying(false);
}

// Called from the player's own signals too, so the objects go on the next turn of the loop.
void AdhanPlayer::releasePlayer()
{
    if (!player_)
        return;
    player_->disconnect(this);
    player_->stop();
    QMediaPlayer *player = player_.release();
    if (QAudioOutput *output = output_.release())
        output->setParent(player); // outlives the player's own teardown
    player->deleteLater();
}

} // namespace orvel

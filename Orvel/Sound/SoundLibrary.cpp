#include "SoundLibrary.h"

#include "AdhanPlayer.h"
#include "ChimeSynth.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

namespace orvel::SoundLibrary {

namespace {

constexpr int chimeSampleRate = 44100;
const QString chimeFileName = QStringLiteral("chime.wav");
const QString customBaseName = QStringLiteral("custom");

// Set once, before any sound is looked up (tests, snapshot runs).
QString &folderOverride()
{
    static QString path;
    return path;
}

QString defaultFolder()
{
    // The XDG data home on Linux, Application Support on macOS, the local AppData on Windows.
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return QDir(base).filePath(QStringLiteral("Orvel/Sounds"));
}

bool isCustomEntry(const QFileInfo &info)
{
    return info.completeBaseName() == customBaseName;
}

QFileInfoList customEntries()
{
    const QDir dir(folder());
    if (!dir.exists())
        return {};
    QFileInfoList found;
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QFileInfo &info : entries) {
        if (isCustomEntry(info))
            found.append(info);
    }
    return found;
}

// "Ezan.MP3" gives "mp3"; a name without an extension (or a dot file) gives "m4a".
QString storedExtension(const QFileInfo &source)
{
    const QString suffix = source.suffix().toLower();
    if (suffix.isEmpty() || source.completeBaseName().isEmpty())
        return QStringLiteral("m4a");
    return suffix;
}

bool writeChime(const QString &path)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    const std::vector<uint8_t> bytes = ChimeSynth::wav(chimeSampleRate);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const auto size = static_cast<qint64>(bytes.size());
    if (file.write(reinterpret_cast<const char *>(bytes.data()), size) != size) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

SoundLibrary::ImportResult failure(const QString &message)
{
    return {QString(), message};
}

} // namespace

QString folder()
{
    const QString &path = folderOverride();
    return path.isEmpty() ? defaultFolder() : path;
}

void setFolder(const QString &path)
{
    folderOverride() = path;
}

std::optional<QString> chimePath()
{
    const QString path = QDir(folder()).filePath(chimeFileName);
    // An empty file cannot be the chime: treat it like a missing one.
    if (QFileInfo(path).size() == 0)
        writeChime(path);
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    return path;
}

std::optional<QString> customPath()
{
    const QFileInfoList entries = customEntries();
    if (entries.isEmpty())
        return std::nullopt;
    return entries.first().absoluteFilePath();
}

std::optional<QString> messagePath()
{
    for (const char *extension : {".oga", ".ogg", ".wav"}) {
        const QString name = QStringLiteral("sounds/freedesktop/stereo/message-new-instant%1").arg(QLatin1StringView(extension));
        const QString file = QStandardPaths::locate(QStandardPaths::GenericDataLocation, name);
        if (!file.isEmpty())
            return file;
    }
    return std::nullopt;
}

ImportResult importCustom(const QString &sourcePath)
{
    const QFileInfo source(sourcePath);
    const QString name = source.fileName();
    if (!source.isFile() || !source.isReadable())
        return failure(QStringLiteral("“%1” bulunamadı ya da okunamıyor.").arg(name));
    // Waits at most a few seconds for the media backend; see AdhanPlayer::canDecode.
    if (!AdhanPlayer::canDecode(source.absoluteFilePath()))
        return failure(QStringLiteral("Bu dosya çalınamıyor: “%1”. Desteklenen bir ses dosyası "
                                      "seçin (MP3, M4A, WAV, AIFF, OGG, FLAC).")
                           .arg(name));

    const QDir dir(folder());
    if (!dir.mkpath(QStringLiteral(".")))
        return failure(QStringLiteral("Ses klasörü oluşturulamadı: %1")
                           .arg(QDir::toNativeSeparators(dir.absolutePath())));

    // Copy under a temporary name first, so a failed copy keeps the earlier sound.
    const QString pending = dir.filePath(QStringLiteral(".import.partial"));
    QFile::remove(pending);
    if (!QFile::copy(source.absoluteFilePath(), pending)) {
        QFile::remove(pending);
        return failure(QStringLiteral("“%1” ses klasörüne kopyalanamadı. Diskte yer ve yazma "
                                      "izni olup olmadığını denetleyin.")
                           .arg(name));
    }
    for (const QFileInfo &earlier : customEntries())
        QFile::remove(earlier.absoluteFilePath());
    const QString destination = dir.filePath(customBaseName + u'.' + storedExtension(source));
    if (!QFile::rename(pending, destination)) {
        QFile::remove(pending);
        return failure(QStringLiteral("“%1” ses klasörüne kopyalanamadı.").arg(name));
    }
    // Copies keep the source's permissions; the stored sound must stay replaceable.
    QFile::setPermissions(destination, QFile::permissions(destination) | QFileDevice::WriteOwner);
    return {name, QString()};
}

} // namespace orvel::SoundLibrary

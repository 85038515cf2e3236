#pragma once

#include "AdhanPlayer.h"
#include "ChimeSynth.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QFile>
#include <QMediaPlayer>
#include <QString>
#include <QTest>

#include <ostream>
#include <random>

// Readable failure messages for QString values.
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace orvel::test {

inline QByteArray chimeBytes()
{
    const std::vector<uint8_t> bytes = ChimeSynth::wav(44100);
    return QByteArray(reinterpret_cast<const char *>(bytes.data()),
                      static_cast<qsizetype>(bytes.size()));
}

inline QByteArray noiseBytes()
{
    std::mt19937 random(7);
    QByteArray bytes(20000, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Whether Qt found a media backend at all; the player is created after AdhanPlayer chose one.
inline bool mediaBackendAvailable()
{
    const AdhanPlayer chooser;
    return QMediaPlayer().isAvailable();
}

template <typename Condition>
bool waitFor(Condition condition, int milliseconds = 15000)
{
    const QDeadlineTimer deadline(milliseconds);
    while (!condition() && !deadline.hasExpired())
        QTest::qWait(20);
    return condition();
}

} // namespace orvel::test

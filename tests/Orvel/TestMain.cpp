#include "Gazetteer.h"
#include "TimeZone.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryDir>

#include <clocale>
#include <cstdlib>

// The zone, the locale and the per-user folders are pinned so that "the machine's zone" means
// the same everywhere and nothing touches the user's own settings, cache, sounds or autostart.
int main(int argc, char **argv)
{
    setenv("TZ", "Europe/Istanbul", 1);
    orvel::TimeZone::redetectCurrent();
    setenv("LC_ALL", "C.UTF-8", 1);
    std::setlocale(LC_ALL, "C.UTF-8");
    orvel::Gazetteer::speakTurkish();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toUtf8());

    QApplication app(argc, argv);
    // Tests open and close windows; the last one closing must not end the run.
    app.setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

#include <gtest/gtest.h>

#include <QGuiApplication>

#include <cstdlib>
#include <unicode/timezone.h>

// The machine's zone is pinned, since quiet hours are judged in it.
int main(int argc, char **argv)
{
    setenv("TZ", "Europe/Istanbul", 1);
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Europe/Istanbul"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

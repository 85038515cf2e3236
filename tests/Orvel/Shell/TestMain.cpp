#include <gtest/gtest.h>

#include <QApplication>

#include <cstdlib>
#include <unicode/timezone.h>

int main(int argc, char **argv)
{
    setenv("TZ", "Europe/Istanbul", 1);
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Europe/Istanbul"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

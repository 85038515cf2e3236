#include <gtest/gtest.h>

#include <QGuiApplication>

#include <clocale>
#include <cstdlib>

// Images are drawn on the offscreen platform so that no display is needed.
int main(int argc, char **argv)
{
    setenv("TZ", "Europe/Istanbul", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    std::setlocale(LC_ALL, "C.UTF-8");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

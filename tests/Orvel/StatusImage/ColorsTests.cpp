#include "Colors.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPalette>

using namespace orvel;

namespace {

void setDesktopWindowColor(const QColor &window, const QColor &text)
{
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    QGuiApplication::setPalette(palette);
}

} // namespace

TEST(Colors, AppearanceFollowsTheDesktopUnlessForced)
{
    const QPalette original = QGuiApplication::palette();

    setDesktopWindowColor(QColor(30, 30, 32), QColor(240, 240, 240));
    EXPECT_EQ(Colors::current(), Appearance::dark);
    EXPECT_EQ(Colors::label(Appearance::dark), QColor(240, 240, 240));
    Colors::forceAppearance(Appearance::light);
    EXPECT_EQ(Colors::current(), Appearance::light);
    EXPECT_LT(Colors::label(Appearance::light).lightness(), 64);
    EXPECT_EQ(Colors::systemOrange(), Colors::systemOrange(Appearance::light));

    Colors::forceAppearance(std::nullopt);
    setDesktopWindowColor(QColor(246, 245, 244), QColor(20, 20, 20));
    EXPECT_EQ(Colors::current(), Appearance::light);
    Colors::forceAppearance(Appearance::dark);
    EXPECT_EQ(Colors::current(), Appearance::dark);
    EXPECT_GT(Colors::label(Appearance::dark).lightness(), 192);
    EXPECT_EQ(Colors::systemOrange(), Colors::systemOrange(Appearance::dark));

    Colors::forceAppearance(std::nullopt);
    QGuiApplication::setPalette(original);
}

TEST(Colors, DarkVariantsAreBrighterAndThePillIsFixed)
{
    EXPECT_EQ(Colors::orvelPill(), Colors::orvel(Appearance::light));
    EXPECT_GT(Colors::orvel(Appearance::dark).lightness(), Colors::orvel(Appearance::light).lightness());
    EXPECT_GT(Colors::kerahat(Appearance::dark).lightness(), Colors::kerahat(Appearance::light).lightness());
    EXPECT_EQ(Colors::orvel(Appearance::light).alpha(), 255);
    EXPECT_EQ(Colors::kerahat(Appearance::dark).alpha(), 255);
}

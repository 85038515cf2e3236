#include "AppModelTestSupport.h"

#include "OrvelFormat.h"

#include <gtest/gtest.h>

namespace orvel::test {
namespace {

using StatusImage::Style;

const QString moon = QStringLiteral("moon");
const QString kerahatSuffix = QStringLiteral(", kerahat vakti");

int widthOf(const std::optional<QString> &text, Style style = Style::normal, bool dot = false)
{
    return StatusImage::make(moon, text, style, dot).image.width();
}

struct LoadedModel {
    explicit LoadedModel(Instant start)
        : harness(start)
        , model(harness.model())
    {
        EXPECT_TRUE(reloadAndWait(*model));
    }
    void set(Prayer prayer, double secondsAfter)
    {
        harness.clock->set((*model->today())[prayer] + secondsAfter);
        model->tick();
    }
    int width(MenuBarStyle style, bool forceDot = false) const
    {
        return model->menuBarImage(style, forceDot).image.width();
    }

    Harness harness;
    std::unique_ptr<AppModel> model;
};

TEST(MenuBarTitle, WithoutADayTheCrescentStandsAlone)
{
    Harness harness(at(2026, 6, 10, 10, 0));
    const auto model = harness.model();
    const StatusImage::Image image = model->menuBarImage(MenuBarStyle::nameAndRemaining, false);
    EXPECT_TRUE(image.isTemplate);
    EXPECT_EQ(image.image.width(), widthOf(std::nullopt));
    EXPECT_EQ(model->accessibilityLabel(), QStringLiteral("Orvel"));
}

TEST(MenuBarTitle, TheEntryMinuteShowsThePillExceptAtGunes)
{
    LoadedModel loaded(at(2026, 6, 10, 4, 0));
    AppModel &model = *loaded.model;
    model.setKerahatMenuDot(false);

    loaded.set(Prayer::ogle, 10);
    for (const MenuBarStyle style : MenuBarStyle::allCases) {
        const StatusImage::Image image = model.menuBarImage(style, false);
        EXPECT_FALSE(image.isTemplate);
        EXPECT_EQ(image.image.width(), widthOf(QStringLiteral("Öğle vakti"), Style::adhan));
    }
    loaded.set(Prayer::ogle, 60);
    EXPECT_TRUE(model.menuBarImage(MenuBarStyle::iconOnly, false).isTemplate);

    loaded.set(Prayer::gunes, 10);
    const StatusImage::Image atSunrise = model.menuBarImage(MenuBarStyle::iconOnly, false);
    EXPECT_TRUE(atSunrise.isTemplate);
    EXPECT_EQ(atSunrise.image.width(), widthOf(std::nullopt));
}

TEST(MenuBarTitle, KerahatDotFollowsTheSettingButTheLabelAlwaysSaysIt)
{
    LoadedModel loaded(at(2026, 6, 10, 4, 0));
    AppModel &model = *loaded.model;
    loaded.set(Prayer::gunes, 10 * 60); // inside the sunrise interval
    const std::optional<QString> title = QStringLiteral("Öğle ") + QString::fromStdString(OrvelFormat::compact(
        model.status()->minutesRemaining));

    EXPECT_FALSE(model.menuBarImage(MenuBarStyle::nameAndRemaining, false).isTemplate);
    EXPECT_EQ(loaded.width(MenuBarStyle::nameAndRemaining), widthOf(title, Style::normal, true));
    EXPECT_TRUE(model.accessibilityLabel().endsWith(kerahatSuffix));

    model.setKerahatMenuDot(false);
    EXPECT_TRUE(model.menuBarImage(MenuBarStyle::nameAndRemaining, false).isTemplate);
    EXPECT_EQ(loaded.width(MenuBarStyle::nameAndRemaining), widthOf(title));
    EXPECT_TRUE(model.accessibilityLabel().endsWith(kerahatSuffix));
    EXPECT_EQ(loaded.width(MenuBarStyle::nameAndRemaining, true), widthOf(title, Style::normal, true));

    model.setKerahatMenuDot(true);
    model.setShowKerahat(false);
    EXPECT_TRUE(model.menuBarImage(MenuBarStyle::nameAndRemaining, false).isTemplate);
    EXPECT_FALSE(model.accessibilityLabel().endsWith(kerahatSuffix));

    model.setShowKerahat(true);
    loaded.set(Prayer::ogle, 30 * 60); // between istiva and sunset
    EXPECT_TRUE(model.menuBarImage(MenuBarStyle::nameAndRemaining, false).isTemplate);
    EXPECT_FALSE(model.accessibilityLabel().endsWith(kerahatSuffix));
}

TEST(MenuBarTitle, TimeLeftBeforeAksamAndIftar)
{
    const QString spoken = QStringLiteral(" 1 saat 15 dakika kaldı");
    {
        LoadedModel loaded(at(2026, 6, 10, 4, 0));
        loaded.set(Prayer::aksam, -75 * 60);
        const QString clock =
            QString::fromStdString(OrvelFormat::time((*loaded.model->today())[Prayer::aksam], TimeZone::current()));
        EXPECT_EQ(loaded.width(MenuBarStyle::nameAndRemaining), widthOf(QStringLiteral("Akşam 1:15")));
        EXPECT_EQ(loaded.width(MenuBarStyle::remaining), widthOf(QStringLiteral("1:15")));
        EXPECT_EQ(loaded.width(MenuBarStyle::nameAndTime), widthOf(QStringLiteral("Akşam ") + clock));
        EXPECT_EQ(loaded.width(MenuBarStyle::iconOnly), widthOf(std::nullopt));
        EXPECT_EQ(loaded.model->accessibilityLabel(),
                  QString::fromUtf8(Prayer(Prayer::aksam).countdownPhrase(false)) + spoken);
    }

    ASSERT_NE(widthOf(QStringLiteral("İftar 1:15")), widthOf(QStringLiteral("Akşam 1:15")));
    LoadedModel ramadan(at(2026, 3, 10, 4, 0));
    ASSERT_TRUE(ramadan.model->isRamadanToday());
    ramadan.set(Prayer::aksam, -75 * 60);
    EXPECT_EQ(ramadan.width(MenuBarStyle::nameAndRemaining), widthOf(QStringLiteral("İftar 1:15")));
    EXPECT_EQ(ramadan.model->accessibilityLabel(),
              QString::fromUtf8(Prayer(Prayer::aksam).countdownPhrase(true)) + spoken);

    ramadan.model->setRamadanMode(false);
    EXPECT_EQ(ramadan.width(MenuBarStyle::nameAndRemaining), widthOf(QStringLiteral("Akşam 1:15")));
    EXPECT_FALSE(ramadan.model->ramadanDay());
}

} // namespace
} // namespace orvel::test

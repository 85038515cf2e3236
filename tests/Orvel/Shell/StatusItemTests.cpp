#include "ShellTestSupport.h"
#include "TrayPicture.h"
#include "TrayStatusItem.h"

#include "PrayerCalculator.h"

#include <gtest/gtest.h>

using namespace orvel;

namespace {

int pixelsNear(const QImage &image, const QColor &color)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() > 200 && std::abs(pixel.red() - color.red()) < 12
                && std::abs(pixel.green() - color.green()) < 12 && std::abs(pixel.blue() - color.blue()) < 12)
                ++count;
        }
    return count;
}

} // namespace

TEST(TrayPicture, StatesAreDrawnIntoTheSquare)
{
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        const QImage normal = TrayPicture::image(TrayPicture::State::normal, appearance, 44);
        const QImage kerahat = TrayPicture::image(TrayPicture::State::kerahat, appearance, 44);
        const QImage entry = TrayPicture::image(TrayPicture::State::entry, appearance, 44);
        EXPECT_EQ(normal.size(), QSize(44, 44));
        EXPECT_EQ(pixelsNear(normal, Colors::systemOrange(appearance)), 0);
        EXPECT_EQ(pixelsNear(normal, Colors::orvelPill()), 0);
        EXPECT_GT(pixelsNear(kerahat, Colors::systemOrange(appearance)), 40);
        EXPECT_GT(pixelsNear(entry, Colors::orvelPill()), 400);
        EXPECT_GT(pixelsNear(entry, Qt::white), 40);
    }
    // The crescent is dark on a light desktop and light on a dark one.
    const QImage light = TrayPicture::image(TrayPicture::State::normal, Appearance::light, 44);
    const QImage dark = TrayPicture::image(TrayPicture::State::normal, Appearance::dark, 44);
    EXPECT_GT(pixelsNear(light, QColor(30, 30, 30)), 40);
    EXPECT_GT(pixelsNear(dark, QColor(245, 245, 245)), 40);
}

// The item follows the model minute by minute but draws a new picture only when it changes.
TEST(TrayStatusItem, FollowsTheModelAndRedrawsOnlyOnChange)
{
    const Location place = Snapshot::uskudar();
    const DayTimes day = PrayerCalculator::times(DayKey{2026, 3, 10}, place, CalculationMethod::diyanet);
    test::OfflineModel offline(day[Prayer::ogle] + 3600);
    AppModel &model = *offline.model;
    ASSERT_TRUE(model.today().has_value());
    Colors::forceAppearance(Appearance::light);

    TrayStatusItem item;
    item.update(model);
    EXPECT_EQ(item.redrawCount(), 1);
    EXPECT_EQ(TrayPicture::state(model), TrayPicture::State::normal);
    EXPECT_EQ(item.toolTip(), model.accessibilityLabel());
    EXPECT_NE(item.toolTip(), "Orvel");

    item.update(model);
    offline.moveTo(day[Prayer::ogle] + 3660);
    item.update(model);
    EXPECT_EQ(item.redrawCount(), 1);
    EXPECT_EQ(item.toolTip(), model.accessibilityLabel());

    offline.moveTo(day[Prayer::ogle] + 20);
    item.update(model);
    EXPECT_EQ(TrayPicture::state(model), TrayPicture::State::entry);
    EXPECT_EQ(item.redrawCount(), 2);

    offline.moveTo(day[Prayer::gunes] + 600);
    item.update(model);
    EXPECT_EQ(TrayPicture::state(model), TrayPicture::State::kerahat);
    EXPECT_EQ(item.redrawCount(), 3);
    EXPECT_TRUE(item.toolTip().endsWith(", kerahat vakti"));
    offline.moveTo(day[Prayer::gunes] + 660);
    item.update(model);
    EXPECT_EQ(item.redrawCount(), 3);

    // Without the dot setting the picture goes back to the plain crescent; the label still says it.
    model.setKerahatMenuDot(false);
    item.update(model);
    EXPECT_EQ(TrayPicture::state(model), TrayPicture::State::normal);
    EXPECT_EQ(item.redrawCount(), 4);
    EXPECT_TRUE(item.toolTip().endsWith(", kerahat vakti"));

    // A darker desktop asks for a light crescent.
    Colors::forceAppearance(Appearance::dark);
    item.update(model);
    EXPECT_EQ(item.redrawCount(), 5);
    Colors::forceAppearance(std::nullopt);
}

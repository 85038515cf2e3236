#include "Symbols.h"

#include <gtest/gtest.h>

#include <QtMath>

using namespace orvel;

namespace {

// Every name the status item and the windows ask for.
const char *const usedNames[] = {
    "moon", "moon.stars", "moon.stars.fill", "sunrise", "sun.max", "sun.haze", "sunset",
    "mappin.and.ellipse", "calendar", "arrow.clockwise", "wifi.slash", "gearshape", "power", "bell",
    "bell.slash", "bell.badge", "hourglass", "speaker.fill", "speaker.wave.2.fill", "speaker.wave.3.fill",
    "chevron.left", "chevron.right", "location", "slider.horizontal.3", "info.circle",
    "exclamationmark.triangle.fill", "magnifyingglass", "checkmark", "xmark", "clock",
};

struct Ink {
    int pixels = 0;
    QRect bounds;
};

Ink inkOf(const QImage &image)
{
    Ink ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) > 0) {
                ++ink.pixels;
                ink.bounds |= QRect(x, y, 1, 1);
            }
    return ink;
}

} // namespace

TEST(Symbols, EveryUsedNameDrawsInsideItsBox)
{
    for (const char *name : usedNames) {
        const QString symbol = QString::fromLatin1(name);
        ASSERT_TRUE(Symbols::has(symbol)) << name;
        EXPECT_TRUE(Symbols::names().contains(symbol)) << name;
        for (const qreal ratio : {1.0, 2.0}) {
            const QSizeF size = Symbols::size(symbol, 13);
            const QImage alone = Symbols::image(symbol, 13, Qt::black, ratio);
            EXPECT_GE(alone.width(), size.width() * ratio - 1e-6) << name;
            EXPECT_LT(alone.width(), size.width() * ratio + 1) << name;
            EXPECT_EQ(alone.height(), qRound(size.height() * ratio)) << name;

            // Drawn with a margin around it, so ink that spills out of the box is seen.
            const int margin = 8;
            const QRect box(QPoint(margin, margin), alone.size());
            QImage canvas(box.width() + 2 * margin, box.height() + 2 * margin, QImage::Format_ARGB32_Premultiplied);
            canvas.fill(Qt::transparent);
            QPainter painter(&canvas);
            painter.translate(margin, margin);
            painter.scale(ratio, ratio);
            Symbols::draw(painter, symbol, QPointF(0, 0), 13, Qt::black);
            painter.end();

            const Ink ink = inkOf(canvas);
            EXPECT_GT(ink.pixels, 20 * ratio * ratio) << name << " at " << ratio;
            EXPECT_TRUE(box.contains(ink.bounds)) << name << " at " << ratio;
            EXPECT_EQ(alone.devicePixelRatio(), ratio);
        }
    }
}

TEST(Symbols, SizeScalesWithThePointSizeAndUnknownNamesAreEmpty)
{
    const QSizeF at13 = Symbols::size(QStringLiteral("moon"), 13);
    const QSizeF at26 = Symbols::size(QStringLiteral("moon"), 26);
    EXPECT_DOUBLE_EQ(at26.width(), 2 * at13.width());
    EXPECT_DOUBLE_EQ(at26.height(), 2 * at13.height());
    EXPECT_GE(at13.height(), 13);
    EXPECT_LE(at13.height(), 22);
    EXPECT_LT(Symbols::size(QStringLiteral("chevron.left"), 13).width(), Symbols::size(QStringLiteral("sun.max"), 13).width());

    EXPECT_FALSE(Symbols::has(QStringLiteral("moon.and.sixpence")));
    EXPECT_TRUE(Symbols::size(QStringLiteral("moon.and.sixpence"), 13).isEmpty());
    EXPECT_TRUE(Symbols::image(QStringLiteral("moon.and.sixpence"), 13, Qt::black).isNull());
}

TEST(Symbols, DrawingIsTintedAndIndependentOfFractionalPlacement)
{
    const QImage red = Symbols::image(QStringLiteral("bell"), 13, QColor(255, 0, 0), 2);
    for (int y = 0; y < red.height(); ++y)
        for (int x = 0; x < red.width(); ++x) {
            const QRgb pixel = qUnpremultiply(red.pixel(x, y));
            if (qAlpha(pixel) > 32) {
                ASSERT_LE(qGreen(pixel), 8);
                ASSERT_GE(qRed(pixel), 247);
            }
        }

    // A symbol placed between pixels is drawn exactly as on the nearest pixel.
    auto drawnAt = [](QPointF origin) {
        QImage canvas(40, 40, QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        Symbols::draw(painter, QStringLiteral("sunrise"), origin, 13, Qt::black);
        return canvas;
    };
    EXPECT_EQ(drawnAt(QPointF(5.3, 6.2)), drawnAt(QPointF(5, 6)));
}

#include "Colors.h"
#include "StatusImage.h"
#include "Symbols.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>

#include <functional>

using namespace orvel;
using StatusImage::Style;

namespace {

const QString moon = QStringLiteral("moon");
const QString unknown = QStringLiteral("no.such.symbol");
const QString countdown = QStringLiteral("Akşam 1:15");
const QString entry = QStringLiteral("Öğle vakti");

qreal symbolWidth() { return Symbols::size(moon, 13).width(); }
qreal textWidth(const QString &text) { return QFontMetricsF(StatusImage::font()).horizontalAdvance(text); }

// The image is the smallest whole number of points that holds its parts.
void expectWidthHolds(const StatusImage::Image &made, qreal parts, const char *what)
{
    const int width = made.pointSize().width();
    EXPECT_GE(width, parts - 1e-6) << what;
    EXPECT_LT(width, parts + 1) << what;
    EXPECT_EQ(made.pointSize().height(), 22) << what;
}

bool near(QRgb pixel, const QColor &color, int tolerance = 24)
{
    return qAlpha(pixel) == 255 && std::abs(qRed(pixel) - color.red()) <= tolerance
        && std::abs(qGreen(pixel) - color.green()) <= tolerance && std::abs(qBlue(pixel) - color.blue()) <= tolerance;
}

int countPixels(const QImage &image, const QRect &area, const std::function<bool(QRgb)> &test)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            count += test(image.pixel(x, y)) ? 1 : 0;
    return count;
}

} // namespace

TEST(StatusImage, WidthIsTheSumOfItsParts)
{
    const qreal symbol = symbolWidth();
    const qreal text = textWidth(countdown);
    ASSERT_GT(symbol, 10);
    ASSERT_GT(text, 40);

    const auto alone = StatusImage::make(moon, std::nullopt, Style::normal, false);
    EXPECT_EQ(alone.pointSize().width(), std::ceil(symbol - 1e-6));
    expectWidthHolds(alone, symbol, "symbol alone");
    expectWidthHolds(StatusImage::make(unknown, countdown, Style::normal, false), text, "unknown symbol: no gap");
    expectWidthHolds(StatusImage::make(moon, countdown, Style::normal, false), symbol + 5 + text, "symbol and text");
    expectWidthHolds(StatusImage::make(moon, countdown, Style::normal, true), symbol + 5 + text + 4 + 6, "with the dot");
    expectWidthHolds(StatusImage::make(unknown, countdown, Style::normal, true), text + 4 + 6, "dot, no symbol");
    expectWidthHolds(StatusImage::make(moon, entry, Style::adhan, false), 7 + symbol + 5 + textWidth(entry) + 7, "pill");
}

TEST(StatusImage, DevicePixelRatioScalesPixelsNotPoints)
{
    const auto one = StatusImage::make(moon, countdown, Style::normal, true, 1.0);
    const auto two = StatusImage::make(moon, countdown, Style::normal, true, 2.0);
    EXPECT_EQ(one.image.height(), 22);
    EXPECT_EQ(two.image.height(), 44);
    EXPECT_EQ(two.image.devicePixelRatio(), 2.0);
    EXPECT_EQ(two.image.width(), 2 * one.image.width());
    EXPECT_EQ(two.pointSize(), one.pointSize());
    EXPECT_EQ(one.image.format(), QImage::Format_ARGB32_Premultiplied);
}

TEST(StatusImage, TemplateOnlyWithoutDotAndPill)
{
    EXPECT_TRUE(StatusImage::make(moon, std::nullopt, Style::normal, false).isTemplate);
    EXPECT_TRUE(StatusImage::make(moon, countdown, Style::normal, false).isTemplate);
    EXPECT_FALSE(StatusImage::make(moon, countdown, Style::normal, true).isTemplate);
    EXPECT_FALSE(StatusImage::make(moon, entry, Style::adhan, false).isTemplate);

    // A template is pure black on transparency: the panel decides its colour.
    for (const qreal ratio : {1.0, 2.0}) {
        const QImage image = StatusImage::make(moon, countdown, Style::normal, false, ratio).image;
        const QRect all = image.rect();
        EXPECT_EQ(countPixels(image, all, [](QRgb p) { return qAlpha(p) > 0 && (qRed(p) | qGreen(p) | qBlue(p)) != 0; }), 0);
        EXPECT_GT(countPixels(image, all, [](QRgb p) { return qAlpha(p) > 128; }), 60 * ratio * ratio);
    }
}

TEST(StatusImage, PillDotAndTextColours)
{
    for (const qreal ratio : {1.0, 2.0}) {
        const auto pill = StatusImage::make(moon, entry, Style::adhan, false, ratio);
        const QImage &p = pill.image;
        const int r = int(ratio);
        // The left padding is pill green from top inset to bottom inset; the rows above are clear.
        EXPECT_TRUE(near(p.pixel(3 * r, 11 * r), Colors::orvelPill()));
        EXPECT_TRUE(near(p.pixel(p.width() - 3 * r, 11 * r), Colors::orvelPill()));
        EXPECT_EQ(qAlpha(p.pixel(p.width() / 2, 0)), 0);
        EXPECT_EQ(qAlpha(p.pixel(p.width() / 2, 21 * r)), 0);
        EXPECT_TRUE(near(p.pixel(p.width() / 2, 3 * r), Colors::orvelPill()));
        // The crescent and the words are white on the pill.
        const QRect symbolArea(7 * r, 0, qFloor(symbolWidth() * ratio), 22 * r);
        EXPECT_GT(countPixels(p, symbolArea, [](QRgb px) { return near(px, Qt::white, 8); }), 8 * r * r);
        const QRect textArea(symbolArea.right() + 5 * r, 0, qFloor(textWidth(entry) * ratio), 22 * r);
        EXPECT_GT(countPixels(p, textArea, [](QRgb px) { return near(px, Qt::white, 8); }), 30 * r * r);
    }

    for (const auto appearance : {Appearance::light, Appearance::dark}) {
        Colors::forceAppearance(appearance);
        const QImage d = StatusImage::make(moon, countdown, Style::normal, true, 2.0).image;
        const QColor orange = Colors::systemOrange(appearance);
        // The dot fills the last 6 points, centred on the middle row; nothing else is orange.
        EXPECT_TRUE(near(d.pixel(d.width() - 6, 22), orange));
        EXPECT_EQ(qAlpha(d.pixel(d.width() - 6, 12)), 0);
        const QRect beforeDot(0, 0, d.width() - 2 * 10, 44);
        EXPECT_EQ(countPixels(d, beforeDot, [&](QRgb px) { return near(px, orange, 40); }), 0);
        // The text follows the appearance's label colour.
        const bool dark = appearance == Appearance::dark;
        EXPECT_GT(countPixels(d, beforeDot, [&](QRgb px) {
                      return qAlpha(px) > 128 && (dark ? qGray(px) > 160 : qGray(px) < 40);
                  }),
                  100);
    }
    Colors::forceAppearance(std::nullopt);
}

TEST(StatusImage, SymbolAndTextAreVerticallyCentred)
{
    // Ink rows of the crescent alone and of the text alone sit around the middle of 22 points.
    auto inkRows = [](const QImage &image) {
        int top = image.height(), bottom = -1;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qAlpha(image.pixel(x, y)) > 64) {
                    top = std::min(top, y);
                    bottom = std::max(bottom, y);
                }
        return std::pair{top, bottom};
    };
    const auto [symbolTop, symbolBottom] = inkRows(StatusImage::make(moon, std::nullopt, Style::normal, false, 2).image);
    EXPECT_NEAR((symbolTop + symbolBottom) / 2.0, 22, 3);
    const auto [textTop, textBottom] = inkRows(StatusImage::make(unknown, QStringLiteral("Akşam"), Style::normal, false, 2).image);
    EXPECT_NEAR((textTop + textBottom) / 2.0, 22, 4);
    EXPECT_GT(textTop, 2);
    EXPECT_LT(textBottom, 42);
}

TEST(StatusImage, TintedRecoloursEveryDrawnPixelAndKeepsCoverage)
{
    const auto source = StatusImage::make(moon, countdown, Style::normal, false, 2);
    const QColor tint(200, 40, 90);
    const auto tinted = source.tinted(tint);
    ASSERT_EQ(tinted.image.size(), source.image.size());
    EXPECT_EQ(tinted.image.devicePixelRatio(), 2.0);
    EXPECT_EQ(tinted.isTemplate, source.isTemplate);
    int opaque = 0;
    for (int y = 0; y < source.image.height(); ++y)
        for (int x = 0; x < source.image.width(); ++x) {
            const QRgb before = source.image.pixel(x, y);
            const QRgb after = tinted.image.pixel(x, y);
            ASSERT_NEAR(qAlpha(after), qAlpha(before), 1) << x << "," << y;
            if (qAlpha(before) == 255) {
                ++opaque;
                ASSERT_EQ(QColor(after), tint) << x << "," << y;
            }
        }
    EXPECT_GT(opaque, 100);
}

TEST(StatusImage, FontHasEqualDigitsAtThirteenPoints)
{
    const QFont font = StatusImage::font();
    EXPECT_EQ(font.pixelSize(), 13);
    EXPECT_EQ(font.weight(), QFont::Medium);
    const QFontMetricsF metrics(font);
    const qreal zero = metrics.horizontalAdvance(QLatin1Char('0'));
    for (char digit = '1'; digit <= '9'; ++digit)
        EXPECT_NEAR(metrics.horizontalAdvance(QLatin1Char(digit)), zero, 0.01) << digit;
    // Text widths therefore do not change as the countdown ticks.
    EXPECT_DOUBLE_EQ(textWidth(QStringLiteral("Akşam 1:11")), textWidth(QStringLiteral("Akşam 8:40")));
}

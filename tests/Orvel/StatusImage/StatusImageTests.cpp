#include "Colors.h"
#include "StatusImage.h"
#include "Symbols.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPalette>
#include <QtMath>

#include <functional>
#include <tuple>

using namespace orvel;
using StatusImage::Style;

namespace {

const QString moon = QStringLiteral("moon");
const QString unknown = QStringLiteral("no.such.symbol");
const QString countdown = QStringLiteral("Akşam 1:15");
const QString entry = QStringLiteral("Öğle vakti");

qreal textWidth(const QString &text) { return QFontMetricsF(StatusImage::font()).horizontalAdvance(text); }

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

TEST(StatusImage, WidthIsTheSumOfItsPartsRoundedUpToWholePoints)
{
    const qreal symbol = Symbols::size(moon, 13).width();
    const qreal text = textWidth(countdown);
    const struct {
        const char *what;
        StatusImage::Image made;
        qreal parts;
    } cases[] = {
        {"symbol alone", StatusImage::make(moon, std::nullopt, Style::normal, false), symbol},
        {"unknown symbol: no gap", StatusImage::make(unknown, countdown, Style::normal, false), text},
        {"symbol and text", StatusImage::make(moon, countdown, Style::normal, false), symbol + 5 + text},
        {"with the dot", StatusImage::make(moon, countdown, Style::normal, true), symbol + 5 + text + 4 + 6},
        {"dot, no symbol", StatusImage::make(unknown, countdown, Style::normal, true), text + 4 + 6},
        {"pill", StatusImage::make(moon, entry, Style::adhan, false), 7 + symbol + 5 + textWidth(entry) + 7},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.made.pointSize(), QSize(std::ceil(c.parts - 1e-6), 22));
    }
    // Digits of equal width: the image does not jitter as the countdown ticks.
    for (const char *ticked : {"Akşam 2:36", "Akşam 9:03", "Akşam 8:47"})
        EXPECT_DOUBLE_EQ(textWidth(QString::fromUtf8(ticked)), text) << ticked;
    // The device pixel ratio scales the pixels, never the points.
    const auto two = StatusImage::make(moon, countdown, Style::normal, true, 2.0);
    EXPECT_EQ(two.image.size(), 2 * cases[3].made.image.size());
    EXPECT_EQ(two.pointSize(), cases[3].made.pointSize());
}

TEST(StatusImage, TemplateOnlyWithoutDotAndPill)
{
    EXPECT_TRUE(StatusImage::make(moon, std::nullopt, Style::normal, false).isTemplate);
    EXPECT_TRUE(StatusImage::make(moon, countdown, Style::normal, false).isTemplate);
    EXPECT_FALSE(StatusImage::make(moon, countdown, Style::normal, true).isTemplate);
    EXPECT_FALSE(StatusImage::make(moon, entry, Style::adhan, false).isTemplate);

    // A template is pure black on transparency: the panel decides its colour.
    const QImage image = StatusImage::make(moon, countdown, Style::normal, false, 2.0).image;
    EXPECT_EQ(countPixels(image, image.rect(), [](QRgb p) { return qAlpha(p) > 0 && (p & 0xffffff) != 0; }), 0);
    EXPECT_GT(countPixels(image, image.rect(), [](QRgb p) { return qAlpha(p) > 128; }), 240);
}

TEST(StatusImage, PillDotAndTextColours)
{
    const QImage p = StatusImage::make(moon, entry, Style::adhan, false, 2.0).image;
    // Pill green inside its insets, clear above and below; the crescent and the words white on it.
    EXPECT_TRUE(near(p.pixel(6, 22), Colors::orvelPill()));
    EXPECT_TRUE(near(p.pixel(p.width() / 2, 6), Colors::orvelPill()));
    EXPECT_EQ(qAlpha(p.pixel(p.width() / 2, 0)), 0);
    EXPECT_EQ(qAlpha(p.pixel(p.width() / 2, 42)), 0);
    const int symbolEnd = 14 + qFloor(Symbols::size(moon, 13).width() * 2);
    const auto white = [](QRgb px) { return near(px, Qt::white, 8); };
    EXPECT_GT(countPixels(p, QRect(14, 0, symbolEnd - 14, 44), white), 32);
    EXPECT_GT(countPixels(p, QRect(symbolEnd + 10, 0, qFloor(textWidth(entry) * 2), 44), white), 120);

    for (const auto appearance : {Appearance::light, Appearance::dark}) {
        Colors::forceAppearance(appearance);
        const QImage d = StatusImage::make(moon, countdown, Style::normal, true, 2.0).image;
        const QColor orange = Colors::systemOrange(appearance);
        // The dot fills the last 6 points, centred on the middle row; nothing else is orange.
        EXPECT_TRUE(near(d.pixel(d.width() - 6, 22), orange));
        EXPECT_EQ(qAlpha(d.pixel(d.width() - 6, 12)), 0);
        const QRect beforeDot(0, 0, d.width() - 20, 44);
        EXPECT_EQ(countPixels(d, beforeDot, [&](QRgb px) { return near(px, orange, 40); }), 0);
        const bool dark = appearance == Appearance::dark;
        EXPECT_GT(countPixels(d, beforeDot, [&](QRgb px) { return qAlpha(px) > 128 && (dark ? qGray(px) > 160 : qGray(px) < 40); }),
                  100) << "the text in the appearance's label colour";
    }
    Colors::forceAppearance(std::nullopt);
}

TEST(StatusImage, TintedRecoloursEveryDrawnPixelAndKeepsCoverage)
{
    const QImage before = StatusImage::make(moon, countdown, Style::normal, false, 2).image;
    const QColor tint(200, 40, 90);
    const QImage after = StatusImage::make(moon, countdown, Style::normal, false, 2).tinted(tint).image;
    ASSERT_EQ(after.size(), before.size());
    EXPECT_EQ(after.devicePixelRatio(), 2.0);
    for (int y = 0; y < before.height(); ++y)
        for (int x = 0; x < before.width(); ++x) {
            ASSERT_NEAR(qAlpha(after.pixel(x, y)), qAlpha(before.pixel(x, y)), 1) << x << "," << y;
            ASSERT_TRUE(qAlpha(before.pixel(x, y)) < 255 || QColor(after.pixel(x, y)) == tint) << x << "," << y;
        }
}

TEST(Colors, AppearanceFollowsTheDesktopUnlessForcedAndDarkIsBrighter)
{
    const QPalette original = QGuiApplication::palette();
    for (const auto &[window, text, desktop] : {std::tuple{QColor(30, 30, 32), QColor(240, 240, 240), Appearance::dark},
                                                std::tuple{QColor(246, 245, 244), QColor(20, 20, 20), Appearance::light}}) {
        QPalette palette = original;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QGuiApplication::setPalette(palette);
        EXPECT_EQ(Colors::current(), desktop);
        EXPECT_EQ(Colors::label(desktop), text) << "the desktop's own text colour";
        const Appearance forced = desktop == Appearance::dark ? Appearance::light : Appearance::dark;
        Colors::forceAppearance(forced);
        EXPECT_EQ(Colors::current(), forced);
        EXPECT_EQ(Colors::systemOrange(), Colors::systemOrange(forced));
        const int label = Colors::label(forced).lightness();
        EXPECT_TRUE(forced == Appearance::dark ? label > 192 : label < 64) << label;
        Colors::forceAppearance(std::nullopt);
    }
    QGuiApplication::setPalette(original);
    // Dark variants are brighter; the pill keeps its light green on any panel.
    EXPECT_GT(Colors::orvel(Appearance::dark).lightness(), Colors::orvel(Appearance::light).lightness());
    EXPECT_GT(Colors::kerahat(Appearance::dark).lightness(), Colors::kerahat(Appearance::light).lightness());
    EXPECT_EQ(Colors::orvelPill(), Colors::orvel(Appearance::light));
}

TEST(Symbols, EveryUsedNameDrawsCrisplyInsideItsBox)
{
    // Every name the status item and the windows ask for.
    for (const char *name : {"moon", "moon.stars", "moon.stars.fill", "sunrise", "sun.max", "sun.haze", "sunset",
                             "mappin.and.ellipse", "calendar", "arrow.clockwise", "wifi.slash", "gearshape", "power", "bell",
                             "bell.slash", "bell.badge", "hourglass", "speaker.fill", "speaker.wave.2.fill", "speaker.wave.3.fill",
                             "chevron.left", "chevron.right", "location", "slider.horizontal.3", "info.circle", "clock",
                             "exclamationmark.triangle.fill", "magnifyingglass", "checkmark", "xmark", "printer"}) {
        const QString symbol = QString::fromLatin1(name);
        ASSERT_TRUE(Symbols::has(symbol)) << name;
        for (const qreal ratio : {1.0, 2.0}) {
            SCOPED_TRACE(testing::Message() << name << " at " << ratio);
            const QSizeF size = Symbols::size(symbol, 13);
            const QImage alone = Symbols::image(symbol, 13, Qt::black, ratio);
            EXPECT_EQ(alone.width(), qCeil(size.width() * ratio - 1e-6));
            EXPECT_EQ(alone.height(), qRound(size.height() * ratio));
            EXPECT_EQ(alone.devicePixelRatio(), ratio);

            // Drawn with a margin around it, so ink that spills out of the box is seen.
            const int margin = 8;
            QImage canvas(alone.size() + QSize(2 * margin, 2 * margin), QImage::Format_ARGB32_Premultiplied);
            canvas.fill(Qt::transparent);
            QPainter painter(&canvas);
            painter.translate(margin, margin);
            painter.scale(ratio, ratio);
            Symbols::draw(painter, symbol, QPointF(0, 0), 13, Qt::black);
            painter.end();
            const auto inkIn = [&canvas](const QRect &area) { return countPixels(canvas, area, [](QRgb p) { return qAlpha(p) > 0; }); };
            const int ink = inkIn(canvas.rect());
            EXPECT_GT(ink, 20 * ratio * ratio);
            EXPECT_EQ(inkIn(QRect(QPoint(margin, margin), alone.size())), ink) << "no ink outside the box";
        }
    }
}

TEST(Symbols, SizeScalesWithThePointSizeAndUnknownNamesAreEmpty)
{
    EXPECT_EQ(Symbols::size(QStringLiteral("moon"), 26), 2 * Symbols::size(QStringLiteral("moon"), 13));
    EXPECT_DOUBLE_EQ(Symbols::size(QStringLiteral("moon"), 13).height(), 16) << "13 × 16/13";
    EXPECT_FALSE(Symbols::has(QStringLiteral("moon.and.sixpence")));
    EXPECT_TRUE(Symbols::image(QStringLiteral("moon.and.sixpence"), 13, Qt::black).isNull());
}

TEST(Symbols, DrawingIsTintedAndIndependentOfFractionalPlacement)
{
    const QImage red = Symbols::image(QStringLiteral("bell"), 13, QColor(255, 0, 0), 2);
    EXPECT_EQ(countPixels(red, red.rect(), [](QRgb p) {
                  p = qUnpremultiply(p);
                  return qAlpha(p) > 32 && (qGreen(p) > 8 || qRed(p) < 247);
              }), 0);

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

#include "Symbols.h"

#include <QPainterPathStroker>
#include <QTransform>
#include <QtMath>

#include <cmath>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

namespace orvel::Symbols {

namespace {

// Every symbol is designed on a grid 24 units high; its width follows from its ink plus a small
// side bearing. At a point size p the grid is p × 16/13 points high, so the tray's 13-point
// symbols sit in a 16-point box where 1.5 units make one pixel. Straight lines that matter lie
// on pixel centres there: horizontal ones at y = 0.75 + k × 1.5, vertical ones at x = k × 1.5
// (the box is shifted sideways to make that so).
constexpr qreal gridHeight = 24;
constexpr qreal boxPerPoint = 16.0 / 13.0;
constexpr qreal pixelUnits = 1.5;
constexpr qreal sideBearing = 1;
// Paths are built this many times larger: Qt's boolean path operations flatten curves, and at
// this scale the flattening stays far below a device pixel.
constexpr qreal buildScale = 100;
constexpr qreal stroke = 1.9; // the regular line weight, in grid units

struct Glyph {
    QPainterPath path; // in build units, left bearing at x = 0
    qreal width = 0;   // in grid units
};

QPainterPath toBuildUnits(const QPainterPath &path)
{
    return QTransform::fromScale(buildScale, buildScale).map(path);
}

QPainterPath strokeOutline(const QPainterPath &path, qreal width, Qt::PenCapStyle cap)
{
    QPainterPathStroker stroker;
    stroker.setWidth(width * buildScale);
    stroker.setCapStyle(cap);
    stroker.setJoinStyle(Qt::RoundJoin);
    return stroker.createStroke(toBuildUnits(path)).simplified();
}

// Collects one filled outline: strokes become areas, and everything is united or cut out, so a
// symbol is always drawn with a single fill.
class Builder {
public:
    Builder &fill(const QPainterPath &path)
    {
        add(toBuildUnits(path).simplified());
        return *this;
    }
    Builder &line(const QPainterPath &path, qreal width = stroke, Qt::PenCapStyle cap = Qt::RoundCap)
    {
        add(strokeOutline(path, width, cap));
        return *this;
    }
    Builder &fillWithin(const QPainterPath &path, const QPainterPath &clip)
    {
        add(toBuildUnits(path).intersected(toBuildUnits(clip)));
        return *this;
    }
    Builder &cut(const QPainterPath &path)
    {
        path_ = path_.subtracted(toBuildUnits(path));
        return *this;
    }
    Builder &cutLine(const QPainterPath &path, qreal width, Qt::PenCapStyle cap = Qt::RoundCap)
    {
        path_ = path_.subtracted(strokeOutline(path, width, cap));
        return *this;
    }
    Builder &add(const Builder &other)
    {
        add(other.path_);
        return *this;
    }

    Glyph glyph() const
    {
        const QRectF ink = path_.boundingRect();
        const qreal half = pixelUnits / 2;
        const qreal left = std::floor((ink.left() / buildScale - sideBearing - half) / pixelUnits) * pixelUnits + half;
        const qreal right = ink.right() / buildScale + sideBearing;
        Glyph glyph;
        glyph.path = path_.translated(-left * buildScale, 0);
        glyph.width = std::ceil((right - left) / pixelUnits) * pixelUnits;
        return glyph;
    }

private:
    void add(const QPainterPath &path) { path_ = path_.isEmpty() ? path : path_.united(path); }

    QPainterPath path_;
};

// Path primitives, in grid units. Angles are in degrees, counter-clockwise from three o'clock.

QPointF polar(QPointF centre, qreal radius, qreal degrees)
{
    const qreal a = qDegreesToRadians(degrees);
    return {centre.x() + radius * std::cos(a), centre.y() - radius * std::sin(a)};
}

QPainterPath circle(QPointF centre, qreal radius)
{
    QPainterPath path;
    path.addEllipse(centre, radius, radius);
    return path;
}

QPainterPath ellipse(QPointF centre, qreal rx, qreal ry)
{
    QPainterPath path;
    path.addEllipse(centre, rx, ry);
    return path;
}

QPainterPath polyline(std::initializer_list<QPointF> points, bool closed = false)
{
    QPainterPath path;
    for (const QPointF &p : points) {
        if (path.elementCount() == 0)
            path.moveTo(p);
        else
            path.lineTo(p);
    }
    if (closed)
        path.closeSubpath();
    return path;
}

QPainterPath segment(QPointF a, QPointF b) { return polyline({a, b}); }

QPainterPath arc(QPointF centre, qreal radius, qreal startDegrees, qreal sweepDegrees)
{
    const QRectF box(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    QPainterPath path;
    path.arcMoveTo(box, startDegrees);
    path.arcTo(box, startDegrees, sweepDegrees);
    return path;
}

QPainterPath roundedRect(const QRectF &rect, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

QPainterPath ray(QPointF centre, qreal from, qreal to, qreal degrees)
{
    return segment(polar(centre, from, degrees), polar(centre, to, degrees));
}

// A four-pointed sparkle with concave sides.
QPainterPath sparkle(QPointF c, qreal radius)
{
    const qreal k = radius * 0.16;
    QPainterPath path;
    path.moveTo(c.x(), c.y() - radius);
    path.quadTo(c.x() + k, c.y() - k, c.x() + radius, c.y());
    path.quadTo(c.x() + k, c.y() + k, c.x(), c.y() + radius);
    path.quadTo(c.x() - k, c.y() + k, c.x() - radius, c.y());
    path.quadTo(c.x() - k, c.y() - k, c.x(), c.y() - radius);
    path.closeSubpath();
    return path;
}

qreal normalized(qreal degrees)
{
    const qreal d = std::fmod(degrees, 360.0);
    return d < 0 ? d + 360 : d;
}

qreal angleOf(QPointF centre, QPointF p) { return qRadiansToDegrees(std::atan2(centre.y() - p.y(), p.x() - centre.x())); }

// Sweep from `from` to `to` that passes through `through` (positive: counter-clockwise).
qreal sweepThrough(qreal from, qreal to, qreal through)
{
    const qreal ccw = normalized(to - from);
    return normalized(through - from) < ccw ? ccw : ccw - 360;
}

// The crescent left when a disc (bite) is taken out of the moon's disc; its two arcs are exact.
QPainterPath crescent(QPointF moon, qreal radius, QPointF bite, qreal biteRadius)
{
    const QPointF axis = bite - moon;
    const qreal d = std::hypot(axis.x(), axis.y());
    const qreal a = (radius * radius - biteRadius * biteRadius + d * d) / (2 * d);
    const qreal h = std::sqrt(radius * radius - a * a);
    const QPointF mid = moon + axis * (a / d);
    const QPointF normal(-axis.y() / d, axis.x() / d);
    const QPointF tip1 = mid + normal * h;
    const QPointF tip2 = mid - normal * h;

    const qreal towardsBite = angleOf(moon, bite);
    const qreal outerFrom = angleOf(moon, tip1);
    const qreal outerSweep = sweepThrough(outerFrom, angleOf(moon, tip2), towardsBite + 180);
    const qreal innerFrom = angleOf(bite, tip2);
    const qreal innerSweep = sweepThrough(innerFrom, angleOf(bite, tip1), towardsBite + 180);

    const QRectF outerBox(moon.x() - radius, moon.y() - radius, 2 * radius, 2 * radius);
    const QRectF innerBox(bite.x() - biteRadius, bite.y() - biteRadius, 2 * biteRadius, 2 * biteRadius);
    QPainterPath path;
    path.arcMoveTo(outerBox, outerFrom);
    path.arcTo(outerBox, outerFrom, outerSweep);
    path.arcTo(innerBox, innerFrom, innerSweep);
    path.closeSubpath();
    return path;
}

// A slash from top left to bottom right, with a clear gap cut around it.
Builder &slashed(Builder &builder, QPointF from, QPointF to)
{
    const QPainterPath slash = segment(from, to);
    return builder.cutLine(slash, stroke + 3.0).line(slash);
}

// --- the symbols --------------------------------------------------------------------------

QPainterPath moonShape() { return crescent({11, 13}, 8.6, {17.2, 7.4}, 7.6); }
QPainterPath smallMoonShape() { return crescent({9.6, 14.6}, 7.2, {14.8, 9.8}, 6.3); }

Builder moon() { return Builder().line(moonShape()); }

Builder moonStars(bool filled)
{
    Builder b;
    if (filled)
        b.fill(smallMoonShape());
    b.line(smallMoonShape());
    return b.fill(sparkle({18.2, 4.6}, 3.6)).fill(sparkle({21.4, 11.2}, 2.4));
}

constexpr QPointF sunCentre{12, 12};

Builder sunMax()
{
    Builder b;
    b.line(circle(sunCentre, 4.3));
    for (int i = 0; i < 8; ++i)
        b.line(ray(sunCentre, 7.6, 10.1, i * 45.0));
    return b;
}

Builder sunHaze()
{
    const QPointF c{12, 12.75};
    Builder b;
    b.line(arc(c, 4.2, 0, 180));
    for (const qreal angle : {0.0, 45.0, 90.0, 135.0, 180.0})
        b.line(ray(c, 6.9, 9.0, angle));
    b.line(segment({7.8, c.y()}, {16.2, c.y()}));
    b.line(segment({3.0, 17.25}, {21.0, 17.25}));
    return b.line(segment({6.75, 21.75}, {17.25, 21.75}));
}

// A half sun on the horizon with an arrow above it; `rising` points the arrow up.
Builder horizonSun(bool rising)
{
    const QPointF c{12, 20.25};
    Builder b;
    b.line(segment({2.2, c.y()}, {21.8, c.y()}));
    b.line(arc(c, 4.6, 0, 180));
    for (const qreal angle : {20.0, 60.0, 120.0, 160.0})
        b.line(ray(c, 7.4, 9.6, angle));
    b.line(segment({12, 2.2}, {12, 10.4}));
    if (rising)
        b.line(polyline({{8.6, 5.6}, {12, 2.2}, {15.4, 5.6}}));
    else
        b.line(polyline({{8.6, 7.0}, {12, 10.4}, {15.4, 7.0}}));
    return b;
}

Builder mapPinAndEllipse()
{
    Builder b;
    b.line(ellipse({12, 19.3}, 8.6, 2.9), stroke * 0.9);
    b.cut(roundedRect({9.6, 14.6, 4.8, 4.7}, 0.5));
    b.line(circle({12, 7.6}, 4.9));
    return b.line(segment({12, 12.4}, {12, 19.3}));
}

Builder calendar()
{
    const QRectF page{3.0, 3.75, 18.0, 18.0};
    Builder b;
    b.line(roundedRect(page, 3.0));
    b.fillWithin(roundedRect(page, 3.0), polyline({{0, 0}, {24, 0}, {24, 9.0}, {0, 9.0}}, true));
    for (const qreal y : {12.75, 17.25})
        for (const qreal x : {7.5, 12.0, 16.5})
            b.fill(roundedRect({x - 1.2, y - 1.2, 2.4, 2.4}, 0.5));
    return b;
}

Builder arrowClockwise()
{
    const QPointF c{12, 13};
    Builder b;
    b.line(arc(c, 7.8, 90, 300));
    QPainterPath head = polyline({{16.9, 5.2}, {11.6, 1.4}, {11.6, 9.0}}, true);
    return b.fill(head).line(head, 1.0);
}

Builder wifi()
{
    const QPointF c{12, 19.2};
    Builder b;
    b.fill(circle(c, 1.9));
    for (const qreal radius : {5.4, 10.0, 14.6})
        b.line(arc(c, radius, 45, 90));
    return b;
}

Builder wifiSlash()
{
    Builder b = wifi();
    return slashed(b, {3.6, 2.8}, {20.4, 21.4});
}

Builder gear()
{
    const QPointF c{12, 12};
    Builder b;
    b.fill(circle(c, 7.4));
    for (int i = 0; i < 8; ++i) {
        QTransform turn;
        turn.translate(c.x(), c.y()).rotate(i * 45.0 + 22.5).translate(-c.x(), -c.y());
        b.fill(turn.map(roundedRect({c.x() - 1.75, c.y() - 10.4, 3.5, 4.6}, 0.9)));
    }
    return b.cut(circle(c, 3.3));
}

Builder power()
{
    const QPointF c{12, 13.2};
    return Builder().line(arc(c, 8.2, 128, 284)).line(segment({12, 2.4}, {12, 11.2}));
}

QPainterPath bellBody()
{
    QPainterPath path;
    path.moveTo(3.6, 17.25);
    path.cubicTo(5.6, 15.8, 6.2, 14.4, 6.2, 11.4);
    path.cubicTo(6.2, 7.2, 8.6, 4.6, 12, 4.6);
    path.cubicTo(15.4, 4.6, 17.8, 7.2, 17.8, 11.4);
    path.cubicTo(17.8, 14.4, 18.4, 15.8, 20.4, 17.25);
    path.closeSubpath();
    return path;
}

Builder bell()
{
    Builder b;
    b.line(bellBody());
    b.line(segment({12, 2.4}, {12, 4.6}));
    QPainterPath clapper;
    clapper.moveTo(9.4, 19.2);
    clapper.arcTo(QRectF(9.4, 16.6, 5.2, 5.2), 180, 180);
    clapper.closeSubpath();
    return b.fill(clapper);
}

Builder bellSlash()
{
    Builder b = bell();
    return slashed(b, {3.4, 2.6}, {20.6, 21.6});
}

Builder bellBadge()
{
    const QPointF badge{18.6, 5.0};
    return bell().cut(circle(badge, 5.2)).fill(circle(badge, 3.5));
}

Builder hourglass()
{
    Builder b;
    b.line(segment({5.0, 2.25}, {19.0, 2.25}), stroke * 1.05);
    b.line(segment({5.0, 21.75}, {19.0, 21.75}), stroke * 1.05);
    QPainterPath glass;
    glass.moveTo(7.2, 2.25);
    glass.cubicTo(7.2, 8.2, 10.6, 9.6, 10.6, 12);
    glass.cubicTo(10.6, 14.4, 7.2, 15.8, 7.2, 21.75);
    glass.moveTo(16.8, 2.25);
    glass.cubicTo(16.8, 8.2, 13.4, 9.6, 13.4, 12);
    glass.cubicTo(13.4, 14.4, 16.8, 15.8, 16.8, 21.75);
    b.line(glass, stroke * 0.9);
    QPainterPath sand = polyline({{9.2, 19.6}, {14.8, 19.6}, {12, 16.4}}, true);
    return b.fill(sand).line(sand, 1.2);
}

QPainterPath speakerShape() { return polyline({{3.2, 9.4}, {6.8, 9.4}, {12.0, 4.8}, {12.0, 19.2}, {6.8, 14.6}, {3.2, 14.6}}, true); }

Builder speakerFill() { return Builder().fill(speakerShape()).line(speakerShape(), 1.4); }

Builder speakerWaves(int waves)
{
    const QPointF c{11.2, 12};
    const qreal radii[] = {4.6, 8.2, 11.8};
    Builder b = speakerFill();
    for (int i = 0; i < waves; ++i)
        b.line(arc(c, radii[i], -42, 84));
    return b;
}

Builder speakerSlash(bool filled)
{
    Builder b = filled ? speakerFill() : Builder().line(speakerShape());
    return slashed(b, {3.2, 3.4}, {19.6, 20.6});
}

Builder chevron(bool left)
{
    return left ? Builder().line(polyline({{15.2, 4.2}, {7.6, 12}, {15.2, 19.8}}), stroke * 1.1)
                : Builder().line(polyline({{8.8, 4.2}, {16.4, 12}, {8.8, 19.8}}), stroke * 1.1);
}

QPainterPath navigationArrow() { return polyline({{20.4, 3.6}, {3.6, 11.0}, {12.4, 11.6}, {13.0, 20.4}}, true); }

Builder location(bool filled)
{
    Builder b;
    if (filled)
        b.fill(navigationArrow());
    return b.line(navigationArrow());
}

Builder sliders()
{
    Builder b;
    const std::pair<qreal, qreal> knobs[] = {{6.75, 15.0}, {12.75, 7.5}, {18.75, 13.5}};
    for (const auto &[y, x] : knobs) {
        b.line(segment({3.2, y}, {20.8, y}), stroke * 0.9);
        b.cut(circle({x, y}, 3.8));
        b.line(circle({x, y}, 2.6), stroke * 0.9);
    }
    return b;
}

Builder infoCircle()
{
    const QPointF c{12, 12};
    return Builder().line(circle(c, 9.6)).fill(circle({12, 7.5}, 1.35)).line(segment({12, 11.0}, {12, 16.8}), stroke * 1.05);
}

QPainterPath warningTriangle() { return polyline({{12, 3.6}, {21.6, 20.25}, {2.4, 20.25}}, true); }

Builder exclamationTriangle(bool filled)
{
    const QPainterPath mark = segment({12, 9.0}, {12, 13.6});
    const QPainterPath dot = circle({12, 16.8}, 1.3);
    if (filled)
        return Builder().fill(warningTriangle()).line(warningTriangle(), stroke * 1.2).cutLine(mark, stroke * 1.05).cut(dot);
    return Builder().line(warningTriangle()).line(mark, stroke * 1.05).fill(dot);
}

Builder magnifyingGlass()
{
    return Builder().line(circle({10.2, 10.2}, 6.6)).line(segment({15.2, 15.2}, {20.6, 20.6}), stroke * 1.3);
}

Builder checkmark() { return Builder().line(polyline({{4.6, 12.6}, {9.6, 18.2}, {19.4, 5.6}}), stroke * 1.1); }

Builder xmark()
{
    return Builder().line(segment({5.6, 5.6}, {18.4, 18.4}), stroke * 1.05).line(segment({18.4, 5.6}, {5.6, 18.4}), stroke * 1.05);
}

Builder playFill()
{
    const QPainterPath triangle = polyline({{6.4, 4.4}, {19.6, 12}, {6.4, 19.6}}, true);
    return Builder().fill(triangle).line(triangle, 2.0);
}

Builder stopFill() { return Builder().fill(roundedRect({5.0, 5.0, 14.0, 14.0}, 2.6)); }

Builder clock()
{
    return Builder().line(circle({12, 12}, 9.6)).line(polyline({{12, 6.4}, {12, 12}, {15.8, 14.4}}));
}

// A printer seen from the front: the paper going in at the top, the sheet coming out in front of
// the body, and the body's light.
Builder printer()
{
    const QPainterPath sheet = polyline({{6.75, 14.25}, {17.25, 14.25}, {17.25, 21.75}, {6.75, 21.75}}, true);
    Builder b;
    b.line(polyline({{6.75, 8.25}, {6.75, 2.25}, {17.25, 2.25}, {17.25, 8.25}}), stroke * 0.9);
    b.line(roundedRect({2.25, 8.25, 19.5, 9.75}, 2.6));
    b.cut(roundedRect({4.6, 12.4, 14.8, 11.2}, 1.0));
    b.line(sheet, stroke * 0.9);
    return b.fill(circle({17.6, 11.4}, 1.15));
}

using Maker = std::function<Builder()>;

// The recipes by name; an outline is built (path unions are slow) only when first drawn.
const std::map<QString, Maker> &makers()
{
    static const std::map<QString, Maker> recipes = [] {
        const std::vector<std::pair<const char *, Maker>> list = {
            {"moon", moon},
            {"moon.fill", [] { return Builder().fill(moonShape()).line(moonShape()); }},
            {"moon.stars", [] { return moonStars(false); }},
            {"moon.stars.fill", [] { return moonStars(true); }},
            {"sun.max", sunMax},
            {"sun.haze", sunHaze},
            {"sunrise", [] { return horizonSun(true); }},
            {"sunset", [] { return horizonSun(false); }},
            {"mappin.and.ellipse", mapPinAndEllipse},
            {"calendar", calendar},
            {"arrow.clockwise", arrowClockwise},
            {"wifi", wifi},
            {"wifi.slash", wifiSlash},
            {"gearshape", gear},
            {"power", power},
            {"bell", bell},
            {"bell.slash", bellSlash},
            {"bell.badge", bellBadge},
            {"hourglass", hourglass},
            {"speaker.fill", speakerFill},
            {"speaker.wave.1.fill", [] { return speakerWaves(1); }},
            {"speaker.wave.2.fill", [] { return speakerWaves(2); }},
            {"speaker.wave.3.fill", [] { return speakerWaves(3); }},
            {"speaker.slash", [] { return speakerSlash(false); }},
            {"speaker.slash.fill", [] { return speakerSlash(true); }},
            {"chevron.left", [] { return chevron(true); }},
            {"chevron.right", [] { return chevron(false); }},
            {"location", [] { return location(false); }},
            {"location.fill", [] { return location(true); }},
            {"slider.horizontal.3", sliders},
            {"info.circle", infoCircle},
            {"exclamationmark.triangle", [] { return exclamationTriangle(false); }},
            {"exclamationmark.triangle.fill", [] { return exclamationTriangle(true); }},
            {"magnifyingglass", magnifyingGlass},
            {"checkmark", checkmark},
            {"xmark", xmark},
            {"play.fill", playFill},
            {"stop.fill", stopFill},
            {"clock", clock},
            {"printer", printer},
        };
        std::map<QString, Maker> byName;
        for (const auto &[name, make] : list)
            byName.emplace(QString::fromLatin1(name), make);
        return byName;
    }();
    return recipes;
}

const Glyph *find(const QString &name)
{
    static std::mutex mutex;
    static std::map<QString, Glyph> built;
    const std::lock_guard lock(mutex);
    if (const auto it = built.find(name); it != built.end())
        return &it->second;
    const auto recipe = makers().find(name);
    if (recipe == makers().end())
        return nullptr;
    return &built.emplace(name, recipe->second().glyph()).first->second;
}

qreal unitFor(qreal pointSize) { return pointSize * boxPerPoint / gridHeight; }

// Whole device pixels for the origin keep straight edges sharp wherever the symbol is placed.
QPointF snappedToDevicePixels(const QPainter &painter, const QPointF &origin)
{
    const QTransform device = painter.deviceTransform();
    if (device.type() > QTransform::TxScale)
        return origin;
    const QPointF mapped = device.map(origin);
    return device.inverted().map(QPointF(std::round(mapped.x()), std::round(mapped.y())));
}

} // namespace

bool has(const QString &name) { return makers().contains(name); }

QStringList names()
{
    QStringList all;
    for (const auto &entry : makers())
        all.append(entry.first);
    return all;
}

QPainterPath outline(const QString &name, qreal pointSize)
{
    const Glyph *glyph = find(name);
    if (!glyph)
        return {};
    const qreal scale = unitFor(pointSize) / buildScale;
    return QTransform::fromScale(scale, scale).map(glyph->path);
}

QSizeF size(const QString &name, qreal pointSize)
{
    const Glyph *glyph = find(name);
    if (!glyph)
        return {};
    const qreal unit = unitFor(pointSize);
    return {glyph->width * unit, gridHeight * unit};
}

void draw(QPainter &painter, const QString &name, const QPointF &origin, qreal pointSize, const QColor &color)
{
    const Glyph *glyph = find(name);
    if (!glyph)
        return;
    const qreal scale = unitFor(pointSize) / buildScale;
    const QPointF at = snappedToDevicePixels(painter, origin);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(at);
    painter.scale(scale, scale);
    painter.fillPath(glyph->path, color);
    painter.restore();
}

QImage image(const QString &name, qreal pointSize, const QColor &color, qreal devicePixelRatio)
{
    if (!has(name))
        return {};
    const QSizeF points = size(name, pointSize);
    // Sizes are meant to be whole pixels at common scales; rounding noise must not add one.
    constexpr qreal noise = 1e-6;
    QImage result(qCeil(points.width() * devicePixelRatio - noise), qCeil(points.height() * devicePixelRatio - noise),
                  QImage::Format_ARGB32_Premultiplied);
    result.setDevicePixelRatio(devicePixelRatio);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    draw(painter, name, QPointF(0, 0), pointSize, color);
    return result;
}

} // namespace orvel::Symbols

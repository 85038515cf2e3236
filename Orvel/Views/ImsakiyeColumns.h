#pragma once

#include <QRectF>

#include <array>

namespace orvel {

// Where the timetable's columns lie across a row, so that the header's headings stand over the
// rows' values: the date, the Hijri date, then six equal time columns sharing what is left.
namespace ImsakiyeColumns {

constexpr qreal leadingPadding = 10;
constexpr qreal trailingPadding = 14;
constexpr qreal dateWidth = 104;
constexpr qreal hijriWidth = 140;
constexpr qreal timeMinimumWidth = 66;

struct Layout {
    QRectF date;
    QRectF hijri;
    std::array<QRectF, 6> times; // in Prayer::all order
};

// The columns of a row occupying `row` (x and width matter; the height is passed through).
Layout layout(const QRectF &row);
// The narrowest row that gives every time column its minimum width.
qreal minimumRowWidth();

} // namespace ImsakiyeColumns

} // namespace orvel

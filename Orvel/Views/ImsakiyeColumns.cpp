#include "ImsakiyeColumns.h"

#include <algorithm>

namespace orvel::ImsakiyeColumns {

Layout layout(const QRectF &row)
{
    Layout columns;
    const qreal left = row.left() + leadingPadding;
    columns.date = QRectF(left, row.top(), dateWidth, row.height());
    columns.hijri = QRectF(columns.date.right(), row.top(), hijriWidth, row.height());
    const qreal timesLeft = columns.hijri.right();
    const qreal room = std::max(0.0, row.right() - trailingPadding - timesLeft);
    const qreal width = room / static_cast<qreal>(columns.times.size());
    for (size_t i = 0; i < columns.times.size(); ++i)
        columns.times[i] = QRectF(timesLeft + static_cast<qreal>(i) * width, row.top(), width, row.height());
    return columns;
}

qreal minimumRowWidth()
{
    return leadingPadding + dateWidth + hijriWidth + 6 * timeMinimumWidth + trailingPadding;
}

} // namespace orvel::ImsakiyeColumns

#include "TabularDigits.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QStringList>

#include <cmath>

namespace orvel::TabularDigits {

namespace {

// Its digits are tabular, and Debian installs it with the desktop.
const QString fallbackFamily = QStringLiteral("DejaVu Sans");

} // namespace

bool hasEqualDigits(const QFont &font)
{
    const QFontMetricsF metrics(font);
    const qreal zero = metrics.horizontalAdvance(QLatin1Char('0'));
    for (char digit = '1'; digit <= '9'; ++digit) {
        if (std::abs(metrics.horizontalAdvance(QLatin1Char(digit)) - zero) > 0.01)
            return false;
    }
    return true;
}

QFont font(const QFont &font)
{
    if (hasEqualDigits(font))
        return font;
    QFont fallback = font;
    fallback.setFamilies(QStringList{fallbackFamily});
    if (QFontInfo(fallback).family() == fallbackFamily && hasEqualDigits(fallback))
        return fallback;
    return font;
}

} // namespace orvel::TabularDigits

#pragma once

#include "Colors.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QString>

#include <string_view>

namespace orvel {

// Fonts and colours shared by the panel's views. One layout point is one device-independent
// pixel, and fonts are sized in the same unit, so text keeps its proportion to the layout
// whatever the desktop's font DPI.
namespace ViewStyle {

// The desktop's UI font at a size in points.
QFont font(qreal points, QFont::Weight weight = QFont::Normal);
// A font whose digits are all of one width, so that clock times and countdowns do not jitter:
// the UI font when its digits already are, else DejaVu Sans.
QFont digitsFont(qreal points, QFont::Weight weight = QFont::Normal);

// The hierarchical text colours of the appearance.
QColor primary(Appearance appearance);
QColor secondary(Appearance appearance);
QColor tertiary(Appearance appearance);
QColor window(Appearance appearance);
QColor controlBackground(Appearance appearance);
QColor accent(Appearance appearance);
QColor kerahat(Appearance appearance);
// The colour with its alpha multiplied by opacity.
QColor faded(QColor color, qreal opacity);

// How far a time gone by fades: its text still reads at 4.5:1 on the panel and the timetable.
constexpr qreal pastOpacity = 0.66;
// The edge of a text field, spin box or list box: 3:1 against the card it sits on.
QColor fieldEdge(Appearance appearance);
// The style sheet that draws those edges, for a window of forms.
QString fieldStyleSheet(Appearance appearance);

// A palette of the appearance's colours, so that a forced dark render is dark on a light desktop.
QPalette palette(Appearance appearance);

// The baseline that centres capital letters of the font on a line at centreY: mixed text then
// looks centred beside symbols and capsules.
qreal baseline(const QFont &font, qreal centreY);

QString text(std::string_view utf8);

} // namespace ViewStyle

} // namespace orvel

#include "ViewStyle.h"

#include "TabularDigits.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QScreen>

namespace orvel::ViewStyle {

namespace {

constexpr qreal pointsPerInch = 72.0;
constexpr qreal fallbackDpi = 96.0;

qreal logicalDpi()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchY() : fallbackDpi;
}

// Decided once: the desktop font does not change its digits while the program runs.
const QString &digitsFamily()
{
    static const QString family = TabularDigits::font(QApplication::font()).family();
    return family;
}

QColor label(Appearance appearance, qreal alpha)
{
    QColor color = appearance == Appearance::dark ? QColor(255, 255, 255) : QColor(0, 0, 0);
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

} // namespace

QFont font(qreal points, QFont::Weight weight)
{
    QFont font = QApplication::font();
    font.setPointSizeF(points * pointsPerInch / logicalDpi());
    font.setWeight(weight);
    font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}

QFont digitsFont(qreal points, QFont::Weight weight)
{
    QFont font = ViewStyle::font(points, weight);
    font.setFamily(digitsFamily());
    return font;
}

QColor primary(Appearance appearance) { return label(appearance, 0.85); }
QColor secondary(Appearance appearance) { return label(appearance, appearance == Appearance::dark ? 0.55 : 0.5); }
QColor tertiary(Appearance appearance) { return label(appearance, appearance == Appearance::dark ? 0.3 : 0.28); }

QColor window(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(50, 50, 50) : QColor(236, 236, 236);
}

QColor controlBackground(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(30, 30, 30) : QColor(255, 255, 255);
}

QColor fieldEdge(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(120, 120, 120) : QColor(130, 130, 130);
}

QString fieldStyleSheet(Appearance appearance)
{
    // Fusion draws a field's edge a shade off the window, which all but vanishes on a dark card.
    return QStringLiteral("QLineEdit, QAbstractSpinBox, QComboBox { border: 1px solid %1; border-radius: 5px; "
                          "padding: 2px 6px; background: %2; color: %3; } "
                          "QComboBox::drop-down { border: none; width: 22px; }")
        .arg(fieldEdge(appearance).name(), controlBackground(appearance).name(),
             primary(appearance).name(QColor::HexArgb));
}

QColor accent(Appearance appearance) { return Colors::orvel(appearance); }
QColor kerahat(Appearance appearance) { return Colors::kerahat(appearance); }

QColor faded(QColor color, qreal opacity)
{
    color.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return color;
}

QPalette palette(Appearance appearance)
{
    QPalette palette;
    const QColor background = window(appearance);
    const QColor text = primary(appearance);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::Window, background);
        palette.setColor(group, QPalette::WindowText, text);
        palette.setColor(group, QPalette::Base, controlBackground(appearance));
        palette.setColor(group, QPalette::AlternateBase, background);
        palette.setColor(group, QPalette::Text, text);
        palette.setColor(group, QPalette::Button, background);
        palette.setColor(group, QPalette::ButtonText, text);
        palette.setColor(group, QPalette::ToolTipBase, controlBackground(appearance));
        palette.setColor(group, QPalette::ToolTipText, text);
        palette.setColor(group, QPalette::Highlight, accent(appearance));
        palette.setColor(group, QPalette::HighlightedText, Qt::white);
        palette.setColor(group, QPalette::Link, accent(appearance));
        palette.setColor(group, QPalette::PlaceholderText, tertiary(appearance));
    }
    palette.setColor(QPalette::Disabled, QPalette::Window, background);
    palette.setColor(QPalette::Disabled, QPalette::Button, background);
    palette.setColor(QPalette::Disabled, QPalette::Base, controlBackground(appearance));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, tertiary(appearance));
    palette.setColor(QPalette::Disabled, QPalette::Text, tertiary(appearance));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, tertiary(appearance));
    return palette;
}

qreal baseline(const QFont &font, qreal centreY)
{
    return centreY + QFontMetricsF(font).capHeight() / 2;
}

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace orvel::ViewStyle

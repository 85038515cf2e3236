#include "Colors.h"

#include <QGuiApplication>
#include <QPalette>
#include <QStyleHints>

namespace orvel::Colors {

namespace {

// Set only by renders that need a fixed look (snapshots, previews); otherwise the desktop decides.
std::optional<Appearance> forcedAppearance;

QColor pick(Appearance appearance, const QColor &light, const QColor &dark)
{
    return appearance == Appearance::dark ? dark : light;
}

Appearance desktopAppearance()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    switch (QGuiApplication::styleHints()->colorScheme()) {
    case Qt::ColorScheme::Dark:
        return Appearance::dark;
    case Qt::ColorScheme::Light:
        return Appearance::light;
    default:
        break;
    }
#endif
    return QGuiApplication::palette().color(QPalette::Window).lightness() < 128 ? Appearance::dark
                                                                               : Appearance::light;
}

} // namespace

QColor orvel(Appearance appearance)
{
    return pick(appearance, QColor::fromRgbF(0.184f, 0.62f, 0.478f), QColor::fromRgbF(0.235f, 0.769f, 0.584f));
}

QColor orvelPill() { return QColor::fromRgbF(0.184f, 0.62f, 0.478f); }

QColor kerahat(Appearance appearance)
{
    return pick(appearance, QColor::fromRgbF(0.851f, 0.478f, 0.118f), QColor::fromRgbF(1.0f, 0.643f, 0.361f));
}

// The orange of the system palettes people know from other desktops: #FF9500, brighter #FF9F0A on dark.
QColor systemOrange(Appearance appearance) { return pick(appearance, QColor(0xFF, 0x95, 0x00), QColor(0xFF, 0x9F, 0x0A)); }

QColor systemOrange() { return systemOrange(current()); }

QColor label(Appearance appearance)
{
    // The desktop's own text colour while it is the appearance asked for; fixed values otherwise.
    if (!forcedAppearance && desktopAppearance() == appearance)
        return QGuiApplication::palette().color(QPalette::WindowText);
    return pick(appearance, QColor(0, 0, 0, 217), QColor(255, 255, 255, 217));
}

Appearance current() { return forcedAppearance.value_or(desktopAppearance()); }

void forceAppearance(std::optional<Appearance> appearance) { forcedAppearance = appearance; }

} // namespace orvel::Colors

#pragma once

#include <QByteArray>
#include <QColor>
#include <QString>

#include <optional>

namespace orvel {

// The colours of the desktop panel that shows Orvel's icon, which need not be the application's:
// GNOME's top bar is black whatever the theme, and Plasma's panel follows the colour scheme in
// kdeglobals. Elsewhere the panel does not say, and the application's appearance stands in.
namespace PanelColors {

struct Palette {
    QColor background;
    QColor text;

    bool operator==(const Palette &) const = default;
};

// The panels people use most: GNOME's black top bar and Plasma's Breeze schemes.
Palette gnomeBar();
Palette breezeLight();
Palette breezeDark();

// [Colors:Window] BackgroundNormal and ForegroundNormal ("49,54,59") of a kdeglobals file.
std::optional<Palette> fromKdeGlobals(const QByteArray &contents);
// $XDG_CONFIG_HOME/kdeglobals.
QString kdeGlobalsPath();
// The panel's colours for XDG_CURRENT_DESKTOP (names separated by colons, the most specific
// first) and the contents of kdeglobals when there is one; none when the desktop does not say.
std::optional<Palette> forDesktop(const QString &currentDesktop, const std::optional<QByteArray> &kdeGlobals);
// Whether this session's panel takes its colours from kdeglobals (Plasma), so that the file is
// worth reading and watching.
bool followsKdeGlobals();
// The same for this session.
std::optional<Palette> current();

// WCAG's contrast ratio of two colours, 1 to 21.
double contrast(const QColor &a, const QColor &b);

} // namespace PanelColors

} // namespace orvel

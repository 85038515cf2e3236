#pragma once

#include <QByteArray>
#include <QColor>
#include <QString>

#include <optional>

namespace orvel {

// The colours of the desktop panel that shows Orvel's icon, which need not be the application's:
// GNOME's top bar is black whatever the theme, Plasma's panel follows the colour scheme in
// kdeglobals, XFCE's follows its own dark mode (on by default since 4.18), Cinnamon's default
// panel is dark grey and waybar's tray blue. Elsewhere the desktop's light or dark preference
// stands in.
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
Palette xfceDark();
Palette xfceLight();
Palette cinnamonPanel();
Palette waybarBar();

// The xfce4-panel channel's /panels/dark-mode from xfconf's XML; none when it does not say.
std::optional<bool> xfceDarkMode(const QByteArray &channelXml);
// $XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml.
QString xfcePanelChannelPath();
// [Colors:Window] BackgroundNormal and ForegroundNormal ("49,54,59") of a kdeglobals file.
std::optional<Palette> fromKdeGlobals(const QByteArray &contents);
// $XDG_CONFIG_HOME/kdeglobals.
QString kdeGlobalsPath();
// The panel's colours for XDG_CURRENT_DESKTOP (names separated by colons, the most specific
// first) and the contents of kdeglobals when there is one; none when the desktop does not say.
std::optional<Palette> forDesktop(const QString &currentDesktop, const std::optional<QByteArray> &kdeGlobals,
                                  const std::optional<QByteArray> &xfcePanelChannel = std::nullopt);
// Whether this session's panel takes its colours from kdeglobals (Plasma), so that the file is
// worth reading and watching.
bool followsKdeGlobals();
// The same for this session.
std::optional<Palette> current();
// Whether this session's panel draws a named symbolic icon in its own colours (GNOME's top bar,
// Plasma); others (Cinnamon's xapp applet, XFCE) may draw it black or not at all.
bool recoloursSymbolicIcons();

// WCAG's contrast ratio of two colours, 1 to 21.
double contrast(const QColor &a, const QColor &b);

} // namespace PanelColors

} // namespace orvel

#include "PanelColors.h"

#include <QFile>
#include <QStandardPaths>
#include <QStringList>

#include <cmath>

namespace orvel::PanelColors {

namespace {

const QStringList gnomeDesktops{QStringLiteral("GNOME"), QStringLiteral("GNOME-Classic"), QStringLiteral("ubuntu"),
                                QStringLiteral("Unity")};

std::optional<QColor> rgb(const QString &text)
{
    const QStringList parts = text.split(u',');
    if (parts.size() < 3)
        return std::nullopt;
    int channels[3] = {};
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        channels[i] = parts[i].trimmed().toInt(&ok);
        if (!ok || channels[i] < 0 || channels[i] > 255)
            return std::nullopt;
    }
    return QColor(channels[0], channels[1], channels[2]);
}

enum class Panel { gnome, plasma, xfce, cinnamon, sway, other };

// The first desktop of XDG_CURRENT_DESKTOP that says whose panel it is.
Panel panelOf(const QString &currentDesktop)
{
    for (const QString &desktop : currentDesktop.split(u':', Qt::SkipEmptyParts)) {
        if (gnomeDesktops.contains(desktop, Qt::CaseInsensitive))
            return Panel::gnome;
        if (desktop.compare(QStringLiteral("KDE"), Qt::CaseInsensitive) == 0)
            return Panel::plasma;
        if (desktop.compare(QStringLiteral("XFCE"), Qt::CaseInsensitive) == 0)
            return Panel::xfce;
        if (desktop.compare(QStringLiteral("X-Cinnamon"), Qt::CaseInsensitive) == 0
            || desktop.compare(QStringLiteral("Cinnamon"), Qt::CaseInsensitive) == 0)
            return Panel::cinnamon;
        if (desktop.compare(QStringLiteral("sway"), Qt::CaseInsensitive) == 0)
            return Panel::sway;
    }
    return Panel::other;
}

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

Palette gnomeBar()
{
    return {QColor(0, 0, 0), QColor(255, 255, 255)};
}

Palette breezeLight()
{
    return {QColor(239, 240, 241), QColor(35, 38, 41)};
}

Palette breezeDark()
{
    return {QColor(49, 54, 59), QColor(252, 252, 252)};
}

// Adwaita-dark's panel under XFCE 4.18's default dark mode, and Adwaita's light one.
Palette xfceDark()
{
    return {QColor(0x35, 0x35, 0x35), QColor(0xee, 0xee, 0xec)};
}

Palette xfceLight()
{
    return {QColor(0xf6, 0xf5, 0xf4), QColor(0x2e, 0x34, 0x36)};
}

// The "cinnamon" theme's panel, whose own icons are white.
Palette cinnamonPanel()
{
    return {QColor(0x4a, 0x4a, 0x4a), QColor(0xff, 0xff, 0xff)};
}

// waybar's default style draws its tray on a blue of its own, whatever the bar's grey: black ink
// stands out there (4.9:1), white does not (4.3:1).
Palette waybarBar()
{
    return {QColor(0x29, 0x80, 0xb9), QColor(0, 0, 0)};
}

std::optional<bool> xfceDarkMode(const QByteArray &channelXml)
{
    // <property name="dark-mode" type="bool" value="false"/> inside <property name="panels">.
    const qsizetype at = channelXml.indexOf("name=\"dark-mode\"");
    if (at < 0)
        return std::nullopt;
    const qsizetype end = channelXml.indexOf('>', at);
    const QByteArray tag = channelXml.mid(at, end < 0 ? -1 : end - at);
    if (tag.contains("value=\"true\""))
        return true;
    if (tag.contains("value=\"false\""))
        return false;
    return std::nullopt;
}

QString xfcePanelChannelPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml");
}

std::optional<Palette> fromKdeGlobals(const QByteArray &contents)
{
    std::optional<QColor> background;
    std::optional<QColor> text;
    bool inWindow = false;
    for (const QByteArray &rawLine : contents.split('\n')) {
        const QString line = QString::fromUtf8(rawLine).trimmed();
        if (line.startsWith(u'[')) {
            inWindow = line == QStringLiteral("[Colors:Window]");
            continue;
        }
        if (!inWindow)
            continue;
        const qsizetype equals = line.indexOf(u'=');
        if (equals < 0)
            continue;
        const QString key = line.left(equals).trimmed();
        const QString value = line.mid(equals + 1);
        if (key == QStringLiteral("BackgroundNormal"))
            background = rgb(value);
        else if (key == QStringLiteral("ForegroundNormal"))
            text = rgb(value);
    }
    if (!background || !text)
        return std::nullopt;
    return Palette{*background, *text};
}

QString kdeGlobalsPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/kdeglobals");
}

std::optional<Palette> forDesktop(const QString &currentDesktop, const std::optional<QByteArray> &kdeGlobals,
                                  const std::optional<QByteArray> &xfcePanelChannel)
{
    switch (panelOf(currentDesktop)) {
    case Panel::gnome:
        return gnomeBar();
    case Panel::plasma: {
        const std::optional<Palette> scheme = kdeGlobals ? fromKdeGlobals(*kdeGlobals) : std::nullopt;
        // Plasma's panel before the user picks a scheme is Breeze.
        return scheme.value_or(breezeLight());
    }
    case Panel::xfce: {
        // 4.18's panel is dark unless the user turned its dark mode off.
        const std::optional<bool> dark = xfcePanelChannel ? xfceDarkMode(*xfcePanelChannel) : std::nullopt;
        return dark.value_or(true) ? xfceDark() : xfceLight();
    }
    case Panel::cinnamon:
        return cinnamonPanel();
    case Panel::sway:
        return waybarBar();
    case Panel::other:
        break;
    }
    return std::nullopt;
}

bool followsKdeGlobals()
{
    return panelOf(qEnvironmentVariable("XDG_CURRENT_DESKTOP")) == Panel::plasma;
}

std::optional<Palette> current()
{
    std::optional<QByteArray> kdeGlobals;
    if (QFile file(kdeGlobalsPath()); followsKdeGlobals() && file.open(QIODevice::ReadOnly))
        kdeGlobals = file.read(1024 * 1024);
    std::optional<QByteArray> xfcePanelChannel;
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    if (QFile file(xfcePanelChannelPath()); panelOf(desktop) == Panel::xfce && file.open(QIODevice::ReadOnly))
        xfcePanelChannel = file.read(1024 * 1024);
    return forDesktop(desktop, kdeGlobals, xfcePanelChannel);
}

bool recoloursSymbolicIcons()
{
    const Panel panel = panelOf(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
    return panel == Panel::gnome || panel == Panel::plasma;
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return first > second ? first / second : second / first;
}

} // namespace orvel::PanelColors

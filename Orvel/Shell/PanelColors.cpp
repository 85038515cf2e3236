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

enum class Panel { gnome, plasma, other };

// The first desktop of XDG_CURRENT_DESKTOP that says whose panel it is.
Panel panelOf(const QString &currentDesktop)
{
    for (const QString &desktop : currentDesktop.split(u':', Qt::SkipEmptyParts)) {
        if (gnomeDesktops.contains(desktop, Qt::CaseInsensitive))
            return Panel::gnome;
        if (desktop.compare(QStringLiteral("KDE"), Qt::CaseInsensitive) == 0)
            return Panel::plasma;
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

std::optional<Palette> forDesktop(const QString &currentDesktop, const std::optional<QByteArray> &kdeGlobals)
{
    switch (panelOf(currentDesktop)) {
    case Panel::gnome:
        return gnomeBar();
    case Panel::plasma: {
        const std::optional<Palette> scheme = kdeGlobals ? fromKdeGlobals(*kdeGlobals) : std::nullopt;
        // Plasma's panel before the user picks a scheme is Breeze.
        return scheme.value_or(breezeLight());
    }
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
    return forDesktop(qEnvironmentVariable("XDG_CURRENT_DESKTOP"), kdeGlobals);
}

double contrast(const QColor &a, const QColor &b)
{
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return first > second ? first / second : second / first;
}

} // namespace orvel::PanelColors

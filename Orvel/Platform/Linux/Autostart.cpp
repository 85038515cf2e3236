#include "Autostart.h"

#include "AppId.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace orvel::Autostart {

namespace {

QString configHome()
{
    const QString configured = qEnvironmentVariable("XDG_CONFIG_HOME");
    // The base directory specification ignores relative values.
    if (!configured.isEmpty() && QDir::isAbsolutePath(configured))
        return configured;
    return QDir::homePath() + QStringLiteral("/.config");
}

// An Exec argument in double quotes, with the characters the desktop entry specification
// reserves inside quotes escaped; then the backslashes escaped once more for the string value.
QString quotedArgument(const QString &argument)
{
    QString quoted;
    for (const QChar c : argument) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            quoted += u'\\';
        quoted += c;
    }
    quoted = QLatin1Char('"') + quoted + QLatin1Char('"');
    quoted.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    // A literal percent sign would otherwise read as a field code.
    quoted.replace(QLatin1String("%"), QLatin1String("%%"));
    return quoted;
}

// Running from the build tree or an AppImage gives a path that may not exist at the next login;
// the file the running process was started from is still the best guess.
QString runningExecutable()
{
    const QString appImage = qEnvironmentVariable("APPIMAGE");
    if (!appImage.isEmpty() && QFileInfo(appImage).isExecutable())
        return appImage;
    return QFileInfo(QCoreApplication::applicationFilePath()).absoluteFilePath();
}

// A desktop that switched an entry off keeps the file and marks it.
bool entryEnabled(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    for (const QByteArray &raw : file.readAll().split('\n')) {
        const QByteArray line = raw.trimmed();
        if (line == "Hidden=true" || line == "X-GNOME-Autostart-enabled=false")
            return false;
    }
    return true;
}

std::optional<QString> enable()
{
    const QString path = autostartPath();
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return QStringLiteral("Otomatik başlatma klasörü oluşturulamadı: %1").arg(QFileInfo(path).absolutePath());

    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return QStringLiteral("Otomatik başlatma dosyası yazılamadı: %1").arg(file.errorString());
    file.write(desktopEntry(runningExecutable()).toUtf8());
    if (!file.commit())
        return QStringLiteral("Otomatik başlatma dosyası yazılamadı: %1").arg(file.errorString());
    QFile::remove(formerAutostartPath());
    return std::nullopt;
}

std::optional<QString> disable()
{
    for (const QString &path : {autostartPath(), formerAutostartPath()}) {
        QFile file(path);
        if (file.exists() && !file.remove())
            return QStringLiteral("Otomatik başlatma dosyası silinemedi: %1").arg(file.errorString());
    }
    return std::nullopt;
}

} // namespace

QString autostartPath()
{
    return configHome() + QStringLiteral("/autostart/") + QString::fromLatin1(AppId::id) + QStringLiteral(".desktop");
}

QString formerAutostartPath()
{
    return configHome() + QStringLiteral("/autostart/orvel.desktop");
}

void migrate()
{
    if (!QFile::exists(formerAutostartPath()) || QFile::exists(autostartPath()))
        return;
    if (entryEnabled(formerAutostartPath()))
        enable();
    else
        QFile::remove(formerAutostartPath());
}

QString desktopEntry(const QString &executable)
{
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Orvel\n"
                          "Comment=Namaz vakitlerini panelde gösterir\n"
                          "Exec=%1\n"
                          "Icon=%2\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n")
        .arg(quotedArgument(executable), QString::fromLatin1(AppId::id));
}

std::optional<QString> set(bool enabled)
{
    return enabled ? enable() : disable();
}

bool isEnabled()
{
    if (QFileInfo::exists(autostartPath()))
        return entryEnabled(autostartPath());
    return entryEnabled(formerAutostartPath());
}

} // namespace orvel::Autostart

#include "AppIcon.h"

#include "AppId.h"

#include <QDir>
#include <QFile>
#include <QIcon>
#include <QSaveFile>
#include <QStandardPaths>
#include <QUrl>

namespace orvel::AppIcon {

namespace {

// Written once per process; the folder lives as long as the session.
QString writtenFile()
{
    static const QString path = [] {
        const QString folder = runtimeFolder();
        if (!QDir().mkpath(folder))
            return QString();
        const QString target = folder + u'/' + QString::fromLatin1(AppId::id) + QStringLiteral(".svg");
        QFile source(QStringLiteral(":/orvel/orvel.svg"));
        QSaveFile out(target);
        if (!source.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly) || out.write(source.readAll()) < 0
            || !out.commit())
            return QString();
        return target;
    }();
    return path;
}

} // namespace

QString runtimeFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) + QStringLiteral("/orvel/icons");
}

QString nameOrPath()
{
    const QString name = QString::fromLatin1(AppId::id);
    if (QIcon::hasThemeIcon(name))
        return name;
    return writtenFile();
}

QString fileUrl()
{
    const QString file = writtenFile();
    return file.isEmpty() ? QString() : QUrl::fromLocalFile(file).toString();
}

} // namespace orvel::AppIcon

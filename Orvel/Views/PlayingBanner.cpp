#include "PlayingBanner.h"

#include "AdhanPlayer.h"
#include "SymbolButton.h"
#include "TightLabel.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QPainter>

#include <array>

namespace orvel {

namespace {

constexpr qreal symbolPoints = 13;
constexpr qreal titlePoints = 12.5;
constexpr qreal buttonPoints = 12;
constexpr int pulseIntervalMs = 220;
// The speaker's strength over one cycle: its waves seem to reach out one after the other.
constexpr std::array<qreal, 6> pulse{0.35, 0.6, 1.0, 1.0, 0.8, 0.5};

} // namespace

PlayingBanner::PlayingBanner(AdhanPlayer &player, QWidget *parent)
    : QWidget(parent)
    , player_(player)
    , speaker_(new TightLabel)
    , title_(new TightLabel)
    , stop_(new SymbolButton)
{
    title_->setObjectName(QStringLiteral("playingTitle"));
    stop_->setObjectName(QStringLiteral("stopButton"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(12, 8, 12, 8);
    row->setSpacing(10);
    row->addWidget(speaker_, 0, Qt::AlignVCenter);
    row->addWidget(title_, 0, Qt::AlignVCenter);
    row->addStretch(1);
    row->addWidget(stop_, 0, Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);

    stop_->setAccessibleName(QStringLiteral("Durdur"));
    setAccessibleName(QStringLiteral("Ezan sesi çalıyor"));
    connect(stop_, &QAbstractButton::clicked, &player_, &AdhanPlayer::stop);
    pulse_.setInterval(pulseIntervalMs);
    connect(&pulse_, &QTimer::timeout, this, &PlayingBanner::animate);
    refresh();
}

void PlayingBanner::refresh()
{
    const Appearance appearance = Colors::current();
    const QColor accent = ViewStyle::accent(appearance);
    speaker_->setSymbol(QStringLiteral("speaker.wave.2.fill"), symbolPoints, accent);
    title_->setText(QStringLiteral("Ezan sesi çalıyor"), ViewStyle::font(titlePoints, QFont::DemiBold),
                    ViewStyle::primary(appearance));
    stop_->setContent(QString(), 0, QStringLiteral("Durdur"), ViewStyle::font(buttonPoints, QFont::Medium), accent);
    if (appearance != appearance_) {
        appearance_ = appearance;
        update();
    }
    if (isVisible() && player_.isPlaying())
        pulse_.start();
    else
        pulse_.stop();
}

void PlayingBanner::animate()
{
    phase_ = (phase_ + 1) % static_cast<int>(pulse.size());
    speaker_->setOpacity(pulse[static_cast<size_t>(phase_)]);
}

void PlayingBanner::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    refresh();
}

void PlayingBanner::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    pulse_.stop();
    speaker_->setOpacity(1);
}

void PlayingBanner::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ViewStyle::faded(ViewStyle::accent(appearance_), 0.13));
    painter.drawRoundedRect(QRectF(rect()), cornerRadius, cornerRadius);
}

} // namespace orvel

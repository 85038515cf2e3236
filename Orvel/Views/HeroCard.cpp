#include "HeroCard.h"

#include "AppModel.h"
#include "DayProgressBar.h"
#include "OrvelFormat.h"
#include "PanelRules.h"
#include "Symbols.h"
#include "TightLabel.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QPainter>

namespace orvel {

namespace {

constexpr qreal titlePoints = 12;
constexpr qreal bigPoints = 34;
constexpr qreal unitPoints = 17;
constexpr qreal subtitlePoints = 11.5;
constexpr qreal footnotePoints = 10.5;
constexpr qreal tileSymbolPoints = 22;
constexpr qreal bigLetterSpacing = -0.6;
constexpr qreal bigSpacing = 2;
constexpr qreal hourUnitPadding = 6;
constexpr int columnSpacing = 1;

QFont bigFont(qreal points, QFont::Weight weight, bool digits)
{
    QFont font = digits ? ViewStyle::digitsFont(points, weight) : ViewStyle::font(points, weight);
    font.setLetterSpacing(QFont::AbsoluteSpacing, bigLetterSpacing);
    return font;
}

std::vector<TightLabel::Run> bigTimeRuns(const PanelRules::BigTime &time, Appearance appearance)
{
    const QFont number = bigFont(bigPoints, QFont::DemiBold, true);
    const QFont unit = bigFont(unitPoints, QFont::Medium, false);
    const QColor primary = ViewStyle::primary(appearance);
    const QColor secondary = ViewStyle::secondary(appearance);
    std::vector<TightLabel::Run> runs;
    if (time.hours) {
        runs.push_back({QString::number(*time.hours), number, primary, bigSpacing});
        runs.push_back({QStringLiteral("sa"), unit, secondary, hourUnitPadding + bigSpacing});
    }
    runs.push_back({QString::number(time.minutes), number, primary, bigSpacing});
    runs.push_back({QStringLiteral("dk"), unit, secondary, 0});
    return runs;
}

std::vector<TightLabel::Run> titleRuns(const PanelRules::CountdownTitle &title, Appearance appearance)
{
    const QColor secondary = ViewStyle::secondary(appearance);
    if (title.emphasis.isEmpty())
        return {{title.rest, ViewStyle::font(titlePoints), secondary}};
    return {{title.emphasis, ViewStyle::font(titlePoints, QFont::DemiBold), ViewStyle::primary(appearance)},
            {title.rest, ViewStyle::font(titlePoints), secondary}};
}

QString clock(Instant instant, const TimeZone &zone)
{
    return QString::fromStdString(OrvelFormat::time(instant, zone));
}

// A row inside the card, drawn the bar's overhang in from the card's padding.
QHBoxLayout *insetRow()
{
    auto *row = new QHBoxLayout;
    row->setContentsMargins(DayProgressBar::overhang, 0, DayProgressBar::overhang, 0);
    row->setSpacing(0);
    return row;
}

} // namespace

HeroCard::HeroCard(QWidget *parent)
    : QWidget(parent)
    , title_(new TightLabel)
    , bigTime_(new TightLabel)
    , subtitle_(new TightLabel)
    , tile_(new QWidget)
    , bar_(new DayProgressBar)
    , imsak_(new TightLabel)
    , legend_(new TightLabel)
    , yatsi_(new TightLabel)
{
    title_->setObjectName(QStringLiteral("countdownTitle"));
    bigTime_->setObjectName(QStringLiteral("bigTime"));
    subtitle_->setObjectName(QStringLiteral("subtitle"));
    imsak_->setObjectName(QStringLiteral("firstTime"));
    legend_->setObjectName(QStringLiteral("legend"));
    yatsi_->setObjectName(QStringLiteral("lastTime"));
    bar_->setObjectName(QStringLiteral("progressBar"));
    // The bar and its knob reach into the card's padding, so the other rows are inset instead.
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(16 - DayProgressBar::overhang, 14, 16 - DayProgressBar::overhang, 12);
    column->setSpacing(0);

    auto *top = insetRow();
    auto *texts = new QVBoxLayout;
    texts->setSpacing(columnSpacing);
    texts->addWidget(title_);
    texts->addWidget(bigTime_);
    texts->addWidget(subtitle_);
    top->addLayout(texts);
    top->addStretch(1);
    tile_->setFixedSize(tileSize, tileSize);
    top->addWidget(tile_, 0, Qt::AlignVCenter);
    column->addLayout(top);

    column->addSpacing(14 - DayProgressBar::bleed);
    column->addWidget(bar_);
    column->addSpacing(4 - DayProgressBar::bleed);

    auto *footnote = insetRow();
    footnote->addWidget(imsak_);
    footnote->addStretch(1);
    footnote->addWidget(legend_);
    footnote->addStretch(1);
    footnote->addWidget(yatsi_);
    column->addLayout(footnote);

    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void HeroCard::refresh(const AppModel &model, const PrayerStatus &status, const DayTimes &today)
{
    const Appearance appearance = Colors::current();
    const TimeZone zone = model.zone();
    const bool ramadan = model.nextIsRamadan();
    const std::vector<KerahatInterval> kerahat = model.kerahatIntervals();

    title_->setRuns(titleRuns(PanelRules::countdownTitle(status.next, ramadan), appearance));
    bigTime_->setRuns(bigTimeRuns(PanelRules::bigTime(status.minutesRemaining), appearance));
    subtitle_->setText(PanelRules::subtitle(status, ramadan, zone), ViewStyle::font(subtitlePoints),
                       ViewStyle::secondary(appearance));

    bar_->setContent({today, status.dayProgress, kerahat, Kerahat::active(model.now(), kerahat).has_value(),
                      appearance});

    const QFont footnote = ViewStyle::digitsFont(footnotePoints);
    const QColor tertiary = ViewStyle::tertiary(appearance);
    imsak_->setText(QStringLiteral("İmsak ") + clock(today[Prayer::imsak], zone), footnote, tertiary);
    yatsi_->setText(QStringLiteral("Yatsı ") + clock(today[Prayer::yatsi], zone), footnote, tertiary);
    legend_->setCapsule(QSizeF(10, 5), ViewStyle::faded(ViewStyle::kerahat(appearance), 0.6));
    legend_->setText(QStringLiteral("kerahat"), ViewStyle::font(footnotePoints), tertiary);
    legend_->setVisible(!kerahat.empty());

    const QString symbol = ViewStyle::text(status.next.symbol());
    if (symbol != tileSymbol_ || appearance != appearance_) {
        tileSymbol_ = symbol;
        appearance_ = appearance;
        update();
    }
    const QString label = model.accessibilityLabel();
    if (label != accessibleName())
        setAccessibleName(label);
}

void HeroCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    // The border is drawn inside the edge: half its width in from the card's rectangle.
    constexpr qreal border = 0.5;
    const QRectF card = QRectF(rect()).adjusted(border / 2, border / 2, -border / 2, -border / 2);
    painter.setPen(QPen(ViewStyle::faded(ViewStyle::primary(appearance_), 0.07), border));
    painter.setBrush(ViewStyle::faded(ViewStyle::controlBackground(appearance_), 0.75));
    painter.drawRoundedRect(card, cornerRadius, cornerRadius);

    const QRectF tile = tile_->geometry();
    const QColor accent = ViewStyle::accent(appearance_);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ViewStyle::faded(accent, 0.13));
    painter.drawRoundedRect(tile, cornerRadius, cornerRadius);
    if (tileSymbol_.isEmpty())
        return;
    const QSizeF symbol = Symbols::size(tileSymbol_, tileSymbolPoints);
    Symbols::draw(painter, tileSymbol_, tile.center() - QPointF(symbol.width() / 2, symbol.height() / 2),
                  tileSymbolPoints, accent);
}

} // namespace orvel

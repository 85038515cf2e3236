#include "PanelView.h"

#include "AdhanPlayer.h"
#include "AppModel.h"
#include "HeroCard.h"
#include "KerahatBanner.h"
#include "PlayingBanner.h"
#include "PanelRules.h"
#include "PrayerList.h"
#include "Spinner.h"
#include "SymbolButton.h"
#include "TightLabel.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QEvent>
#include <QKeySequence>

namespace orvel {

namespace {

constexpr qreal placePoints = 13;
constexpr qreal placeSymbolPoints = 11;
constexpr qreal datePoints = 11.5;
constexpr qreal dateMinimumScale = 0.85;
const QString dateSeparator = QStringLiteral(" · ");
constexpr qreal headerButtonPoints = 12;
constexpr int headerButtonSize = 26;
constexpr qreal footerPoints = 12;
constexpr qreal loadingOpacity = 0.4;

// Fixed space that comes and goes with the block it separates.
QWidget *gap(int height)
{
    auto *gap = new QWidget;
    gap->setFixedHeight(height);
    gap->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    return gap;
}

QColor separator(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(255, 255, 255, 26) : QColor(0, 0, 0, 26);
}

} // namespace

PanelView::PanelView(AppModel &model, std::function<void()> openImsakiye, std::function<void()> openSettings,
                         std::function<void()> quit, QWidget *parent)
    : QWidget(parent)
    , model_(model)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(0);
    // The panel is exactly as wide as this and as tall as its content.
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addSpacerItem(new QSpacerItem(panelWidth - 2 * padding, 0, QSizePolicy::Fixed, QSizePolicy::Fixed));

    column->addWidget(makeHeader());
    column->addSpacing(12);

    playing_ = new PlayingBanner(model.player());
    playing_->setObjectName(QStringLiteral("playingBanner"));
    playingGap_ = gap(10);
    column->addWidget(playing_);
    column->addWidget(playingGap_);

    kerahatBanner_ = new KerahatBanner;
    kerahatBanner_->setObjectName(QStringLiteral("kerahatBanner"));
    kerahatGap_ = gap(10);
    column->addWidget(kerahatBanner_);
    column->addWidget(kerahatGap_);

    hero_ = new HeroCard;
    hero_->setObjectName(QStringLiteral("heroCard"));
    column->addWidget(hero_);
    listGap_ = gap(8);
    column->addWidget(listGap_);
    list_ = new PrayerList(model);
    list_->setObjectName(QStringLiteral("prayerList"));
    column->addWidget(list_);

    spinner_ = new Spinner;
    spinner_->setObjectName(QStringLiteral("spinner"));
    spinner_->setMinimumHeight(spinnerHeight);
    spinner_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    column->addWidget(spinner_);

    column->addSpacing(10);
    divider_ = new QWidget;
    divider_->setFixedHeight(1);
    divider_->setAutoFillBackground(true);
    column->addWidget(divider_);
    column->addSpacing(10);
    column->addWidget(makeFooter());

    connect(imsakiye_, &QAbstractButton::clicked, this, [action = std::move(openImsakiye)] {
        if (action)
            action();
    });
    connect(reload_, &QAbstractButton::clicked, &model_, &AppModel::reload);
    connect(settings_, &QAbstractButton::clicked, this, [action = std::move(openSettings)] {
        if (action)
            action();
    });
    connect(quit_, &QAbstractButton::clicked, this, [action = std::move(quit)] {
        if (action)
            action();
    });
    connect(&model_, &AppModel::changed, this, &PanelView::refresh);
    connect(&model_.player(), &AdhanPlayer::isPlayingChanged, this, &PanelView::refresh);

    setAutoFillBackground(true);
    refresh();
}

QWidget *PanelView::makeHeader()
{
    auto *header = new QWidget;
    auto *row = new QHBoxLayout(header);
    row->setContentsMargins(4, 0, 4, 0);
    row->setSpacing(0);

    auto *lines = new QVBoxLayout;
    lines->setSpacing(3);
    place_ = new TightLabel;
    place_->setObjectName(QStringLiteral("placeLabel"));
    place_->setElides(true);
    date_ = new TightLabel;
    date_->setObjectName(QStringLiteral("dateLabel"));
    date_->setMinimumScale(dateMinimumScale);
    // Long month and weekday names in a wide desktop font: the Hijri date goes under the civil
    // one rather than lose its end.
    date_->setWraps(true, dateSeparator);
    ramadan_ = new TightLabel;
    ramadan_->setObjectName(QStringLiteral("ramadanLabel"));
    ramadan_->setContentsMargins(0, 1, 0, 0);
    for (TightLabel *label : {place_, date_, ramadan_}) {
        // The date may take any room the header has beyond the lines' hints: when the header
        // learnt of its wrapped height before the column did, the second line still shows.
        QSizePolicy policy(QSizePolicy::Ignored, label == date_ ? QSizePolicy::MinimumExpanding : QSizePolicy::Fixed);
        policy.setHeightForWidth(label->hasHeightForWidth());
        label->setSizePolicy(policy);
        lines->addWidget(label);
    }
    row->addLayout(lines, 1);
    row->addSpacing(8);

    imsakiye_ = new SymbolButton;
    imsakiye_->setObjectName(QStringLiteral("imsakiyeButton"));
    imsakiye_->setHitSize(QSize(headerButtonSize, headerButtonSize));
    imsakiye_->setToolTip(QStringLiteral("İmsakiye"));
    imsakiye_->setAccessibleName(QStringLiteral("İmsakiye"));
    reload_ = new SymbolButton;
    reload_->setObjectName(QStringLiteral("reloadButton"));
    reload_->setHitSize(QSize(headerButtonSize, headerButtonSize));
    reload_->setToolTip(QStringLiteral("Vakitleri yenile"));
    reload_->setAccessibleName(QStringLiteral("Vakitleri yenile"));
    row->addWidget(imsakiye_, 0, Qt::AlignTop);
    row->addWidget(reload_, 0, Qt::AlignTop);
    return header;
}

QWidget *PanelView::makeFooter()
{
    auto *footer = new QWidget;
    auto *row = new QHBoxLayout(footer);
    row->setContentsMargins(4, 0, 4, 0);
    row->setSpacing(14);

    source_ = new TightLabel;
    source_->setObjectName(QStringLiteral("sourceLabel"));
    // Shrinks a little before it breaks, and then at its separator.
    source_->setMinimumScale(dateMinimumScale);
    source_->setWraps(true, dateSeparator);
    QSizePolicy sourcePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    sourcePolicy.setHeightForWidth(true);
    source_->setSizePolicy(sourcePolicy);
    row->addWidget(source_, 1, Qt::AlignVCenter);

    settings_ = new SymbolButton;
    settings_->setObjectName(QStringLiteral("settingsButton"));
    settings_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Comma));
    quit_ = new SymbolButton;
    quit_->setObjectName(QStringLiteral("quitButton"));
    quit_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    row->addWidget(settings_, 0, Qt::AlignVCenter);
    row->addWidget(quit_, 0, Qt::AlignVCenter);
    return footer;
}

bool PanelView::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // The desktop switched between light and dark.
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ThemeChange
        || event->type() == QEvent::Show)
        refresh();
    return handled;
}

void PanelView::applyAppearance(Appearance appearance)
{
    appearance_ = appearance;
    setPalette(ViewStyle::palette(appearance));
    QPalette line = divider_->palette();
    line.setColor(QPalette::Window, separator(appearance));
    divider_->setPalette(line);
    spinner_->setColor(ViewStyle::secondary(appearance));
}

void PanelView::refresh()
{
    const Appearance appearance = Colors::current();
    if (appearance != appearance_)
        applyAppearance(appearance);
    refreshHeader(appearance);
    refreshDay();
    refreshFooter(appearance);
}

void PanelView::refreshHeader(Appearance appearance)
{
    const QColor accent = ViewStyle::accent(appearance);
    const QColor secondary = ViewStyle::secondary(appearance);
    place_->setSymbol(QStringLiteral("mappin.and.ellipse"), placeSymbolPoints, accent);
    place_->setText(QString::fromStdString(model_.setting(Settings::location).name),
                    ViewStyle::font(placePoints, QFont::DemiBold), ViewStyle::primary(appearance));
    place_->setToolTip(PanelRules::qiblaLine(model_.setting(Settings::location), model_.todayKey()));
    date_->setText(model_.dateLine(), ViewStyle::font(datePoints), secondary);

    const std::optional<QString> ramadan = PanelRules::ramadanLine(model_.ramadanDay(), model_.today(), model_.religiousDays());
    if (ramadan) {
        ramadan_->setSymbol(QStringLiteral("moon.stars.fill"), datePoints, accent);
        ramadan_->setText(*ramadan, ViewStyle::font(datePoints, QFont::Medium), accent);
    }
    ramadan_->setVisible(ramadan.has_value());

    imsakiye_->setContent(QStringLiteral("calendar"), headerButtonPoints, QString(), QFont(), secondary);
    reload_->setContent(QStringLiteral("arrow.clockwise"), headerButtonPoints, QString(), QFont(), secondary);
    reload_->setOpacity(model_.isLoading() ? loadingOpacity : 1.0);

    const bool playing = model_.player().isPlaying();
    if (playing)
        playing_->refresh();
    playing_->setVisible(playing);
    playingGap_->setVisible(playing);
}

void PanelView::refreshDay()
{
    const std::optional<PrayerStatus> status = model_.status();
    const std::optional<DayTimes> &today = model_.today();
    const bool hasDay = status && today;
    std::optional<KerahatInterval> active;
    if (hasDay) {
        active = Kerahat::active(model_.now(), model_.kerahatIntervals());
        if (active)
            kerahatBanner_->refresh(model_, *active);
        hero_->refresh(model_, *status, *today);
        list_->refresh(*status, *today);
    }
    kerahatBanner_->setVisible(active.has_value());
    kerahatGap_->setVisible(active.has_value());
    hero_->setVisible(hasDay);
    listGap_->setVisible(hasDay);
    list_->setVisible(hasDay);
    spinner_->setVisible(!hasDay);
}

void PanelView::refreshFooter(Appearance appearance)
{
    const QColor secondary = ViewStyle::secondary(appearance);
    const QFont font = ViewStyle::font(footerPoints);
    const PanelRules::SourceItem item = PanelRules::sourceItem(model_.source(), model_.setting(Settings::method));
    if (item.symbol.isEmpty())
        source_->clearIcon();
    else
        source_->setSymbol(item.symbol, footerPoints, secondary);
    source_->setText(item.text, font, secondary);

    settings_->setContent(QStringLiteral("gearshape"), footerPoints, QStringLiteral("Ayarlar…"), font, secondary);
    quit_->setContent(QStringLiteral("power"), footerPoints, QStringLiteral("Çık"), font, secondary);
}

} // namespace orvel

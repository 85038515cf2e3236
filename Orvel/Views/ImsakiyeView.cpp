#include "ImsakiyeView.h"

#include "AppModel.h"
#include "CalendarFile.h"
#include "ImsakiyeHeader.h"
#include "ImsakiyeRow.h"
#include "ReligiousDays.h"
#include "SafeFile.h"
#include "SegmentedControl.h"
#include "Spinner.h"
#include "SymbolButton.h"
#include "TightLabel.h"
#include "ViewStyle.h"

#include <QAction>
#include <QBoxLayout>
#include <QEvent>
#include <QFutureWatcher>
#include <QMenu>
#include <QPrinter>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace orvel {

namespace {

constexpr int horizontalPadding = 20;
constexpr int pickerWidth = 230;
constexpr qreal titlePoints = 13;
constexpr int titleMinimumWidth = 250;
constexpr qreal titleMinimumScale = 0.8;
constexpr qreal buttonPoints = 13;
constexpr int iconButtonSize = 26;
constexpr qreal todayPoints = 12.5;
constexpr QSize todayButtonSize{58, 26};
constexpr qreal footerPoints = 11.5;
constexpr int listPadding = 12;
constexpr int listTop = 4;
constexpr int listBottom = 10;
constexpr int rowSpacing = 2;

QString fromStd(const std::string &text)
{
    return QString::fromStdString(text);
}

QColor separator(Appearance appearance)
{
    return appearance == Appearance::dark ? QColor(255, 255, 255, 26) : QColor(0, 0, 0, 26);
}

// A slim scroll bar without arrows that keeps to the side of the list, as on the desktops people
// know, rather than the style's boxed one.
QString scrollBarStyle(Appearance appearance)
{
    const QColor handle = ViewStyle::faded(ViewStyle::primary(appearance), 0.3);
    return QStringLiteral("QScrollBar:vertical { background: transparent; width: 10px; margin: 2px 2px 2px 0; }"
                          "QScrollBar::handle:vertical { background: %1; border-radius: 3px; min-height: 32px;"
                          " margin: 0 2px; }"
                          "QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
                          "QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }")
        .arg(handle.name(QColor::HexArgb));
}

} // namespace

ImsakiyeView::ImsakiyeView(AppModel &model, ImsakiyeMode mode, std::optional<Loaded> shown, QWidget *parent)
    : QWidget(parent)
    , model_(model)
    , mode_(mode)
    , dialogs_(ImsakiyePrint::Dialogs::system())
{
    setWindowTitle(QStringLiteral("İmsakiye"));
    setMinimumSize(minimumContentSize);
    setAutoFillBackground(true);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeToolbar());
    column->addWidget(divider());

    header_ = new ImsakiyeHeader;
    header_->setObjectName(QStringLiteral("header"));
    column->addWidget(header_);

    spinner_ = new Spinner;
    spinner_->setObjectName(QStringLiteral("spinner"));
    spinner_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    column->addWidget(spinner_, 1);

    list_ = new QScrollArea;
    list_->setObjectName(QStringLiteral("list"));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setWidgetResizable(true);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->viewport()->setAutoFillBackground(false);
    rowsBox_ = new QWidget;
    rowsBox_->setObjectName(QStringLiteral("rows"));
    rowsBox_->setAutoFillBackground(false);
    auto *rows = new QVBoxLayout(rowsBox_);
    rows->setContentsMargins(listPadding, listTop, listPadding, listBottom);
    rows->setSpacing(rowSpacing);
    rows->addStretch(1);
    list_->setWidget(rowsBox_);
    rowsBox_->installEventFilter(this);
    column->addWidget(list_, 1);

    column->addWidget(divider());
    column->addWidget(makeFooter());

    connect(list_->verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] {
        if (centrePending_)
            centreToday();
    });
    // Once the user scrolls, the list stays where they put it.
    connect(list_->verticalScrollBar(), &QScrollBar::actionTriggered, this, [this] { centrePending_ = false; });
    connect(&model_, &AppModel::changed, this, [this] {
        reloadIfNeeded();
        refresh();
    });
    addShortcuts();

    if (shown) {
        const LoadKey key = currentKey();
        requested_ = key;
        apply(*shown, currentPage(), key);
    } else {
        reloadIfNeeded();
    }
    refresh();
}

ImsakiyeView::~ImsakiyeView() = default;

ImsakiyePage ImsakiyeView::page(ImsakiyeMode mode, int64_t offset, const AppModel &model)
{
    return {mode, offset, model.todayKey(), model.today()};
}

QFuture<ImsakiyeView::Loaded> ImsakiyeView::load(ImsakiyeMode mode, int64_t offset, const AppModel &model)
{
    const ImsakiyePage page = ImsakiyeView::page(mode, offset, model);
    return model.days(Imsakiye::keys(page)).then([page](const PrayerRepository::Answer &answer) {
        return Loaded{Imsakiye::pageDays(page, answer.days), answer.source};
    });
}

QWidget *ImsakiyeView::makeToolbar()
{
    auto *toolbar = new QWidget;
    auto *row = new QHBoxLayout(toolbar);
    row->setContentsMargins(horizontalPadding, 14, horizontalPadding, 12);
    row->setSpacing(4);

    QStringList modes;
    for (const ImsakiyeMode::Value mode : ImsakiyeMode::all)
        modes << ViewStyle::text(ImsakiyeMode(mode).label());
    picker_ = new SegmentedControl(modes, QStringLiteral("Görünüm"));
    picker_->setObjectName(QStringLiteral("modePicker"));
    picker_->setFixedSize(pickerWidth, SegmentedControl::defaultHeight);
    picker_->setCurrent(static_cast<int>(mode_));
    connect(picker_, &SegmentedControl::chosen, this,
            [this](int index) { setMode(ImsakiyeMode::all.at(static_cast<size_t>(index))); });
    row->addWidget(picker_, 0, Qt::AlignVCenter);
    row->addStretch(1);

    previous_ = new SymbolButton;
    previous_->setObjectName(QStringLiteral("previousButton"));
    previous_->setHitSize(QSize(iconButtonSize, iconButtonSize));
    previous_->setToolTip(QStringLiteral("Önceki"));
    previous_->setAccessibleName(QStringLiteral("Önceki"));
    connect(previous_, &QAbstractButton::clicked, this, &ImsakiyeView::showPrevious);
    row->addWidget(previous_, 0, Qt::AlignVCenter);

    // The title is centred in a box at least this wide, so the arrows do not jump as it changes.
    auto *titleBox = new QWidget;
    titleBox->setMinimumWidth(titleMinimumWidth);
    auto *titleRow = new QHBoxLayout(titleBox);
    titleRow->setContentsMargins(6, 0, 6, 0);
    title_ = new TightLabel;
    title_->setObjectName(QStringLiteral("titleLabel"));
    // A Ramadan's title in a narrow window shrinks a little rather than lose its end.
    title_->setMinimumScale(titleMinimumScale);
    title_->setElides(true);
    titleRow->addWidget(title_, 0, Qt::AlignCenter);
    row->addWidget(titleBox, 0, Qt::AlignVCenter);

    next_ = new SymbolButton;
    next_->setObjectName(QStringLiteral("nextButton"));
    next_->setHitSize(QSize(iconButtonSize, iconButtonSize));
    next_->setToolTip(QStringLiteral("Sonraki"));
    next_->setAccessibleName(QStringLiteral("Sonraki"));
    connect(next_, &QAbstractButton::clicked, this, &ImsakiyeView::showNext);
    row->addWidget(next_, 0, Qt::AlignVCenter);

    row->addSpacing(4);
    today_ = new SymbolButton;
    today_->setObjectName(QStringLiteral("todayButton"));
    today_->setHitSize(todayButtonSize);
    today_->setAccessibleName(QStringLiteral("Bugün"));
    connect(today_, &QAbstractButton::clicked, this, &ImsakiyeView::showToday);
    row->addWidget(today_, 0, Qt::AlignVCenter);

    row->addSpacing(6);
    printMenuButton_ = new SymbolButton;
    printMenuButton_->setObjectName(QStringLiteral("printButton"));
    printMenuButton_->setHitSize(QSize(iconButtonSize, iconButtonSize));
    printMenuButton_->setToolTip(QStringLiteral("Yazdır veya PDF olarak kaydet"));
    printMenuButton_->setAccessibleName(QStringLiteral("Yazdır veya PDF olarak kaydet"));
    connect(printMenuButton_, &QAbstractButton::clicked, this, &ImsakiyeView::showPrintMenu);
    row->addWidget(printMenuButton_, 0, Qt::AlignVCenter);
    return toolbar;
}

QWidget *ImsakiyeView::makeFooter()
{
    footer_ = new QWidget;
    auto *row = new QHBoxLayout(footer_);
    row->setContentsMargins(horizontalPadding, 10, horizontalPadding, 10);
    row->setSpacing(4);
    // The place and method are what the page is of: they keep their width, and the general
    // notes on the right give way first.
    place_ = new TightLabel;
    place_->setObjectName(QStringLiteral("placeLabel"));
    place_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    sourceNote_ = new TightLabel;
    sourceNote_->setObjectName(QStringLiteral("sourceLabel"));
    sourceNote_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    notice_ = new TightLabel;
    notice_->setElides(true);
    notice_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    row->addWidget(place_, 0, Qt::AlignVCenter);
    row->addWidget(sourceNote_, 0, Qt::AlignVCenter);
    row->addStretch(1);
    row->addSpacing(12);
    row->addWidget(notice_, 0, Qt::AlignVCenter);
    return footer_;
}

QWidget *ImsakiyeView::divider()
{
    auto *line = new QWidget;
    line->setFixedHeight(1);
    line->setAutoFillBackground(true);
    dividers_.push_back(line);
    return line;
}

void ImsakiyeView::addShortcuts()
{
    const auto add = [this](const QList<QKeySequence> &keys, auto slot) {
        auto *action = new QAction(this);
        action->setShortcuts(keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
        return action;
    };
    add({QKeySequence(Qt::Key_Left), QKeySequence(Qt::Key_PageUp)}, &ImsakiyeView::showPrevious);
    add({QKeySequence(Qt::Key_Right), QKeySequence(Qt::Key_PageDown)}, &ImsakiyeView::showNext);
    add({QKeySequence(Qt::Key_Home)}, &ImsakiyeView::showToday);
    printAction_ = add({QKeySequence::Print}, [this] { print(); });
    printAction_->setObjectName(QStringLiteral("printAction"));
    printAction_->setText(QStringLiteral("Yazdır…"));
    pdfAction_ = add({}, [this] { savePdf(); });
    pdfAction_->setObjectName(QStringLiteral("pdfAction"));
    pdfAction_->setText(QStringLiteral("PDF olarak kaydet…"));
    calendarAction_ = add({}, [this] { saveCalendar(); });
    calendarAction_->setObjectName(QStringLiteral("calendarAction"));
    calendarAction_->setText(QStringLiteral("Takvime aktar…"));
}

void ImsakiyeView::showPrintMenu()
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(printAction_);
    menu->addAction(pdfAction_);
    menu->addAction(calendarAction_);
    menu->popup(printMenuButton_->mapToGlobal(QPoint(0, printMenuButton_->height())));
}

// State and loading.

void ImsakiyeView::setMode(ImsakiyeMode mode)
{
    if (mode == mode_)
        return;
    mode_ = mode;
    offset_ = 0;
    picker_->setCurrent(static_cast<int>(mode));
    reloadIfNeeded();
    refresh();
}

void ImsakiyeView::setOffset(int64_t offset)
{
    if (offset == offset_)
        return;
    offset_ = offset;
    reloadIfNeeded();
    refresh();
}

ImsakiyePage ImsakiyeView::currentPage() const
{
    return page(mode_, offset_, model_);
}

ImsakiyeView::LoadKey ImsakiyeView::currentKey() const
{
    const ImsakiyePage page = currentPage();
    // Only a Ramadan page moves when today's own Hijri date arrives.
    const int64_t hijriYear = mode_ == ImsakiyeMode::ramadan ? Imsakiye::hijriYear(page) : 0;
    const Location &location = model_.setting(Settings::location);
    return {mode_, offset_, location, model_.setting(Settings::method), page.today, hijriYear};
}

void ImsakiyeView::reloadIfNeeded()
{
    const LoadKey key = currentKey();
    if (requested_ == key)
        return;
    requested_ = key;
    const uint64_t generation = ++generation_;
    const ImsakiyePage page = currentPage();
    setLoading(true);
    auto *watcher = new QFutureWatcher<Loaded>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, generation, page, key] {
        watcher->deleteLater();
        if (generation != generation_)
            return;
        apply(watcher->result(), page, key);
    });
    watcher->setFuture(load(mode_, offset_, model_));
}

void ImsakiyeView::apply(const Loaded &loaded, const ImsakiyePage &page, const LoadKey &key)
{
    days_ = loaded.days;
    source_ = loaded.source;
    shownPage_ = page;
    shownKey_ = key;
    setLoading(false);
    refresh();

    const auto today = std::find_if(days_.begin(), days_.end(),
                                    [this](const DayTimes &day) { return day.day == model_.todayKey(); });
    centrePending_ = today != days_.end();
    if (centrePending_)
        centreToday();
    else
        list_->verticalScrollBar()->setValue(0);
    emit daysChanged();
}

void ImsakiyeView::setLoading(bool loading)
{
    isLoading_ = loading;
    const bool waiting = isLoading_ && days_.empty();
    spinner_->setVisible(waiting);
    list_->setVisible(!waiting);
}

void ImsakiyeView::centreToday()
{
    const DayKey today = model_.todayKey();
    const auto found = std::find_if(days_.begin(), days_.end(), [&](const DayTimes &day) { return day.day == today; });
    if (found == days_.end())
        return;
    const int index = static_cast<int>(found - days_.begin());
    QScrollBar *bar = list_->verticalScrollBar();
    bar->setValue(scrollShowing(index, list_->viewport()->height(), bar->maximum()));
}

int ImsakiyeView::scrollShowing(int index, int viewportHeight, int maximum)
{
    // Today near the middle, and the top of the view on a row's top so that no row shows cut in
    // half under the headings.
    const int pitch = ImsakiyeRow::rowHeight + rowSpacing;
    const int rowsAbove = std::max(0, (viewportHeight / pitch - 1) / 2);
    const int first = std::max(0, index - rowsAbove);
    const auto rowTop = [&](int row) { return row == 0 ? 0 : listTop + row * pitch; };
    int value = rowTop(first);
    // Near the end, the last whole row's top that the list can scroll to.
    for (int row = first; value > maximum && row > 0; --row)
        value = rowTop(row - 1);
    return std::min(value, maximum);
}

// Drawing.

QString ImsakiyeView::title() const
{
    const ImsakiyePage page = shownPage_ ? *shownPage_ : currentPage();
    return fromStd(Imsakiye::title(page, days_, model_.zone()));
}

ImsakiyeSheet ImsakiyeView::sheet() const
{
    const ImsakiyePage page = shownPage_ ? *shownPage_ : currentPage();
    const Location location = shownKey_ ? shownKey_->location : model_.setting(Settings::location);
    const CalculationMethod method = shownKey_ ? shownKey_->method : model_.setting(Settings::method);
    QStringList notices;
    for (const std::string_view notice : Imsakiye::notices(days_))
        notices << ViewStyle::text(notice);
    return {page.mode, title(), fromStd(Imsakiye::placeLine(location, method)),
            Imsakiye::rows(page, days_, location.timeZone()), source_, notices};
}

void ImsakiyeView::refresh()
{
    const Appearance appearance = Colors::current();
    if (appearance != appearance_)
        applyAppearance(appearance);
    refreshToolbar(appearance);
    refreshRows(appearance);
    refreshFooter(appearance);
}

void ImsakiyeView::applyAppearance(Appearance appearance)
{
    appearance_ = appearance;
    setPalette(ViewStyle::palette(appearance));
    for (QWidget *line : dividers_) {
        QPalette palette = line->palette();
        palette.setColor(QPalette::Window, separator(appearance));
        line->setPalette(palette);
    }
    spinner_->setColor(ViewStyle::secondary(appearance));
    picker_->setAppearance(appearance);
    list_->verticalScrollBar()->setStyleSheet(scrollBarStyle(appearance));
}

void ImsakiyeView::refreshToolbar(Appearance appearance)
{
    const QColor secondary = ViewStyle::secondary(appearance);
    title_->setText(title(), ViewStyle::digitsFont(titlePoints, QFont::DemiBold), ViewStyle::primary(appearance));
    previous_->setContent(QStringLiteral("chevron.left"), buttonPoints, QString(), QFont(), secondary);
    next_->setContent(QStringLiteral("chevron.right"), buttonPoints, QString(), QFont(), secondary);
    today_->setEnabled(offset_ != 0);
    today_->setContent(QString(), 0, QStringLiteral("Bugün"), ViewStyle::font(todayPoints, QFont::Medium),
                       offset_ != 0 ? ViewStyle::accent(appearance) : ViewStyle::tertiary(appearance));
    printMenuButton_->setContent(QStringLiteral("printer"), buttonPoints, QString(), QFont(), secondary);
}

void ImsakiyeView::refreshRows(Appearance appearance)
{
    const ImsakiyePage page = shownPage_ ? *shownPage_ : currentPage();
    header_->setContent(page.mode, appearance);
    const std::vector<Imsakiye::Row> rows = Imsakiye::rows(page, days_, model_.zone());
    auto *layout = static_cast<QVBoxLayout *>(rowsBox_->layout());
    while (rows_.size() > rows.size()) {
        delete rows_.back();
        rows_.pop_back();
    }
    while (rows_.size() < rows.size()) {
        auto *row = new ImsakiyeRow;
        // Before the stretch that keeps short pages at the top.
        layout->insertWidget(static_cast<int>(rows_.size()), row);
        rows_.push_back(row);
    }
    for (size_t i = 0; i < rows.size(); ++i)
        rows_[i]->setContent({rows[i], page.mode, appearance});
    placeHeader();
}

void ImsakiyeView::refreshFooter(Appearance appearance)
{
    const QFont font = ViewStyle::font(footerPoints);
    const QColor secondary = ViewStyle::secondary(appearance);
    place_->setSymbol(QStringLiteral("mappin.and.ellipse"), footerPoints, ViewStyle::accent(appearance));
    place_->setText(fromStd(Imsakiye::placeLine(model_.setting(Settings::location), model_.setting(Settings::method))),
                    font, secondary);
    const std::optional<std::string_view> note = Imsakiye::sourceNote(source_);
    sourceNote_->setText(note ? ViewStyle::text(*note) : QString(), font, secondary);
    sourceNote_->setVisible(note.has_value());
    const QString notices = sheet().notices.join(QStringLiteral("  ·  "));
    notice_->setText(notices, font, ViewStyle::tertiary(appearance));
    notice_->setToolTip(notices);
}

void ImsakiyeView::placeHeader()
{
    // The headings stand over the rows wherever the list and its scroll bar put them.
    const QPoint origin = rowsBox_->mapTo(this, QPoint(0, 0)) - header_->pos();
    const qreal left = origin.x() + listPadding;
    header_->setRowSpan(left, left + std::max(0, rowsBox_->width() - 2 * listPadding));
}

bool ImsakiyeView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == rowsBox_ && (event->type() == QEvent::Resize || event->type() == QEvent::Move))
        placeHeader();
    return QWidget::eventFilter(watched, event);
}

bool ImsakiyeView::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // The desktop switched between light and dark.
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ThemeChange)
        refresh();
    return handled;
}

void ImsakiyeView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeHeader();
}

void ImsakiyeView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    refresh();
    centrePending_ = true;
    centreToday();
}

// Paper.

void ImsakiyeView::setDialogs(ImsakiyePrint::Dialogs dialogs)
{
    dialogs_ = std::move(dialogs);
}

bool ImsakiyeView::savePdf()
{
    const ImsakiyeSheet sheet = this->sheet();
    const QString path = dialogs_.pdfPath ? dialogs_.pdfPath(this, ImsakiyePrint::suggestedPath(sheet)) : QString();
    if (path.isEmpty())
        return false;
    return ImsakiyePrint::writePdf(sheet, path);
}

bool ImsakiyeView::saveCalendar()
{
    if (days_.empty())
        return false;
    const ImsakiyeSheet sheet = this->sheet();
    const QString path
        = dialogs_.calendarPath ? dialogs_.calendarPath(this, ImsakiyePrint::suggestedCalendarPath(sheet)) : QString();
    if (path.isEmpty())
        return false;
    const Location &location = model_.setting(Settings::location);
    const CalculationMethod method = model_.setting(Settings::method);
    const int64_t correction = model_.setting(Settings::timesOptions).hijriCorrection;
    const CalendarFile::Contents contents{
        location, method, days_, {Prayer::all.begin(), Prayer::all.end()},
        ReligiousDays::between(days_.front().day, days_.back().day, method, correction), model_.now()};
    return SafeFile::write(path.toStdString(), CalendarFile::ics(contents));
}

bool ImsakiyeView::print()
{
    QPrinter printer(QPrinter::HighResolution);
    if (!dialogs_.choosePrinter || !dialogs_.choosePrinter(printer, this))
        return false;
    return ImsakiyePrint::print(sheet(), printer);
}

} // namespace orvel

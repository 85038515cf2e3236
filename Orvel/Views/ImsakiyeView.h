#pragma once

#include "CalculationMethod.h"
#include "Colors.h"
#include "DayKey.h"
#include "DayTimes.h"
#include "Imsakiye.h"
#include "ImsakiyeMode.h"
#include "ImsakiyePrint.h"
#include "TimesSource.h"
#include "Location.h"

#include <QFuture>
#include <QSize>
#include <QWidget>

#include <cstdint>
#include <optional>
#include <vector>

class QAction;
class QScrollArea;

namespace orvel {

class AppModel;
class ImsakiyeHeader;
class SegmentedControl;
class ImsakiyeRow;
class Spinner;
class SymbolButton;
class TightLabel;

// The timetable window's content: a week, a month or a Ramadan, one row per day, paged back and
// forth, printable. The days load off the UI thread whenever the page, the place, the method or
// the day changes; a newer load drops an older one's answer, and the rows on screen stay until
// the new ones arrive.
class ImsakiyeView : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize defaultSize{760, 660};
    static constexpr QSize minimumContentSize{700, 420};

    // A page's days and where they came from.
    struct Loaded {
        std::vector<DayTimes> days;
        TimesSource source = TimesSource::online;
    };

    // What a load depends on; a change of any of it starts a new one.
    struct LoadKey {
        ImsakiyeMode mode = ImsakiyeMode::month;
        int64_t offset = 0;
        Location location;
        CalculationMethod method = CalculationMethod::diyanet;
        DayKey today;
        int64_t hijriYear = 0; // of a Ramadan page; moves when today's own Hijri date arrives

        bool operator==(const LoadKey &) const = default;
    };

    // With `shown`, the view starts with those days of the current page instead of loading them.
    ImsakiyeView(AppModel &model, ImsakiyeMode mode, std::optional<Loaded> shown = std::nullopt,
                 QWidget *parent = nullptr);
    ~ImsakiyeView() override;

    // The page of the model's today, off the UI thread.
    static QFuture<Loaded> load(ImsakiyeMode mode, int64_t offset, const AppModel &model);
    static ImsakiyePage page(ImsakiyeMode mode, int64_t offset, const AppModel &model);
    // The list's scroll position that shows the row `index` near the middle of a view this tall
    // with whole rows from the top.
    static int scrollShowing(int index, int viewportHeight, int maximum);

    ImsakiyeMode mode() const { return mode_; }
    // A new mode starts at the current page.
    void setMode(ImsakiyeMode mode);
    int64_t offset() const { return offset_; }
    void setOffset(int64_t offset);
    void showPrevious() { setOffset(offset_ - 1); }
    void showNext() { setOffset(offset_ + 1); }
    void showToday() { setOffset(0); }

    const std::vector<DayTimes> &days() const { return days_; }
    bool isLoading() const { return isLoading_; }
    TimesSource source() const { return source_; }
    QString title() const;
    ImsakiyeSheet sheet() const;

    // Asks for a file and saves the page there; false when cancelled or not written.
    bool savePdf();
    // Asks where and writes the shown days' times and religious days as an iCalendar file; false
    // when cancelled or not written.
    bool saveCalendar();
    // Asks for a printer and prints the page; false when cancelled or not printed.
    bool print();
    void setDialogs(ImsakiyePrint::Dialogs dialogs);


signals:
    // New days are on screen.
    void daysChanged();

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeToolbar();
    QWidget *makeFooter();
    QWidget *divider();
    void addShortcuts();
    ImsakiyePage currentPage() const;
    LoadKey currentKey() const;
    // Starts a load unless the shown or requested page is already this one.
    void reloadIfNeeded();
    void apply(const Loaded &loaded, const ImsakiyePage &page, const LoadKey &key);
    void setLoading(bool loading);
    void refresh();
    void refreshToolbar(Appearance appearance);
    void refreshRows(Appearance appearance);
    void refreshFooter(Appearance appearance);
    void applyAppearance(Appearance appearance);
    void placeHeader();
    void centreToday();
    void showPrintMenu();

    AppModel &model_;
    ImsakiyeMode mode_;
    int64_t offset_ = 0;
    std::vector<DayTimes> days_;
    bool isLoading_ = false;
    TimesSource source_ = TimesSource::online;
    // The page whose days are on screen or on their way; each load carries its generation, and
    // an answer from an older one is dropped.
    std::optional<LoadKey> requested_;
    // The page and key of the days on screen.
    std::optional<ImsakiyePage> shownPage_;
    std::optional<LoadKey> shownKey_;
    uint64_t generation_ = 0;
    bool centrePending_ = false;
    std::optional<Appearance> appearance_;
    ImsakiyePrint::Dialogs dialogs_;

    SegmentedControl *picker_ = nullptr;
    SymbolButton *previous_ = nullptr;
    TightLabel *title_ = nullptr;
    SymbolButton *next_ = nullptr;
    SymbolButton *today_ = nullptr;
    SymbolButton *printMenuButton_ = nullptr;
    QAction *printAction_ = nullptr;
    QAction *pdfAction_ = nullptr;
    QAction *calendarAction_ = nullptr;
    ImsakiyeHeader *header_ = nullptr;
    Spinner *spinner_ = nullptr;
    QScrollArea *list_ = nullptr;
    QWidget *rowsBox_ = nullptr;
    std::vector<ImsakiyeRow *> rows_;
    std::vector<QWidget *> dividers_;
    QWidget *footer_ = nullptr;
    TightLabel *place_ = nullptr;
    TightLabel *sourceNote_ = nullptr;
    TightLabel *notice_ = nullptr;
};

} // namespace orvel

#include "AppModel.h"
#include "Settings.h"
#include "ImsakiyeHeader.h"
#include "SegmentedControl.h"
#include "ImsakiyeRow.h"
#include "ImsakiyeView.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"
#include "Spinner.h"
#include "SymbolButton.h"
#include "TightLabel.h"
#include "ViewsTestSupport.h"

#include <gtest/gtest.h>

#include <QFile>

#include <QAction>
#include <QPrinter>
#include <QProcess>
#include <QScrollArea>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <condition_variable>
#include <mutex>
#include <set>

using namespace orvel;
using namespace orvel::test;

namespace {

constexpr int loadWaitMs = 10000;

// The day rows, top to bottom.
std::vector<ImsakiyeRow *> rowsOf(const ImsakiyeView &view)
{
    return laidOut<ImsakiyeRow>(*child(view, "rows"));
}

// The dates of the rows on screen.
QStringList dates(const ImsakiyeView &view)
{
    QStringList dates;
    for (const ImsakiyeRow *row : rowsOf(view))
        dates << QString::fromStdString(row->content().row.day.description());
    return dates;
}

QString pdfText(const QString &path)
{
    QProcess pdftotext;
    pdftotext.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), path, QStringLiteral("-")});
    if (!pdftotext.waitForFinished(30000) || pdftotext.exitCode() != 0)
        return {};
    return QString::fromUtf8(pdftotext.readAllStandardOutput());
}

QString pdfInfo(const QString &path)
{
    QProcess pdfinfo;
    pdfinfo.start(QStringLiteral("pdfinfo"), {path});
    pdfinfo.waitForFinished(30000);
    return QString::fromUtf8(pdfinfo.readAllStandardOutput());
}

// A model on its own settings and cache, whose "web service" computes months, and holds back the
// months a test blocks until it lets them go.
class ImsakiyeViewTest : public ::testing::Test {
protected:
    ImsakiyeViewTest() { SettingsStore::setStore(std::make_unique<QSettings>(folder.filePath("Orvel.conf"), QSettings::IniFormat)); }
    ~ImsakiyeViewTest() override
    {
        release();
        QThreadPool::globalInstance()->waitForDone(loadWaitMs);
        QCoreApplication::sendPostedEvents();
        SettingsStore::setStore(nullptr);
        Colors::forceAppearance(std::nullopt);
    }

    std::unique_ptr<AppModel> model(int hour = 12, int minute = 30)
    {
        return std::make_unique<AppModel>(
            AppModel::Services{std::make_shared<ManualClock>(at(2026, 3, 10, hour, minute)), repository},
            ModelRun::still, ModelVoice::silent);
    }
    std::unique_ptr<AppModel> loadedModel()
    {
        std::unique_ptr<AppModel> loaded = model();
        QSignalSpy finished(loaded.get(), &AppModel::loadFinished);
        loaded->set(Settings::location, {"İstanbul, Üsküdar", 41.0255, 29.0153, "Europe/Istanbul"});
        EXPECT_TRUE(finished.wait(loadWaitMs));
        return loaded;
    }
    static bool waitForDays(ImsakiyeView &view)
    {
        if (!view.isLoading())
            return true;
        QSignalSpy changed(&view, &ImsakiyeView::daysChanged);
        return changed.wait(loadWaitMs);
    }

    void block(MonthKey month)
    {
        const std::lock_guard lock(mutex);
        blocked.insert(month);
    }
    void release()
    {
        {
            const std::lock_guard lock(mutex);
            blocked.clear();
        }
        releasedMonths.notify_all();
    }

    QTemporaryDir folder;
    std::mutex mutex;
    std::condition_variable releasedMonths;
    std::set<MonthKey> blocked;
    std::shared_ptr<PrayerRepository> repository = std::make_shared<PrayerRepository>(
        folder.filePath("Cache").toStdString(), [this](MonthKey month, const Location &location, CalculationMethod method) {
            std::unique_lock lock(mutex);
            releasedMonths.wait(lock, [&] { return !blocked.contains(month); });
            lock.unlock();
            std::vector<DayTimes> days;
            for (const DayKey &key : month.days())
                days.push_back(PrayerCalculator::times(key, location, method));
            return days;
        });
};

} // namespace

// The month opens on today with whole rows under the headings: the view's top is a row's top.
TEST(ImsakiyeScroll, TodayNearTheMiddleWithWholeRowsOnTop)
{
    const int pitch = ImsakiyeRow::rowHeight + 2;
    for (const int height : {300, 451, 520}) {
        const int maximum = 31 * pitch + 20 - height;
        for (int index = 0; index < 31; ++index) {
            const int value = ImsakiyeView::scrollShowing(index, height, maximum);
            SCOPED_TRACE(std::to_string(height) + " " + std::to_string(index));
            EXPECT_TRUE(value == 0 || (value - 4) % pitch == 0) << value;
            EXPECT_LE(value, maximum);
            // Today is in view.
            const int top = 4 + index * pitch;
            EXPECT_GE(top, value);
            EXPECT_LE(top + ImsakiyeRow::rowHeight, value + height);
        }
    }
    EXPECT_EQ(ImsakiyeView::scrollShowing(0, 400, 600), 0);
}

TEST_F(ImsakiyeViewTest, PagesWithButtonsKeysAndModes)
{
    std::unique_ptr<AppModel> model = loadedModel();
    ImsakiyeView view(*model, ImsakiyeMode::month);
    view.resize(ImsakiyeView::defaultSize);
    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    ASSERT_TRUE(waitForDays(view));
    EXPECT_EQ(child<TightLabel>(view, "titleLabel")->text(), QStringLiteral("Mart 2026"));
    ASSERT_EQ(rowsOf(view).size(), 31u);
    EXPECT_FALSE(child<SymbolButton>(view, "todayButton")->isEnabled()) << "the current page is shown";
    EXPECT_EQ(child<ImsakiyeHeader>(view, "header")->headings(),
              (QStringList{"Tarih", "Hicri", "İmsak", "Güneş", "Öğle", "İkindi", "Akşam", "Yatsı"}));
    EXPECT_EQ(rowsOf(view)[9]->accessibleName(), QStringLiteral("10 Mar Sal, 20 Ramazan, İmsak 05:53, Güneş 07:17, Öğle 13:19, "
                                                               "İkindi 16:34, Akşam 19:11, Yatsı 20:30, bugün"));
    EXPECT_TRUE(Imsakiye::isDimmed(rowsOf(view)[8]->content().row));

    // Each step is the next page, from the buttons and from the keyboard alike.
    const auto step = [&](auto act, const QString &title, int64_t offset) {
        act();
        EXPECT_EQ(view.offset(), offset);
        EXPECT_TRUE(waitForDays(view)) << title.toStdString();
        EXPECT_EQ(child<TightLabel>(view, "titleLabel")->text(), title);
        EXPECT_EQ(child<SymbolButton>(view, "todayButton")->isEnabled(), offset != 0);
    };
    step([&] { QTest::mouseClick(child<SymbolButton>(view, "nextButton"), Qt::LeftButton); }, "Nisan 2026", 1);
    step([&] { QTest::keyClick(&view, Qt::Key_Right); }, "Mayıs 2026", 2);
    step([&] { QTest::mouseClick(child<SymbolButton>(view, "todayButton"), Qt::LeftButton); }, "Mart 2026", 0);
    step([&] { QTest::keyClick(&view, Qt::Key_PageUp); }, "Şubat 2026", -1);
    step([&] { QTest::mouseClick(child<SymbolButton>(view, "previousButton"), Qt::LeftButton); }, "Ocak 2026", -2);
    step([&] { QTest::keyClick(&view, Qt::Key_Left); }, "Aralık 2025", -3);
    EXPECT_EQ(rowsOf(view).size(), 31u);
    EXPECT_EQ(dates(view).first(), QStringLiteral("2025-12-01"));
    step([&] { QTest::keyClick(&view, Qt::Key_Home); }, "Mart 2026", 0);
    step([&] { QTest::keyClick(&view, Qt::Key_PageDown); }, "Nisan 2026", 1);

    // Another mode starts at its current page.
    SegmentedControl *modes = child<SegmentedControl>(view, "modePicker");
    step([&] { QTest::mouseClick(modes, Qt::LeftButton, {}, modes->segmentRect(ImsakiyeMode::ramadan).center()); },
         "Ramazan 1447 · 19 Şub – 19 Mar 2026", 0);
    EXPECT_EQ(view.mode(), ImsakiyeMode::ramadan);
    EXPECT_EQ(rowsOf(view).size(), 29u);
    EXPECT_EQ(child<ImsakiyeHeader>(view, "header")->headings(),
              (QStringList{"Tarih", "Ramazan", "İmsak", "Güneş", "Öğle", "İkindi", "Akşam", "Yatsı", "Sahur", "İftar"}));
    EXPECT_EQ(rowsOf(view)[25]->content().row.note, "Kadir Gecesi");
    EXPECT_EQ(rowsOf(view)[28]->content().row.note, "Ramazan Bayramı Arefesi");
    step([&] { view.showPrevious(); }, "Ramazan 1446 · 1 Mar – 29 Mar 2025", -1);
    EXPECT_EQ(rowsOf(view).size(), 29u);
    step([&] { view.setMode(ImsakiyeMode::week); }, "9 – 15 Mart 2026", 0);
    EXPECT_EQ(dates(view), (QStringList{"2026-03-09", "2026-03-10", "2026-03-11", "2026-03-12", "2026-03-13",
                                        "2026-03-14", "2026-03-15"}));
}

TEST_F(ImsakiyeViewTest, OldRowsStayAndASupersededAnswerIsDropped)
{
    // Today's times are not loaded: the page is the clock's month, and it is held back.
    std::unique_ptr<AppModel> model = this->model();
    block({2026, 3});
    ImsakiyeView view(*model, ImsakiyeMode::month);
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.show();
    EXPECT_TRUE(view.isLoading());
    EXPECT_TRUE(child<Spinner>(view, "spinner")->isVisible()) << "nothing to show yet";
    EXPECT_FALSE(child<QScrollArea>(view, "list")->isVisible());
    EXPECT_EQ(child<TightLabel>(view, "titleLabel")->text(), QStringLiteral("Mart 2026"));
    release();
    ASSERT_TRUE(waitForDays(view));
    EXPECT_FALSE(child<Spinner>(view, "spinner")->isVisible());
    EXPECT_EQ(rowsOf(view).size(), 31u);

    // April is slow; while it comes, March stays on screen without a spinner.
    block({2026, 4});
    view.showNext();
    EXPECT_TRUE(view.isLoading());
    EXPECT_FALSE(child<Spinner>(view, "spinner")->isVisible());
    EXPECT_EQ(dates(view).first(), QStringLiteral("2026-03-01"));
    // Back to March before April answers: March's answer wins, and April's, when it comes, is dropped.
    view.showPrevious();
    ASSERT_TRUE(waitForDays(view));
    QSignalSpy later(&view, &ImsakiyeView::daysChanged);
    release();
    QThreadPool::globalInstance()->waitForDone(loadWaitMs);
    deliverPosted();
    EXPECT_EQ(later.count(), 0);
    EXPECT_EQ(dates(view).first(), QStringLiteral("2026-03-01"));
    EXPECT_EQ(rowsOf(view).size(), 31u);
    EXPECT_FALSE(view.isLoading());

    // A new place is a new page: the rows follow the model.
    const QString before = QString::fromStdString(rowsOf(view)[0]->content().row.times[0]);
    model->set(Settings::location, {"Van", 38.5012, 43.3730, "Europe/Istanbul"});
    ASSERT_TRUE(waitForDays(view));
    EXPECT_NE(QString::fromStdString(rowsOf(view)[0]->content().row.times[0]), before);
    EXPECT_TRUE(child<TightLabel>(view, "placeLabel")->text().startsWith(QStringLiteral("Van · Diyanet")));
}

TEST_F(ImsakiyeViewTest, TodaysRowIsCentredAndOfflineIsSaid)
{
    std::unique_ptr<AppModel> model = loadedModel();
    ImsakiyeView view(*model, ImsakiyeMode::month);
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.resize(ImsakiyeView::minimumContentSize);
    view.show();
    ASSERT_TRUE(waitForDays(view));
    deliverPosted();
    const QScrollArea &list = *child<QScrollArea>(view, "list");
    ASSERT_GT(list.verticalScrollBar()->maximum(), 0) << "a month does not fit at this size";
    const ImsakiyeRow *today = rowsOf(view)[9];
    const int centre = today->mapTo(list.viewport(), today->rect().center()).y();
    EXPECT_NEAR(centre, list.viewport()->height() / 2, ImsakiyeRow::rowHeight / 2);
    EXPECT_TRUE(today->content().row.isToday);
    EXPECT_EQ(child<TightLabel>(view, "sourceLabel")->isHidden(), view.source() == TimesSource::online);

    // A page without today starts at its top.
    view.showNext();
    ASSERT_TRUE(waitForDays(view));
    EXPECT_EQ(list.verticalScrollBar()->value(), 0);

    // Shown days that were computed on the device say so, and an estimated time is marked.
    DayTimes estimated = march11();
    estimated.estimated[Prayer(Prayer::yatsi).index()] = true;
    ImsakiyeView offline(*model, ImsakiyeMode::week, ImsakiyeView::Loaded{{march10(), estimated}, TimesSource::offline});
    EXPECT_FALSE(offline.isLoading());
    EXPECT_FALSE(child<TightLabel>(offline, "sourceLabel")->isHidden());
    EXPECT_EQ(child<TightLabel>(offline, "sourceLabel")->text(), QStringLiteral("· Çevrimdışı, cihazda hesaplandı"));
    EXPECT_EQ(child<TightLabel>(offline, "titleLabel")->text(), QStringLiteral("10 – 11 Mart 2026"));
    EXPECT_FALSE(rowsOf(offline)[0]->content().row.times[5].ends_with('*'));
    EXPECT_TRUE(rowsOf(offline)[1]->content().row.times[5].ends_with('*'));
    EXPECT_TRUE(offline.sheet().notices.join(' ').contains(QStringLiteral("tahmini")));
    ImsakiyeView rule(*model, ImsakiyeMode::week, ImsakiyeView::Loaded{{march10()}, TimesSource::rule});
    EXPECT_EQ(child<TightLabel>(rule, "sourceLabel")->text(), QStringLiteral("· Diyanet hesabı, cihazda"));
    EXPECT_FALSE(rule.sheet().notices.join(' ').contains(QStringLiteral("tahmini")));
}

TEST_F(ImsakiyeViewTest, TheFooterKeepsThePlaceAndMethodWhole)
{
    std::unique_ptr<AppModel> model = loadedModel();
    model->set(Settings::location, {"Kahramanmaraş, Dulkadiroğlu", 37.58, 36.93, "Europe/Istanbul"});
    model->set(Settings::method, CalculationMethod::isna);
    DayTimes estimated = march10();
    estimated.estimated[Prayer(Prayer::imsak).index()] = true;
    ImsakiyeView view(*model, ImsakiyeMode::week, ImsakiyeView::Loaded{{estimated}, TimesSource::offline});
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.resize(ImsakiyeView::minimumContentSize);
    view.show();
    deliverPosted();
    const TightLabel &place = *child<TightLabel>(view, "placeLabel");
    EXPECT_TRUE(place.text().endsWith(QStringLiteral("(ISNA)"))) << place.text().toStdString();
    EXPECT_GE(place.width(), place.sizeHint().width()) << "the method's name is not cut";
}

TEST_F(ImsakiyeViewTest, PrintedAndSavedPageReadsBack)
{
    std::unique_ptr<AppModel> model = loadedModel();
    ImsakiyeView view(*model, ImsakiyeMode::ramadan);
    ASSERT_TRUE(waitForDays(view));

    QStringList suggested;
    QString answer;
    int printers = 0;
    view.setDialogs({[&](QWidget *, const QString &path) {
                         suggested << path;
                         return answer;
                     },
                     [&](QPrinter &printer, QWidget *) {
                         ++printers;
                         printer.setOutputFormat(QPrinter::PdfFormat);
                         printer.setOutputFileName(folder.filePath("printed.pdf"));
                         return true;
                     }});
    EXPECT_FALSE(view.savePdf()) << "cancelled";
    ASSERT_EQ(suggested.size(), 1);
    EXPECT_TRUE(suggested[0].endsWith(QStringLiteral("/İmsakiye Ramazan 1447 · 19 Şub – 19 Mar 2026.pdf"))) << suggested[0].toStdString();

    answer = folder.filePath("ramazan.pdf");
    child<QAction>(view, "pdfAction")->trigger();
    const QString text = pdfText(answer);
    ASSERT_FALSE(text.isEmpty()) << "pdftotext could not read " << answer.toStdString();
    for (const char *expected : {"İMSAKİYE", "Ramazan 1447 · 19 Şub – 19 Mar 2026", "İstanbul, Üsküdar · Diyanet İşleri Başkanlığı",
                                 "Sahur", "İftar", "Kadir Gecesi", "Ramazan Bayramı Arefesi", "1. gün", "29. gün",
                                 "Hicri tarihler ±1 gün farklı olabilir"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(expected))) << expected << "\n" << text.toStdString();
    // Today's row with its six times on one line.
    EXPECT_TRUE(text.contains(QRegularExpression(QStringLiteral("10 Mar Sal +20\\. gün +05:53 +07:17 +13:19 +16:34 +19:11 +20:30"))))
        << text.toStdString();
    const QString info = pdfInfo(answer);
    EXPECT_TRUE(info.contains(QRegularExpression(QStringLiteral("Pages: +1\\n")))) << info.toStdString();
    EXPECT_TRUE(info.contains(QStringLiteral("(A4)"))) << info.toStdString();

    // A whole month, printed: one page, every day on it.
    view.setMode(ImsakiyeMode::month);
    ASSERT_TRUE(waitForDays(view));
    view.setFocus();
    child<QAction>(view, "printAction")->trigger();
    EXPECT_EQ(printers, 1);
    const QString printed = pdfText(folder.filePath("printed.pdf"));
    EXPECT_TRUE(printed.contains(QStringLiteral("Mart 2026")));
    for (const ImsakiyeRow *row : rowsOf(view))
        EXPECT_TRUE(printed.contains(QString::fromStdString(row->content().row.date))) << row->content().row.date;
    EXPECT_TRUE(printed.contains(QStringLiteral("Ramazan Başlangıcı")) == false) << "1 Ramadan is in February";
    EXPECT_TRUE(pdfInfo(folder.filePath("printed.pdf")).contains(QRegularExpression(QStringLiteral("Pages: +1\\n"))));
}

// "Takvime aktar…" writes the page on screen: six events a day and its religious days.
TEST_F(ImsakiyeViewTest, TheShownPageGoesToTheCalendar)
{
    std::unique_ptr<AppModel> model = loadedModel();
    ImsakiyeView view(*model, ImsakiyeMode::ramadan);
    ASSERT_TRUE(waitForDays(view));
    QString suggested, answer;
    view.setDialogs({{}, {}, [&](QWidget *, const QString &path) {
                         suggested = path;
                         return answer;
                     }});
    EXPECT_FALSE(view.saveCalendar()) << "cancelled";
    EXPECT_TRUE(suggested.endsWith(QStringLiteral("/İmsakiye Ramazan 1447 · 19 Şub – 19 Mar 2026.ics")))
        << suggested.toStdString();

    answer = folder.filePath("ramazan.ics");
    child<QAction>(view, "calendarAction")->trigger();
    QFile file(answer);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    EXPECT_TRUE(text.startsWith(QStringLiteral("BEGIN:VCALENDAR")));
    // 29 days, the Ramadan's start, the Kadir night and the Arefe.
    EXPECT_EQ(text.count(QStringLiteral("BEGIN:VEVENT")), 29 * 6 + 3);
    for (const char *expected : {"SUMMARY:Ramazan Başlangıcı", "SUMMARY:Kadir Gecesi", "SUMMARY:Ramazan Bayramı Arefesi",
                                 "DTSTART;VALUE=DATE:20260316"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(expected))) << expected;
}

TEST_F(ImsakiyeViewTest, RendersInTheForcedAppearance)
{
    std::unique_ptr<AppModel> model = loadedModel();
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        Colors::forceAppearance(appearance);
        ImsakiyeView view(*model, ImsakiyeMode::week);
        view.setAttribute(Qt::WA_DontShowOnScreen);
        view.resize(760, 400);
        view.show();
        ASSERT_TRUE(waitForDays(view));
        deliverPosted();
        const QImage image = view.grab().toImage();
        const qreal corner = image.pixelColor(2, 2).lightnessF();
        EXPECT_TRUE(appearance == Appearance::dark ? corner < 0.3 : corner > 0.8) << corner;
        // Today's row is tinted with the accent.
        const ImsakiyeRow *today = rowsOf(view)[1];
        const QColor tint = image.pixelColor(today->mapTo(&view, QPoint(4, today->height() / 2)));
        EXPECT_GT(tint.green(), tint.red()) << tint.name().toStdString();
    }
}

TEST_F(ImsakiyeViewTest, RamadanPageMovesOnOnceTodaysTimesSayThisOneIsOver)
{
    // 10 April 2025 is in Şevval; until today's times are loaded the calendar's year stands.
    AppModel model(AppModel::Services{std::make_shared<ManualClock>(at(2025, 4, 10, 12, 0)), repository},
                   ModelRun::still, ModelVoice::silent);
    ImsakiyeView view(model, ImsakiyeMode::ramadan);
    ASSERT_TRUE(waitForDays(view));
    EXPECT_EQ(child<TightLabel>(view, "titleLabel")->text(), QStringLiteral("Ramazan 1446 · 1 Mar – 29 Mar 2025"));

    model.reload();
    const TightLabel *title = child<TightLabel>(view, "titleLabel");
    EXPECT_TRUE(QTest::qWaitFor([&] { return title->text() == QStringLiteral("Ramazan 1447 · 19 Şub – 19 Mar 2026"); }, loadWaitMs))
        << title->text().toStdString();
    EXPECT_EQ(rowsOf(view).size(), 29u);
}

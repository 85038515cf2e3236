#include "AppModel.h"
#include "DayProgressBar.h"
#include "Settings.h"
#include "HeroCard.h"
#include "KerahatBanner.h"
#include "KerahatRow.h"
#include "PanelView.h"
#include "PrayerCalculator.h"
#include "PrayerList.h"
#include "PrayerRepository.h"
#include "PrayerRow.h"
#include "Spinner.h"
#include "SymbolButton.h"
#include "TightLabel.h"
#include "ViewStyle.h"
#include "ViewsTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <tuple>

#include <QFontMetricsF>
#include <QImage>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

using namespace orvel;
using namespace orvel::test;

namespace {

PrayerRow *rowOf(const PrayerList &list, Prayer prayer)
{
    for (PrayerRow *row : laidOut<PrayerRow>(list))
        if (row->content().prayer == prayer)
            return row;
    return nullptr;
}

// What the list shows and says, top to bottom.
QStringList listing(const PrayerList &list)
{
    QStringList names;
    for (QWidget *row : laidOut(list))
        names << row->accessibleName();
    return names;
}

constexpr int loadWaitMs = 10000;

// A model on a settings file and a cache of its own, whose "web service" answers with the
// calculator's months, or fails on demand.
class PanelViewTest : public ::testing::Test {
protected:
    PanelViewTest() { SettingsStore::setStore(std::make_unique<QSettings>(folder.filePath("Orvel.conf"), QSettings::IniFormat)); }
    ~PanelViewTest() override
    {
        QThreadPool::globalInstance()->waitForDone(loadWaitMs);
        QCoreApplication::sendPostedEvents();
        SettingsStore::setStore(nullptr);
        Colors::forceAppearance(std::nullopt);
    }

    std::unique_ptr<AppModel> model(int hour, int minute)
    {
        return std::make_unique<AppModel>(
            AppModel::Services{std::make_shared<ManualClock>(at(2026, 3, 10, hour, minute)), repository},
            ModelRun::still, ModelVoice::silent);
    }
    static bool loadUskudar(AppModel &model)
    {
        QSignalSpy finished(&model, &AppModel::loadFinished);
        model.set(Settings::location, {"İstanbul, Üsküdar", 41.0255, 29.0153, "Europe/Istanbul"});
        return finished.wait(loadWaitMs);
    }
    std::unique_ptr<AppModel> loadedModel(int hour, int minute)
    {
        std::unique_ptr<AppModel> loaded = model(hour, minute);
        EXPECT_TRUE(loadUskudar(*loaded));
        return loaded;
    }

    QTemporaryDir folder;
    std::atomic<bool> failing = false;
    std::shared_ptr<PrayerRepository> repository = std::make_shared<PrayerRepository>(
        folder.filePath("Cache").toStdString(), [this](MonthKey month, const Location &location, CalculationMethod method) {
            if (failing)
                throw std::runtime_error("no network");
            std::vector<DayTimes> days;
            for (const DayKey &key : month.days())
                days.push_back(PrayerCalculator::times(key, location, method));
            return days;
        });
};

} // namespace

TEST_F(PanelViewTest, SpinnerStandsInUntilTheDayIsLoaded)
{
    std::unique_ptr<AppModel> model = this->model(12, 30);
    PanelView view(*model, {}, {}, {});
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.show();

    EXPECT_TRUE(child<Spinner>(view, "spinner")->isVisible());
    EXPECT_TRUE(child<Spinner>(view, "spinner")->isSpinning());
    EXPECT_FALSE(child<HeroCard>(view, "heroCard")->isVisible());
    EXPECT_FALSE(child<PrayerList>(view, "prayerList")->isVisible());
    EXPECT_FALSE(child<TightLabel>(view, "ramadanLabel")->isVisible()) << "no Ramadan line without a day";

    ASSERT_TRUE(loadUskudar(*model));
    EXPECT_FALSE(child<Spinner>(view, "spinner")->isVisible());
    EXPECT_TRUE(child<HeroCard>(view, "heroCard")->isVisible());
}

TEST_F(PanelViewTest, ShowsTheDayAtNoonInRamadan)
{
    std::unique_ptr<AppModel> model = loadedModel(12, 30);
    PanelView view(*model, {}, {}, {});

    const QString date = child<TightLabel>(view, "dateLabel")->text();
    EXPECT_TRUE(date.endsWith(QStringLiteral(" · 20 Ramazan 1447"))) << date.toStdString();
    EXPECT_EQ(child<TightLabel>(view, "ramadanLabel")->text(), QStringLiteral("Ramazan'ın 20. günü"));

    const HeroCard &hero = *child<HeroCard>(view, "heroCard");
    EXPECT_EQ(child<TightLabel>(hero, "countdownTitle")->text(), QStringLiteral("Öğle ezanına kalan"));
    EXPECT_EQ(child<TightLabel>(hero, "bigTime")->text(), QStringLiteral("49dk"));
    EXPECT_EQ(child<TightLabel>(hero, "subtitle")->text(), QStringLiteral("13:19"));
    EXPECT_EQ(hero.accessibleName(), model->accessibilityLabel());
    EXPECT_FALSE(child<DayProgressBar>(hero, "progressBar")->content().inKerahat);

    const PrayerList &list = *child<PrayerList>(view, "prayerList");
    EXPECT_EQ(listing(list), (QStringList{"İmsak 05:53", "Güneş 07:17, şu anki orvel", "Kerahat, 07:17 ile 08:02 arası",
                                          "Kerahat (istiva), 13:09 ile 13:19 arası", "Öğle 13:19", "İkindi 16:34",
                                          "Kerahat, 18:26 ile 19:11 arası", "Akşam 19:11", "Yatsı 20:30"}));
    EXPECT_EQ(rowOf(list, Prayer::ogle)->content().state, PrayerRowState::next);
    EXPECT_EQ(rowOf(list, Prayer::imsak)->content().tag, QStringLiteral("sahur sonu"));

    const std::vector<KerahatRow *> kerahat = laidOut<KerahatRow>(list);
    ASSERT_EQ(kerahat.size(), 3u);
    EXPECT_EQ(kerahat[1]->countdownText(), QStringLiteral(" · 39 dk sonra"));
    EXPECT_EQ(kerahat[2]->countdownText(), QString()) << "only the next interval counts down";

    EXPECT_TRUE(child<KerahatBanner>(view, "kerahatBanner")->isHidden());
    EXPECT_EQ(child<TightLabel>(view, "sourceLabel")->text(), QStringLiteral("Diyanet hesabı · cihazda"));
}

TEST_F(PanelViewTest, KerahatBannerWhileAnIntervalRuns)
{
    std::unique_ptr<AppModel> model = loadedModel(13, 12);
    PanelView view(*model, {}, {}, {});

    const KerahatBanner &banner = *child<KerahatBanner>(view, "kerahatBanner");
    EXPECT_FALSE(banner.isHidden());
    EXPECT_EQ(child<TightLabel>(banner, "kerahatDetail")->text(), QStringLiteral("Güneş tepedeyken · 13:19'a kadar"));
    EXPECT_EQ(child<TightLabel>(banner, "kerahatMinutes")->text(), QStringLiteral("7 dk"));
    EXPECT_TRUE(child<DayProgressBar>(view, "progressBar")->content().inKerahat);
    EXPECT_TRUE(child<HeroCard>(view, "heroCard")->accessibleName().endsWith(QStringLiteral(", kerahat vakti")));
    for (KerahatRow *row : laidOut<KerahatRow>(*child<PrayerList>(view, "prayerList")))
        EXPECT_EQ(row->countdownText(), QString()) << "the banner counts down instead";
}

TEST_F(PanelViewTest, AfterYatsiTheNextTimeIsTomorrow)
{
    std::unique_ptr<AppModel> model = loadedModel(22, 0);
    PanelView view(*model, {}, {}, {});

    const HeroCard &hero = *child<HeroCard>(view, "heroCard");
    EXPECT_EQ(child<TightLabel>(hero, "countdownTitle")->text(), QStringLiteral("Sahurun bitmesine kalan"));
    EXPECT_EQ(child<TightLabel>(hero, "bigTime")->text(), QStringLiteral("7sa51dk"));
    EXPECT_EQ(child<TightLabel>(hero, "subtitle")->text(), QStringLiteral("Yarın 05:51 · İmsak"));
    for (PrayerRow *row : laidOut<PrayerRow>(*child<PrayerList>(view, "prayerList")))
        EXPECT_NE(row->content().state, PrayerRowState::next) << row->content().prayer.id();
}

TEST_F(PanelViewTest, KerahatOffLeavesSixRowsAndNoLegend)
{
    std::unique_ptr<AppModel> model = loadedModel(12, 30);
    PanelView view(*model, {}, {}, {});
    ASSERT_FALSE(child<TightLabel>(view, "legend")->isHidden());

    model->set(Settings::showKerahat, false);
    EXPECT_EQ(laidOut(*child<PrayerList>(view, "prayerList")).size(), 6u);
    EXPECT_TRUE(laidOut<KerahatRow>(*child<PrayerList>(view, "prayerList")).empty());
    EXPECT_TRUE(child<TightLabel>(view, "legend")->isHidden());
}

TEST_F(PanelViewTest, ButtonsReachTheModelAndTheActions)
{
    std::unique_ptr<AppModel> model = loadedModel(12, 30);
    int imsakiye = 0, settings = 0, quit = 0;
    PanelView view(*model, [&] { ++imsakiye; }, [&] { ++settings; }, [&] { ++quit; });
    view.show();

    PrayerRow *imsak = rowOf(*child<PrayerList>(view, "prayerList"), Prayer::imsak);
    QTest::mouseClick(child<SymbolButton>(*imsak, "bell"), Qt::LeftButton);
    EXPECT_FALSE(model->setting(Settings::notifiedPrayers).contains(Prayer::imsak));
    EXPECT_EQ(child<SymbolButton>(*imsak, "bell")->toolTip(), QStringLiteral("İmsak bildirimini aç"));
    QTest::mouseClick(child<SymbolButton>(*imsak, "bell"), Qt::LeftButton);
    EXPECT_TRUE(model->setting(Settings::notifiedPrayers).contains(Prayer::imsak));

    QTest::mouseClick(child<SymbolButton>(view, "imsakiyeButton"), Qt::LeftButton);
    QTest::mouseClick(child<SymbolButton>(view, "settingsButton"), Qt::LeftButton);
    QTest::mouseClick(child<SymbolButton>(view, "quitButton"), Qt::LeftButton);
    EXPECT_EQ(std::tuple(imsakiye, settings, quit), std::tuple(1, 1, 1));

    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    QTest::keyClick(&view, Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return settings == 2; }, 2000));
    QTest::keyClick(&view, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return quit == 2; }, 2000));

    QSignalSpy finished(model.get(), &AppModel::loadFinished);
    QTest::mouseClick(child<SymbolButton>(view, "reloadButton"), Qt::LeftButton);
    EXPECT_DOUBLE_EQ(child<SymbolButton>(view, "reloadButton")->opacity(), 0.4) << "dimmed while loading";
    ASSERT_TRUE(finished.wait(loadWaitMs));
    EXPECT_DOUBLE_EQ(child<SymbolButton>(view, "reloadButton")->opacity(), 1.0);
}

TEST_F(PanelViewTest, DiyanetTimesSayWhereTheyCameFrom)
{
    // Diyanet's times are its rule's, computed on the device: no stand-in, and said so.
    failing = true;
    std::unique_ptr<AppModel> model = loadedModel(12, 30);
    PanelView view(*model, {}, {}, {});
    EXPECT_EQ(child<TightLabel>(view, "sourceLabel")->text(), QStringLiteral("Diyanet hesabı · cihazda"));
    EXPECT_EQ(child<TightLabel>(view, "sourceLabel")->symbol(), QString());
    // Beside the buttons the note takes two lines, but all of it is shown.
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.show();
    const TightLabel &note = *child<TightLabel>(view, "sourceLabel");
    // Every word is shown; a separator may give way to a line break.
    const auto words = [](QString text) {
        return text.replace(QStringLiteral(" · "), QStringLiteral(" ")).split(u' ', Qt::SkipEmptyParts);
    };
    EXPECT_EQ(words(note.lines(note.contentsRect().width()).join(u' ')), words(note.text()));
    EXPECT_GE(note.height(), note.heightForWidth(note.width()));
    EXPECT_GE(note.lines(60).size(), 2);
    for (const int width : {60, 30}) { // a word longer than the room keeps a line of its own
        EXPECT_EQ(words(note.lines(width).join(u' ')), words(note.text())) << width;
        for (const QString &line : note.lines(width))
            EXPECT_FALSE(line.endsWith(QStringLiteral("·"))) << width;
    }
}

TEST_F(PanelViewTest, RendersInTheForcedAppearance)
{
    std::unique_ptr<AppModel> model = loadedModel(12, 30);
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        Colors::forceAppearance(appearance);
        PanelView view(*model, {}, {}, {});
        view.setAttribute(Qt::WA_DontShowOnScreen);
        view.show();
        const QImage image = view.grab().toImage();
        const qreal corner = image.pixelColor(2, 2).lightnessF();
        EXPECT_TRUE(appearance == Appearance::dark ? corner < 0.3 : corner > 0.8) << corner;
    }
}

TEST(TightLabel, ShrinksBeforeItBreaksAndThenBreaksOnlyAfterTheSeparator)
{
    const QString text = QStringLiteral("23 Kasım 2026 Pazartesi · 13 Cemaziyelahir 1448");
    const QFont font = ViewStyle::font(11.5);
    const qreal full = QFontMetricsF(font).horizontalAdvance(text);
    TightLabel label;
    label.setMinimumScale(0.85);
    label.setWraps(true, QStringLiteral(" · "));
    label.setText(text, font, Qt::black);
    label.setAttribute(Qt::WA_DontShowOnScreen);
    label.show();

    EXPECT_EQ(label.lines(full * 0.92), QStringList{text}) << "room for the shrunken line";
    EXPECT_EQ(label.lines(full * 0.8),
              (QStringList{QStringLiteral("23 Kasım 2026 Pazartesi"), QStringLiteral("13 Cemaziyelahir 1448")}))
        << "the separator goes with the break, never left dangling";
    // A fixed-size window sizes from hints alone: the label asks for its two lines itself.
    label.resize(static_cast<int>(full * 0.8), 10);
    EXPECT_GE(label.minimumHeight(), 2 * QFontMetricsF(font).lineSpacing() - 1);
    label.resize(static_cast<int>(full * 1.1), 10);
    EXPECT_LT(label.minimumHeight(), 1.5 * QFontMetricsF(font).lineSpacing());
}

TEST(KerahatRow, ALongCountdownGoesUnderTheTitleRatherThanCutIt)
{
    KerahatRow row;
    KerahatRow::Content content;
    content.interval = {KerahatKind::istiva, Instant{0}, Instant{600}};
    content.range = QStringLiteral("12:45 – 12:55");
    content.countdown = QStringLiteral("2 sa 45 dk");
    row.setContent(content);
    row.setAttribute(Qt::WA_DontShowOnScreen);
    row.show();

    for (const int width : {1000, 300, 280}) {
        SCOPED_TRACE(width);
        row.resize(width, row.height());
        const KerahatRow::Arrangement arrangement = row.arrange(width);
        EXPECT_EQ(arrangement.title, QStringLiteral("Kerahat (istiva)"));
        // The range keeps to the times' column, clear of the bells, however long the text.
        EXPECT_EQ(arrangement.rangeRight, width - PrayerRow::trailingPadding - PrayerRow::bellSize - PrayerRow::bellGap);
        EXPECT_EQ(arrangement.countdownBelow, width != 1000);
        EXPECT_EQ(arrangement.countdown, width != 1000 ? QStringLiteral("2 sa 45 dk sonra") : QStringLiteral(" · 2 sa 45 dk sonra"));
        EXPECT_EQ(row.height() > KerahatRow::rowHeight, arrangement.countdownBelow);
    }
}

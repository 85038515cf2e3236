#include "DayProgressBar.h"
#include "HeroCard.h"
#include "KerahatBanner.h"
#include "KerahatRow.h"
#include "PlayingBanner.h"
#include "PopoverView.h"
#include "PrayerList.h"
#include "PrayerRow.h"
#include "Spinner.h"
#include "SymbolButton.h"
#include "TightLabel.h"
#include "ViewsTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include <QDir>
#include <QEvent>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

using namespace orvel;
using namespace orvel::test;

namespace {

QStringList runTexts(const TightLabel &label)
{
    QStringList texts;
    for (const TightLabel::Run &run : label.runs())
        texts << run.text;
    return texts;
}

PrayerRow *rowOf(const PrayerList &list, Prayer prayer)
{
    for (PrayerRow *row : list.prayerRows()) {
        if (row->content().prayer == prayer)
            return row;
    }
    return nullptr;
}

// What the list shows, top to bottom: prayer names and kerahat kinds.
QStringList listing(const PrayerList &list)
{
    QStringList names;
    for (QWidget *row : list.rows()) {
        if (auto *prayer = qobject_cast<PrayerRow *>(row))
            names << QString::fromUtf8(prayer->content().prayer.rawValue().data());
        else if (auto *kerahat = qobject_cast<KerahatRow *>(row))
            names << QStringLiteral("kerahat:") + QString::fromUtf8(kerahat->content().interval.kind.rawValue().data());
    }
    return names;
}

// Notes which of a widget and its descendants receive a paint event.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(QWidget &root)
    {
        root.installEventFilter(this);
        for (QWidget *child : root.findChildren<QWidget *>())
            child->installEventFilter(this);
    }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            painted.insert(watched);
        return false;
    }
    bool any(const std::vector<QWidget *> &widgets) const
    {
        return std::any_of(widgets.begin(), widgets.end(), [&](QWidget *widget) { return painted.contains(widget); });
    }

    std::set<QObject *> painted;
};

class PopoverViewTest : public ::testing::Test {
protected:
    void TearDown() override { Colors::forceAppearance(std::nullopt); }

    std::unique_ptr<AppModel> loadedModel(Instant now)
    {
        std::unique_ptr<AppModel> model = harness.model(now);
        EXPECT_TRUE(ViewHarness::loadUskudar(*model));
        return model;
    }

    ViewHarness harness;
};

} // namespace

TEST_F(PopoverViewTest, SpinnerStandsInUntilTheDayIsLoaded)
{
    std::unique_ptr<AppModel> model = harness.model(at(2026, 3, 10, 12, 30));
    PopoverView view(*model, {}, {}, {});
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.show();

    EXPECT_TRUE(view.spinner()->isVisible());
    EXPECT_TRUE(view.spinner()->isSpinning());
    EXPECT_GE(view.spinner()->height(), PopoverView::spinnerHeight);
    EXPECT_FALSE(view.heroCard()->isVisible());
    EXPECT_FALSE(view.prayerList()->isVisible());
    EXPECT_FALSE(view.kerahatBanner()->isVisible());
    EXPECT_FALSE(view.ramadanLabel()->isVisible()) << "no Ramadan line without a day";
    EXPECT_EQ(view.width(), PopoverView::panelWidth);

    ASSERT_TRUE(ViewHarness::loadUskudar(*model));
    EXPECT_FALSE(view.spinner()->isVisible());
    EXPECT_FALSE(view.spinner()->isSpinning());
    EXPECT_TRUE(view.heroCard()->isVisible());
    EXPECT_TRUE(view.prayerList()->isVisible());
    EXPECT_EQ(view.width(), PopoverView::panelWidth);
}

TEST_F(PopoverViewTest, ShowsTheDayAtNoonInRamadan)
{
    std::unique_ptr<AppModel> model = loadedModel(at(2026, 3, 10, 12, 30));
    PopoverView view(*model, {}, {}, {});

    EXPECT_EQ(view.placeLabel()->text(), QStringLiteral("İstanbul, Üsküdar"));
    EXPECT_EQ(view.placeLabel()->symbol(), QStringLiteral("mappin.and.ellipse"));
    EXPECT_TRUE(view.dateLabel()->text().endsWith(QStringLiteral(" · 21 Ramazan 1447"))) << view.dateLabel()->text().toStdString();
    EXPECT_FALSE(view.ramadanLabel()->isHidden());
    EXPECT_EQ(view.ramadanLabel()->text(), QStringLiteral("Ramazan'ın 21. günü"));
    EXPECT_EQ(view.ramadanLabel()->symbol(), QStringLiteral("moon.stars.fill"));
    EXPECT_EQ(view.imsakiyeButton()->toolTip(), QStringLiteral("İmsakiye"));
    EXPECT_EQ(view.reloadButton()->toolTip(), QStringLiteral("Vakitleri yenile"));
    EXPECT_DOUBLE_EQ(view.reloadButton()->opacity(), 1.0);

    const HeroCard &hero = *view.heroCard();
    EXPECT_EQ(runTexts(*hero.countdownTitle()), (QStringList{"Öğle", " ezanına kalan"}));
    EXPECT_EQ(runTexts(*hero.bigTime()), (QStringList{"49", "dk"}));
    EXPECT_EQ(hero.subtitle()->text(), QStringLiteral("13:19"));
    EXPECT_EQ(hero.tileSymbol(), QStringLiteral("sun.max"));
    EXPECT_EQ(hero.firstTime()->text(), QStringLiteral("İmsak 05:53"));
    EXPECT_EQ(hero.lastTime()->text(), QStringLiteral("Yatsı 20:31"));
    EXPECT_FALSE(hero.legend()->isHidden());
    EXPECT_EQ(hero.accessibleName(), model->accessibilityLabel());
    EXPECT_FALSE(hero.progressBar()->content().inKerahat);
    EXPECT_GT(hero.progressBar()->content().progress, 0.4);

    const PrayerList &list = *view.prayerList();
    EXPECT_EQ(listing(list), (QStringList{"imsak", "gunes", "kerahat:sunrise", "kerahat:istiva", "ogle", "ikindi",
                                          "kerahat:sunset", "aksam", "yatsi"}));
    EXPECT_EQ(rowOf(list, Prayer::gunes)->content().state, PrayerRowState::current);
    EXPECT_EQ(rowOf(list, Prayer::gunes)->accessibleName(), QStringLiteral("Güneş 07:17, şu anki orvel"));
    EXPECT_EQ(rowOf(list, Prayer::ogle)->content().state, PrayerRowState::next);
    EXPECT_EQ(rowOf(list, Prayer::imsak)->content().state, PrayerRowState::past);
    EXPECT_EQ(rowOf(list, Prayer::imsak)->content().tag, QStringLiteral("sahur sonu"));
    EXPECT_EQ(rowOf(list, Prayer::aksam)->content().tag, QStringLiteral("iftar"));
    EXPECT_EQ(rowOf(list, Prayer::ikindi)->content().tag, std::nullopt);
    EXPECT_EQ(rowOf(list, Prayer::yatsi)->content().time, QStringLiteral("20:31"));
    EXPECT_EQ(rowOf(list, Prayer::gunes)->bell()->symbol(), QStringLiteral("bell.slash")) << "Güneş is not notified by default";
    EXPECT_EQ(rowOf(list, Prayer::ogle)->bell()->symbol(), QStringLiteral("bell"));

    const std::vector<KerahatRow *> kerahat = list.kerahatRows();
    ASSERT_EQ(kerahat.size(), 3u);
    EXPECT_EQ(kerahat[0]->countdownText(), QString());
    EXPECT_EQ(kerahat[1]->countdownText(), QStringLiteral(" · 39 dk sonra"));
    EXPECT_EQ(kerahat[2]->countdownText(), QString()) << "only the next interval counts down";
    EXPECT_EQ(kerahat[1]->content().range, QStringLiteral("13:09 – 13:19"));
    EXPECT_EQ(kerahat[0]->content().state, KerahatRowState::past);
    EXPECT_EQ(kerahat[1]->accessibleName(), QStringLiteral("Kerahat (istiva), 13:09 ile 13:19 arası"));

    EXPECT_TRUE(view.kerahatBanner()->isHidden());
    EXPECT_TRUE(view.playingBanner()->isHidden());
    EXPECT_TRUE(view.spinner()->isHidden());
    EXPECT_EQ(view.sourceLabel()->text(), QStringLiteral("Diyanet takvimi"));
    EXPECT_EQ(view.sourceLabel()->symbol(), QString());
    EXPECT_EQ(view.settingsButton()->text(), QStringLiteral("Ayarlar…"));
    EXPECT_EQ(view.settingsButton()->shortcut().toString(), QStringLiteral("Ctrl+,"));
    EXPECT_EQ(view.quitButton()->text(), QStringLiteral("Çık"));
    EXPECT_EQ(view.quitButton()->shortcut().toString(), QStringLiteral("Ctrl+Q"));
}

TEST_F(PopoverViewTest, KerahatBannerWhileAnIntervalRuns)
{
    std::unique_ptr<AppModel> model = loadedModel(at(2026, 3, 10, 13, 12));
    PopoverView view(*model, {}, {}, {});

    const KerahatBanner &banner = *view.kerahatBanner();
    EXPECT_FALSE(banner.isHidden());
    EXPECT_EQ(banner.title()->text(), QStringLiteral("Kerahat vakti"));
    EXPECT_EQ(banner.detail()->text(), QStringLiteral("Güneş tepedeyken · 13:19'a kadar"));
    EXPECT_EQ(banner.minutes()->text(), QStringLiteral("7 dk"));
    EXPECT_EQ(banner.toolTip(), QStringLiteral("Bu sürede namaz kılmak mekruhtur."));
    EXPECT_TRUE(view.heroCard()->progressBar()->content().inKerahat);
    EXPECT_TRUE(view.heroCard()->accessibleName().endsWith(QStringLiteral(", kerahat vakti")));

    for (KerahatRow *row : view.prayerList()->kerahatRows())
        EXPECT_EQ(row->countdownText(), QString()) << "the banner counts down instead";
    EXPECT_EQ(view.prayerList()->kerahatRows()[1]->content().state, KerahatRowState::active);
}

TEST_F(PopoverViewTest, AfterYatsiTheNextTimeIsTomorrow)
{
    std::unique_ptr<AppModel> model = loadedModel(at(2026, 3, 10, 22, 0));
    PopoverView view(*model, {}, {}, {});

    const HeroCard &hero = *view.heroCard();
    EXPECT_EQ(runTexts(*hero.countdownTitle()), (QStringList{"Sahur", "un bitmesine kalan"}));
    EXPECT_EQ(runTexts(*hero.bigTime()), (QStringList{"7", "sa", "51", "dk"}));
    EXPECT_EQ(hero.subtitle()->text(), QStringLiteral("Yarın 05:51 · İmsak"));
    for (PrayerRow *row : view.prayerList()->prayerRows())
        EXPECT_NE(row->content().state, PrayerRowState::next) << row->content().prayer.rawValue();
    EXPECT_EQ(rowOf(*view.prayerList(), Prayer::yatsi)->content().state, PrayerRowState::current);
}

TEST_F(PopoverViewTest, KerahatOffLeavesSixRowsAndNoLegend)
{
    std::unique_ptr<AppModel> model = loadedModel(at(2026, 3, 10, 12, 30));
    PopoverView view(*model, {}, {}, {});
    ASSERT_EQ(view.prayerList()->rows().size(), 9u);

    model->setShowKerahat(false);
    EXPECT_EQ(listing(*view.prayerList()), (QStringList{"imsak", "gunes", "ogle", "ikindi", "aksam", "yatsi"}));
    EXPECT_TRUE(view.heroCard()->legend()->isHidden());
    EXPECT_TRUE(view.heroCard()->progressBar()->content().kerahat.empty());

    model->setShowKerahat(true);
    EXPECT_EQ(view.prayerList()->rows().size(), 9u);
    EXPECT_FALSE(view.heroCard()->legend()->isHidden());
}

TEST_F(PopoverViewTest, ButtonsReachTheModelAndTheActions)
{
    std::unique_ptr<AppModel> model = loadedModel(at(2026, 3, 10, 12, 30));
    int imsakiye = 0;
    int settings = 0;
    int quit = 0;
    PopoverView view(*model, [&] { ++imsakiye; }, [&] { ++settings; }, [&] { ++quit; });
    view.show();

    PrayerRow *imsak = rowOf(*view.prayerList(), Prayer::imsak);
    ASSERT_TRUE(imsak->content().notify);
    EXPECT_EQ(imsak->bell()->toolTip(), QStringLiteral("İmsak bildirimini kapat"));
    QTest::mouseClick(imsak->bell(), Qt::LeftButton);
    EXPECT_FALSE(model->notifiedPrayers().contains(Prayer::imsak));
    EXPECT_FALSE(imsak->content().notify);
    EXPECT_EQ(imsak->bell()->symbol(), QStringLiteral("bell.slash"));
    EXPECT_EQ(imsak->bell()->toolTip(), QStringLiteral("İmsak bildirimini aç"));
    QTest::mouseClick(imsak->bell(), Qt::LeftButton);
    EXPECT_TRUE(model->notifiedPrayers().contains(Prayer::imsak));

    QTest::mouseClick(view.imsakiyeButton(), Qt::LeftButton);
    QTest::mouseClick(view.settingsButton(), Qt::LeftButton);
    QTest::mouseClick(view.quitButton(), Qt::LeftButton);
    EXPECT_EQ(imsakiye, 1);
    EXPECT_EQ(settings, 1);
    EXPECT_EQ(quit, 1);

    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    QTest::keyClick(&view, Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return settings == 2; }, 2000));
    QTest::keyClick(&view, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return quit == 2; }, 2000));
    EXPECT_EQ(imsakiye, 1);

    QSignalSpy finished(model.get(), &AppModel::loadFinished);
    QTest::mouseClick(view.reloadButton(), Qt::LeftButton);
    EXPECT_TRUE(model->isLoading());
    EXPECT_DOUBLE_EQ(view.reloadButton()->opacity(), 0.4);
    ASSERT_TRUE(finished.wait(loadWaitMs));
    EXPECT_DOUBLE_EQ(view.reloadButton()->opacity(), 1.0);
}

TEST_F(PopoverViewTest, RepaintsOnlyWhatChanged)
{
    std::unique_ptr<AppModel> model = loadedModel(at(2026, 3, 10, 12, 30));
    PopoverView view(*model, {}, {}, {});
    view.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
    QCoreApplication::processEvents();

    PaintWatch watch(view);
    model->setSoundVolume(0.3); // nothing on the panel shows it
    QCoreApplication::processEvents();
    EXPECT_TRUE(watch.painted.empty());

    model->toggleNotification(Prayer::ikindi);
    QCoreApplication::processEvents();
    PrayerRow *ikindi = rowOf(*view.prayerList(), Prayer::ikindi);
    EXPECT_TRUE(watch.painted.contains(ikindi) || watch.painted.contains(ikindi->bell()));
    EXPECT_FALSE(watch.any({view.heroCard(), view.heroCard()->progressBar(), rowOf(*view.prayerList(), Prayer::ogle),
                            view.prayerList()->kerahatRows()[1]}));
}

TEST_F(PopoverViewTest, OfflineTimesSayWhereTheyCameFrom)
{
    *harness.failing = true;
    std::unique_ptr<AppModel> model = loadedModel(at(2026, 3, 10, 12, 30));
    PopoverView view(*model, {}, {}, {});
    EXPECT_EQ(model->source(), TimesSource::offline);
    EXPECT_EQ(view.sourceLabel()->text(), QStringLiteral("Çevrimdışı · cihazda hesaplandı"));
    EXPECT_EQ(view.sourceLabel()->symbol(), QStringLiteral("wifi.slash"));

    // Beside the buttons the note may take two lines, but all of it is shown.
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.show();
    const TightLabel &source = *view.sourceLabel();
    const QStringList lines = source.lines(source.contentsRect().width());
    EXPECT_EQ(lines.join(u' '), source.text());
    EXPECT_GE(source.height(), source.heightForWidth(source.width()));
    EXPECT_EQ(view.width(), PopoverView::panelWidth);
}

// Renders both appearances; with ORVEL_VIEWS_RENDER_DIR set the pictures are kept there.
TEST_F(PopoverViewTest, RendersInTheForcedAppearance)
{
    std::unique_ptr<AppModel> model = loadedModel(at(2026, 3, 10, 12, 30));
    const QString folder = qEnvironmentVariable("ORVEL_VIEWS_RENDER_DIR");
    const std::array<std::pair<Appearance, QString>, 2> appearances{
        {{Appearance::light, QStringLiteral("light")}, {Appearance::dark, QStringLiteral("dark")}}};
    for (const auto &[appearance, name] : appearances) {
        Colors::forceAppearance(appearance);
        PopoverView view(*model, {}, {}, {});
        view.setAttribute(Qt::WA_DontShowOnScreen);
        view.show();
        const QImage image = view.grab().toImage();
        ASSERT_FALSE(image.isNull());
        EXPECT_EQ(image.width() / image.devicePixelRatio(), PopoverView::panelWidth);
        const QColor corner = image.pixelColor(2, 2);
        if (appearance == Appearance::dark)
            EXPECT_LT(corner.lightnessF(), 0.3) << name.toStdString();
        else
            EXPECT_GT(corner.lightnessF(), 0.8) << name.toStdString();
        if (!folder.isEmpty())
            image.save(QDir(folder).filePath(QStringLiteral("popover-%1.png").arg(name)));
    }
}

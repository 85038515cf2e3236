#include "AboutView.h"
#include "AppModel.h"
#include "Settings.h"
#include "FileChooser.h"
#include "GeneralSettingsView.h"
#include "ImageView.h"
#include "KerahatSettingsView.h"
#include "LocationService.h"
#include "NotificationBackend.h"
#include "NotificationScheduler.h"
#include "NotificationSettingsView.h"
#include "PlaceFinder.h"
#include "PrayerCalculator.h"
#include "PrayerRepository.h"
#include "SegmentedControl.h"
#include "SettingsForm.h"
#include "SettingsView.h"
#include "SoundLibrary.h"
#include "TimesSettingsView.h"
#include "ViewsTestSupport.h"

#include <gtest/gtest.h>

#include <QtMath>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QPromise>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>
#include <QTimeEdit>

using namespace orvel;
using namespace orvel::test;

namespace {

constexpr int waitMs = 10000;

const Location uskudar{"İstanbul, Üsküdar", 41.0255, 29.0153, "Europe/Istanbul"};
const Location berlin{"Berlin", 52.52, 13.405, "Europe/Berlin"};

// Answers each call with what the test put in front of it; counts the calls.
class ScriptedLocations : public LocationService {
public:
    QFuture<Location> currentLocation() override
    {
        ++positionRequests;
        if (position)
            return QtFuture::makeReadyFuture(*position);
        return QtFuture::makeExceptionalFuture<Location>(LocationFailure(positionError));
    }
    QFuture<PlaceSearch> search(const QString &query) override
    {
        queries << query;
        if (pendingSearch) {
            pendingSearch->start();
            return pendingSearch->future();
        }
        if (searchFails)
            return QtFuture::makeExceptionalFuture<PlaceSearch>(SearchFailure(failureDetail));
        return QtFuture::makeReadyFuture(found);
    }

    std::optional<Location> position;
    LocationError positionError = LocationError::unavailable;
    PlaceSearch found;
    bool searchFails = false;
    QString failureDetail;
    std::shared_ptr<QPromise<PlaceSearch>> pendingSearch;
    int positionRequests = 0;
    QStringList queries;
};

struct QuietBackend : NotificationBackend {
    bool isAvailable() const override { return true; }
    void show(const NotificationRequest &) override {}
};

// A model on settings, sounds and an autostart folder of the test's own, whose days come from
// the calculator, with a scheduler that only records.
class SettingsViewTest : public ::testing::Test {
protected:
    SettingsViewTest()
    {
        SettingsStore::setStore(std::make_unique<QSettings>(folder.filePath("Orvel.conf"), QSettings::IniFormat));
        SoundLibrary::setFolder(folder.filePath("Sounds"));
        qputenv("XDG_CONFIG_HOME", folder.filePath("config").toUtf8());
        model = std::make_unique<AppModel>(AppModel::Services{clock, repository, &scheduler, nullptr}, ModelRun::still,
                                           ModelVoice::audible);
    }
    ~SettingsViewTest() override
    {
        QThreadPool::globalInstance()->waitForDone(waitMs);
        QCoreApplication::sendPostedEvents();
        model.reset();
        SettingsStore::setStore(nullptr);
        SoundLibrary::setFolder(QString());
        qputenv("XDG_CONFIG_HOME", configHome);
    }

    void settle() { QCoreApplication::processEvents(); }

    QTemporaryDir folder;
    QByteArray configHome = qgetenv("XDG_CONFIG_HOME");
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>(at(2026, 3, 10, 12, 30));
    std::shared_ptr<PrayerRepository> repository = std::make_shared<PrayerRepository>(
        folder.filePath("Cache").toStdString(), [](MonthKey month, const Location &location, CalculationMethod method) {
            std::vector<DayTimes> days;
            for (const DayKey &key : month.days())
                days.push_back(PrayerCalculator::times(key, location, method));
            return days;
        });
    NotificationScheduler scheduler{std::make_shared<QuietBackend>(), clock};
    std::unique_ptr<AppModel> model;
    ScriptedLocations locations;
    const NotificationSettingsView::Permission allowed{[] { return false; }, [] {}};
};

} // namespace

TEST_F(SettingsViewTest, SearchingLeavesThePlaceAloneUntilAResultIsChosen)
{
    GeneralSettingsView view(*model, locations);
    EXPECT_EQ(child<QLabel>(view, "placeLabel")->text(), "İstanbul, Fatih");

    child<QLineEdit>(view, "queryField")->setText("   ");
    EXPECT_FALSE(child<QPushButton>(view, "searchButton")->isEnabled());
    view.search();
    EXPECT_TRUE(locations.queries.isEmpty());

    child<QLineEdit>(view, "queryField")->setText("  Üsküdar ");
    EXPECT_TRUE(child<QPushButton>(view, "searchButton")->isEnabled());
    locations.found = {{uskudar, berlin}, false};
    view.search();
    settle();
    EXPECT_EQ(locations.queries, QStringList{"Üsküdar"});
    ASSERT_EQ(view.resultButtons().size(), 2);
    EXPECT_EQ(view.resultButtons().at(0)->accessibleName(), "İstanbul, Üsküdar");
    EXPECT_EQ(view.locationMessage(), std::nullopt);
    EXPECT_EQ(model->setting(Settings::location).name, "İstanbul, Fatih");

    // A failure clears the earlier list; no hits say so.
    locations.searchFails = true;
    view.search();
    settle();
    EXPECT_TRUE(view.resultButtons().isEmpty());
    EXPECT_EQ(view.locationMessage(), QString::fromUtf8(PlaceFinder::searchFailed));
    // A damaged place list says so too.
    locations.failureDetail = QStringLiteral("Yer listesi okunamadı.");
    view.search();
    settle();
    EXPECT_EQ(view.locationMessage(), QString::fromUtf8(PlaceFinder::searchFailed) + " Yer listesi okunamadı.");
    locations.searchFails = false;
    locations.found = {};
    view.search();
    settle();
    EXPECT_EQ(view.locationMessage(), QString("Sonuç bulunamadı."));
    locations.found = {{uskudar}, true};
    view.search();
    settle();
    EXPECT_EQ(view.locationMessage(), QString::fromUtf8(PlaceFinder::offlineResults));

    view.resultButtons().at(0)->click();
    settle();
    EXPECT_EQ(model->setting(Settings::location), uskudar);
    EXPECT_TRUE(view.resultButtons().isEmpty());
    EXPECT_TRUE(child<QLineEdit>(view, "queryField")->text().isEmpty());
    EXPECT_EQ(view.locationMessage(), std::nullopt);
    EXPECT_EQ(child<QLabel>(view, "placeLabel")->text(), "İstanbul, Üsküdar");
}

TEST_F(SettingsViewTest, OnlyTheNewestSearchIsShown)
{
    GeneralSettingsView view(*model, locations);
    child<QLineEdit>(view, "queryField")->setText("Ber");
    auto slow = std::make_shared<QPromise<PlaceSearch>>();
    locations.pendingSearch = slow;
    view.search();
    EXPECT_TRUE(view.isSearching());
    locations.pendingSearch.reset();
    locations.found = {{berlin}, false};
    child<QLineEdit>(view, "queryField")->setText("Berlin");
    view.search();
    settle();
    slow->addResult(PlaceSearch{{uskudar}, false});
    slow->finish();
    settle();
    ASSERT_EQ(view.resultButtons().size(), 1);
    EXPECT_EQ(view.resultButtons().at(0)->accessibleName(), "Berlin");
    EXPECT_FALSE(view.isSearching());
}

TEST_F(SettingsViewTest, ThePositionReplacesThePlaceOrSaysWhyNot)
{
    GeneralSettingsView view(*model, locations);
    locations.positionError = LocationError::denied;
    child<QPushButton>(view, "currentLocationButton")->click();
    settle();
    ASSERT_TRUE(view.locationMessage());
    EXPECT_TRUE(view.locationMessage()->startsWith("Konum izni verilmedi.")) << view.locationMessage()->toStdString();
    locations.positionError = LocationError::unavailable;
    view.useCurrentLocation();
    settle();
    EXPECT_EQ(view.locationMessage(), QString("Konum alınamadı. Konumu arayarak seçebilirsiniz."));
    EXPECT_EQ(model->setting(Settings::location).name, "İstanbul, Fatih");
    EXPECT_TRUE(child<QPushButton>(view, "currentLocationButton")->isEnabled());

    locations.position = berlin;
    view.useCurrentLocation();
    settle();
    EXPECT_EQ(model->setting(Settings::location), berlin);
    EXPECT_EQ(view.locationMessage(), std::nullopt);
    EXPECT_EQ(locations.positionRequests, 3);
}

TEST_F(SettingsViewTest, GeneralControlsWriteTheModelAndFollowIt)
{
    GeneralSettingsView view(*model, locations);
    QComboBox *methods = child<QComboBox>(view, "methodPicker");
    methods->setCurrentIndex(1);
    emit methods->activated(1);
    EXPECT_EQ(model->setting(Settings::method), CalculationMethod::mwl);
    SegmentedControl *styles = child<SegmentedControl>(view, "styleSegments");
    QTest::mouseClick(styles, Qt::LeftButton, {}, styles->segmentRect(3).center());
    EXPECT_EQ(model->setting(Settings::trayStyle), TrayStyle::iconOnly);
    child<SettingsForm::Switch>(view, "ramadanSwitch")->click();
    EXPECT_FALSE(model->setting(Settings::ramadanMode));

    // Changes made elsewhere (the command line, the panel) show at once.
    model->set(Settings::method, CalculationMethod::egypt);
    model->set(Settings::trayStyle, TrayStyle::remaining);
    model->set(Settings::location, berlin);
    EXPECT_EQ(methods->currentText(), "Mısır Genel Araştırma Kurumu");
    EXPECT_EQ(styles->current(), 1);
    EXPECT_EQ(child<QLabel>(view, "placeLabel")->text(), "Berlin");
    // Drawn for a 2x screen whatever the window's own ratio, and shown at its size in points.
    const ImageView &preview = *child<ImageView>(view, "preview");
    ASSERT_FALSE(preview.image().isNull());
    EXPECT_GE(preview.image().devicePixelRatio(), 2.0);
    EXPECT_EQ(preview.sizeHint().height(), qCeil(preview.image().deviceIndependentSize().height()) + 4);

    // The time left on the icon: on by default where the panel shows no title, then as chosen.
    EXPECT_TRUE(child<SettingsForm::Switch>(view, "iconRemainingSwitch")->isChecked());
    view.setPanelShowsLabel(true);
    EXPECT_FALSE(child<SettingsForm::Switch>(view, "iconRemainingSwitch")->isChecked());
    child<SettingsForm::Switch>(view, "iconRemainingSwitch")->click();
    EXPECT_EQ(model->setting(Settings::iconRemaining), std::optional(true));
    EXPECT_TRUE(child<SettingsForm::Switch>(view, "iconRemainingSwitch")->isChecked());
}

TEST_F(SettingsViewTest, AFailedAutostartWriteIsExplainedAndTheSwitchStaysOff)
{
    GeneralSettingsView view(*model, locations);
    child<SettingsForm::Switch>(view, "loginSwitch")->click();
    EXPECT_TRUE(child<SettingsForm::Switch>(view, "loginSwitch")->isChecked());
    EXPECT_EQ(view.loginError(), std::nullopt);
    EXPECT_TRUE(QFile::exists(folder.filePath("config/autostart/io.github.orvel.Orvel.desktop")));
    child<SettingsForm::Switch>(view, "loginSwitch")->click();
    EXPECT_FALSE(child<SettingsForm::Switch>(view, "loginSwitch")->isChecked());

    // A file where the configuration folder should be: nothing can be written under it.
    QFile blocker(folder.filePath("blocked"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    qputenv("XDG_CONFIG_HOME", folder.filePath("blocked").toUtf8());
    child<SettingsForm::Switch>(view, "loginSwitch")->click();
    EXPECT_FALSE(child<SettingsForm::Switch>(view, "loginSwitch")->isChecked());
    ASSERT_TRUE(view.loginError());
    EXPECT_TRUE(view.loginError()->startsWith("Ayarlanamadı: ")) << view.loginError()->toStdString();
}

TEST_F(SettingsViewTest, SoundRowsFollowTheChoiceAndAFileIsImportedOrRefused)
{
    NotificationSettingsView view(*model, allowed);
    const auto shown = [&] { return std::pair{!child(view, "fileRow")->isHidden(), !child(view, "volumeRow")->isHidden()}; };
    EXPECT_EQ(shown(), std::pair(false, false));
    EXPECT_EQ(child<QLabel>(view, "soundDescription")->text(), "Bildirimle birlikte kısa sistem sesi");
    model->set(Settings::adhanSound, AdhanSound::chime);
    EXPECT_EQ(shown(), std::pair(false, true));
    EXPECT_TRUE(child<QPushButton>(view, "listenButton")->isEnabled());
    EXPECT_EQ(child<QPushButton>(view, "listenButton")->text(), "Dinle");
    model->set(Settings::adhanSound, AdhanSound::none);
    EXPECT_EQ(shown(), std::pair(false, false));
    child<QComboBox>(view, "soundPicker")->setCurrentIndex(2);
    emit child<QComboBox>(view, "soundPicker")->activated(2);
    EXPECT_EQ(model->setting(Settings::adhanSound), AdhanSound::custom);
    EXPECT_EQ(shown(), std::pair(true, true));
    EXPECT_EQ(child<QLabel>(view, "fileName")->toolTip(), "Seçilmedi");
    EXPECT_FALSE(child<QPushButton>(view, "listenButton")->isEnabled()) << "no custom file yet";

    // Text is no sound: the error shows and the sound stays as it was.
    const QString notSound = folder.filePath("notes.mp3");
    QFile text(notSound);
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("hatırlatma listesi");
    text.close();
    model->set(Settings::adhanSound, AdhanSound::chime);
    model->set(Settings::adhanSound, AdhanSound::custom);
    FileChooser::setNextAnswer(notSound);
    child<QPushButton>(view, "chooseFileButton")->click();
    EXPECT_EQ(view.importError(), QString::fromUtf8(NotificationSettingsView::importFailed));
    EXPECT_EQ(model->setting(Settings::customSoundName), std::nullopt);

    // The application's own chime is a sound file any backend can play.
    const std::optional<QString> chime = SoundLibrary::chimePath();
    ASSERT_TRUE(chime);
    const QString mine = folder.filePath("ezan-ogle.wav");
    ASSERT_TRUE(QFile::copy(*chime, mine));
    model->set(Settings::adhanSound, AdhanSound::system);
    FileChooser::setNextAnswer(mine);
    view.chooseFile();
    EXPECT_EQ(view.importError(), std::nullopt);
    EXPECT_EQ(model->setting(Settings::adhanSound), AdhanSound::custom);
    EXPECT_EQ(model->setting(Settings::customSoundName), "ezan-ogle.wav");
    EXPECT_EQ(child<QLabel>(view, "fileName")->toolTip(), "ezan-ogle.wav");

    // Cancelling changes nothing.
    FileChooser::setNextAnswer(std::nullopt);
    view.chooseFile();
    EXPECT_EQ(model->setting(Settings::customSoundName), "ezan-ogle.wav");
}

TEST_F(SettingsViewTest, WithoutANotificationServiceTheTabSaysSoWhenShown)
{
    int opened = 0;
    NotificationSettingsView view(*model, {[] { return true; }, [&opened] { ++opened; }});
    EXPECT_TRUE(child<QWidget>(view, "deniedRow")->isHidden()) << "only learned when the tab is shown";
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !child<QWidget>(view, "deniedRow")->isHidden(); }, waitMs));
    child<QPushButton>(view, "openSettingsButton")->click();
    EXPECT_EQ(opened, 1);

    // A desktop without a settings tool gets the warning but no dead button.
    NotificationSettingsView bare(*model, {[] { return true; }, {}});
    EXPECT_TRUE(child<QPushButton>(bare, "openSettingsButton")->isHidden());
}

TEST_F(SettingsViewTest, QuietHoursAreStoredAsMinutesAfterMidnight)
{
    NotificationSettingsView view(*model, allowed);
    EXPECT_TRUE(child<QTimeEdit>(view, "quietStart")->parentWidget()->isHidden());
    child<SettingsForm::Switch>(view, "quietSwitch")->click();
    EXPECT_TRUE(model->setting(Settings::quietHours).enabled);
    EXPECT_FALSE(child<QTimeEdit>(view, "quietStart")->parentWidget()->isHidden());
    child<QTimeEdit>(view, "quietStart")->setTime(QTime(22, 0));
    child<QTimeEdit>(view, "quietEnd")->setTime(QTime(6, 0));
    EXPECT_EQ(model->setting(Settings::quietHours), (QuietHours {true, 1320, 360}));
    SettingsStore::store().sync();
    EXPECT_EQ(Settings::quietHours.read(), (QuietHours{true, 1320, 360}));

    child<QComboBox>(view, "reminderPicker")->setCurrentIndex(3);
    emit child<QComboBox>(view, "reminderPicker")->activated(3);
    EXPECT_EQ(model->setting(Settings::reminderMinutes), 15);
    child<QSlider>(view, "volumeSlider")->setValue(35);
    EXPECT_DOUBLE_EQ(model->setting(Settings::soundVolume), 0.35);
}

TEST_F(SettingsViewTest, AChipReachesTheScheduler)
{
    QSignalSpy finished(model.get(), &AppModel::loadFinished);
    model->set(Settings::location, uskudar);
    ASSERT_TRUE(finished.wait(waitMs));
    // The scheduler takes a new plan on its next turn of the event loop.
    const auto yatsiPending = [&] {
        settle();
        const std::vector<NotificationRequest> pending = scheduler.pending();
        return std::any_of(pending.begin(), pending.end(),
                           [](const NotificationRequest &request) { return request.title.contains("Yatsı"); });
    };
    ASSERT_TRUE(yatsiPending());

    NotificationSettingsView view(*model, allowed);
    EXPECT_TRUE(child<SettingsForm::Chip>(view, "yatsiChip")->isOn());
    EXPECT_FALSE(child<SettingsForm::Chip>(view, "gunesChip")->isOn());
    child<SettingsForm::Chip>(view, "yatsiChip")->click();
    EXPECT_FALSE(child<SettingsForm::Chip>(view, "yatsiChip")->isOn());
    EXPECT_FALSE(model->setting(Settings::notifiedPrayers).contains(Prayer::yatsi));
    EXPECT_FALSE(yatsiPending());
}

TEST_F(SettingsViewTest, KerahatControlsRestWhileTheDisplayIsOff)
{
    model->set(Settings::kerahatMenuDot, false);
    model->set(Settings::kerahatMinutes, 50);
    KerahatSettingsView view(*model);
    auto *show = child<SettingsForm::Switch>(view, "showSwitch");
    auto *dot = child<SettingsForm::Switch>(view, "dotSwitch");
    auto *minutes = child<QComboBox>(view, "minutesPicker");
    EXPECT_TRUE(dot->isEnabled());
    show->click();
    EXPECT_FALSE(model->setting(Settings::showKerahat));
    for (const char *control : {"dotSwitch", "notifySwitch", "minutesPicker"})
        EXPECT_FALSE(child(view, control)->isEnabled()) << control;
    EXPECT_FALSE(dot->isChecked());
    EXPECT_EQ(minutes->currentText(), "50 dakika");
    EXPECT_EQ(model->setting(Settings::kerahatMinutes), 50);

    show->click();
    EXPECT_TRUE(minutes->isEnabled());
    minutes->setCurrentIndex(0);
    emit minutes->activated(0);
    EXPECT_EQ(model->setting(Settings::kerahatMinutes), 40);
}

TEST_F(SettingsViewTest, TheWindowNamesItsTabsAndControlsForScreenReaders)
{
    SettingsView window(*model, std::make_unique<ScriptedLocations>(), allowed);
    EXPECT_EQ(window.width(), SettingsView::windowWidth);
    const QTabWidget &pages = *child<QTabWidget>(window, "tabs");
    QStringList tabs;
    for (int index = 0; index < pages.count(); ++index)
        tabs << pages.tabText(index);
    EXPECT_EQ(tabs, (QStringList{"Genel", "Vakitler", "Bildirimler", "Kerahat", "Hakkında"}));

    QStringList named;
    for (const QWidget *widget : window.findChildren<QWidget *>())
        if (!widget->accessibleName().isEmpty())
            named << widget->accessibleName();
    for (const char *name : {"Konum ara", "Hesaplama yöntemi", "Gösterim", "Ramazan modu", "Oturum açıldığında başlat",
                             "Önceden hatırlat", "Vakit girince", "Ses düzeyi", "Sessiz saatler", "Başlangıç", "Bitiş",
                             "Panelde göster", "Tepsi simgesinde işaret", "Başlarken bildir", "Güneş doğuşu ve batışı",
                             "İmsak", "Yatsı", "Hicri tarih düzeltmesi", "Yüksek enlem kuralı",
                             "Diyanet vakitlerini web servisinden al"})
        EXPECT_TRUE(named.contains(QString::fromUtf8(name))) << name;

    EXPECT_EQ(AboutView::versionText(QString()), "Sürüm 1.0");
    EXPECT_EQ(AboutView::versionText("0.4.0"), "Sürüm 0.4.0");
}

TEST_F(SettingsViewTest, MinuteAndHijriCorrectionsReachTheTimesShown)
{
    TimesSettingsView view(*model);
    auto *imsak = view.findChild<QSpinBox *>("İmsak");
    auto *hijri = view.findChild<QSpinBox *>("Hicri tarih düzeltmesi");
    ASSERT_TRUE(imsak && hijri);
    EXPECT_EQ(imsak->text(), "0 dk");

    QSignalSpy loaded(model.get(), &AppModel::loadFinished);
    imsak->setValue(-3);
    ASSERT_TRUE(loaded.wait(waitMs));
    EXPECT_EQ(model->setting(Settings::timesOptions).adjustment(Prayer::imsak), -3);
    const DayTimes computed
        = PrayerCalculator::times({2026, 3, 10}, model->setting(Settings::location), model->setting(Settings::method));
    EXPECT_EQ((*model->today())[Prayer::imsak], computed[Prayer::imsak] - 180);
    EXPECT_EQ((*model->today())[Prayer::gunes], computed[Prayer::gunes]);

    hijri->setValue(1);
    ASSERT_TRUE(loaded.wait(waitMs));
    EXPECT_EQ(hijri->text(), "+1 gün");
    EXPECT_EQ(model->today()->hijri->day, computed.hijri->day + 1);
    EXPECT_EQ(Settings::timesOptions.read(), model->setting(Settings::timesOptions));

    // Set elsewhere (the command line's settings file), shown here without storing again.
    TimesOptions cleared;
    model->set(Settings::timesOptions, cleared);
    EXPECT_EQ(imsak->value(), 0);
    EXPECT_EQ(hijri->value(), 0);
}

TEST_F(SettingsViewTest, TheWindowShrinksBackAndEscapeClosesOnlyTheOpenList)
{
    auto owned = std::make_unique<ScriptedLocations>();
    ScriptedLocations &scripted = *owned;
    SettingsView window(*model, std::move(owned), allowed);
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.show();
    settle();
    const int height = window.height();

    QLineEdit *query = nullptr;
    for (QLineEdit *field : window.findChildren<QLineEdit *>())
        if (field->accessibleName() == "Konum ara")
            query = field;
    ASSERT_NE(query, nullptr);
    query->setText("Üsk");
    scripted.found = {{uskudar, berlin, Location::istanbul()}, false};
    QTest::keyClick(query, Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([&] { return window.height() > height; }, waitMs));
    QList<QAbstractButton *> results;
    for (QAbstractButton *button : window.findChildren<QAbstractButton *>())
        if (button->accessibleName() == "İstanbul, Üsküdar")
            results << button;
    ASSERT_EQ(results.size(), 1);
    results.first()->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.height() == height; }, waitMs)) << window.height() << " " << height;

    QComboBox *method = nullptr;
    for (QComboBox *combo : window.findChildren<QComboBox *>())
        if (combo->accessibleName() == "Hesaplama yöntemi")
            method = combo;
    ASSERT_NE(method, nullptr);
    method->showPopup();
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }, waitMs));
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    settle();
    EXPECT_TRUE(window.isVisible()) << "Escape in the list closes the list alone";
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

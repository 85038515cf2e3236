#include "Snapshot.h"

#include "AboutView.h"
#include "AladhanClient.h"
#include "AppModel.h"
#include "Calendars.h"
#include "ImageView.h"
#include "ImsakiyeView.h"
#include "KerahatSettingsView.h"
#include "LocationService.h"
#include "Platform.h"
#include "OrvelFormat.h"
#include "PanelColors.h"
#include "PanelView.h"
#include "PrayerRepository.h"
#include "ReligiousDays.h"
#include "SettingsForm.h"
#include "SettingsView.h"
#include "StatusImage.h"
#include "TimeZone.h"
#include "TimesSettingsView.h"
#include "TrayPicture.h"
#include "ViewStyle.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QEventLoop>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QImage>
#include <QLayout>
#include <QLabel>
#include <QPainter>
#include <QScopeGuard>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

#include <array>
#include <cstdio>

namespace orvel::Snapshot {

namespace {

constexpr auto istanbulZone = "Europe/Istanbul";
constexpr std::array<Appearance, 2> appearances{Appearance::light, Appearance::dark};

QString appearanceName(Appearance appearance)
{
    return appearance == Appearance::dark ? QStringLiteral("dark") : QStringLiteral("light");
}

QString fromStd(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void printLine(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

void pump(double seconds)
{
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
    loop.exec();
}

void waitForLoad(AppModel &model)
{
    if (!model.isLoading())
        return;
    QEventLoop loop;
    QObject::connect(&model, &AppModel::loadFinished, &loop, &QEventLoop::quit);
    QObject::connect(&model, &AppModel::isLoadingChanged, &loop, [&] {
        if (!model.isLoading())
            loop.quit();
    });
    QTimer::singleShot(loadBoundMs, &loop, &QEventLoop::quit);
    loop.exec();
}

// The user's settings and cache are neither read nor changed: every run starts from the defaults
// in a folder of its own, gone when the run ends.
void useSnapshotStore(const QTemporaryDir &scratch)
{
    SettingsStore::setStore(std::make_unique<QSettings>(scratch.filePath(QStringLiteral("Orvel.conf")), QSettings::IniFormat));
}

AppModel::Services services(const QStringList &arguments, const QTemporaryDir &scratch,
                            const std::shared_ptr<ManualClock> &clock)
{
    AppModel::Services services;
    services.clock = clock;
    // A hidden option for tests: another web service (or a dead one) in place of Aladhan.
    const std::string url = optionValue(arguments, QStringLiteral("--service"))
                                .value_or(QString::fromUtf8(AladhanClient::defaultBaseURL.data(),
                                                            static_cast<qsizetype>(AladhanClient::defaultBaseURL.size())))
                                .toStdString();
    services.repository =
        std::make_shared<PrayerRepository>(scratch.filePath(QStringLiteral("Cache")).toStdString(), AladhanClient(url));
    return services;
}

void addRow(QVBoxLayout &column, const QString &title, const StatusImage::Image &image, Appearance appearance)
{
    auto *row = new QHBoxLayout;
    row->setSpacing(8);
    auto *label = new QLabel(title);
    label->setFixedWidth(100);
    label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, ViewStyle::secondary(appearance));
    label->setPalette(palette);
    row->addWidget(label);

    // Template images take the colour of the text so that they show on either background.
    const StatusImage::Image shown = image.isTemplate ? image.tinted(ViewStyle::primary(appearance)) : image;
    auto *picture = new ImageView;
    picture->setImage(shown.image);
    row->addWidget(picture);
    row->addStretch(1);
    column.addLayout(row);
}

// The settings window as a whole, then three of its tabs at the window's width, the last with a
// custom sound and quiet hours that are put back afterwards.
void renderSettings(AppModel &model, Appearance appearance, const QDir &folder)
{
    const QString name = appearanceName(appearance);
    const NotificationSettingsView::Permission allowed{[] { return false; }, [] {}};
    const auto writeTab = [&](QWidget &tab, const QString &file) {
        SettingsForm::applyAppearance(&tab, appearance);
        // Wrapped notes are as tall as the width makes them, not as their own hint guesses.
        tab.ensurePolished();
        const QLayout *layout = tab.layout();
        const int height = layout->hasHeightForWidth() ? layout->totalHeightForWidth(SettingsView::windowWidth)
                                                        : layout->totalSizeHint().height();
        tab.setFixedSize(SettingsView::windowWidth, height);
        write(tab, appearance, viewWaitSeconds, folder.filePath(file.arg(name)));
    };

    SettingsView settings(model, Platform::locationService(), allowed);
    write(settings, appearance, viewWaitSeconds, folder.filePath(QStringLiteral("settings-%1.png").arg(name)));
    NotificationSettingsView notifications(model, allowed);
    writeTab(notifications, QStringLiteral("settings-notifications-%1.png"));
    KerahatSettingsView kerahat(model);
    writeTab(kerahat, QStringLiteral("settings-kerahat-%1.png"));
    TimesSettingsView times(model);
    writeTab(times, QStringLiteral("settings-times-%1.png"));
    AboutView about;
    writeTab(about, QStringLiteral("settings-about-%1.png"));

    const AdhanSound sound = model.setting(Settings::adhanSound);
    const std::optional<QString> customName = model.setting(Settings::customSoundName);
    const QuietHours quietHours = model.setting(Settings::quietHours);
    model.set(Settings::adhanSound, AdhanSound::custom);
    model.set(Settings::customSoundName, QStringLiteral("ezan-ogle.m4a"));
    QuietHours quiet = quietHours;
    quiet.enabled = true;
    model.set(Settings::quietHours, quiet);
    NotificationSettingsView soundTab(model, allowed);
    writeTab(soundTab, QStringLiteral("settings-sound-%1.png"));
    model.set(Settings::adhanSound, sound);
    model.set(Settings::customSoundName, customName);
    model.set(Settings::quietHours, quietHours);
}

QSize imsakiyeSize(ImsakiyeMode mode)
{
    switch (mode) {
    case ImsakiyeMode::week:
        return {760, 400};
    case ImsakiyeMode::month:
        return {760, 700};
    case ImsakiyeMode::ramadan:
        return {760, 1130};
    }
    return {};
}

ImsakiyeView::Loaded awaitImsakiye(ImsakiyeMode mode, const AppModel &model)
{
    QFutureWatcher<ImsakiyeView::Loaded> watcher;
    QEventLoop loop;
    QObject::connect(&watcher, &QFutureWatcherBase::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(loadBoundMs, &loop, &QEventLoop::quit);
    watcher.setFuture(ImsakiyeView::load(mode, 0, model));
    if (!watcher.isFinished())
        loop.exec();
    return watcher.isFinished() ? watcher.result() : ImsakiyeView::Loaded{};
}

// "imsakiye week: 7 gün, 2026-03-09 … 2026-03-15".
QString imsakiyeLine(ImsakiyeMode mode, const std::vector<DayTimes> &days)
{
    const auto describe = [&](const DayTimes *day) { return day ? QString::fromStdString(day->day.description()) : "-"; };
    return QStringLiteral("imsakiye %1: %2 gün, %3 … %4")
        .arg(fromStd(mode.id()))
        .arg(days.size())
        .arg(describe(days.empty() ? nullptr : &days.front()), describe(days.empty() ? nullptr : &days.back()));
}

void writeImsakiye(AppModel &model, Appearance appearance, const QDir &folder)
{
    for (const ImsakiyeMode::Value mode : ImsakiyeMode::all) {
        const ImsakiyeView::Loaded loaded = awaitImsakiye(mode, model);
        printLine(imsakiyeLine(mode, loaded.days));
        ImsakiyeView view(model, mode, loaded);
        view.setFixedSize(imsakiyeSize(mode));
        write(view, appearance, imsakiyeWaitSeconds,
              folder.filePath(QStringLiteral("imsakiye-%1-%2.png").arg(fromStd(ImsakiyeMode(mode).id()),
                                                                        appearanceName(appearance))));
    }
}

// The panel on the evening of the next holy night from the snapshot's day, for the line its
// header gives it; returns the night's date and name for the summary.
QString writeHolyNightPanel(AppModel &model, ManualClock &clock, const QDir &folder)
{
    const DayKey today = model.todayKey();
    const TimesOptions &options = model.setting(Settings::timesOptions);
    for (const ReligiousDay &day : ReligiousDays::between(today, today.adding(400), model.setting(Settings::method),
                                                          options.hijriCorrection)) {
        if (day.kind != ReligiousDay::Kind::night)
            continue;
        clock.set(day.date.at(21 * 60, model.zone()));
        model.reload();
        waitForLoad(model);
        Colors::forceAppearance(Appearance::light);
        PanelView panel(model, [] {}, [] {}, [] {}, nullptr);
        write(panel, Appearance::light, viewWaitSeconds, folder.filePath(QStringLiteral("popover-kandil-light.png")));
        return QStringLiteral("kandil: %1 %2").arg(fromStd(day.date.description()), fromStd(day.name));
    }
    return QString();
}

void renderAppearance(AppModel &model, Appearance appearance, const QDir &folder)
{
    Colors::forceAppearance(appearance);
    const QString name = appearanceName(appearance);

    PanelView popover(model, [] {}, [] {}, [] {}, nullptr);
    write(popover, appearance, viewWaitSeconds, folder.filePath(QStringLiteral("popover-%1.png").arg(name)));
    renderSettings(model, appearance, folder);

    writeImsakiye(model, appearance, folder);

    const std::unique_ptr<QWidget> menuBar = labels(model, appearance);
    write(*menuBar, appearance, viewWaitSeconds, folder.filePath(QStringLiteral("menubar-%1.png").arg(name)));
}

} // namespace

std::optional<QString> optionValue(const QStringList &arguments, const QString &option)
{
    const qsizetype index = arguments.indexOf(option);
    if (index < 0 || index + 1 >= arguments.size())
        return std::nullopt;
    return arguments.at(index + 1);
}

std::optional<Instant> parseNow(const QString &value)
{
    // Read field by field: the machine's own zone must play no part, not even in validation.
    const QStringList parts = value.split(u'T');
    if (parts.size() != 2)
        return std::nullopt;
    const QDate date = QDate::fromString(parts.at(0), QStringLiteral("yyyy-MM-dd"));
    const QTime time = QTime::fromString(parts.at(1), QStringLiteral("HH:mm"));
    if (!date.isValid() || !time.isValid())
        return std::nullopt;
    return Calendars::wallClock({date.year(), date.month(), date.day(), time.hour(), time.minute(), 0},
                                TimeZone::named(istanbulZone));
}

Location uskudar()
{
    // Diyanet computes Üsküdar at İstanbul's point.
    return Location{"İstanbul, Üsküdar", 41.0255, 29.0153, istanbulZone, GeoPoint{41.0148, 28.9687}};
}

std::unique_ptr<QWidget> labels(AppModel &model, Appearance appearance)
{
    auto widget = std::make_unique<QWidget>();
    widget->setFont(ViewStyle::font(12));
    auto *column = new QVBoxLayout(widget.get());
    column->setSpacing(8);
    column->setContentsMargins(12, 12, 12, 12);

    for (const TrayStyle::Value style : TrayStyle::all)
        addRow(*column, fromStd(TrayStyle(style).label()), model.trayImage(style, false, devicePixelRatio),
               appearance);
    addRow(*column, QStringLiteral("Kerahat"), model.trayImage(TrayStyle::nameAndRemaining, true, devicePixelRatio),
           appearance);
    addRow(*column, QStringLiteral("Ezan"),
           StatusImage::make(QStringLiteral("moon"), QStringLiteral("Akşam vakti"), StatusImage::Style::adhan, false,
                             devicePixelRatio),
           appearance);
    return widget;
}

namespace {

// The tray's faces as GNOME's top bar and Plasma's Breeze Dark and Breeze Light panels show them,
// at 22 points and twice the pixels: tray-1.png, tray-2.png, tray-3.png.
void writeTrayFaces(const QDir &folder)
{
    using State = TrayPicture::State;
    const TrayPicture::Face faces[] = {{State::normal, {}}, {State::kerahat, {}}, {State::entry, {}},
                                       {State::normal, QStringLiteral("7")}, {State::kerahat, QStringLiteral("23")},
                                       {State::normal, QStringLiteral("60")}, {State::normal, QStringLiteral("90")},
                                       {State::normal, QStringLiteral("1sa")}, {State::normal, QStringLiteral("12sa")}};
    const PanelColors::Palette panels[] = {PanelColors::gnomeBar(), PanelColors::breezeDark(), PanelColors::breezeLight()};
    constexpr int pixels = 44;
    constexpr int gap = 16;
    int number = 0;
    for (const PanelColors::Palette &panel : panels) {
        const int count = static_cast<int>(std::size(faces));
        QImage strip(count * (pixels + gap) + gap, pixels + 2 * gap, QImage::Format_ARGB32_Premultiplied);
        strip.fill(panel.background);
        QPainter painter(&strip);
        for (int i = 0; i < count; ++i)
            painter.drawImage(gap + i * (pixels + gap), gap, TrayPicture::image(faces[i], panel.text, pixels));
        painter.end();
        savePng(strip, folder.filePath(QStringLiteral("tray-%1.png").arg(++number)));
    }
}

} // namespace

bool write(QWidget &view, Appearance appearance, double waitSeconds, const QString &path)
{
    view.setAttribute(Qt::WA_DontShowOnScreen);
    view.setAutoFillBackground(true);
    view.setPalette(ViewStyle::palette(appearance));
    view.ensurePolished();
    view.adjustSize();
    view.show();
    pump(waitSeconds);
    view.adjustSize();

    QImage image(view.size() * devicePixelRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(ViewStyle::window(appearance));
    view.render(&image);
    view.hide();
    savePng(image, path);
    return true;
}

void savePng(const QImage &image, const QString &path)
{
    // A full disk makes libpng fail half-way: a file that is not whole is no picture.
    if (image.isNull() || !image.save(path, "PNG") || QFileInfo(path).size() == 0) {
        QFile::remove(path);
        throw WriteError(path);
    }
}

QStringList summary(const AppModel &model)
{
    QStringList lines;
    lines << QStringLiteral("source=%1 location=%2")
                 .arg(fromStd(model.source().id()), QString::fromStdString(model.setting(Settings::location).name));
    const std::optional<DayTimes> &today = model.today();
    if (!today)
        return lines;
    const TimeZone zone = model.zone();
    QStringList times;
    for (const Prayer::Value prayer : Prayer::all)
        times << fromStd(Prayer(prayer).name()) + u' ' + QString::fromStdString(OrvelFormat::time((*today)[prayer], zone));
    lines << times.join(QStringLiteral("  "));
    return lines;
}

int run(const QString &outputDirectory, const QStringList &arguments)
{
    const QTemporaryDir scratch;
    useSnapshotStore(scratch);
    // The store goes before its folder does.
    const auto forgetStore = qScopeGuard([] { SettingsStore::setStore(nullptr); });
    // The views are drawn at one still minute: the one asked for, else the one the snapshot starts in.
    const std::optional<Instant> now = parseNow(optionValue(arguments, QStringLiteral("--now")).value_or(QString()));
    const auto clock = std::make_shared<ManualClock>(now ? *now : SystemClock().now());
    AppModel model(services(arguments, scratch, clock), ModelRun::still, ModelVoice::silent);
    if (arguments.contains(QStringLiteral("--uskudar")))
        model.set(Settings::location, uskudar());
    else
        model.reload();
    // An equal location sets nothing off.
    if (!model.isLoading() && !model.today())
        model.reload();
    waitForLoad(model);

    const QDir folder(outputDirectory);
    if (!folder.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "orvel: klasör oluşturulamadı: %s\n", qPrintable(outputDirectory));
        return 1;
    }
    try {
        for (const Appearance appearance : appearances)
            renderAppearance(model, appearance, folder);
        Colors::forceAppearance(std::nullopt);
        writeTrayFaces(folder);
    } catch (const WriteError &error) {
        Colors::forceAppearance(std::nullopt);
        std::fprintf(stderr, "orvel: resim yazılamadı: %s\n", qPrintable(error.path));
        return 1;
    }

    for (const QString &line : summary(model))
        printLine(line);
    try {
        const QString night = writeHolyNightPanel(model, *clock, folder);
        Colors::forceAppearance(std::nullopt);
        if (!night.isEmpty())
            printLine(night);
    } catch (const WriteError &error) {
        Colors::forceAppearance(std::nullopt);
        std::fprintf(stderr, "orvel: resim yazılamadı: %s\n", qPrintable(error.path));
        return 1;
    }
    return 0;
}

} // namespace orvel::Snapshot

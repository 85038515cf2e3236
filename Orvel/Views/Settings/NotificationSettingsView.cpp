#include "NotificationSettingsView.h"

#include "AdhanPlayer.h"
#include "AppModel.h"
#include "FileChooser.h"
#include "NotificationScheduler.h"
#include "SettingsForm.h"
#include "SoundLibrary.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QTimeEdit>
#include <QtConcurrent/QtConcurrentRun>

namespace orvel {

using namespace SettingsForm;

namespace {

constexpr int sliderSteps = 100;

QTime clockTime(int64_t minutes)
{
    return QTime(static_cast<int>(minutes / 60) % 24, static_cast<int>(minutes % 60));
}

QTimeEdit *timeEditor(const QString &accessibleName)
{
    auto *editor = new QTimeEdit;
    editor->setAccessibleName(accessibleName);
    editor->setDisplayFormat(QStringLiteral("HH:mm"));
    editor->setWrapping(true);
    return editor;
}

// Whether the chosen sound has a file to play now.
bool hasSoundFile(AdhanSound sound)
{
    if (sound == AdhanSound::chime)
        return SoundLibrary::chimePath().has_value();
    if (sound == AdhanSound::custom)
        return SoundLibrary::customPath().has_value();
    return false;
}

} // namespace

NotificationSettingsView::NotificationSettingsView(AppModel &model, Permission permission, QWidget *parent)
    : QWidget(parent)
    , model_(model)
    , permission_(std::move(permission))
{
    if (!permission_.isDenied) {
        const NotificationScheduler *scheduler = model_.notifications();
        permission_.isDenied = [scheduler] { return scheduler && scheduler->isDenied(); };
        if (scheduler && scheduler->canOpenSystemSettings())
            permission_.openSettings = [scheduler] { scheduler->openSystemSettings(); };
    }

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 16, 20, 20);
    column->setSpacing(18);
    column->addWidget(makeNotificationSection());
    column->addWidget(makeSoundSection());
    column->addStretch(1);

    connect(&model_, &AppModel::changed, this, &NotificationSettingsView::refresh);
    connect(&model_.player(), &AdhanPlayer::isPlayingChanged, this, &NotificationSettingsView::refresh);
    refresh();
}

QWidget *NotificationSettingsView::makeNotificationSection()
{
    auto *section = new Section(QStringLiteral("Bildirimler"));

    auto *prayers = new QWidget;
    auto *lines = new QVBoxLayout(prayers);
    lines->setContentsMargins(0, 2, 0, 2);
    lines->setSpacing(8);
    lines->addWidget(label(QStringLiteral("Bildirim gönderilecek vakitler")));
    auto *chipRow = new QHBoxLayout;
    chipRow->setSpacing(6);
    for (const Prayer::Value prayer : Prayer::all) {
        auto *chip = new Chip(ViewStyle::text(Prayer(prayer).name()));
        chip->setObjectName(QString::fromUtf8(Prayer(prayer).id()) + QStringLiteral("Chip"));
        connect(chip, &Chip::clicked, this, [this, prayer] { model_.toggleNotification(prayer); });
        chips_[prayer] = chip;
        chipRow->addWidget(chip);
    }
    chipRow->addStretch(1);
    lines->addLayout(chipRow);
    section->addRow(prayers);

    reminder_ = new QComboBox;
    reminder_->setObjectName(QStringLiteral("reminderPicker"));
    reminder_->setAccessibleName(QStringLiteral("Önceden hatırlat"));
    reminder_->addItem(QStringLiteral("Kapalı"), 0);
    for (const int minutes : reminderOptions)
        reminder_->addItem(QStringLiteral("%1 dakika önce").arg(minutes), minutes);
    connect(reminder_, &QComboBox::activated, this,
            [this](int index) { model_.set(Settings::reminderMinutes, reminder_->itemData(index).toInt()); });
    section->addRow(row(QStringLiteral("Önceden hatırlat"), reminder_));

    friday_ = new QComboBox;
    friday_->setObjectName(QStringLiteral("Cuma hatırlatması"));
    friday_->setAccessibleName(QStringLiteral("Cuma hatırlatması"));
    for (const int64_t minutes : Settings::fridayReminderOptions)
        friday_->addItem(minutes == 0 ? QStringLiteral("Kapalı") : QStringLiteral("Öğleden %1 dakika önce").arg(minutes),
                         static_cast<int>(minutes));
    connect(friday_, &QComboBox::activated, this,
            [this](int index) { model_.set(Settings::fridayMinutes, friday_->itemData(index).toInt()); });
    section->addRow(row(QStringLiteral("Cuma hatırlatması"), friday_, QStringLiteral("Cuma günleri namaz vakti yaklaşınca bildirir")));

    religiousDays_ = new Switch(QStringLiteral("Kandil ve bayram bildirimleri"));
    religiousDays_->setObjectName(QStringLiteral("religiousDaysSwitch"));
    connect(religiousDays_, &Switch::toggled, &model_, [this](bool on) { model_.set(Settings::religiousDayNotify, on); });
    section->addRow(row(QStringLiteral("Kandil ve bayram bildirimleri"), religiousDays_,
                        QStringLiteral("Kandil gecelerinde ve bayram arifesinde akşam vakti bildirir")));

    QLabel *warning = symbol(QStringLiteral("exclamationmark.triangle.fill"), Tone::primary, 13);
    setSymbolColor(warning, Colors::systemOrange());
    openSettings_ = new QPushButton(QStringLiteral("Bildirim ayarlarını aç"));
    openSettings_->setObjectName(QStringLiteral("openSettingsButton"));
    connect(openSettings_, &QPushButton::clicked, this, [this] { permission_.openSettings(); });
    openSettings_->setVisible(static_cast<bool>(permission_.openSettings));
    deniedRow_ = section->addRow(rowOf({warning, label(QStringLiteral("Bildirim izni kapalı")), nullptr, openSettings_}, 8));
    deniedRow_->setObjectName(QStringLiteral("deniedRow"));
    deniedRow_->hide();
    return section;
}

QWidget *NotificationSettingsView::makeSoundSection()
{
    auto *section = new Section(QStringLiteral("Ezan sesi"),
                                QStringLiteral("Ses yalnızca zili açık olan vakitlerde çalar; Güneş için çalmaz. Uygulamada "
                                               "ezan kaydı bulunmaz — dilediğiniz kaydı “Kendi ses dosyam” ile seçebilirsiniz."));

    sound_ = new QComboBox;
    sound_->setObjectName(QStringLiteral("soundPicker"));
    sound_->setAccessibleName(QStringLiteral("Vakit girince"));
    for (const AdhanSound::Value sound : AdhanSound::all)
        sound_->addItem(ViewStyle::text(AdhanSound(sound).label()));
    connect(sound_, &QComboBox::activated, this,
            [this](int index) { model_.set(Settings::adhanSound, AdhanSound::all.at(static_cast<size_t>(index))); });
    auto *soundRow = new QWidget;
    auto *soundLine = new QHBoxLayout(soundRow);
    soundLine->setContentsMargins(0, 0, 0, 0);
    auto *titles = new QVBoxLayout;
    titles->setSpacing(2);
    titles->addWidget(label(QStringLiteral("Vakit girince")));
    description_ = caption(QString());
    description_->setObjectName(QStringLiteral("soundDescription"));
    titles->addWidget(description_);
    soundLine->addLayout(titles, 1);
    soundLine->addWidget(sound_, 0, Qt::AlignVCenter);
    section->addRow(soundRow);

    fileName_ = label(QString(), Tone::secondary);
    fileName_->setObjectName(QStringLiteral("fileName"));
    fileName_->setMinimumWidth(120);
    fileName_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    fileName_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    chooseFile_ = new QPushButton(QStringLiteral("Dosya seç…"));
    chooseFile_->setObjectName(QStringLiteral("chooseFileButton"));
    connect(chooseFile_, &QPushButton::clicked, this, &NotificationSettingsView::chooseFile);
    fileRow_ = new QWidget;
    fileRow_->setObjectName(QStringLiteral("fileRow"));
    auto *fileLines = new QVBoxLayout(fileRow_);
    fileLines->setContentsMargins(0, 0, 0, 0);
    fileLines->setSpacing(4);
    auto *fileLine = new QHBoxLayout;
    fileLine->setSpacing(10);
    fileLine->addWidget(label(QStringLiteral("Ses dosyası")));
    fileLine->addWidget(fileName_, 1);
    fileLine->addWidget(chooseFile_);
    fileLines->addLayout(fileLine);
    importError_ = caption(QString());
    importError_->hide();
    fileLines->addWidget(importError_);
    section->addRow(fileRow_);

    volume_ = new QSlider(Qt::Horizontal);
    volume_->setObjectName(QStringLiteral("volumeSlider"));
    volume_->setAccessibleName(QStringLiteral("Ses düzeyi"));
    volume_->setRange(0, sliderSteps);
    volume_->setFixedWidth(180);
    connect(volume_, &QSlider::valueChanged, this,
            [this](int value) { model_.set(Settings::soundVolume, static_cast<double>(value) / sliderSteps); });
    listen_ = new QPushButton;
    listen_->setObjectName(QStringLiteral("listenButton"));
    connect(listen_, &QPushButton::clicked, this, [this] {
        if (model_.player().isPlaying())
            model_.player().stop();
        else
            model_.previewSound();
    });
    auto *controls = rowOf({symbol(QStringLiteral("speaker.fill"), Tone::secondary, 12), volume_,
                            symbol(QStringLiteral("speaker.wave.3.fill"), Tone::secondary, 12), listen_},
                           6);
    volumeRow_ = section->addRow(row(QStringLiteral("Ses düzeyi"), controls));
    volumeRow_->setObjectName(QStringLiteral("volumeRow"));

    pauseMedia_ = new Switch(QStringLiteral("Medyayı duraklat"));
    pauseMedia_->setObjectName(QStringLiteral("Medyayı duraklat"));
    connect(pauseMedia_, &Switch::toggled, &model_, [this](bool on) { model_.set(Settings::pauseMedia, on); });
    pauseMediaRow_ = section->addRow(row(QStringLiteral("Medyayı duraklat"), pauseMedia_,
                                         QStringLiteral("Vakit sesi çalarken müzik ve videolar bekler, sonra sürer")));

    quiet_ = new Switch(QStringLiteral("Sessiz saatler"));
    quiet_->setObjectName(QStringLiteral("quietSwitch"));
    connect(quiet_, &Switch::toggled, this, [this](bool on) {
        QuietHours hours = model_.setting(Settings::quietHours);
        hours.enabled = on;
        model_.set(Settings::quietHours, hours);
    });
    section->addRow(row(QStringLiteral("Sessiz saatler"), quiet_, QStringLiteral("Bu aralıkta ses çalınmaz, bildirimler sessiz gelir")));

    quietStart_ = timeEditor(QStringLiteral("Başlangıç"));
    quietStart_->setObjectName(QStringLiteral("quietStart"));
    quietEnd_ = timeEditor(QStringLiteral("Bitiş"));
    quietEnd_->setObjectName(QStringLiteral("quietEnd"));
    connect(quietStart_, &QTimeEdit::timeChanged, this, [this](const QTime &time) { setQuietMinutes(true, time); });
    connect(quietEnd_, &QTimeEdit::timeChanged, this, [this](const QTime &time) { setQuietMinutes(false, time); });
    quietRows_ = section->addRow(rowOf({label(QStringLiteral("Başlangıç")), quietStart_, nullptr,
                                        label(QStringLiteral("Bitiş")), quietEnd_},
                                       10));
    return section;
}

void NotificationSettingsView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    checkPermission();
}

void NotificationSettingsView::checkPermission()
{
    // The bus daemon answers quickly, but never on the UI thread.
    QtConcurrent::run(permission_.isDenied).then(this, [this](bool denied) { deniedRow_->setVisible(denied); });
}

void NotificationSettingsView::refresh()
{
    for (const auto &[prayer, chip] : chips_)
        chip->setOn(model_.setting(Settings::notifiedPrayers).contains(prayer));
    {
        const QSignalBlocker blocker(reminder_);
        const int index = reminder_->findData(static_cast<int>(model_.setting(Settings::reminderMinutes)));
        reminder_->setCurrentIndex(std::max(index, 0));
    }
    {
        const QSignalBlocker blocker(friday_);
        friday_->setCurrentIndex(
            std::max(friday_->findData(static_cast<int>(model_.setting(Settings::fridayMinutes))), 0));
    }
    {
        const QSignalBlocker blocker(religiousDays_);
        religiousDays_->setChecked(model_.setting(Settings::religiousDayNotify));
    }
    const AdhanSound sound = model_.setting(Settings::adhanSound);
    {
        const QSignalBlocker blocker(sound_);
        sound_->setCurrentIndex(static_cast<int>(sound));
    }
    description_->setText(ViewStyle::text(sound.description()));

    fileRow_->setVisible(sound == AdhanSound::custom);
    const QString name = model_.setting(Settings::customSoundName).value_or(QStringLiteral("Seçilmedi"));
    fileName_->setText(fileName_->fontMetrics().elidedText(name, Qt::ElideMiddle, std::max(fileName_->width(), 120)));
    fileName_->setToolTip(name);

    volumeRow_->setVisible(sound.isPlayedByApp());
    pauseMediaRow_->setVisible(sound.isPlayedByApp());
    {
        const QSignalBlocker blocker(pauseMedia_);
        pauseMedia_->setChecked(model_.setting(Settings::pauseMedia));
    }
    {
        const QSignalBlocker blocker(volume_);
        volume_->setValue(static_cast<int>(std::lround(model_.setting(Settings::soundVolume) * sliderSteps)));
    }
    // The model changes every minute; the sound folder is looked at only when the sound does.
    if (sound != checkedSound_ || model_.setting(Settings::customSoundName) != checkedCustomName_) {
        checkedSound_ = sound;
        checkedCustomName_ = model_.setting(Settings::customSoundName);
        hasSoundFile_ = sound.isPlayedByApp() && hasSoundFile(sound);
    }
    const bool playing = model_.player().isPlaying();
    listen_->setText(playing ? QStringLiteral("Durdur") : QStringLiteral("Dinle"));
    listen_->setEnabled(playing || hasSoundFile_);

    const QuietHours &hours = model_.setting(Settings::quietHours);
    {
        const QSignalBlocker blocker(quiet_);
        quiet_->setChecked(hours.enabled);
    }
    quietRows_->setVisible(hours.enabled);
    for (QTimeEdit *editor : {quietStart_, quietEnd_}) {
        const QSignalBlocker blocker(editor);
        editor->setTime(clockTime(editor == quietStart_ ? hours.start : hours.end));
    }
}

void NotificationSettingsView::setQuietMinutes(bool start, const QTime &time)
{
    QuietHours hours = model_.setting(Settings::quietHours);
    (start ? hours.start : hours.end) = time.hour() * 60 + time.minute();
    model_.set(Settings::quietHours, hours);
}

void NotificationSettingsView::chooseFile()
{
    const std::optional<QString> path = FileChooser::audioFile(window());
    if (!path)
        return;
    const SoundLibrary::ImportResult imported = SoundLibrary::importCustom(*path);
    if (!imported.ok()) {
        setImportError(QString::fromUtf8(importFailed));
        return;
    }
    setImportError(std::nullopt);
    model_.set(Settings::customSoundName, imported.displayName);
    model_.set(Settings::adhanSound, AdhanSound::custom);
}

void NotificationSettingsView::setImportError(const std::optional<QString> &error)
{
    importError_->setText(error.value_or(QString()));
    importError_->setVisible(error.has_value());
}

std::optional<QString> NotificationSettingsView::importError() const
{
    return !importError_->isHidden() ? std::optional(importError_->text()) : std::nullopt;
}

} // namespace orvel

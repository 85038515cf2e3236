#include "KerahatSettingsView.h"

#include "AppModel.h"
#include "Kerahat.h"
#include "SettingsForm.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QSignalBlocker>

namespace orvel {

using namespace SettingsForm;

namespace {

constexpr int istivaMinutes = 10;

} // namespace

KerahatSettingsView::KerahatSettingsView(AppModel &model, QWidget *parent)
    : QWidget(parent)
    , model_(model)
{
    auto *section = new Section(QStringLiteral("Kerahat vakitleri"),
                                QStringLiteral("Süreler Diyanet İşleri Başkanlığı'nın fetvasına göredir: güneş doğduktan sonra "
                                               "ve batmadan önce 40–50 dakika, öğleden önce yaklaşık 10 dakika."));
    show_ = new Switch(QStringLiteral("Panelde göster"));
    show_->setObjectName(QStringLiteral("showSwitch"));
    dot_ = new Switch(QStringLiteral("Tepsi simgesinde işaret"));
    dot_->setObjectName(QStringLiteral("dotSwitch"));
    notify_ = new Switch(QStringLiteral("Başlarken bildir"));
    notify_->setObjectName(QStringLiteral("notifySwitch"));
    minutes_ = new QComboBox;
    minutes_->setObjectName(QStringLiteral("minutesPicker"));
    minutes_->setAccessibleName(QStringLiteral("Güneş doğuşu ve batışı"));
    for (const int minutes : Kerahat::sunMinuteOptions)
        minutes_->addItem(QStringLiteral("%1 dakika").arg(minutes), minutes);

    section->addRow(row(QStringLiteral("Panelde göster"), show_, QStringLiteral("Listede satır, günün çubuğunda turuncu bölge")));
    dependent_[0] = section->addRow(
        row(QStringLiteral("Tepsi simgesinde işaret"), dot_, QStringLiteral("Kerahat sırasında küçük turuncu nokta")));
    dependent_[1] = section->addRow(row(QStringLiteral("Başlarken bildir"), notify_, QStringLiteral("Sessiz bildirim")));
    dependent_[2] = section->addRow(row(QStringLiteral("Güneş doğuşu ve batışı"), minutes_,
                                        QStringLiteral("İstiva: öğleden önceki %1 dakika").arg(istivaMinutes)));

    connect(show_, &Switch::toggled, &model_, [this](bool on) { model_.set(Settings::showKerahat, on); });
    connect(dot_, &Switch::toggled, &model_, [this](bool on) { model_.set(Settings::kerahatMenuDot, on); });
    connect(notify_, &Switch::toggled, &model_, [this](bool on) { model_.set(Settings::kerahatNotify, on); });
    connect(minutes_, &QComboBox::activated, this,
            [this](int index) { model_.set(Settings::kerahatMinutes, minutes_->itemData(index).toInt()); });

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 16, 20, 20);
    column->addWidget(section);
    column->addStretch(1);

    connect(&model_, &AppModel::changed, this, &KerahatSettingsView::refresh);
    refresh();
}

void KerahatSettingsView::refresh()
{
    const std::pair<Switch *, bool> switches[] = {{show_, model_.setting(Settings::showKerahat)},
                                                  {dot_, model_.setting(Settings::kerahatMenuDot)},
                                                  {notify_, model_.setting(Settings::kerahatNotify)}};
    for (const auto &[control, on] : switches) {
        const QSignalBlocker blocker(control);
        control->setChecked(on);
    }
    {
        const QSignalBlocker blocker(minutes_);
        minutes_->setCurrentIndex(
            std::max(minutes_->findData(static_cast<int>(model_.setting(Settings::kerahatMinutes))), 0));
    }
    // Off, the other three keep their values but cannot be changed.
    for (QWidget *row : dependent_)
        row->setEnabled(model_.setting(Settings::showKerahat));
}

} // namespace orvel

#include "TimesSettingsView.h"

#include "AppModel.h"
#include "SettingsForm.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QSignalBlocker>
#include <QSpinBox>

namespace orvel {

using namespace SettingsForm;

namespace {

// "+2 dk" reads as a change forward, "−2 dk" as one back.
class SignedSpinBox : public QSpinBox {
protected:
    QString textFromValue(int value) const override
    {
        return value > 0 ? QStringLiteral("+%1").arg(value) : QString::number(value);
    }
};

QSpinBox *spinBox(const QString &name, int range, const QString &suffix)
{
    auto *box = new SignedSpinBox;
    box->setObjectName(name);
    box->setAccessibleName(name);
    box->setRange(-range, range);
    box->setSuffix(suffix);
    box->setMinimumWidth(90);
    box->setAlignment(Qt::AlignRight);
    return box;
}

} // namespace

TimesSettingsView::TimesSettingsView(AppModel &model, QWidget *parent)
    : QWidget(parent)
    , model_(model)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 16, 20, 20);
    column->setSpacing(18);
    column->addWidget(makeAdjustmentSection());
    column->addWidget(makeCalendarSection());
    column->addStretch(1);

    connect(&model_, &AppModel::changed, this, &TimesSettingsView::refresh);
    refresh();
}

QWidget *TimesSettingsView::makeAdjustmentSection()
{
    auto *section = new Section(QStringLiteral("Dakika düzeltmesi"),
                                QStringLiteral("Vakitler panelde, bildirimlerde, imsakiyede ve orvel-cli'de bu kadar "
                                               "ileri ya da geri alınır. Camiinizin takvimi birkaç dakika "
                                               "farklıysa kullanın."));
    for (const Prayer::Value prayer : Prayer::all) {
        const QString name = ViewStyle::text(Prayer(prayer).name());
        QSpinBox *box = spinBox(name, static_cast<int>(TimesOptions::maximumAdjustment), QStringLiteral(" dk"));
        adjustments_[static_cast<size_t>(Prayer(prayer).index())] = box;
        connect(box, &QSpinBox::valueChanged, this, &TimesSettingsView::store);
        section->addRow(row(name, box));
    }
    return section;
}

QWidget *TimesSettingsView::makeCalendarSection()
{
    auto *section = new Section(QStringLiteral("Takvim ve hesap"));
    hijri_ = spinBox(QStringLiteral("Hicri tarih düzeltmesi"), static_cast<int>(TimesOptions::maximumHijriCorrection),
                     QStringLiteral(" gün"));
    connect(hijri_, &QSpinBox::valueChanged, this, &TimesSettingsView::store);
    section->addRow(row(QStringLiteral("Hicri tarih düzeltmesi"), hijri_,
                        QStringLiteral("Ay başını yerel bir duyuruya göre tutanlar için")));

    highLatitude_ = new QComboBox;
    highLatitude_->setObjectName(QStringLiteral("Yüksek enlem kuralı"));
    highLatitude_->setAccessibleName(QStringLiteral("Yüksek enlem kuralı"));
    for (const HighLatitudeRule::Value rule : HighLatitudeRule::all)
        highLatitude_->addItem(ViewStyle::text(HighLatitudeRule(rule).label()));
    connect(highLatitude_, &QComboBox::activated, this, &TimesSettingsView::store);
    section->addRow(row(QStringLiteral("Yüksek enlem kuralı"), highLatitude_,
                        QStringLiteral("Güneşin yeterince alçalmadığı yerlerde İmsak ve Yatsı böyle bulunur; "
                                       "böyle vakitler “tahmini” diye işaretlenir")));

    fromService_ = new Switch(QStringLiteral("Diyanet vakitlerini web servisinden al"));
    fromService_->setObjectName(QStringLiteral("Diyanet vakitlerini web servisinden al"));
    connect(fromService_, &Switch::clicked, this, &TimesSettingsView::store);
    section->addRow(row(QStringLiteral("Diyanet vakitlerini web servisinden al"), fromService_,
                        QStringLiteral("Kapalıyken Diyanet'in kuralı cihazda hesaplanır; resmî takvime "
                                       "en yakın olan budur")));
    return section;
}

void TimesSettingsView::store()
{
    TimesOptions options = model_.setting(Settings::timesOptions);
    for (size_t i = 0; i < adjustments_.size(); ++i)
        options.minuteAdjustments[i] = adjustments_[i]->value();
    options.hijriCorrection = hijri_->value();
    options.highLatitude = HighLatitudeRule::all.at(static_cast<size_t>(std::max(highLatitude_->currentIndex(), 0)));
    options.diyanetFromService = fromService_->isChecked();
    model_.set(Settings::timesOptions, options);
}

void TimesSettingsView::refresh()
{
    const TimesOptions &options = model_.setting(Settings::timesOptions);
    for (size_t i = 0; i < adjustments_.size(); ++i) {
        const QSignalBlocker blocker(adjustments_[i]);
        adjustments_[i]->setValue(static_cast<int>(options.minuteAdjustments[i]));
    }
    {
        const QSignalBlocker blocker(hijri_);
        hijri_->setValue(static_cast<int>(options.hijriCorrection));
    }
    {
        const QSignalBlocker blocker(highLatitude_);
        highLatitude_->setCurrentIndex(static_cast<int>(options.highLatitude));
    }
    const QSignalBlocker blocker(fromService_);
    fromService_->setChecked(options.diyanetFromService);
}

} // namespace orvel

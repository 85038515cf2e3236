#pragma once

// Qt first: moc cannot read the standard headers that Location.h brings in ahead of Qt's.
#include <QWidget>

#include "Location.h"

#include <optional>
#include <vector>

class QAbstractButton;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace orvel {

class AppModel;
class ImageView;
class LocationService;
class Spinner;

class SegmentedControl;

namespace SettingsForm {
class Switch;
} // namespace SettingsForm

// The "Genel" tab: the place (the device's position or a search), the calculation method, the
// status item's style with a live preview, Ramadan mode and starting at login.
class GeneralSettingsView : public QWidget {
    Q_OBJECT

public:
    static constexpr auto locationDenied = "Konum izni verilmedi. Masaüstünüzün gizlilik ayarlarında konum "
                                           "servislerine izin verebilir ya da konumu arayabilirsiniz.";
    static constexpr auto locationUnavailable = "Konum alınamadı. Konumu arayarak seçebilirsiniz.";
    static constexpr auto loginFailedAdvice = " Otomatik başlatma klasörünüzün (~/.config/autostart) yazılabilir "
                                              "olduğundan emin olup tekrar deneyin.";

    GeneralSettingsView(AppModel &model, LocationService &locator, QWidget *parent = nullptr);

    void search();
    void useCurrentLocation();
    void setLaunchAtLogin(bool on);
    // Whether the desktop's panel shows the status item's title; without it the icon carries the
    // time left unless the user said otherwise.
    void setPanelShowsLabel(bool shows);

    const std::vector<Location> &results() const { return results_; }
    bool isSearching() const { return isSearching_; }
    std::optional<QString> locationMessage() const;
    std::optional<QString> loginError() const;

    QList<QAbstractButton *> resultButtons() const;

    // Brings every control up to date with the model.
    void refresh();

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makePlaceSection();
    QWidget *makeTraySection();
    QWidget *makeRamadanSection();
    QWidget *makeLoginSection();
    void setSearching(bool searching);
    void setLocationMessage(const std::optional<QString> &message);
    void setResults(std::vector<Location> results);
    void choose(const Location &place);
    void refreshLogin();
    void refreshPreview();

    AppModel &model_;
    LocationService &locator_;
    std::vector<Location> results_;
    bool isSearching_ = false;
    int request_ = 0; // the newest search or position request; older answers are dropped

    QLabel *place_ = nullptr;
    QPushButton *useCurrent_ = nullptr;
    QLineEdit *query_ = nullptr;
    Spinner *spinner_ = nullptr;
    QPushButton *searchButton_ = nullptr;
    QVBoxLayout *resultRows_ = nullptr;
    QWidget *resultsRow_ = nullptr;
    QLabel *message_ = nullptr;
    QComboBox *method_ = nullptr;
    SegmentedControl *style_ = nullptr;
    ImageView *preview_ = nullptr;
    SettingsForm::Switch *iconRemaining_ = nullptr;
    bool panelShowsLabel_ = false;
    SettingsForm::Switch *ramadan_ = nullptr;
    SettingsForm::Switch *login_ = nullptr;
    QLabel *loginError_ = nullptr;
};

} // namespace orvel

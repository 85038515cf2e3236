#include "GeneralSettingsView.h"

#include "AppModel.h"
#include "ImageView.h"
#include "LocationService.h"
#include "Autostart.h"
#include "PlaceFinder.h"
#include "SegmentedControl.h"
#include "SettingsForm.h"
#include "Spinner.h"
#include "Symbols.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>

namespace orvel {

using namespace SettingsForm;

namespace {

QIcon symbolIcon(const QString &name)
{
    return QIcon(QPixmap::fromImage(Symbols::image(name, 12, ViewStyle::primary(Colors::current()), 2.0)));
}

// One found place: the pin, its name, and its position on the right.
class ResultRow : public QAbstractButton {
public:
    explicit ResultRow(const Location &place)
        : name_(QString::fromStdString(place.name))
        , position_(QString::asprintf("%.2f, %.2f", place.latitude, place.longitude))
    {
        setAccessibleName(name_);
        setCursor(Qt::PointingHandCursor);
        setFocusPolicy(Qt::StrongFocus);
    }
    QSize sizeHint() const override { return {200, 26}; }

protected:
    void enterEvent(QEnterEvent *) override { update(); }
    void leaveEvent(QEvent *) override { update(); }
    void paintEvent(QPaintEvent *) override
    {
        const Appearance appearance = Colors::current();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (underMouse() || hasFocus()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(ViewStyle::faded(ViewStyle::accent(appearance), isDown() ? 0.2 : 0.1));
            painter.drawRoundedRect(QRectF(rect()), 5, 5);
        }
        const QImage pin = Symbols::image(QStringLiteral("mappin.and.ellipse"), 12, ViewStyle::accent(appearance),
                                          devicePixelRatioF());
        const QSizeF pinSize = Symbols::size(QStringLiteral("mappin.and.ellipse"), 12);
        painter.drawImage(QPointF(6, (height() - pinSize.height()) / 2), pin);
        const QFont font = ViewStyle::font(13);
        painter.setFont(font);
        const QFontMetrics metrics(font);
        const int positionWidth = metrics.horizontalAdvance(position_);
        const QRect positionRect(width() - 6 - positionWidth, 0, positionWidth, height());
        painter.setPen(ViewStyle::secondary(appearance));
        painter.drawText(positionRect, Qt::AlignVCenter | Qt::AlignRight, position_);
        const int nameLeft = 6 + qCeil(pinSize.width()) + 6;
        const QRect nameRect(nameLeft, 0, positionRect.left() - 12 - nameLeft, height());
        painter.setPen(ViewStyle::primary(appearance));
        painter.drawText(nameRect, Qt::AlignVCenter | Qt::AlignLeft, metrics.elidedText(name_, Qt::ElideRight, nameRect.width()));
    }

private:
    QString name_;
    QString position_;
};

// The status item as the panel would show it, on a faint rounded plate.
class PreviewPlate : public ImageView {
public:
    PreviewPlate() { setPadding(QMargins(8, 2, 8, 2)); }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(ViewStyle::faded(ViewStyle::primary(Colors::current()), 0.08));
        painter.drawRoundedRect(QRectF(rect()), 6, 6);
        painter.end();
        ImageView::paintEvent(event);
    }
};

} // namespace

GeneralSettingsView::GeneralSettingsView(AppModel &model, LocationService &locator, QWidget *parent)
    : QWidget(parent)
    , model_(model)
    , locator_(locator)
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(20, 16, 20, 20);
    column->setSpacing(18);
    // A settings file that did not read is kept as it is; the window says why the defaults show.
    if (const auto problem = Settings::problem()) {
        QLabel *note = label(QStringLiteral("Ayarlar okunamadı: ") + *problem + u'.', Tone::secondary);
        note->setObjectName(QStringLiteral("settingsProblem"));
        note->setWordWrap(true);
        note->setTextInteractionFlags(Qt::TextSelectableByMouse);
        column->addWidget(note);
    }
    column->addWidget(makePlaceSection());
    column->addWidget(makeTraySection());
    column->addWidget(makeRamadanSection());
    column->addWidget(makeLoginSection());
    column->addStretch(1);

    connect(&model_, &AppModel::changed, this, &GeneralSettingsView::refresh);
    refresh();
    refreshLogin();
}

QWidget *GeneralSettingsView::makePlaceSection()
{
    auto *section = new Section(QStringLiteral("Konum ve hesaplama"));

    place_ = label(QString(), Tone::secondary);
    place_->setObjectName(QStringLiteral("placeLabel"));
    place_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    useCurrent_ = new QPushButton(QStringLiteral("Konumumu kullan"));
    useCurrent_->setObjectName(QStringLiteral("currentLocationButton"));
    connect(useCurrent_, &QPushButton::clicked, this, &GeneralSettingsView::useCurrentLocation);
    section->addRow(rowOf({label(QStringLiteral("Konum")), nullptr, place_, useCurrent_}, 10));

    query_ = new QLineEdit;
    query_->setObjectName(QStringLiteral("queryField"));
    query_->setAccessibleName(QStringLiteral("Konum ara"));
    query_->setPlaceholderText(QStringLiteral("İl veya ilçe ara (ör. Üsküdar)"));
    query_->setClearButtonEnabled(true);
    spinner_ = new Spinner;
    spinner_->setObjectName(QStringLiteral("spinner"));
    spinner_->setFixedSize(Spinner::diameter, Spinner::diameter);
    spinner_->hide();
    searchButton_ = new QPushButton(QStringLiteral("Ara"));
    searchButton_->setObjectName(QStringLiteral("searchButton"));
    connect(query_, &QLineEdit::returnPressed, this, &GeneralSettingsView::search);
    connect(query_, &QLineEdit::textChanged, this,
            [this](const QString &text) { searchButton_->setEnabled(!text.trimmed().isEmpty()); });
    connect(searchButton_, &QPushButton::clicked, this, &GeneralSettingsView::search);
    searchButton_->setEnabled(false);
    section->addRow(rowOf({query_, spinner_, searchButton_}, 8));

    resultsRow_ = new QWidget;
    resultRows_ = new QVBoxLayout(resultsRow_);
    resultRows_->setContentsMargins(0, 0, 0, 0);
    resultRows_->setSpacing(2);
    section->addRow(resultsRow_)->hide();

    message_ = caption(QString());
    section->addRow(message_)->hide();

    method_ = new QComboBox;
    method_->setObjectName(QStringLiteral("methodPicker"));
    method_->setAccessibleName(QStringLiteral("Hesaplama yöntemi"));
    for (const CalculationMethod::Value method : CalculationMethod::all)
        method_->addItem(ViewStyle::text(CalculationMethod(method).name()));
    connect(method_, &QComboBox::activated, this,
            [this](int index) { model_.set(Settings::method, CalculationMethod::all.at(static_cast<size_t>(index))); });
    section->addRow(row(QStringLiteral("Hesaplama yöntemi"), method_, QStringLiteral("Türkiye için Diyanet önerilir")));
    return section;
}

QWidget *GeneralSettingsView::makeTraySection()
{
    auto *section = new Section(QStringLiteral("Sistem tepsisi"));
    QStringList titles;
    for (const TrayStyle::Value style : TrayStyle::all)
        titles << ViewStyle::text(TrayStyle(style).label());
    style_ = new SegmentedControl(titles, QStringLiteral("Gösterim"));
    style_->setObjectName(QStringLiteral("styleSegments"));
    connect(style_, &SegmentedControl::chosen, this,
            [this](int index) { model_.set(Settings::trayStyle, TrayStyle::all.at(static_cast<size_t>(index))); });
    section->addRow(row(QStringLiteral("Gösterim"), style_));

    preview_ = new PreviewPlate;
    preview_->setObjectName(QStringLiteral("preview"));
    preview_->setAccessibleName(QStringLiteral("Önizleme"));
    section->addRow(row(QStringLiteral("Önizleme"), preview_));

    iconRemaining_ = new Switch(QStringLiteral("Simgede kalan süre"));
    iconRemaining_->setObjectName(QStringLiteral("iconRemainingSwitch"));
    connect(iconRemaining_, &Switch::clicked, this, [this](bool on) { model_.set(Settings::iconRemaining, on); });
    section->addRow(row(QStringLiteral("Simgede kalan süre"), iconRemaining_,
                        QStringLiteral("Başlık göstermeyen panellerde kalan süre simgede yazar")));
    return section;
}

QWidget *GeneralSettingsView::makeRamadanSection()
{
    auto *section = new Section(QStringLiteral("Ramazan"));
    ramadan_ = new Switch(QStringLiteral("Ramazan modu"));
    ramadan_->setObjectName(QStringLiteral("ramadanSwitch"));
    connect(ramadan_, &Switch::toggled, &model_, [this](bool on) { model_.set(Settings::ramadanMode, on); });
    section->addRow(row(QStringLiteral("Ramazan modu"), ramadan_,
                        QStringLiteral("Ramazan'da İmsak “Sahur”, Akşam “İftar” olarak gösterilir")));
    return section;
}

QWidget *GeneralSettingsView::makeLoginSection()
{
    auto *section = new Section;
    login_ = new Switch(QStringLiteral("Oturum açıldığında başlat"));
    login_->setObjectName(QStringLiteral("loginSwitch"));
    connect(login_, &Switch::clicked, this, &GeneralSettingsView::setLaunchAtLogin);
    section->addRow(row(QStringLiteral("Oturum açıldığında başlat"), login_));
    loginError_ = caption(QString());
    section->addRow(loginError_)->hide();
    return section;
}

void GeneralSettingsView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // Another program may have changed the autostart folder meanwhile.
    refreshLogin();
}

void GeneralSettingsView::refresh()
{
    useCurrent_->setIcon(symbolIcon(QStringLiteral("location")));
    style_->setAppearance(Colors::current());
    place_->setText(QString::fromStdString(model_.setting(Settings::location).name));
    {
        const QSignalBlocker blocker(method_);
        const auto method = std::find(CalculationMethod::all.begin(), CalculationMethod::all.end(),
                                      CalculationMethod::Value(model_.setting(Settings::method)));
        method_->setCurrentIndex(static_cast<int>(method - CalculationMethod::all.begin()));
    }
    const auto style = std::find(TrayStyle::all.begin(), TrayStyle::all.end(),
                                 TrayStyle::Value(model_.setting(Settings::trayStyle)));
    style_->setCurrent(static_cast<int>(style - TrayStyle::all.begin()));
    {
        const QSignalBlocker blocker(ramadan_);
        ramadan_->setChecked(model_.setting(Settings::ramadanMode));
    }
    {
        const QSignalBlocker blocker(iconRemaining_);
        iconRemaining_->setChecked(model_.showsIconRemaining(panelShowsLabel_));
        // "Yalnız simge" answers what the icon says by itself.
        iconRemaining_->setEnabled(model_.setting(Settings::trayStyle) != TrayStyle::iconOnly);
    }
    refreshPreview();
}

void GeneralSettingsView::setPanelShowsLabel(bool shows)
{
    panelShowsLabel_ = shows;
    refresh();
}

void GeneralSettingsView::refreshPreview()
{
    // Drawn for at least a 2x screen, so that renders and HiDPI panels are crisp alike.
    const qreal ratio = std::max<qreal>(devicePixelRatioF(), 2.0);
    const StatusImage::Image image = model_.trayImage(model_.setting(Settings::trayStyle), false, ratio);
    const StatusImage::Image shown = image.isTemplate ? image.tinted(ViewStyle::primary(Colors::current())) : image;
    preview_->setImage(shown.image);
}

void GeneralSettingsView::refreshLogin()
{
    const QSignalBlocker blocker(login_);
    login_->setChecked(Autostart::isEnabled());
}

void GeneralSettingsView::search()
{
    const QString query = query_->text().trimmed();
    if (query.isEmpty())
        return;
    setSearching(true);
    setLocationMessage(std::nullopt);
    const int request = ++request_;
    const auto failed = [this, request](const QString &detail) {
        if (request != request_)
            return;
        setResults({});
        const QString message = QString::fromUtf8(PlaceFinder::searchFailed);
        setLocationMessage(detail.isEmpty() ? message : message + u' ' + detail);
        setSearching(false);
    };
    locator_.search(query)
        .then(this,
              [this, request](const PlaceSearch &found) {
                  if (request != request_)
                      return;
                  setResults(found.places);
                  if (found.places.empty())
                      setLocationMessage(QString::fromUtf8(PlaceFinder::noResults));
                  else if (found.offline)
                      setLocationMessage(QString::fromUtf8(PlaceFinder::offlineResults));
                  else if (found.more)
                      setLocationMessage(QString::fromUtf8(PlaceFinder::moreResults));
                  setSearching(false);
              })
        .onFailed(this, [failed](const SearchFailure &failure) { failed(failure.detail); })
        .onFailed(this, [failed] { failed(QString()); });
}

void GeneralSettingsView::useCurrentLocation()
{
    setSearching(true);
    setLocationMessage(std::nullopt);
    const int request = ++request_;
    locator_.currentLocation()
        .then(this,
              [this, request](const Location &here) {
                  if (request != request_)
                      return;
                  model_.set(Settings::location, here);
                  setResults({});
                  setSearching(false);
              })
        .onFailed(this,
                  [this, request](const LocationFailure &failure) {
                      if (request != request_)
                          return;
                      setLocationMessage(QString::fromUtf8(failure.error == LocationError::denied ? locationDenied
                                                                                                  : locationUnavailable));
                      setSearching(false);
                  })
        .onFailed(this, [this, request] {
            if (request != request_)
                return;
            setLocationMessage(QString::fromUtf8(locationUnavailable));
            setSearching(false);
        });
}

void GeneralSettingsView::setLaunchAtLogin(bool on)
{
    const std::optional<QString> error = Autostart::set(on);
    if (error)
        loginError_->setText(QStringLiteral("Ayarlanamadı: ") + *error + QString::fromUtf8(loginFailedAdvice));
    loginError_->setVisible(error.has_value());
    refreshLogin();
}

std::optional<QString> GeneralSettingsView::locationMessage() const
{
    return !message_->isHidden() ? std::optional(message_->text()) : std::nullopt;
}

std::optional<QString> GeneralSettingsView::loginError() const
{
    return !loginError_->isHidden() ? std::optional(loginError_->text()) : std::nullopt;
}

QList<QAbstractButton *> GeneralSettingsView::resultButtons() const
{
    return resultsRow_->findChildren<QAbstractButton *>(Qt::FindDirectChildrenOnly);
}

void GeneralSettingsView::setSearching(bool searching)
{
    isSearching_ = searching;
    spinner_->setVisible(searching);
    useCurrent_->setEnabled(!searching);
}

void GeneralSettingsView::setLocationMessage(const std::optional<QString> &message)
{
    message_->setText(message.value_or(QString()));
    message_->setVisible(message.has_value());
}

void GeneralSettingsView::setResults(std::vector<Location> results)
{
    // A row may be the one whose click is being delivered: it leaves the list now, and goes later.
    for (QAbstractButton *button : resultButtons()) {
        resultRows_->removeWidget(button);
        button->hide();
        button->setParent(nullptr);
        button->deleteLater();
    }
    results_ = std::move(results);
    for (const Location &place : results_) {
        auto *button = new ResultRow(place);
        connect(button, &QAbstractButton::clicked, this, [this, place] { choose(place); });
        resultRows_->addWidget(button);
    }
    resultsRow_->setVisible(!results_.empty());
}


void GeneralSettingsView::choose(const Location &place)
{
    model_.set(Settings::location, place);
    setResults({});
    query_->clear();
    setLocationMessage(std::nullopt);
}

} // namespace orvel

#include "SettingsView.h"

#include "AboutView.h"
#include "GeneralSettingsView.h"
#include "KerahatSettingsView.h"
#include "LocationService.h"
#include "SettingsForm.h"
#include "Symbols.h"
#include "TimesSettingsView.h"
#include "ViewStyle.h"

#include <QBoxLayout>
#include <QEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLayout>
#include <QShortcut>
#include <QTabWidget>

namespace orvel {

namespace {

struct Tab {
    const char *title;
    const char *symbol;
};

constexpr Tab tabList[] = {
    {"Genel", "slider.horizontal.3"},
    {"Vakitler", "clock"},
    {"Bildirimler", "bell.badge"},
    {"Kerahat", "hourglass"},
    {"Hakkında", "info.circle"},
};

} // namespace

SettingsView::SettingsView(AppModel &model, std::unique_ptr<LocationService> locator,
                           NotificationSettingsView::Permission permission, QWidget *parent)
    : QWidget(parent)
    , locator_(std::move(locator))
{
    setWindowTitle(QStringLiteral("Orvel Ayarları"));
    setFixedWidth(windowWidth);

    general_ = new GeneralSettingsView(model, *locator_);
    notifications_ = new NotificationSettingsView(model, std::move(permission));
    notifications_->setObjectName(QStringLiteral("notifications"));
    times_ = new TimesSettingsView(model);
    times_->setObjectName(QStringLiteral("times"));
    kerahat_ = new KerahatSettingsView(model);
    kerahat_->setObjectName(QStringLiteral("kerahat"));
    about_ = new AboutView;
    about_->setObjectName(QStringLiteral("about"));

    tabs_ = new QTabWidget;
    tabs_->setObjectName(QStringLiteral("tabs"));
    tabs_->setDocumentMode(true);
    tabs_->setUsesScrollButtons(false);
    QWidget *pages[] = {general_, times_, notifications_, kerahat_, about_};
    for (size_t index = 0; index < std::size(tabList); ++index)
        tabs_->addTab(pages[index], QString::fromUtf8(tabList[index].title));

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 8, 0, 0);
    column->addWidget(tabs_);

    connect(new QShortcut(QKeySequence(QKeySequence::Close), this), &QShortcut::activated, this, &QWidget::close);
    setAutoFillBackground(true);
    applyAppearance();
}

SettingsView::~SettingsView() = default;

void SettingsView::applyAppearance()
{
    // Setting palettes below sends palette events back here.
    applying_ = true;
    const Appearance appearance = Colors::current();
    SettingsForm::applyAppearance(this, appearance);
    for (int index = 0; index < tabs_->count(); ++index) {
        const QString symbol = QString::fromUtf8(tabList[index].symbol);
        tabs_->setTabIcon(index, QIcon(QPixmap::fromImage(Symbols::image(symbol, 13, ViewStyle::accent(appearance), 2.0))));
    }
    general_->refresh();
    applying_ = false;
}

void SettingsView::keyPressEvent(QKeyEvent *event)
{
    // Escape reaches the window only when no open list or field took it for itself.
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

bool SettingsView::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    // The window is as tall as its tabs need: it grows for a place search's results and takes
    // its own height again once they go.
    if (event->type() == QEvent::LayoutRequest && layout() && layout()->hasHeightForWidth()) {
        const int height = layout()->totalHeightForWidth(width());
        if (height != this->height())
            resize(width(), height);
    }
    if (!applying_ && (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ThemeChange))
        applyAppearance();
    return handled;
}

} // namespace orvel

#include "DBusStatusItem.h"

#include "AppIcon.h"
#include "DBusMenu.h"
#include "StatusNotifierItem.h"
#include "StatusText.h"
#include "TrayHost.h"

#include <QCoreApplication>
#include <QCursor>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QMenu>
#include <QSaveFile>

#include <array>

namespace orvel {

namespace {

constexpr auto watcherPath = "/StatusNotifierWatcher";
constexpr auto watcherInterface = "org.kde.StatusNotifierWatcher";
constexpr std::array<int, 3> iconSizes{22, 32, 44};

// The widest text of the style, so that panels keep the item's width from minute to minute.
QString labelGuide(TrayStyle style)
{
    switch (style) {
    case TrayStyle::nameAndRemaining:
        return QStringLiteral("İkindi 10:00");
    case TrayStyle::remaining:
        return QStringLiteral("10:00");
    case TrayStyle::nameAndTime:
        return QStringLiteral("İkindi 00:00");
    case TrayStyle::iconOnly:
        break;
    }
    return {};
}

// Writes the symbolic faces where panels look for the item's named icons: in the folder itself
// and as the hicolor theme's scalable application icons. Empty when the folder cannot be written.
QString writeSymbolicIcons()
{
    const QString folder = AppIcon::runtimeFolder();
    const QString themed = folder + QStringLiteral("/hicolor/scalable/apps");
    if (!QDir().mkpath(themed))
        return {};
    for (const auto state : {TrayPicture::State::normal, TrayPicture::State::kerahat, TrayPicture::State::entry}) {
        const QString file = TrayPicture::symbolicName(state) + QStringLiteral(".svg");
        for (const QString &where : {folder, themed}) {
            QSaveFile out(where + u'/' + file);
            if (!out.open(QIODevice::WriteOnly) || out.write(TrayPicture::symbolicSvg(state)) < 0 || !out.commit())
                return {};
        }
    }
    return folder;
}

QString nextServiceName()
{
    static int count = 0;
    return QStringLiteral("org.kde.StatusNotifierItem-%1-%2").arg(QCoreApplication::applicationPid()).arg(++count);
}

} // namespace

DBusStatusItem::DBusStatusItem(QDBusConnection connection, QObject *parent)
    : StatusItem(parent)
    , connection_(std::move(connection))
    , serviceName_(nextServiceName())
    , item_(new StatusNotifierItem(this))
    , menu_(new DBusMenu(this))
    , watcher_(new QDBusServiceWatcher(QString::fromLatin1(watcherService), connection_,
                                       QDBusServiceWatcher::WatchForOwnerChange, this))
{
    connect(item_, &StatusNotifierItem::activateRequested, this, [this](QPoint point) {
        // A point inside the panel's own window would open the panel in the screen's corner;
        // the pointer is on the icon that was just clicked.
        emit activated(TrayHost::givesLocalPoints(panelProgram_) ? QCursor::pos() : point);
    });
    // Qt's Wayland backend spends the token on the next window it activates: the panel that the
    // click which brought it opens.
    connect(item_, &StatusNotifierItem::activationTokenProvided, this,
            [](const QString &token) { qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); });
    connect(item_, &StatusNotifierItem::contextMenuRequested, this, [this](QPoint position) {
        if (contextMenu_)
            contextMenu_->popup(position);
    });
    // A panel that starts (or restarts) after Orvel gets the item again. It may be another kind
    // of panel; the icon follows from the next minute's picture on.
    connect(watcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        readPanel();
        if (shown_)
            registerWithWatcher();
        refreshAvailability();
    });
    connect(watcher_, &QDBusServiceWatcher::serviceUnregistered, this, &DBusStatusItem::refreshAvailability);
    // The watcher may come up before the panel that hosts the items.
    connection_.connect(QString::fromLatin1(watcherService), QString::fromLatin1(watcherPath),
                        QString::fromLatin1(watcherInterface), QStringLiteral("StatusNotifierHostRegistered"), this,
                        SLOT(refreshAvailability()));
    available_ = isAvailable();
    readPanel();
    panelColors_ = PanelColors::current();
    watchPanelColors();
}

void DBusStatusItem::readPanel()
{
    panelProgram_ = TrayHost::watcherProgram(connection_);
    panelShowsLabel_ = TrayHost::showsLabel(panelProgram_, qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
}

void DBusStatusItem::watchPanelColors()
{
    // Only Plasma's panel follows kdeglobals; elsewhere the config folder's churn is none of ours.
    if (!PanelColors::followsKdeGlobals())
        return;
    const QString path = PanelColors::kdeGlobalsPath();
    colorsWatcher_ = new QFileSystemWatcher(this);
    // The folder too: the file is replaced rather than written in place, and may not exist yet.
    colorsWatcher_->addPath(QFileInfo(path).absolutePath());
    if (QFileInfo::exists(path))
        colorsWatcher_->addPath(path);
    const auto changed = [this, path] {
        if (QFileInfo::exists(path) && !colorsWatcher_->files().contains(path))
            colorsWatcher_->addPath(path);
        followPanelColors();
    };
    connect(colorsWatcher_, &QFileSystemWatcher::fileChanged, this, changed);
    connect(colorsWatcher_, &QFileSystemWatcher::directoryChanged, this, changed);
}

void DBusStatusItem::followPanelColors()
{
    const std::optional<PanelColors::Palette> colors = PanelColors::current();
    if (colors == panelColors_)
        return;
    panelColors_ = colors;
    if (content_)
        update(*content_);
}

DBusStatusItem::~DBusStatusItem()
{
    if (!shown_)
        return;
    connection_.unregisterObject(QString::fromLatin1(StatusNotifierItem::objectPath));
    connection_.unregisterObject(QString::fromLatin1(StatusNotifierItem::menuPath));
    connection_.unregisterService(serviceName_);
}

bool DBusStatusItem::watcherPresent(const QDBusConnection &connection)
{
    const QDBusConnectionInterface *bus = connection.interface();
    return connection.isConnected() && bus && bus->isServiceRegistered(QString::fromLatin1(watcherService)).value();
}

bool DBusStatusItem::isAvailable() const
{
    if (!watcherPresent(connection_))
        return false;
    QDBusInterface watcher(QString::fromLatin1(watcherService), QString::fromLatin1(watcherPath),
                           QString::fromLatin1(watcherInterface), connection_);
    return watcher.property("IsStatusNotifierHostRegistered").toBool();
}

void DBusStatusItem::refreshAvailability()
{
    const bool available = isAvailable();
    if (available == available_)
        return;
    available_ = available;
    emit availabilityChanged(available);
}

void DBusStatusItem::show()
{
    if (shown_)
        return;
    shown_ = true;
    connection_.registerService(serviceName_);
    const auto exported = QDBusConnection::ExportScriptableContents | QDBusConnection::ExportAllProperties;
    connection_.registerObject(QString::fromLatin1(StatusNotifierItem::objectPath), item_, exported);
    connection_.registerObject(QString::fromLatin1(StatusNotifierItem::menuPath), menu_, exported);
    item_->setIconThemePath(writeSymbolicIcons());
    // The named icon can be offered now that its folder is written.
    picture_.reset();
    if (content_)
        update(*content_);
    registerWithWatcher();
}

void DBusStatusItem::registerWithWatcher()
{
    QDBusMessage call = QDBusMessage::createMethodCall(QString::fromLatin1(watcherService),
                                                       QString::fromLatin1(watcherPath),
                                                       QString::fromLatin1(watcherInterface),
                                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << serviceName_;
    connection_.asyncCall(call);
}

void DBusStatusItem::update(const StatusItemContent &content)
{
    content_ = content;
    const StatusLine &line = content.line;
    const QColor ink = panelColors_ ? panelColors_->text : TrayPicture::ink(Colors::current());
    const Picture picture{TrayPicture::face(content, panelShowsLabel_), ink};
    if (picture != picture_) {
        SniPixmaps pixmaps;
        for (const int size : iconSizes)
            pixmaps << SniPixmap::from(TrayPicture::image(picture.face, picture.ink, size));
        const bool named = !item_->iconThemePath().isEmpty()
            && offersIconName(picture.face, panelShowsLabel_, PanelColors::recoloursSymbolicIcons());
        item_->setIcon(pixmaps, named ? TrayPicture::symbolicName(picture.face.state) : QString());
        picture_ = picture;
    }
    item_->setToolTipText(QString::fromStdString(line.label));
    item_->setLabel(QString::fromStdString(line.text), labelGuide(content.style));
}

bool DBusStatusItem::offersIconName(const TrayPicture::Face &face, bool panelShowsLabel, bool panelRecolours)
{
    // Panels that recolour symbolic icons (GNOME, Plasma) and the Ayatana indicators, which draw
    // a named icon only, get one, unless the face carries digits that only the pixmaps have.
    // Other hosts (Cinnamon's applet draws no symbolic name) keep to the pixmaps, which every face
    // has.
    return face.remaining.isEmpty() && (panelShowsLabel || panelRecolours);
}

void DBusStatusItem::setMenu(QMenu *menu)
{
    contextMenu_ = menu;
    menu_->setMenu(menu);
}

} // namespace orvel

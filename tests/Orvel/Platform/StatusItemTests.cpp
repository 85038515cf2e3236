#include "DBusMenu.h"
#include "DBusStatusItem.h"
#include "OrvelFormat.h"
#include "PanelColors.h"
#include "ShellTestSupport.h"
#include "StatusNotifierItem.h"
#include "TrayHost.h"
#include "TrayPicture.h"
#include "TrayStatusItem.h"

#include <gtest/gtest.h>

#include <QDBusPendingCall>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QMutex>
#include <QProcess>
#include <QScopeGuard>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

using namespace orvel;

namespace {

// The panel's side: collects the items that register and counts what they announce.
class FakeWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hostRegistered CONSTANT)

public:
    bool hostRegistered = true;
    QStringList registered() const { const QMutexLocker lock(&mutex_); return registered_; }
    std::atomic<int> icons = 0;
    std::atomic<int> labels = 0;
    std::atomic<int> menuUpdates = 0;

public slots:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &item)
    {
        const QMutexLocker lock(&mutex_);
        registered_ << item;
    }
    void newIcon() { ++icons; }
    void newLabel(const QString &, const QString &) { ++labels; }
    void itemsPropertiesUpdated(const QDBusMessage &) { ++menuUpdates; }

private:
    mutable QMutex mutex_;
    QStringList registered_;
};

// Calls without blocking, so that the item, served by this thread, can answer.
QDBusMessage call(QDBusConnection &connection, const QString &service, const QString &path, const QString &interface,
                  const QString &method, const QVariantList &arguments = {})
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    QDBusPendingCall pending = connection.asyncCall(message);
    (void)QTest::qWaitFor([&] { return pending.isFinished(); }, 5000);
    return pending.reply();
}

QVariant property(QDBusConnection &connection, const QString &service, const QString &name)
{
    const QDBusMessage reply = call(connection, service, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                                    {"org.kde.StatusNotifierItem", name});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

int pixelsNear(const QImage &picture, const QColor &color)
{
    const QImage image = picture.convertToFormat(QImage::Format_ARGB32);
    const auto *pixels = reinterpret_cast<const QRgb *>(image.constBits());
    return std::count_if(pixels, pixels + image.width() * image.height(), [&](QRgb pixel) {
        return qAlpha(pixel) > 200 && std::abs(qRed(pixel) - color.red()) < 12
            && std::abs(qGreen(pixel) - color.green()) < 12 && std::abs(qBlue(pixel) - color.blue()) < 12;
    });
}

// The bounding box of the pixels that carry ink in the given colour.
QRect inkBox(const QImage &picture, const QColor &color)
{
    QRect box;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            if (qAlpha(pixel) > 128 && std::abs(qRed(pixel) - color.red()) < 60 && std::abs(qBlue(pixel) - color.blue()) < 60)
                box |= QRect(x, y, 1, 1);
        }
    return box;
}

// How many pixels differ from the reference by more than antialiasing would explain.
int pixelsApart(const QImage &picture, const QImage &reference)
{
    const QImage a = picture.convertToFormat(QImage::Format_ARGB32);
    const QImage b = reference.convertToFormat(QImage::Format_ARGB32);
    int apart = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            const int difference = std::max({std::abs(qAlpha(p) - qAlpha(q)), std::abs(qRed(p) - qRed(q)),
                                             std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
            apart += difference > 48 ? 1 : 0;
        }
    return apart;
}

// A bus of the test's own with a panel's watcher on it, answering from a thread of its own as
// another process would; nothing reaches the desktop's panel.
class PrivatePanel {
public:
    PrivatePanel()
    {
        daemon_.start("dbus-daemon", {"--config-file=/usr/share/dbus-1/session.conf", "--nofork", "--print-address=1"});
        if (!daemon_.waitForStarted(5000) || !daemon_.waitForReadyRead(5000))
            return;
        const QString address = QString::fromUtf8(daemon_.readLine()).trimmed();
        orvelSide = QDBusConnection::connectToBus(address, "orvel-side");
        panelSide = QDBusConnection::connectToBus(address, "panel-side");
    }
    ~PrivatePanel()
    {
        if (thread_.isRunning()) {
            panelSide.unregisterObject("/StatusNotifierWatcher");
            thread_.quit();
            thread_.wait();
        }
        QDBusConnection::disconnectFromBus("orvel-side");
        QDBusConnection::disconnectFromBus("panel-side");
    }
    bool isUp() const { return orvelSide.isConnected() && panelSide.isConnected(); }
    void startWatcher()
    {
        watcher.moveToThread(&thread_);
        thread_.start();
        panelSide.registerObject("/StatusNotifierWatcher", &watcher, QDBusConnection::ExportAllContents);
        panelSide.registerService("org.kde.StatusNotifierWatcher");
    }

    QDBusConnection orvelSide{QString()};
    QDBusConnection panelSide{QString()};
    FakeWatcher watcher;

private:
    QProcess daemon_;
    QThread thread_;
};

QColor glyph(Appearance appearance)
{
    return appearance == Appearance::light ? QColor(30, 30, 30) : QColor(245, 245, 245);
}

} // namespace

TEST(StatusNotifierItem, PixmapsAreArgbInNetworkOrder)
{
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(0x11, 0x22, 0x33, 0xff));
    image.setPixel(1, 0, qRgba(0, 0, 0, 0));
    const SniPixmap pixmap = SniPixmap::from(image);
    EXPECT_EQ(QSize(pixmap.width, pixmap.height), QSize(2, 1));
    EXPECT_EQ(pixmap.argb, QByteArray::fromHex("ff11223300000000"));
}

TEST(DBusStatusItem, ServesPictureLabelTooltipAndMenuOverDBus)
{
    PrivatePanel panel;
    if (!panel.isUp())
        GTEST_SKIP() << "dbus-daemon is not available";
    const QDBusConnection &orvelSide = panel.orvelSide;
    QDBusConnection &panelSide = panel.panelSide;
    FakeWatcher &watcher = panel.watcher;

    const DayTimes day = test::testDay();
    const Instant start = day[Prayer::ogle] + 3600;
    test::OfflineModel offline(start);
    AppModel &model = *offline.model;

    DBusStatusItem item(orvelSide);
    EXPECT_FALSE(item.isAvailable());
    QSignalSpy availability(&item, &StatusItem::availabilityChanged);

    // The panel comes up later.
    panel.startWatcher();
    EXPECT_TRUE(item.isAvailable());
    // The watcher's owner is this test program, a panel that shows no title beside the icon.
    EXPECT_EQ(TrayHost::watcherProgram(orvelSide), QCoreApplication::applicationName().left(15));
    ASSERT_TRUE(QTest::qWaitFor([&] { return availability.count() >= 1; }, 5000));
    EXPECT_EQ(availability.count(), 1) << "only a real change is told";
    EXPECT_TRUE(availability.first().first().toBool());

    QMenu menu;
    QAction *imsakiye = menu.addAction("İmsakiye");
    menu.addSeparator();
    menu.addAction("Çık");
    item.setMenu(&menu);
    item.update(model.statusItemContent());
    item.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !watcher.registered().isEmpty(); }, 5000));
    // A watcher that appears just before the item shows may hear of it twice; it keeps one.
    const QStringList registered = watcher.registered();
    const QString service = registered.front();
    EXPECT_EQ(registered.count(service), registered.size());

    const int minutesLeft = static_cast<int>(std::ceil((day[Prayer::ikindi] - start) / 60));
    EXPECT_EQ(property(panelSide, service, "XAyatanaLabel").toString(),
              "İkindi " + QString::fromStdString(OrvelFormat::compact(minutesLeft)));
    EXPECT_EQ(property(panelSide, service, "Menu").value<QDBusObjectPath>().path(), "/MenuBar");
    SniToolTip toolTip;
    property(panelSide, service, "ToolTip").value<QDBusArgument>() >> toolTip;
    EXPECT_EQ(toolTip.text, model.accessibilityLabel());
    SniPixmaps pixmaps;
    property(panelSide, service, "IconPixmap").value<QDBusArgument>() >> pixmaps;
    ASSERT_FALSE(pixmaps.isEmpty());
    EXPECT_EQ(pixmaps.first().width, pixmaps.first().height);
    EXPECT_EQ(pixmaps.first().argb.size(), pixmaps.first().width * pixmaps.first().height * 4);

    // A minute later the label changes but the picture does not; at the prayer's entry both do.
    const QString path = "/StatusNotifierItem", sni = "org.kde.StatusNotifierItem";
    panelSide.connect(service, path, sni, "NewIcon", &watcher, SLOT(newIcon()));
    panelSide.connect(service, path, sni, "XAyatanaNewLabel", &watcher, SLOT(newLabel(QString, QString)));
    offline.moveTo(start + 60);
    item.update(model.statusItemContent());
    EXPECT_TRUE(QTest::qWaitFor([&] { return watcher.labels == 1; }, 5000));
    offline.moveTo(day[Prayer::ikindi] + 10);
    item.update(model.statusItemContent());
    EXPECT_TRUE(QTest::qWaitFor([&] { return watcher.icons == 1; }, 5000));
    EXPECT_EQ(property(panelSide, service, "XAyatanaLabel").toString(), "İkindi vakti");
    EXPECT_TRUE(QTest::qWaitFor([&] { return watcher.labels == 2; }, 5000));

    QSignalSpy activated(&item, &StatusItem::activated);
    call(panelSide, service, path, sni, "Activate", {120, 4});
    ASSERT_TRUE(QTest::qWaitFor([&] { return activated.count() == 1; }, 5000));
    EXPECT_EQ(activated.first().first().toPoint(), QPoint(120, 4));

    // The panel draws the menu from its layout and sends the chosen item back.
    DBusMenu::registerTypes();
    const QDBusMessage layoutReply =
        call(panelSide, service, "/MenuBar", "com.canonical.dbusmenu", "GetLayout", {0, -1, QStringList()});
    ASSERT_EQ(layoutReply.type(), QDBusMessage::ReplyMessage) << layoutReply.errorMessage().toStdString();
    DBusMenuLayoutItem layout;
    layoutReply.arguments().at(1).value<QDBusArgument>() >> layout;
    QStringList labels;
    for (const DBusMenuLayoutItem &child : layout.children)
        labels << child.properties.value("label", child.properties.value("type")).toString();
    EXPECT_EQ(labels, (QStringList{"İmsakiye", "separator", "Çık"}));

    QSignalSpy triggered(imsakiye, &QAction::triggered);
    const int imsakiyeId = layout.children.first().id;
    call(panelSide, service, "/MenuBar", "com.canonical.dbusmenu", "Event",
         {imsakiyeId, "clicked", QVariant::fromValue(QDBusVariant(0)), 0u});
    EXPECT_TRUE(QTest::qWaitFor([&] { return triggered.count() == 1; }, 5000));

    // libdbusmenu's hosts (XFCE, Cinnamon, MATE) click through EventGroup and ask AboutToShowGroup
    // first; an entry added above keeps the ids the host already holds pointing where they did.
    QAction *added = new QAction("Paneli aç", &menu);
    menu.insertAction(imsakiye, added);
    const QDBusMessage shown = call(panelSide, service, "/MenuBar", "com.canonical.dbusmenu", "AboutToShowGroup",
                                    {QVariant::fromValue(QList<int>{0, imsakiyeId, 999})});
    ASSERT_EQ(shown.type(), QDBusMessage::ReplyMessage) << shown.errorMessage().toStdString();
    EXPECT_EQ(qdbus_cast<QList<int>>(shown.arguments().at(1)), QList<int>{999});
    const DBusMenuEventList events{{imsakiyeId, "clicked", QDBusVariant(0), 0u}, {999, "clicked", QDBusVariant(0), 0u}};
    const QDBusMessage group = call(panelSide, service, "/MenuBar", "com.canonical.dbusmenu", "EventGroup",
                                    {QVariant::fromValue(events)});
    ASSERT_EQ(group.type(), QDBusMessage::ReplyMessage) << group.errorMessage().toStdString();
    EXPECT_EQ(qdbus_cast<QList<int>>(group.arguments().at(0)), QList<int>{999});
    EXPECT_TRUE(QTest::qWaitFor([&] { return triggered.count() >= 2; }, 5000)) << triggered.count();
    EXPECT_EQ(triggered.count(), 2);

    // A renamed entry is announced as that entry's new properties, once.
    panelSide.connect(service, "/MenuBar", "com.canonical.dbusmenu", "ItemsPropertiesUpdated", &watcher,
                      SLOT(itemsPropertiesUpdated(QDBusMessage)));
    imsakiye->setText("İmsakiye (ay)");
    imsakiye->setText("İmsakiye (ay)");
    ASSERT_TRUE(QTest::qWaitFor([&] { return watcher.menuUpdates >= 1; }, 5000));
    // A round trip after it: any second announcement would have arrived before its answer.
    call(panelSide, service, "/MenuBar", "com.canonical.dbusmenu", "AboutToShowGroup", {QVariant::fromValue(QList<int>{0})});
    EXPECT_EQ(watcher.menuUpdates, 1);
}

TEST(TrayPicture, StatesAreDrawnIntoTheSquare)
{
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        const QImage normal = TrayPicture::image(TrayPicture::State::normal, appearance, 44);
        const QImage kerahat = TrayPicture::image(TrayPicture::State::kerahat, appearance, 44);
        const QImage entry = TrayPicture::image(TrayPicture::State::entry, appearance, 44);
        // The crescent is dark on a light desktop and light on a dark one.
        EXPECT_GT(pixelsNear(normal, appearance == Appearance::light ? QColor(30, 30, 30) : QColor(245, 245, 245)), 40);
        EXPECT_EQ(pixelsNear(normal, Colors::systemOrange(appearance)), 0);
        EXPECT_EQ(pixelsNear(normal, Colors::orvelPill()), 0);
        EXPECT_GT(pixelsNear(kerahat, Colors::systemOrange(appearance)), 40);
        EXPECT_GT(pixelsNear(entry, Colors::orvelPill()), 400);
        EXPECT_GT(pixelsNear(entry, Qt::white), 40);
    }
}

TEST(TrayPicture, TimeLeftThatCannotBeMisread)
{
    // 1:59, 1:30 and 1:00 read apart; no face ends in a bare "s", which a Turkish reader takes
    // for saniye.
    const std::pair<int64_t, const char *> cases[] = {{0, "0"},     {7, "7"},      {59, "59"},     {60, "60"},
                                                      {90, "90"},   {99, "99"},    {100, "1sa"},   {119, "1sa"},
                                                      {600, "10sa"}, {1439, "23sa"}};
    for (const auto &[minutes, text] : cases)
        EXPECT_EQ(TrayPicture::remainingText(minutes), QString::fromUtf8(text)) << minutes;
}

// The references were drawn by this code and checked by eye; ORVEL_RENDER_REFERENCES=folder
// draws them again.
TEST(TrayPicture, TimeLeftUnderTheCrescentAtEverySizeAndAppearance)
{
    const QDir references(QStringLiteral(ORVEL_TRAY_REFERENCES));
    const QString renderTo = qEnvironmentVariable("ORVEL_RENDER_REFERENCES");
    const TrayPicture::Face faces[] = {{TrayPicture::State::normal, "7"}, {TrayPicture::State::normal, "49"},
                                       {TrayPicture::State::kerahat, "23"}, {TrayPicture::State::normal, "2sa"},
                                       {TrayPicture::State::normal, "10sa"}};
    for (const int pixels : {22, 32, 44})
        for (const Appearance appearance : {Appearance::light, Appearance::dark})
            for (const TrayPicture::Face &face : faces) {
                const QString name = QStringLiteral("%1-%2-%3%4.png")
                                         .arg(pixels)
                                         .arg(appearance == Appearance::light ? "light" : "dark", face.remaining,
                                              face.state == TrayPicture::State::kerahat ? "-kerahat" : "");
                SCOPED_TRACE(name.toStdString());
                const QImage picture = TrayPicture::image(face, appearance, pixels);
                if (!renderTo.isEmpty()) {
                    picture.save(QDir(renderTo).filePath(name));
                    continue;
                }
                const QImage reference(references.filePath(name));
                ASSERT_EQ(reference.size(), picture.size());
                EXPECT_LE(pixelsApart(picture, reference), pixels / 11) << "a pixel or two may differ, no more";

                // Whatever the references say: the digits sit in the lower half inside the square, the
                // crescent above them, and the dot only in kerahat.
                const QRect ink = inkBox(picture, glyph(appearance));
                EXPECT_TRUE(QRect(0, 0, pixels, pixels).contains(ink));
                EXPECT_GE(ink.bottom(), pixels * 0.85);
                EXPECT_LE(ink.top(), pixels * 0.15);
                const QImage lower = picture.copy(0, pixels / 2 + 1, pixels, pixels / 2 - 1);
                EXPECT_GT(inkBox(lower, glyph(appearance)).width(), pixels * 0.15);
                const bool dot = pixelsNear(picture, Colors::systemOrange(appearance)) > 0;
                EXPECT_EQ(dot, face.state == TrayPicture::State::kerahat);
            }
    // Digits of equal width: the countdown does not move sideways as it ticks.
    const auto width = [](const char *text) {
        return inkBox(TrayPicture::image({TrayPicture::State::normal, text}, Appearance::light, 22).copy(0, 12, 22, 10),
                      glyph(Appearance::light)).width();
    };
    EXPECT_LE(std::abs(width("18") - width("40")), 2);
}

// The setting wins; left alone, the icon carries the time only where no title is shown beside it.
TEST(TrayPicture, TimeLeftWhereThePanelShowsNoTitle)
{
    const DayTimes day = test::testDay();
    test::OfflineModel offline(day[Prayer::ikindi] - 49 * 60);
    AppModel &model = *offline.model;
    EXPECT_EQ(model.setting(Settings::iconRemaining), std::nullopt);
    EXPECT_EQ(TrayPicture::face(model.statusItemContent(), false), (TrayPicture::Face{TrayPicture::State::normal, "49"}));
    EXPECT_EQ(TrayPicture::face(model.statusItemContent(), true), (TrayPicture::Face{TrayPicture::State::normal, ""}));
    model.set(Settings::iconRemaining, true);
    EXPECT_EQ(TrayPicture::face(model.statusItemContent(), true).remaining, "49");
    model.set(Settings::iconRemaining, false);
    EXPECT_EQ(TrayPicture::face(model.statusItemContent(), false).remaining, "");
    model.set(Settings::iconRemaining, std::nullopt);
    // The entry minute has its green disc alone.
    offline.moveTo(day[Prayer::ikindi] + 5);
    EXPECT_EQ(TrayPicture::face(model.statusItemContent(), false), (TrayPicture::Face{TrayPicture::State::entry, ""}));
    // Then the hours to Akşam.
    offline.moveTo(day[Prayer::ikindi] + 65);
    EXPECT_TRUE(TrayPicture::face(model.statusItemContent(), false).remaining.endsWith(QStringLiteral("sa")));
    // "Yalnız simge" is the icon alone, whatever the switch says.
    model.set(Settings::iconRemaining, true);
    model.set(Settings::trayStyle, TrayStyle::iconOnly);
    EXPECT_EQ(TrayPicture::face(model.statusItemContent(), false).remaining, "");
}

TEST(DBusStatusItem, NamedIconsOnlyWherePanelsDrawThem)
{
    using State = TrayPicture::State;
    // MATE's Ayatana applet draws no pixmap at all: without the name the item was a broken icon.
    EXPECT_TRUE(DBusStatusItem::offersIconName({State::normal, {}}, true, false));
    EXPECT_TRUE(DBusStatusItem::offersIconName({State::entry, {}}, true, false));
    // GNOME and Plasma recolour the name.
    EXPECT_TRUE(DBusStatusItem::offersIconName({State::kerahat, {}}, false, true));
    // Cinnamon's applet and XFCE's tray draw the pixmaps, which carry every face.
    EXPECT_FALSE(DBusStatusItem::offersIconName({State::entry, {}}, false, false));
    // Digits only the pixmaps have.
    EXPECT_FALSE(DBusStatusItem::offersIconName({State::normal, "49"}, true, true));
}

TEST(PanelColors, TheDesktopsPanelDecidesTheInk)
{
    const QByteArray breezeDark = "[General]\nColorScheme=BreezeDark\n[Colors:View]\nBackgroundNormal=20,22,24\n"
                                  "[Colors:Window]\nBackgroundNormal=49,54,59\nForegroundNormal=252,252,252\n";
    EXPECT_EQ(PanelColors::fromKdeGlobals(breezeDark), PanelColors::breezeDark());
    EXPECT_EQ(PanelColors::forDesktop("KDE", breezeDark), PanelColors::breezeDark());
    EXPECT_EQ(PanelColors::forDesktop("KDE", "[Colors:Window]\nBackgroundNormal=oops\n"), PanelColors::breezeLight());
    EXPECT_EQ(PanelColors::forDesktop("KDE", std::nullopt), PanelColors::breezeLight());
    EXPECT_EQ(PanelColors::forDesktop("ubuntu:GNOME", breezeDark), PanelColors::gnomeBar());
    // XFCE 4.18's panel is dark unless its dark mode is off in xfconf; Cinnamon's is dark grey and
    // waybar's tray blue; a desktop that says nothing leaves it to the application's appearance.
    EXPECT_EQ(PanelColors::forDesktop("XFCE", breezeDark), PanelColors::xfceDark());
    const QByteArray lightXfce = R"(<channel name="xfce4-panel"><property name="panels" type="array">)"
                                 R"(<property name="dark-mode" type="bool" value="false"/></property></channel>)";
    EXPECT_EQ(PanelColors::forDesktop("XFCE", std::nullopt, lightXfce), PanelColors::xfceLight());
    EXPECT_EQ(PanelColors::forDesktop("X-Cinnamon", std::nullopt), PanelColors::cinnamonPanel());
    EXPECT_EQ(PanelColors::forDesktop("sway", std::nullopt), PanelColors::waybarBar());
    EXPECT_EQ(PanelColors::forDesktop("LXQt", std::nullopt), std::nullopt);

    // Whatever the application's appearance, the ink stands out on the panel.
    for (const PanelColors::Palette &panel : {PanelColors::gnomeBar(), PanelColors::breezeDark(), PanelColors::breezeLight(),
                                              PanelColors::xfceDark(), PanelColors::xfceLight(), PanelColors::cinnamonPanel(),
                                              PanelColors::waybarBar()})
        for (const TrayPicture::Face &face : {TrayPicture::Face{TrayPicture::State::normal, {}},
                                              TrayPicture::Face{TrayPicture::State::kerahat, "23"}}) {
            const QImage picture = TrayPicture::image(face, panel.text, 22).convertToFormat(QImage::Format_ARGB32);
            int strongest = 0;
            for (int y = 0; y < 22; ++y)
                for (int x = 0; x < 22; ++x) {
                    const QRgb pixel = picture.pixel(x, y);
                    if (qAlpha(pixel) > 128 && PanelColors::contrast(QColor(pixel), panel.background) >= 4.5)
                        ++strongest;
                }
            EXPECT_GT(strongest, 20) << panel.background.name().toStdString();
        }
}

// As a panel sees the item: GNOME recolours the named symbolic icon; Plasma gets pixels in its
// scheme's text colour, follows a change of scheme, and tells 1:59, 1:30 and 1:00 apart.
TEST(DBusStatusItem, LegibleOnGnomeAndOnBothBreezePanels)
{
    QTemporaryDir home;
    const QByteArray savedDesktop = qgetenv("XDG_CURRENT_DESKTOP"), savedConfig = qgetenv("XDG_CONFIG_HOME"),
                     savedRuntime = qgetenv("XDG_RUNTIME_DIR");
    const auto restore = qScopeGuard([&] {
        qputenv("XDG_CURRENT_DESKTOP", savedDesktop);
        qputenv("XDG_CONFIG_HOME", savedConfig);
        qputenv("XDG_RUNTIME_DIR", savedRuntime);
    });
    qputenv("XDG_CONFIG_HOME", home.filePath("config").toUtf8());
    qputenv("XDG_RUNTIME_DIR", home.path().toUtf8());
    QDir().mkpath(home.filePath("config"));
    const auto writeScheme = [&](const PanelColors::Palette &palette) {
        QFile file(home.filePath("config/kdeglobals"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        const auto rgb = [](const QColor &c) { return QString("%1,%2,%3").arg(c.red()).arg(c.green()).arg(c.blue()); };
        file.write(QString("[Colors:Window]\nBackgroundNormal=%1\nForegroundNormal=%2\n")
                       .arg(rgb(palette.background), rgb(palette.text)).toUtf8());
    };
    PrivatePanel panel;
    if (!panel.isUp())
        GTEST_SKIP() << "dbus-daemon is not available";
    panel.startWatcher();
    const DayTimes day = test::testDay();
    test::OfflineModel offline(day[Prayer::aksam] - 119 * 60);
    AppModel &model = *offline.model;
    Colors::forceAppearance(Appearance::light);
    const auto restoreAppearance = qScopeGuard([] { Colors::forceAppearance(std::nullopt); });

    // Shows an item and gives the name it registered with the panel's watcher.
    const auto shown = [&](DBusStatusItem &item) {
        const qsizetype before = panel.watcher.registered().size();
        item.update(model.statusItemContent());
        item.show();
        EXPECT_TRUE(QTest::qWaitFor([&] { return panel.watcher.registered().size() > before; }, 5000));
        return panel.watcher.registered().value(before);
    };
    const auto pixels = [&](const QString &service) {
        SniPixmaps list;
        property(panel.panelSide, service, "IconPixmap").value<QDBusArgument>() >> list;
        return list.value(0);
    };
    const auto inkOf = [](const SniPixmap &pixmap) {
        // The most opaque pixel's colour (ARGB in network order).
        QColor ink;
        for (qsizetype i = 0; i + 3 < pixmap.argb.size(); i += 4)
            if (static_cast<uchar>(pixmap.argb[i]) == 255) {
                ink = QColor(static_cast<uchar>(pixmap.argb[i + 1]), static_cast<uchar>(pixmap.argb[i + 2]),
                             static_cast<uchar>(pixmap.argb[i + 3]));
                break;
            }
        return ink;
    };

    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        // GNOME's panel shows the title, so its icon carries no digits; this test's watcher is not
        // gnome-shell, so the setting says so instead.
        model.set(Settings::iconRemaining, false);
        DBusStatusItem gnome(panel.orvelSide);
        const QString service = shown(gnome);
        const QString name = property(panel.panelSide, service, "IconName").toString();
        EXPECT_TRUE(name.endsWith("-symbolic"));
        const QString folder = property(panel.panelSide, service, "IconThemePath").toString();
        QFile svg(QDir(folder).filePath(name + ".svg"));
        ASSERT_TRUE(svg.open(QIODevice::ReadOnly)) << svg.fileName().toStdString();
        EXPECT_TRUE(svg.readAll().contains("currentColor"));
        EXPECT_GE(PanelColors::contrast(inkOf(pixels(service)), PanelColors::gnomeBar().background), 4.5);
        model.set(Settings::iconRemaining, std::nullopt);
    }

    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    writeScheme(PanelColors::breezeDark());
    DBusStatusItem kde(panel.orvelSide);
    const QString service = shown(kde);
    // Plasma shows no title, so the digits are in the pixels and no named icon hides them.
    EXPECT_EQ(property(panel.panelSide, service, "IconName").toString(), "");
    EXPECT_GE(PanelColors::contrast(inkOf(pixels(service)), PanelColors::breezeDark().background), 4.5);
    writeScheme(PanelColors::breezeLight());
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return PanelColors::contrast(inkOf(pixels(service)), PanelColors::breezeLight().background) >= 4.5;
    }, 5000)) << "the icon follows the new scheme without waiting for the next minute";

    QList<QByteArray> faces;
    for (const int minutes : {119, 90, 60}) {
        offline.moveTo(day[Prayer::aksam] - minutes * 60);
        kde.update(model.statusItemContent());
        faces << pixels(service).argb;
    }
    EXPECT_NE(faces[0], faces[1]);
    EXPECT_NE(faces[1], faces[2]);
    EXPECT_NE(faces[0], faces[2]);
}

TEST(TrayHost, TheWatchersProgramDecidesElseTheDesktop)
{
    EXPECT_TRUE(TrayHost::showsLabel("gnome-shell", "KDE"));
    EXPECT_TRUE(TrayHost::showsLabel("ayatana-indicat", "XFCE"));
    EXPECT_TRUE(TrayHost::showsLabel("indicator-appli", ""));
    EXPECT_FALSE(TrayHost::showsLabel("kded5", "KDE"));
    EXPECT_FALSE(TrayHost::showsLabel("xfce4-panel", "XFCE"));
    // MATE's notification area passes points inside its own window; panels themselves do not.
    EXPECT_TRUE(TrayHost::givesLocalPoints("notification-ar"));
    EXPECT_FALSE(TrayHost::givesLocalPoints("mate-panel"));
    EXPECT_FALSE(TrayHost::givesLocalPoints("xfce4-panel"));
    EXPECT_FALSE(TrayHost::showsLabel("waybar", "GNOME")) << "the program knows better than the desktop's name";
    EXPECT_TRUE(TrayHost::showsLabel("", "ubuntu:GNOME"));
    EXPECT_TRUE(TrayHost::showsLabel("", "gnome"));
    EXPECT_FALSE(TrayHost::showsLabel("", "Budgie:GNOME"));
    EXPECT_FALSE(TrayHost::showsLabel("", "KDE"));
    EXPECT_FALSE(TrayHost::showsLabel("", ""));
}

// The tray follows the model minute by minute but draws a new picture only when it changes.
TEST(TrayStatusItem, FollowsTheModelAndRedrawsOnlyOnChange)
{
    const DayTimes day = test::testDay();
    test::OfflineModel offline(day[Prayer::ogle] + 3600);
    AppModel &model = *offline.model;
    Colors::forceAppearance(Appearance::light);
    TrayStatusItem item;
    const QSystemTrayIcon &tray = *item.findChild<QSystemTrayIcon *>();
    // Each new picture is a new icon, with a key of its own.
    int redraws = 0;
    qint64 shownKey = tray.icon().cacheKey();
    const auto expect = [&](TrayPicture::State state, int expectedRedraws) {
        item.update(model.statusItemContent());
        if (tray.icon().cacheKey() != std::exchange(shownKey, tray.icon().cacheKey()))
            ++redraws;
        EXPECT_EQ(model.statusLine().state, state);
        EXPECT_EQ(redraws, expectedRedraws);
        EXPECT_EQ(tray.toolTip(), model.accessibilityLabel());
    };
    expect(TrayPicture::State::normal, 1);
    offline.moveTo(day[Prayer::ogle] + 3660);
    expect(TrayPicture::State::normal, 1);
    offline.moveTo(day[Prayer::ogle] + 20);
    expect(TrayPicture::State::entry, 2);
    offline.moveTo(day[Prayer::gunes] + 600);
    expect(TrayPicture::State::kerahat, 3);
    // Without the dot the picture goes back to the plain crescent.
    model.set(Settings::kerahatMenuDot, false);
    expect(TrayPicture::State::normal, 4);
    // A darker desktop asks for a light crescent.
    Colors::forceAppearance(Appearance::dark);
    expect(TrayPicture::State::normal, 5);
    Colors::forceAppearance(std::nullopt);
}

#include "StatusItemTests.moc"

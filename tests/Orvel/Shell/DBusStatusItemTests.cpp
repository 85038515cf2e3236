#include "DBusMenu.h"
#include "DBusStatusItem.h"
#include "ShellTestSupport.h"
#include "StatusNotifierItem.h"

#include "OrvelFormat.h"
#include "PrayerCalculator.h"

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QScopeGuard>
#include <QThread>
#include <QMenu>
#include <QMutex>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace orvel;

namespace {

// A bus of the test's own, so that nothing reaches the desktop's panel.
class PrivateBus {
public:
    PrivateBus()
    {
        daemon_.start("dbus-daemon", {"--config-file=/usr/share/dbus-1/session.conf", "--nofork", "--print-address=1"});
        if (!daemon_.waitForStarted(5000) || !daemon_.waitForReadyRead(5000))
            return;
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    }
    ~PrivateBus()
    {
        for (const QString &name : names_)
            QDBusConnection::disconnectFromBus(name);
        daemon_.kill();
        daemon_.waitForFinished(5000);
    }
    bool isUp() const { return !address_.isEmpty(); }
    // A new connection of its own, as another process would have.
    QDBusConnection connect(const QString &name)
    {
        names_ << name;
        return QDBusConnection::connectToBus(address_, name);
    }

private:
    QProcess daemon_;
    QString address_;
    QStringList names_;
};

// The panel's side: collects the items that register.
class FakeWatcher : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hostRegistered)

public:
    bool hostRegistered() const { return true; }
    QStringList registered() const
    {
        const QMutexLocker lock(&mutex_);
        return registered_;
    }

public slots:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &service)
    {
        const QMutexLocker lock(&mutex_);
        registered_ << service;
    }

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
    QDBusPendingCallWatcher watcher(pending);
    QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
    if (!pending.isFinished())
        finished.wait(5000);
    return pending.reply();
}

QVariant property(QDBusConnection &connection, const QString &service, const QString &name)
{
    const QDBusMessage reply = call(connection, service, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                                    {"org.kde.StatusNotifierItem", name});
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {};
    return reply.arguments().first().value<QDBusVariant>().variant();
}

class SignalCounter : public QObject {
    Q_OBJECT

public:
    int icons = 0;
    int labels = 0;

public slots:
    void newIcon() { ++icons; }
    void newLabel(const QString &, const QString &) { ++labels; }
};

} // namespace

TEST(StatusNotifierItem, PixmapsAreArgbInNetworkOrder)
{
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(0x11, 0x22, 0x33, 0xff));
    image.setPixel(1, 0, qRgba(0, 0, 0, 0));
    const SniPixmap pixmap = SniPixmap::from(image);
    EXPECT_EQ(pixmap.width, 2);
    EXPECT_EQ(pixmap.height, 1);
    EXPECT_EQ(pixmap.argb, QByteArray::fromHex("ff11223300000000"));
}

TEST(DBusStatusItem, ServesPictureLabelTooltipAndMenuOverDBus)
{
    PrivateBus bus;
    if (!bus.isUp())
        GTEST_SKIP() << "dbus-daemon is not available";
    const QDBusConnection orvelSide = bus.connect("orvel-side");
    QDBusConnection panelSide = bus.connect("panel-side");
    ASSERT_TRUE(orvelSide.isConnected());

    const Location place = Snapshot::uskudar();
    const DayTimes day = PrayerCalculator::times(DayKey{2026, 3, 10}, place, CalculationMethod::diyanet);
    const Instant start = day[Prayer::ogle] + 3600;
    test::OfflineModel offline(start);
    AppModel &model = *offline.model;
    ASSERT_TRUE(model.today().has_value());

    DBusStatusItem item(orvelSide);
    EXPECT_FALSE(DBusStatusItem::watcherPresent(orvelSide));
    EXPECT_FALSE(item.isAvailable());
    QSignalSpy availability(&item, &StatusItem::availabilityChanged);

    // The panel is another process: its watcher lives and answers in a thread of its own.
    QThread panelThread;
    panelThread.start();
    QObject panelContext;
    panelContext.moveToThread(&panelThread);
    FakeWatcher *watcher = nullptr;
    QMetaObject::invokeMethod(
        &panelContext,
        [&] {
            watcher = new FakeWatcher;
            panelSide.registerObject("/StatusNotifierWatcher", watcher, QDBusConnection::ExportAllContents);
            panelSide.registerService("org.kde.StatusNotifierWatcher");
        },
        Qt::BlockingQueuedConnection);
    const auto stopPanel = qScopeGuard([&] {
        QMetaObject::invokeMethod(
            &panelContext,
            [&] {
                panelSide.unregisterObject("/StatusNotifierWatcher");
                delete watcher;
            },
            Qt::BlockingQueuedConnection);
        panelThread.quit();
        panelThread.wait();
    });
    EXPECT_TRUE(DBusStatusItem::watcherPresent(orvelSide));
    EXPECT_TRUE(item.isAvailable());
    ASSERT_TRUE(QTest::qWaitFor([&] { return availability.count() >= 1; }, 5000));
    EXPECT_EQ(availability.count(), 1) << "only a real change is told";
    EXPECT_TRUE(availability.first().first().toBool());

    QMenu menu;
    QAction *imsakiye = menu.addAction("İmsakiye");
    menu.addAction("Ayarlar…");
    menu.addSeparator();
    menu.addAction("Çık");
    item.setMenu(&menu);
    item.update(model);
    item.show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !watcher->registered().isEmpty(); }, 5000));
    // A watcher that appears just before the item shows may hear of it twice; it keeps one.
    const QStringList registered = watcher->registered();
    EXPECT_EQ(registered.first(), item.serviceName());
    EXPECT_EQ(registered.count(item.serviceName()), registered.size());

    const QString service = item.serviceName();
    const int minutesLeft = static_cast<int>(std::ceil((day[Prayer::ikindi] - start) / 60));
    EXPECT_EQ(property(panelSide, service, "XAyatanaLabel").toString(),
              "İkindi " + QString::fromStdString(OrvelFormat::compact(minutesLeft)));
    EXPECT_EQ(property(panelSide, service, "Id").toString(), "orvel");
    EXPECT_EQ(property(panelSide, service, "Menu").value<QDBusObjectPath>().path(), "/MenuBar");

    SniToolTip toolTip;
    property(panelSide, service, "ToolTip").value<QDBusArgument>() >> toolTip;
    EXPECT_EQ(toolTip.text, model.accessibilityLabel());
    SniPixmaps pixmaps;
    property(panelSide, service, "IconPixmap").value<QDBusArgument>() >> pixmaps;
    ASSERT_FALSE(pixmaps.isEmpty());
    EXPECT_EQ(pixmaps.first().width, pixmaps.first().height);
    EXPECT_EQ(pixmaps.first().argb.size(), pixmaps.first().width * pixmaps.first().height * 4);

    // A minute later the label changes but the picture does not.
    SignalCounter counter;
    panelSide.connect(item.serviceName(), "/StatusNotifierItem", "org.kde.StatusNotifierItem", "NewIcon", &counter,
                      SLOT(newIcon()));
    panelSide.connect(item.serviceName(), "/StatusNotifierItem", "org.kde.StatusNotifierItem", "XAyatanaNewLabel",
                      &counter, SLOT(newLabel(QString, QString)));
    offline.moveTo(start + 60);
    item.update(model);
    EXPECT_TRUE(QTest::qWaitFor([&] { return counter.labels == 1; }, 5000));
    offline.moveTo(day[Prayer::ikindi] + 10);
    item.update(model);
    EXPECT_TRUE(QTest::qWaitFor([&] { return counter.icons == 1; }, 5000));
    EXPECT_EQ(property(panelSide, service, "XAyatanaLabel").toString(), "İkindi vakti");
    EXPECT_TRUE(QTest::qWaitFor([&] { return counter.labels == 2; }, 5000));

    // A click in the panel reaches the application with its position.
    QSignalSpy activated(&item, &StatusItem::activated);
    call(panelSide, service, "/StatusNotifierItem", "org.kde.StatusNotifierItem", "Activate", {120, 4});
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
    EXPECT_EQ(labels, (QStringList{"İmsakiye", "Ayarlar…", "separator", "Çık"}));

    QSignalSpy triggered(imsakiye, &QAction::triggered);
    call(panelSide, service, "/MenuBar", "com.canonical.dbusmenu", "Event",
         {layout.children.first().id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0u});
    EXPECT_TRUE(QTest::qWaitFor([&] { return triggered.count() == 1; }, 5000));
}

#include "DBusStatusItemTests.moc"

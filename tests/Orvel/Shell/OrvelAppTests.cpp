#include "OrvelApp.h"
#include "Panel.h"
#include "ShellTestSupport.h"
#include "StatusItem.h"
#include "Windows.h"
#include "AppModel.h"
#include "OrvelFormat.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCursor>
#include <QLabel>
#include <QMenu>
#include <QTest>

using namespace orvel;

using test::FakeStatusItem;
using test::visibleWindowsTitled;

TEST(OrvelApp, StatusItemMenuAndPanel)
{
    test::OfflineModel offline(Snapshot::parseNow("2026-03-10T12:30").value());
    auto owned = std::make_unique<FakeStatusItem>(true);
    FakeStatusItem &item = *owned;
    OrvelApp app(std::move(offline.model), std::move(owned));
    app.start();
    EXPECT_TRUE(item.shown);
    EXPECT_FALSE(app.panel().isVisible());
    ASSERT_EQ(item.menu, &app.menu());

    const int updates = item.updates;
    offline.moveTo(Snapshot::parseNow("2026-03-10T12:31").value());
    EXPECT_GT(item.updates, updates);

    // A click opens the panel under the item, a second click closes it.
    emit item.activated(QPoint());
    ASSERT_TRUE(app.panel().isVisible());
    EXPECT_EQ(app.panel().y(), 24 + 4);
    EXPECT_EQ(app.panel().width() - 2, 330);
    emit item.activated(QPoint());
    EXPECT_FALSE(app.panel().isVisible());

    // The panel's shortcut for the settings reaches the shell.
    emit item.activated(QPoint());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&app.panel()));
    QTest::keyClick(&app.panel(), Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([] { return visibleWindowsTitled("Orvel Ayarları") == 1; }, 2000));

    // The shown entries: the panel first (what hosts that open the menu on a click need), the
    // day's times with the next one marked, then the windows; "Sesi durdur" only while Orvel's
    // own sound plays.
    QStringList texts;
    QAction *marked = nullptr;
    for (QAction *action : item.menu->actions()) {
        if (action->objectName() == "stopSound") {
            EXPECT_EQ(action->text(), "Sesi durdur");
            EXPECT_FALSE(action->isVisible());
            continue;
        }
        texts << action->text();
        if (action->isChecked())
            marked = action;
    }
    const DayTimes &today = *app.model().today();
    const auto clock = [&](Prayer::Value prayer) {
        return QString::fromStdString(OrvelFormat::time(today[prayer], app.model().zone()));
    };
    // 10 March 2026 is in Ramadan: İmsak and Akşam go by their Ramadan names.
    ASSERT_EQ(texts, (QStringList{"Paneli aç", "", "Sahur " + clock(Prayer::imsak), "Güneş " + clock(Prayer::gunes),
                                  "Öğle " + clock(Prayer::ogle), "İkindi " + clock(Prayer::ikindi),
                                  "İftar " + clock(Prayer::aksam), "Yatsı " + clock(Prayer::yatsi), "", "İmsakiye",
                                  "Ayarlar…", "", "Çık"}));
    // 12:31 in İstanbul: Öğle is next, and only it is marked.
    ASSERT_TRUE(marked);
    EXPECT_EQ(marked->text(), "Öğle " + clock(Prayer::ogle));
    EXPECT_FALSE(marked->isEnabled());
    // After Öğle the mark moves on, and the entries keep their texts.
    offline.moveTo(today[Prayer::ogle] + 60);
    int checked = 0;
    for (QAction *action : item.menu->actions())
        checked += action->isChecked() && action->text() == "İkindi " + clock(Prayer::ikindi);
    EXPECT_EQ(checked, 1);
    // After Yatsı the next time is tomorrow's: none of today's is marked.
    offline.moveTo(today[Prayer::yatsi] + 60);
    for (QAction *action : item.menu->actions())
        EXPECT_FALSE(action->isChecked()) << action->text().toStdString();

    QAction *imsakiye = item.menu->findChild<QAction *>("imsakiye");
    QAction *settings = item.menu->findChild<QAction *>("settings");
    ASSERT_TRUE(imsakiye && settings);
    imsakiye->trigger();
    imsakiye->trigger();
    settings->trigger();
    EXPECT_EQ(visibleWindowsTitled("İmsakiye"), 1);
    EXPECT_EQ(visibleWindowsTitled("Orvel Ayarları"), 1);

    // "Paneli aç" opens the panel under the item, not at the pointer.
    app.panel().hide();
    QCursor::setPos(100, 500);
    item.menu->findChild<QAction *>("showPanel")->trigger();
    ASSERT_TRUE(app.panel().isVisible());
    EXPECT_NEAR(app.panel().geometry().center().x(), 612, 2);
}

TEST(OrvelApp, WithoutATrayThePanelIsAWindow)
{
    test::OfflineModel offline(Snapshot::parseNow("2026-03-10T12:30").value());
    OrvelApp app(std::move(offline.model), std::make_unique<FakeStatusItem>(false));
    app.start();
    ASSERT_TRUE(app.panel().isVisible());
    EXPECT_EQ(app.panel().mode(), Panel::Mode::window);
    EXPECT_FALSE(app.panel().windowFlags().testFlag(Qt::FramelessWindowHint));
    // The window says how to see Orvel in the panel; on GNOME, which extension to enable.
    EXPECT_FALSE(app.panel().notice().isEmpty());
    EXPECT_TRUE(OrvelApp::noTrayNotice("ubuntu:GNOME").contains("gnome-shell-extension-appindicator"));
    EXPECT_FALSE(OrvelApp::noTrayNotice("XFCE").contains("GNOME"));
    // Escape leaves a window open: there may be no other way back to it.
    QTest::keyClick(&app.panel(), Qt::Key_Escape);
    EXPECT_TRUE(app.panel().isVisible());

    // The desktop's panel comes up after Orvel: the window gives way to the item's popup.
    emit app.statusItem().availabilityChanged(true);
    EXPECT_FALSE(app.panel().isVisible());
    EXPECT_EQ(app.panel().mode(), Panel::Mode::popup);
    EXPECT_TRUE(app.panel().notice().isEmpty());
    // And when it goes away again, a second start opens a window.
    emit app.statusItem().availabilityChanged(false);
    EXPECT_FALSE(app.panel().isVisible());
    app.showPanel();
    EXPECT_TRUE(app.panel().isVisible());
    EXPECT_EQ(app.panel().mode(), Panel::Mode::window);
}

TEST(Panel, PlacementUnderTheItemInsideTheScreen)
{
    const QRect top(0, 28, 1920, 1052); // a 28-pixel bar at the top
    const QRect bottom(0, 0, 1920, 1040);
    const QSize size(332, 600);
    EXPECT_EQ(Panel::placement(size, QRect(900, 2, 24, 24), top), QPoint(911 - 166, 25 + 1 + 4));
    EXPECT_EQ(Panel::placement(size, QRect(1890, 2, 24, 24), top).x(), 1920 - 332);
    // With the bar at the bottom the panel opens above the item, and never over the bar.
    EXPECT_EQ(Panel::placement(size, QRect(10, 1048, 24, 24), bottom), QPoint(0, 1040 - 600));
    EXPECT_EQ(Panel::placement(size, QRect(600, 900, 24, 24), bottom), QPoint(611 - 166, 900 - 4 - 600));
    EXPECT_EQ(Panel::placement(QSize(300, 2000), QRect(900, 2, 24, 24), top).y(), 28);
    // The pointer as the anchor on a second screen.
    EXPECT_EQ(Panel::placement(size, QRect(2500, 100, 1, 1), QRect(1920, 0, 1280, 1024)), QPoint(2500 - 166, 105));
}

TEST(Panel, APopupUnderX11GrabsAndUnderWaylandIsAWindow)
{
    // Under X11 only a real popup sees the click on the bare desktop that closes it.
    const auto type = [](const char *platform) { return Panel::popupFlags(platform) & Qt::WindowType_Mask; };
    EXPECT_EQ(type("xcb"), Qt::Popup);
    // A Wayland client cannot place a window: the compositor does, and focus comes by a token.
    EXPECT_EQ(type("wayland"), Qt::Window);
    EXPECT_EQ(type("offscreen"), Qt::Tool);
}

TEST(Panel, PopupClosesOnEscapeOrFocusLoss)
{
    Panel panel;
    panel.setContent(new QLabel("içerik"));
    const QRect anchor(100, 0, 20, 20);
    panel.toggle(anchor);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(panel.isVisible());
    // The click that took the focus away must not reopen the panel right away.
    panel.toggle(anchor);
    EXPECT_FALSE(panel.isVisible());

    panel.showAt(anchor);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_FALSE(panel.isVisible());
}

TEST(Windows, OneWindowPerIdentifierMadeAgainOnlyWhenGone)
{
    Windows windows;
    int made = 0;
    windows.setFactory("imsakiye", [&made] {
        ++made;
        return Windows::placeholder("İmsakiye");
    });
    QWidget *first = windows.open("imsakiye");
    first->close();
    EXPECT_EQ(windows.open("imsakiye"), first);
    EXPECT_TRUE(first->isVisible());
    delete first;
    EXPECT_NE(windows.open("imsakiye"), nullptr);
    EXPECT_EQ(made, 2);
}

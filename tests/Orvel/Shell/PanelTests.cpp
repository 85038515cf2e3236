#include "Panel.h"
#include "Windows.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

using namespace orvel;

TEST(Panel, PlacementUnderTheItemInsideTheScreen)
{
    const QRect available(0, 28, 1920, 1052); // a 28-pixel bar at the top
    const QSize size(332, 600);

    // Under the item, centred on it.
    EXPECT_EQ(Panel::placement(size, QRect(900, 2, 24, 24), available), QPoint(911 - 166, 25 + 1 + 4));
    // At the right edge the panel stays on the screen.
    EXPECT_EQ(Panel::placement(size, QRect(1890, 2, 24, 24), available).x(), 1920 - 332);
    // A bar at the bottom: the panel opens above the item, and never over the bar.
    const QRect bottom(0, 0, 1920, 1040);
    EXPECT_EQ(Panel::placement(size, QRect(10, 1048, 24, 24), bottom), QPoint(0, 1040 - 600));
    EXPECT_EQ(Panel::placement(size, QRect(600, 900, 24, 24), bottom), QPoint(611 - 166, 900 - 4 - 600));
    // A panel taller than the screen starts at its top.
    EXPECT_EQ(Panel::placement(QSize(300, 2000), QRect(900, 2, 24, 24), available).y(), 28);
    // The pointer as the anchor on a second screen.
    const QRect right(1920, 0, 1280, 1024);
    EXPECT_EQ(Panel::placement(size, QRect(2500, 100, 1, 1), right), QPoint(2500 - 166, 105));
}

TEST(Panel, TogglesAndClosesOnEscape)
{
    Panel panel;
    panel.setContent(new QLabel("içerik"));

    panel.toggle(QRect(100, 0, 20, 20));
    ASSERT_TRUE(panel.isVisible());
    EXPECT_GE(panel.y(), 20);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));

    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_FALSE(panel.isVisible());
    panel.toggle(QRect(100, 0, 20, 20));
    EXPECT_TRUE(panel.isVisible());
    panel.toggle(QRect(100, 0, 20, 20));
    EXPECT_FALSE(panel.isVisible());

    // As an ordinary window Escape leaves it open: there may be no other way back to it.
    panel.setMode(Panel::Mode::window);
    panel.showAt(QRect(100, 0, 20, 20));
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_TRUE(panel.isVisible());
    EXPECT_FALSE(panel.windowFlags().testFlag(Qt::FramelessWindowHint));
}

TEST(Panel, PopupClosesWhenAnotherWindowTakesFocus)
{
    Panel panel;
    panel.setContent(new QLabel("içerik"));
    panel.showAt(QRect(100, 0, 20, 20));
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));

    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(panel.isVisible());
    // The click that took the focus away must not reopen the panel right away.
    panel.toggle(QRect(100, 0, 20, 20));
    EXPECT_FALSE(panel.isVisible());
}

TEST(Windows, OneWindowPerIdentifierReusedAndRaised)
{
    Windows windows;
    int made = 0;
    windows.setFactory("imsakiye", [&made] {
        ++made;
        return Windows::placeholder("İmsakiye");
    });
    EXPECT_EQ(windows.open("settings"), nullptr);

    QWidget *first = windows.open("imsakiye");
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->isVisible());
    EXPECT_EQ(first->windowTitle(), "İmsakiye");
    EXPECT_NE(first->findChild<QLabel *>()->text().indexOf("Yakında"), -1);

    first->close();
    QWidget *second = windows.open("imsakiye");
    EXPECT_EQ(second, first);
    EXPECT_TRUE(second->isVisible());
    EXPECT_EQ(made, 1);

    int titled = 0;
    for (QWidget *widget : QApplication::topLevelWidgets())
        titled += widget->windowTitle() == "İmsakiye" ? 1 : 0;
    EXPECT_EQ(titled, 1);

    // A window that deleted itself is made again.
    delete first;
    EXPECT_EQ(windows.window("imsakiye"), nullptr);
    EXPECT_NE(windows.open("imsakiye"), nullptr);
    EXPECT_EQ(made, 2);
}

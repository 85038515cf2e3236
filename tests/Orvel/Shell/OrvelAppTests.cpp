#include "OrvelApp.h"
#include "Panel.h"
#include "ShellTestSupport.h"
#include "StatusItem.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTest>

using namespace orvel;

namespace {

class FakeStatusItem : public StatusItem {
public:
    explicit FakeStatusItem(bool available)
        : available_(available)
    {
    }
    bool isAvailable() const override { return available_; }
    void show() override { shown = true; }
    void update(const AppModel &) override { ++updates; }
    void setMenu(QMenu *menu) override { this->menu = menu; }
    QRect geometry() const override { return {600, 0, 24, 24}; }

    bool shown = false;
    int updates = 0;
    QMenu *menu = nullptr;

private:
    bool available_;
};

QAction *action(QMenu &menu, const QString &text)
{
    for (QAction *action : menu.actions())
        if (action->text() == text)
            return action;
    return nullptr;
}

int windowsTitled(const QString &title)
{
    int count = 0;
    for (QWidget *widget : QApplication::topLevelWidgets())
        count += widget->isVisible() && widget->windowTitle() == title ? 1 : 0;
    return count;
}

} // namespace

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

    // The item is redrawn when the model changes.
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

    // The panel's keyboard shortcut for the settings reaches the shell.
    emit item.activated(QPoint());
    ASSERT_TRUE(QTest::qWaitForWindowActive(&app.panel()));
    QTest::keyClick(&app.panel(), Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(QTest::qWaitFor([] { return windowsTitled("Ayarlar") == 1; }, 2000));

    QAction *imsakiye = action(*item.menu, "İmsakiye");
    QAction *settings = action(*item.menu, "Ayarlar…");
    ASSERT_NE(imsakiye, nullptr);
    ASSERT_NE(settings, nullptr);
    ASSERT_NE(action(*item.menu, "Çık"), nullptr);
    imsakiye->trigger();
    imsakiye->trigger();
    settings->trigger();
    EXPECT_EQ(windowsTitled("İmsakiye"), 1);
    EXPECT_EQ(windowsTitled("Ayarlar"), 1);
}

TEST(OrvelApp, WithoutATrayThePanelIsAWindow)
{
    test::OfflineModel offline(Snapshot::parseNow("2026-03-10T12:30").value());
    OrvelApp app(std::move(offline.model), std::make_unique<FakeStatusItem>(false));
    app.start();
    ASSERT_TRUE(app.panel().isVisible());
    EXPECT_EQ(app.panel().mode(), Panel::Mode::window);
    app.panel().hide();
    app.showPanel();
    EXPECT_TRUE(app.panel().isVisible());

    // The desktop's panel comes up after Orvel: the window gives way to the item's popup.
    emit app.statusItem().availabilityChanged(true);
    EXPECT_FALSE(app.panel().isVisible());
    EXPECT_EQ(app.panel().mode(), Panel::Mode::popup);
    // And when it goes away again, a second start opens a window.
    emit app.statusItem().availabilityChanged(false);
    EXPECT_FALSE(app.panel().isVisible());
    app.showPanel();
    EXPECT_TRUE(app.panel().isVisible());
    EXPECT_EQ(app.panel().mode(), Panel::Mode::window);
}

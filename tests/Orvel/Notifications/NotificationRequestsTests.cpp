#include "NotificationTestSupport.h"

#include <gtest/gtest.h>

using namespace orvel;
using namespace orvel::test;

namespace {

const DayKey may12{2026, 5, 12};
const std::set<Prayer::Value> allPrayers(Prayer::allCases.begin(), Prayer::allCases.end());

NotificationPlan planFor(std::vector<DayTimes> days)
{
    NotificationPlan plan;
    plan.days = std::move(days);
    plan.location = uskudar;
    plan.enabled = allPrayers;
    return plan;
}

const NotificationRequest &find(const std::vector<NotificationRequest> &requests, const QString &identifier)
{
    const auto found = std::find_if(requests.begin(), requests.end(),
                                    [&](const NotificationRequest &request) { return request.identifier == identifier; });
    if (found == requests.end())
        throw std::runtime_error("no request " + identifier.toStdString());
    return *found;
}

QStringList identifiers(const std::vector<NotificationRequest> &requests)
{
    QStringList list;
    for (const NotificationRequest &request : requests)
        list << request.identifier;
    return list;
}

} // namespace

TEST(NotificationRequests, DayWithRemindersAndKerahat)
{
    NotificationPlan plan = planFor({day(may12, 11)});
    plan.reminderMinutes = 10;
    plan.kerahat = {{KerahatKind::sunrise, at(may12, 5, 25), at(may12, 6, 10)},
                    {KerahatKind::istiva, at(may12, 12, 55), at(may12, 13, 5)}};
    const auto requests = NotificationScheduler::requests(plan, at(may12, 0, 0));

    EXPECT_EQ(identifiers(requests),
              (QStringList{"2026-05-12-imsak", "2026-05-12-imsak-pre", "2026-05-12-gunes", "2026-05-12-gunes-pre",
                           "2026-05-12-ogle", "2026-05-12-ogle-pre", "2026-05-12-ikindi", "2026-05-12-ikindi-pre",
                           "2026-05-12-aksam", "2026-05-12-aksam-pre", "2026-05-12-yatsi", "2026-05-12-yatsi-pre",
                           "kerahat-sunrise-1778552700", "kerahat-istiva-1778579700"}));

    const auto &ogle = find(requests, "2026-05-12-ogle");
    EXPECT_EQ(ogle.title, "Öğle ezanı · 13:05");
    EXPECT_EQ(ogle.body, "Üsküdar için öğle vakti girdi.");
    EXPECT_EQ(ogle.fireAt, at(may12, 13, 5));
    EXPECT_TRUE(ogle.defaultSound);
    EXPECT_EQ(find(requests, "2026-05-12-ikindi").body, "Üsküdar için ikindi vakti girdi.");
    EXPECT_EQ(find(requests, "2026-05-12-imsak").title, "İmsak ezanı · 05:12");
    EXPECT_EQ(find(requests, "2026-05-12-imsak").body, "Üsküdar için imsak vakti girdi.");
    EXPECT_EQ(find(requests, "2026-05-12-aksam").title, "Akşam ezanı · 20:10");
    EXPECT_EQ(find(requests, "2026-05-12-aksam").body, "Üsküdar için akşam vakti girdi.");
    EXPECT_EQ(find(requests, "2026-05-12-gunes").title, "Güneş doğuşu · 06:40");
    EXPECT_EQ(find(requests, "2026-05-12-gunes").body, "Üsküdar için güneş doğdu.");

    const auto &reminder = find(requests, "2026-05-12-ogle-pre");
    EXPECT_EQ(reminder.fireAt, at(may12, 12, 55));
    EXPECT_EQ(reminder.title, "Öğle ezanına 10 dakika");
    EXPECT_EQ(reminder.body, "Öğle vakti: 13:05");
    EXPECT_TRUE(reminder.defaultSound);

    const auto &sunrise = find(requests, "kerahat-sunrise-1778552700");
    EXPECT_EQ(sunrise.title, "Kerahat vakti");
    EXPECT_EQ(sunrise.body, "Güneş doğuşu sonrası · 06:10'a kadar namaz kılmak mekruhtur.");
    EXPECT_EQ(sunrise.fireAt, at(may12, 5, 25));
    EXPECT_FALSE(sunrise.defaultSound);
    EXPECT_EQ(find(requests, "kerahat-istiva-1778579700").body,
              "Güneş tepedeyken · 13:05'e kadar namaz kılmak mekruhtur.");
}

TEST(NotificationRequests, RamadanWording)
{
    NotificationPlan plan = planFor({day(may12, 9)});
    plan.reminderMinutes = 5;
    const auto requests = NotificationScheduler::requests(plan, at(may12, 0, 0));
    EXPECT_EQ(find(requests, "2026-05-12-imsak").title, "İmsak · 05:12");
    EXPECT_EQ(find(requests, "2026-05-12-imsak").body, "Üsküdar için sahur vakti sona erdi.");
    EXPECT_EQ(find(requests, "2026-05-12-aksam").title, "İftar vakti · 20:10");
    EXPECT_EQ(find(requests, "2026-05-12-aksam").body, "Üsküdar için iftar vakti girdi. Hayırlı iftarlar.");
    EXPECT_EQ(find(requests, "2026-05-12-aksam-pre").title, "İftara 5 dakika");
    EXPECT_EQ(find(requests, "2026-05-12-aksam-pre").body, "İftar vakti: 20:10");
    EXPECT_EQ(find(requests, "2026-05-12-imsak-pre").title, "Sahurun bitmesine 5 dakika");
    EXPECT_EQ(find(requests, "2026-05-12-ogle").title, "Öğle ezanı · 13:05");

    plan.ramadanMode = false;
    EXPECT_EQ(find(NotificationScheduler::requests(plan, at(may12, 0, 0)), "2026-05-12-aksam").title,
              "Akşam ezanı · 20:10");

    // Without a stored Hijri date the approximate one decides: 1 March 2026 is in Ramadan 1447.
    const DayKey march1{2026, 3, 1};
    plan.ramadanMode = true;
    plan.days = {day(march1, std::nullopt), day(may12, std::nullopt)};
    const auto approximate = NotificationScheduler::requests(plan, at(march1, 0, 0));
    EXPECT_EQ(find(approximate, "2026-03-01-aksam").title, "İftar vakti · 20:10");
    EXPECT_EQ(find(approximate, "2026-05-12-aksam").title, "Akşam ezanı · 20:10");
}

TEST(NotificationRequests, SoundFollowsSettingAndMachineQuietHours)
{
    NotificationPlan plan = planFor({day(may12, 11)});
    plan.reminderMinutes = 10;
    plan.systemSound = false;
    for (const NotificationRequest &request : NotificationScheduler::requests(plan, at(may12, 0, 0)))
        EXPECT_EQ(request.defaultSound, request.identifier.endsWith("-pre")) << request.identifier.toStdString();

    plan.systemSound = true;
    plan.quietHours = {true, 23 * 60, 7 * 60};
    // The place's zone gives the clock text; the machine's (Istanbul) decides the quiet hours.
    plan.location.timeZoneID = "Asia/Tokyo";
    const auto quiet = NotificationScheduler::requests(plan, at(may12, 0, 0));
    EXPECT_EQ(find(quiet, "2026-05-12-imsak").title, "İmsak ezanı · 11:12");
    EXPECT_FALSE(find(quiet, "2026-05-12-imsak").defaultSound);
    EXPECT_FALSE(find(quiet, "2026-05-12-imsak-pre").defaultSound);
    EXPECT_FALSE(find(quiet, "2026-05-12-gunes").defaultSound);
    EXPECT_TRUE(find(quiet, "2026-05-12-ogle").defaultSound);
    EXPECT_TRUE(find(quiet, "2026-05-12-yatsi").defaultSound);
}

TEST(NotificationRequests, OnlyWhatIsAheadAndAtMostThirty)
{
    NotificationPlan plan = planFor({day(may12, 11), day(may12.adding(1), 11)});
    plan.reminderMinutes = 10;
    plan.kerahat = {{KerahatKind::sunrise, at(may12, 6, 40), at(may12, 7, 25)},
                    {KerahatKind::sunset, at(may12, 19, 25), at(may12, 20, 10)}};
    const auto afternoon = NotificationScheduler::requests(plan, at(may12, 13, 0));
    EXPECT_EQ(identifiers(afternoon).mid(0, 8),
              (QStringList{"2026-05-12-ogle", "2026-05-12-ikindi", "2026-05-12-ikindi-pre", "2026-05-12-aksam",
                           "2026-05-12-aksam-pre", "2026-05-12-yatsi", "2026-05-12-yatsi-pre", "2026-05-13-imsak"}));
    EXPECT_EQ(afternoon.size(), 7u + 12u + 1u);
    EXPECT_EQ(afternoon.back().identifier.left(14), "kerahat-sunset");

    plan.enabled.clear();
    plan.kerahat.clear();
    EXPECT_TRUE(NotificationScheduler::requests(plan, at(may12, 0, 0)).empty());

    // Three days with every prayer, reminders and kerahat: the soonest thirty stay.
    plan = planFor({day(may12, 11), day(may12.adding(1), 11), day(may12.adding(2), 11)});
    plan.reminderMinutes = 15;
    for (int offset = 0; offset < 3; ++offset) {
        const DayKey key = may12.adding(offset);
        plan.kerahat.push_back({KerahatKind::sunrise, at(key, 6, 40), at(key, 7, 25)});
        plan.kerahat.push_back({KerahatKind::istiva, at(key, 12, 55), at(key, 13, 5)});
        plan.kerahat.push_back({KerahatKind::sunset, at(key, 19, 25), at(key, 20, 10)});
    }
    const auto capped = NotificationScheduler::requests(plan, at(may12, 0, 0));
    ASSERT_EQ(capped.size(), size_t(NotificationScheduler::maximumPending));
    const Instant thirdDay = may12.adding(2).start(TimeZone::named("Europe/Istanbul"));
    for (const NotificationRequest &request : capped)
        EXPECT_LT(request.fireAt, thirdDay) << request.identifier.toStdString();
    EXPECT_EQ(capped.back().identifier.left(14), "kerahat-sunset");
}

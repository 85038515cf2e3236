#include "AdhanSound.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

using namespace orvel;

TEST(AdhanSound, RawValuesRoundTripAndOnlyChimeAndCustomArePlayedByTheApp)
{
    std::set<std::string> raws;
    std::set<std::string> labels;
    for (const AdhanSound sound : AdhanSound::allCases) {
        raws.emplace(sound.rawValue());
        labels.emplace(sound.label());
        EXPECT_EQ(AdhanSound::fromRawValue(sound.rawValue()), sound);
        EXPECT_EQ(sound.isPlayedByApp(), sound == AdhanSound::chime || sound == AdhanSound::custom);
    }
    EXPECT_EQ(raws, (std::set<std::string>{"system", "chime", "custom", "none"}));
    EXPECT_EQ(AdhanSound(AdhanSound::chime).label(), "Yumuşak zil");
    EXPECT_EQ(AdhanSound(AdhanSound::none).label(), "Sessiz");
    EXPECT_EQ(labels.size(), 4u);
    EXPECT_FALSE(AdhanSound::fromRawValue("Chime").has_value());
    EXPECT_FALSE(AdhanSound::fromRawValue("").has_value());
}

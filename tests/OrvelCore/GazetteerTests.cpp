#include "Gazetteer.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace orvel;

namespace {

std::vector<std::string> names(const std::vector<Gazetteer::Place> &places)
{
    std::vector<std::string> result;
    for (const Gazetteer::Place &place : places)
        result.push_back(place.placemark().displayName().value_or(""));
    return result;
}

} // namespace

TEST(GazetteerIndex, TurkishSpellingsFindTheSamePlace)
{
    EXPECT_EQ(Gazetteer::fold("KADIKÖY"), "kadikoy");
    EXPECT_EQ(Gazetteer::fold("Kadıköy"), "kadikoy");
    EXPECT_EQ(Gazetteer::fold("İĞDIR Şişli Çeşme"), "igdir sisli cesme");
    EXPECT_EQ(Gazetteer::fold("Tromsø"), "tromso");

    const Gazetteer::Index index(Gazetteer::defaultTurkeyFile(), false);
    ASSERT_EQ(index.problem(), "");
    for (const char *query : {"kadikoy", "KADIKÖY", "Kadıköy", "kadıköy", "Kadık", "İstanbul Kadıköy"})
        EXPECT_EQ(names(index.search(query)).at(0), "İstanbul, Kadıköy") << query;
    // Every district of the official list is there with its province.
    EXPECT_EQ(index.size(), 973u + 81 - 51) << "973 districts and 81 centres, the 51 'Merkez' districts being centres";
}

TEST(GazetteerIndex, ExactNamesComeFirstThenTheMostPopulous)
{
    const Gazetteer::Index index(Gazetteer::defaultTurkeyFile(), false);
    // A province's name finds its centre first, then its districts by size.
    const std::vector<std::string> ankara = names(index.search("Ankara"));
    ASSERT_GE(ankara.size(), 3u);
    EXPECT_EQ(ankara[0], "Ankara");
    EXPECT_EQ(ankara[1], "Ankara, Çankaya");
    // "Merkez" answers to its province's name.
    EXPECT_EQ(names(index.search("Amasya Merkez")), std::vector<std::string>{"Amasya"});
    // An exact name beats a longer one that begins with it.
    EXPECT_EQ(names(index.search("Ereğli")).size(), 2u);
    EXPECT_EQ(names(index.search("Bor")).at(0), "Niğde, Bor");
    EXPECT_TRUE(index.search("Qqxxzz").empty());
    EXPECT_TRUE(index.search("  ").empty());
}

TEST(GazetteerIndex, TownsAbroadSpeakTurkishAndAnswerTheirInternationalNames)
{
    const Gazetteer::Index world(Gazetteer::defaultTurkeyFile(), true);
    // Turkish names where the library has them, found by the names the world types too.
    EXPECT_EQ(names(world.search("Münih")).at(0), "Bavyera, Münih");
    EXPECT_EQ(names(world.search("Munich")).at(0), "Bavyera, Münih");
    const std::vector<std::string> barcelona = names(world.search("Barcelona"));
    ASSERT_GE(barcelona.size(), 2u);
    EXPECT_EQ(barcelona[0], "Katalonya, Barselona") << "the largest first, its region in Turkish";
    // No English region words, and no region that only repeats its town.
    EXPECT_EQ(names(world.search("Kudus")), (std::vector<std::string>{"Kudüs", "Kudus"}));
    EXPECT_EQ(names(world.search("Moskova")).at(0), "Moskova");
    for (const char *query : {"Paris", "Gornji Milanovac", "Yogyakarta", "Cape Town", "Lisboa", "Nagoya"}) {
        for (const std::string &name : names(world.search(query))) {
            for (const char *word : {"Region", "Province", "District", "Prefecture", "Central", "Western", "Special"})
                EXPECT_EQ(name.find(word), std::string::npos) << name;
        }
    }
}

TEST(GazetteerIndex, AMissingOrDamagedFileIsSaidAndLeavesTheWorld)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / ("orvel-gazetteer-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::filesystem::path missing = folder / "none.tsv";
    const Gazetteer::Index none(missing, false);
    EXPECT_NE(none.problem().find("bulunamadı"), std::string::npos) << none.problem();
    EXPECT_EQ(none.size(), 0u);

    const std::filesystem::path damaged = folder / "damaged.tsv";
    std::ofstream(damaged) << "plate\tprovince\tdistrict\tlatitude\tlongitude\tpopulation\tdiyanetLatitude\tdiyanetLongitude\n"
                           << "34\tİstanbul\tKadıköy\t41.0\t29.0\t1\t\t\n"
                           << "34\tİstanbul\tBozuk\tnan\t29\t1\t\t\n"
                           << "\xff\xfe garbage\n";
    const Gazetteer::Index partly(damaged, false);
    EXPECT_NE(partly.problem().find("bozuk"), std::string::npos) << partly.problem();
    EXPECT_EQ(names(partly.search("kadikoy")), std::vector<std::string>{"İstanbul, Kadıköy"});

    // The world's towns still answer.
    const Gazetteer::Index world(missing, true);
    EXPECT_EQ(names(world.search("Mekke")).at(0), "Mekke");
    std::filesystem::remove_all(folder);
}

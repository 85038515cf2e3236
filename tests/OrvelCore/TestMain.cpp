#include "Gazetteer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <unicode/timezone.h>

// Tests pin the machine's zone so that "the current zone" means the same on every machine.
int main(int argc, char **argv)
{
    setenv("TZ", "Europe/Istanbul", 1);
    icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone("Europe/Istanbul"));
    orvel::Gazetteer::speakTurkish();
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

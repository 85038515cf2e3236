#include "OrvelFormat.h"

#include "Calendars.h"
#include "TimeZone.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <string_view>
#include <vector>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/unistr.h>

namespace orvel::OrvelFormat {

namespace {

constexpr std::array<std::string_view, 6> tensWords{"sıfır", "on", "yirmi", "otuz", "kırk", "elli"};
constexpr std::array<std::string_view, 10> onesWords{"", "bir", "iki", "üç", "dört", "beş", "altı", "yedi", "sekiz", "dokuz"};
constexpr std::string_view vowels = "aeıioöuü";
constexpr std::string_view backVowels = "aıou";
constexpr std::string_view defaultLastVowel = "e";
// A consonant, so that an empty word takes no buffer letter.
constexpr std::string_view defaultLastLetter = "x";

icu::UnicodeString unicode(std::string_view text)
{
    return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::string utf8(const icu::UnicodeString &text)
{
    std::string out;
    text.toUTF8String(out);
    return out;
}

// The user-perceived characters of the text, so that "ı" and "i" or a letter with a combining
// mark compare as whole letters.
std::vector<std::string> characters(std::string_view text)
{
    const icu::UnicodeString string = unicode(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> breaks(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    std::vector<std::string> out;
    if (U_FAILURE(status)) {
        // Without break data, fall back to code points.
        for (int32_t i = 0; i < string.length(); i = string.moveIndex32(i, 1))
            out.push_back(utf8(icu::UnicodeString(string.char32At(i))));
        return out;
    }
    breaks->setText(string);
    int32_t start = breaks->first();
    for (int32_t end = breaks->next(); end != icu::BreakIterator::DONE; start = end, end = breaks->next())
        out.push_back(utf8(icu::UnicodeString(string, start, end - start)));
    return out;
}

bool isAmong(const std::string &letter, const std::vector<std::string> &set)
{
    return std::find(set.begin(), set.end(), letter) != set.end();
}

std::string_view numberWord(uint64_t n)
{
    if (n % 10 == 0 && n / 10 < tensWords.size())
        return tensWords[n / 10];
    return onesWords[n % 10];
}

} // namespace

std::pair<int64_t, int64_t> hoursMinutes(int64_t minutes)
{
    const int64_t hours = minutes / 60;
    return {hours, minutes - 60 * hours};
}

std::string compact(int64_t minutes)
{
    const auto [hours, rest] = hoursMinutes(minutes);
    // A negative count shows one leading sign rather than a sign on each part.
    char text[48];
    std::snprintf(text, sizeof text, "%s%lld:%02lld", minutes < 0 ? "-" : "", static_cast<long long>(hours < 0 ? -hours : hours),
                  static_cast<long long>(rest < 0 ? -rest : rest));
    return text;
}

std::string spoken(int64_t minutes)
{
    const auto [hours, rest] = hoursMinutes(minutes);
    if (hours == 0)
        return std::to_string(rest) + " dakika";
    if (rest == 0)
        return std::to_string(hours) + " saat";
    return std::to_string(hours) + " saat " + std::to_string(rest) + " dakika";
}

namespace {

// Building a formatter costs some twenty times more than using it, so each thread keeps the ones
// it made, by pattern and zone. A formatter that cannot be built is kept as none.
const icu::SimpleDateFormat *formatter(const std::string &pattern, const TimeZone &zone)
{
    thread_local std::map<std::pair<std::string, std::string>, std::unique_ptr<icu::SimpleDateFormat>, std::less<>> formatters;
    auto key = std::make_pair(pattern, zone.id());
    if (const auto found = formatters.find(key); found != formatters.end())
        return found->second.get();
    UErrorCode status = U_ZERO_ERROR;
    auto made = std::make_unique<icu::SimpleDateFormat>(unicode(pattern), icu::Locale("tr_TR"), status);
    if (U_FAILURE(status))
        made.reset();
    else
        made->adoptTimeZone(zone.icuZone().clone());
    return formatters.emplace(std::move(key), std::move(made)).first->second.get();
}

} // namespace

std::string pattern(Instant instant, const TimeZone &zone, const std::string &pattern)
{
    const icu::SimpleDateFormat *const format = formatter(pattern, zone);
    if (!format)
        return {};
    icu::UnicodeString text;
    format->format(instant.udate(), text);
    return utf8(text);
}

std::string time(Instant instant, const TimeZone &zone)
{
    return pattern(instant, zone, "HH:mm");
}

std::string longDate(Instant instant, const TimeZone &zone)
{
    return pattern(instant, zone, "d MMMM yyyy EEEE");
}

std::string timeWithDative(Instant instant, const TimeZone &zone)
{
    const CivilTime clock = Calendars::civil(instant, zone);
    // The ending follows the last number read aloud: the minute, or the hour at a full hour.
    const int64_t spokenLast = clock.minute != 0 ? clock.minute : clock.hour;
    return time(instant, zone) + "'" + dativeSuffix(spokenLast);
}

std::string timeWithLocative(Instant instant, const TimeZone &zone)
{
    const CivilTime clock = Calendars::civil(instant, zone);
    const int64_t spokenLast = clock.minute != 0 ? clock.minute : clock.hour;
    return time(instant, zone) + "'" + locativeSuffix(spokenLast);
}

namespace {

// What a case ending follows in a number read aloud: its last vowel and its last letter.
struct SpokenEnd {
    bool backVowel = false;
    std::string lastLetter;
};

SpokenEnd spokenEnd(int64_t number)
{
    static const std::vector<std::string> vowelLetters = characters(vowels);
    static const std::vector<std::string> backVowelLetters = characters(backVowels);
    // A negative number is read as "eksi" and its magnitude, which decides the ending.
    const uint64_t magnitude = number < 0 ? 0 - static_cast<uint64_t>(number) : static_cast<uint64_t>(number);
    const std::vector<std::string> letters = characters(numberWord(magnitude));
    std::string lastVowel(defaultLastVowel);
    for (const std::string &letter : letters) {
        if (isAmong(letter, vowelLetters))
            lastVowel = letter;
    }
    return {isAmong(lastVowel, backVowelLetters), letters.empty() ? std::string(defaultLastLetter) : letters.back()};
}

} // namespace

std::string locativeSuffix(int64_t number)
{
    // After a voiceless consonant the ending hardens: "üçte", "kırkta".
    static const std::vector<std::string> voiceless = characters("çfhkpsşt");
    const SpokenEnd end = spokenEnd(number);
    return std::string(isAmong(end.lastLetter, voiceless) ? "t" : "d") + (end.backVowel ? "a" : "e");
}

std::string dativeSuffix(int64_t number)
{
    static const std::vector<std::string> vowelLetters = characters(vowels);
    const SpokenEnd end = spokenEnd(number);
    return std::string(isAmong(end.lastLetter, vowelLetters) ? "y" : "") + (end.backVowel ? "a" : "e");
}

std::string lowercased(const std::string &text)
{
    icu::UnicodeString string = unicode(text);
    string.toLower(icu::Locale("tr"));
    return utf8(string);
}

} // namespace orvel::OrvelFormat

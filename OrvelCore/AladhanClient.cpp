#include "AladhanClient.h"

#include "Calendars.h"
#include "DayKey.h"
#include "DecimalText.h"
#include "HttpGet.h"
#include "JsonValues.h"
#include "MonthCheck.h"
#include "TimeZone.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>

#include <nlohmann/json.hpp>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace orvel {

namespace {

using nlohmann::json;

// The service's timing names, in Prayer order.
constexpr std::array<const char *, 6> timingKeys{"Fajr", "Sunrise", "Dhuhr", "Asr", "Maghrib", "Isha"};

// ---- Decoding: the body's shape, with the JSON types the service declares ----

[[noreturn]] void typeMismatch(const json &value, const char *expected)
{
    throw json::type_error::create(302, std::string("type must be ") + expected + ", but is " + value.type_name(), &value);
}

const std::string &stringValue(const json &value)
{
    if (!value.is_string())
        typeMismatch(value, "string");
    return value.get_ref<const std::string &>();
}

const json &arrayValue(const json &value)
{
    if (!value.is_array())
        typeMismatch(value, "array");
    return value;
}

// Day and year are declared as text ("05"), but the service has also sent them as numbers.
struct WirePart {
    std::optional<int64_t> day;
    int64_t month;
    std::optional<int64_t> year;
};

struct WireEntry {
    const json *timings;
    WirePart gregorian;
    WirePart hijri;
};

// ---- Reading the texts ----

// An optional sign and ASCII digits, nothing else, within 64 bits.
std::optional<int64_t> decimalInteger(std::string_view text)
{
    const size_t digits = (!text.empty() && (text[0] == '+' || text[0] == '-')) ? 1 : 0;
    if (digits == text.size())
        return std::nullopt;
    for (size_t i = digits; i < text.size(); ++i) {
        if (text[i] < '0' || text[i] > '9')
            return std::nullopt;
    }
    // from_chars takes "-" but not "+".
    const std::string_view number = text[0] == '+' ? text.substr(1) : text;
    int64_t value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (error != std::errc() || end != number.data() + number.size())
        return std::nullopt;
    return value;
}

// The first `count` user-perceived characters. Plain ASCII (the service's own form) is one
// character per byte, unless a CR pairs with the LF after it.
std::string firstCharacters(std::string_view text, int32_t count)
{
    const size_t probe = std::min(text.size(), static_cast<size_t>(count) + 1);
    bool plain = true;
    for (size_t i = 0; i < probe && plain; ++i)
        plain = static_cast<unsigned char>(text[i]) < 0x80 && text[i] != '\r';
    if (plain)
        return std::string(text.substr(0, static_cast<size_t>(count)));

    const auto unicode = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> breaks(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    int32_t end = 0;
    if (U_SUCCESS(status)) {
        breaks->setText(unicode);
        for (int32_t i = 0; i < count; ++i) {
            const int32_t next = breaks->next();
            if (next == icu::BreakIterator::DONE)
                break;
            end = next;
        }
    } else {
        end = unicode.moveIndex32(0, count);
    }
    std::string out;
    unicode.tempSubString(0, end).toUTF8String(out);
    return out;
}

// A whole number given as decimal text or as a JSON integer; none for unreadable text.
std::optional<int64_t> wholeNumber(const json &value)
{
    if (value.is_number_integer())
        return JsonValues::integer(value);
    return decimalInteger(stringValue(value));
}

WirePart decodePart(const json &part)
{
    return {wholeNumber(part.at("day")), JsonValues::integer(part.at("month").at("number")), wholeNumber(part.at("year"))};
}

WireEntry decodeEntry(const json &entry)
{
    // A day without its fields is a broken timetable, not a different kind of document.
    if (!entry.is_object() || !entry.contains("timings") || !entry.contains("date"))
        throw AladhanClient::ClientError::badPayload();
    const json &timings = entry.at("timings");
    if (!timings.is_object())
        typeMismatch(timings, "object");
    // Every timing is text, including those that are never read.
    for (const json &value : timings)
        stringValue(value);
    const json &date = entry.at("date");
    return {&timings, decodePart(date.at("gregorian")), decodePart(date.at("hijri"))};
}

// Minutes after midnight of a timing such as "05:12 (+03)"; the zone suffix is cut off with
// everything else past the fifth character.
std::optional<int64_t> clockMinutes(std::string_view timing)
{
    const std::string head = firstCharacters(timing, 5);
    std::array<std::string_view, 2> pieces;
    size_t pieceCount = 0;
    const std::string_view text(head);
    size_t start = 0;
    while (start <= text.size()) {
        const size_t colon = std::min(text.find(':', start), text.size());
        if (colon > start) {
            if (pieceCount == pieces.size())
                return std::nullopt;
            pieces[pieceCount++] = text.substr(start, colon - start);
        }
        start = colon + 1;
    }
    if (pieceCount != 2)
        return std::nullopt;
    const auto hours = decimalInteger(pieces[0]);
    const auto minutes = decimalInteger(pieces[1]);
    // A clock reads 00:00 to 23:59; "25:99" or "24:00" is no time of the day.
    if (!hours || !minutes || *hours < 0 || *hours > 23 || *minutes < 0 || *minutes > 59)
        return std::nullopt;
    return *hours * 60 + *minutes;
}

DayTimes readDay(const WireEntry &entry, const TimeZone &zone)
{
    const auto day = entry.gregorian.day;
    const auto year = entry.gregorian.year;
    if (!day || !year)
        throw AladhanClient::ClientError::badPayload();
    const int64_t month = entry.gregorian.month;
    // Calendar arithmetic takes real dates only.
    if (*year < 1 || *year > 9999 || month < 1 || month > 12 || *day < 1 || *day > Calendars::daysInMonth(*year, month))
        throw AladhanClient::ClientError::badPayload();

    DayTimes result;
    result.day = {*year, month, *day};
    for (size_t i = 0; i < timingKeys.size(); ++i) {
        const auto found = entry.timings->find(timingKeys[i]);
        if (found == entry.timings->end())
            throw AladhanClient::ClientError::badPayload();
        const auto minutes = clockMinutes(found->get_ref<const std::string &>());
        if (!minutes)
            throw AladhanClient::ClientError::badPayload();
        // The service gives the place's wall clock of that date.
        Instant time = result.day.at(*minutes, zone);
        // A night time past midnight belongs to the next morning.
        if (i > 0 && time < result.times[i - 1])
            time = Calendars::nextDay(time, zone);
        result.times[i] = time;
    }

    const auto hijriDay = entry.hijri.day;
    const auto hijriYear = entry.hijri.year;
    if (hijriDay && hijriYear) {
        const HijriDate hijri{*hijriDay, entry.hijri.month, *hijriYear};
        if (!hijri.isValid())
            throw AladhanClient::ClientError::badPayload();
        result.hijri = hijri;
    }
    return result;
}

} // namespace

AladhanClient::ClientError::ClientError(Kind kind, long status, const std::string &what)
    : std::runtime_error(what)
    , kind_(kind)
    , status_(status)
{
}

AladhanClient::ClientError AladhanClient::ClientError::badStatus(long status)
{
    return ClientError(Kind::badStatus, status, "Sunucu " + std::to_string(status) + " durum koduyla yanıt verdi");
}

AladhanClient::ClientError AladhanClient::ClientError::badPayload()
{
    return ClientError(Kind::badPayload, 0, "Sunucunun yanıtındaki vakitler okunamadı");
}

AladhanClient::AladhanClient(std::string baseURL, std::chrono::milliseconds timeout)
    : baseURL_(std::move(baseURL))
    , timeout_(timeout)
{
}

std::string AladhanClient::requestURL(MonthKey month, const Location &location, CalculationMethod method) const
{
    std::string_view base(baseURL_);
    while (!base.empty() && base.back() == '/')
        base.remove_suffix(1);
    std::string url(base);
    url += "/calendar/" + std::to_string(month.year) + "/" + std::to_string(month.month);
    url += "?latitude=" + DecimalText::fixed(location.latitude, 4);
    url += "&longitude=" + DecimalText::fixed(location.longitude, 4);
    url += "&method=" + std::to_string(method.aladhanID());
    url += "&timezonestring=" + Http::queryValue(location.timeZoneID, "/");
    return url;
}

std::vector<DayTimes> AladhanClient::month(MonthKey month, const Location &location, CalculationMethod method) const
{
    std::string body;
    try {
        body = Http::get(requestURL(month, location, method), timeout_);
    } catch (const Http::StatusError &error) {
        throw ClientError::badStatus(error.status());
    }
    const TimeZone zone = location.timeZone();
    std::vector<DayTimes> days = parse(body, zone);
    // Another month, a day missing or times out of order: not the answer asked for.
    if (!MonthCheck::isWhole(days, month, location, method, zone))
        throw ClientError::badPayload();
    return days;
}

std::vector<DayTimes> AladhanClient::parse(std::string_view body, const TimeZone &zone)
{
    const json document = json::parse(body);
    const int64_t code = JsonValues::integer(document.at("code"));
    const json &data = arrayValue(document.at("data"));
    std::vector<WireEntry> entries;
    entries.reserve(data.size());
    for (const json &entry : data)
        entries.push_back(decodeEntry(entry));

    if (code != 200)
        throw ClientError::badStatus(static_cast<long>(code));

    std::vector<DayTimes> days;
    days.reserve(entries.size());
    for (const WireEntry &entry : entries)
        days.push_back(readDay(entry, zone));
    return days;
}

} // namespace orvel

#include "TimeZone.h"

#include <unicode/unistr.h>

namespace orvel {

namespace {

std::string toUtf8(const icu::UnicodeString &text)
{
    std::string out;
    text.toUTF8String(out);
    return out;
}

std::shared_ptr<const icu::BasicTimeZone> adoptBasic(icu::TimeZone *zone)
{
    // ICU's zones from the tz database (OlsonTimeZone) and its fixed zones are all BasicTimeZones.
    if (auto *basic = dynamic_cast<icu::BasicTimeZone *>(zone))
        return std::shared_ptr<const icu::BasicTimeZone>(basic);
    delete zone;
    return nullptr;
}

} // namespace

TimeZone::TimeZone(std::shared_ptr<const icu::BasicTimeZone> zone, std::string id)
    : zone_(std::move(zone))
    , id_(std::move(id))
{
}

std::optional<TimeZone> TimeZone::known(std::string_view id)
{
    if (id.empty())
        return std::nullopt;
    const auto name = icu::UnicodeString::fromUTF8(icu::StringPiece(id.data(), static_cast<int32_t>(id.size())));
    auto zone = adoptBasic(icu::TimeZone::createTimeZone(name));
    if (!zone)
        return std::nullopt;
    icu::UnicodeString resolved;
    zone->getID(resolved);
    if (resolved == icu::UnicodeString(UCAL_UNKNOWN_ZONE_ID))
        return std::nullopt;
    return TimeZone(std::move(zone), std::string(id));
}

TimeZone TimeZone::named(std::string_view id)
{
    if (auto zone = known(id))
        return *zone;
    return current();
}

TimeZone TimeZone::current()
{
    auto zone = adoptBasic(icu::TimeZone::createDefault());
    if (!zone)
        return utc();
    icu::UnicodeString id;
    zone->getID(id);
    return TimeZone(std::move(zone), toUtf8(id));
}

TimeZone TimeZone::utc()
{
    auto zone = adoptBasic(icu::TimeZone::getGMT()->clone());
    return TimeZone(std::move(zone), "UTC");
}

void TimeZone::redetectCurrent()
{
    icu::TimeZone::adoptDefault(icu::TimeZone::detectHostTimeZone());
}

int TimeZone::offsetSeconds(Instant instant) const
{
    int32_t raw = 0;
    int32_t dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone_->getOffset(instant.udate(), false, raw, dst, status);
    return U_SUCCESS(status) ? (raw + dst) / 1000 : 0;
}

int TimeZone::offsetSecondsAtLocal(double localUnixSeconds) const
{
    int32_t raw = 0;
    int32_t dst = 0;
    UErrorCode status = U_ZERO_ERROR;
    zone_->getOffsetFromLocal(localUnixSeconds * 1000.0, UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_FORMER, raw, dst, status);
    return U_SUCCESS(status) ? (raw + dst) / 1000 : 0;
}

} // namespace orvel

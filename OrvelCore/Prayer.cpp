#include "Prayer.h"

namespace orvel {

namespace {

struct PrayerTexts {
    std::string_view name;
    std::string_view symbol;
    std::string_view detail; // empty: none
    std::string_view countdown;
    std::string_view ramadanName;
    std::string_view ramadanCountdown;
    std::string_view ramadanTag; // empty: none
};

constexpr std::array<PrayerTexts, 6> texts{{
    {"İmsak", "moon.stars", "", "İmsak vaktine", "Sahur", "Sahurun bitmesine", "sahur sonu"},
    {"Güneş", "sunrise", "Güneş doğuşu", "Güneş doğuşuna", "Güneş", "Güneş doğuşuna", ""},
    {"Öğle", "sun.max", "", "Öğle ezanına", "Öğle", "Öğle ezanına", ""},
    {"İkindi", "sun.haze", "", "İkindi ezanına", "İkindi", "İkindi ezanına", ""},
    {"Akşam", "sunset", "Güneş batışı", "Akşam ezanına", "İftar", "İftara", "iftar"},
    {"Yatsı", "moon", "", "Yatsı ezanına", "Yatsı", "Yatsı ezanına", ""},
}};

std::optional<std::string_view> nonEmpty(std::string_view text)
{
    return text.empty() ? std::nullopt : std::optional(text);
}

} // namespace

std::string_view Prayer::name() const { return texts[value_].name; }
std::string_view Prayer::symbol() const { return texts[value_].symbol; }
std::optional<std::string_view> Prayer::detail() const { return nonEmpty(texts[value_].detail); }
std::optional<std::string_view> Prayer::ramadanTag() const { return nonEmpty(texts[value_].ramadanTag); }

std::optional<Prayer> Prayer::nextInDay() const
{
    if (value_ == yatsi)
        return std::nullopt;
    return Prayer(static_cast<Value>(value_ + 1));
}

std::string_view Prayer::displayName(bool ramadan) const
{
    return ramadan ? texts[value_].ramadanName : texts[value_].name;
}

std::string_view Prayer::countdownPhrase(bool ramadan) const
{
    return ramadan ? texts[value_].ramadanCountdown : texts[value_].countdown;
}

} // namespace orvel

#include "CliOptions.h"

#include "AladhanClient.h"
#include "DecimalText.h"
#include "PrayerRepository.h"
#include "TextTable.h"
#include "TimeZone.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <system_error>

namespace orvel::cli {

namespace {

std::string text(std::string_view view) { return std::string(view); }

// Bounds as a reader writes them, with a real minus sign.
std::string bound(double value)
{
    return (value < 0 ? "\u2212" : "") + DecimalText::shortest(std::fabs(value));
}

std::string rangeError(std::string_view what, std::string_view value, double min, double max, std::string_view kind)
{
    return "geçersiz " + text(what) + ": " + text(value) + " (" + bound(min) + " ile " + bound(max) + " arasında "
        + text(kind) + "olmalı)";
}

std::optional<double> parseNumber(std::string_view input)
{
    std::string normalized(input);
    // Turkish writes decimals with a comma; accept both.
    std::replace(normalized.begin(), normalized.end(), ',', '.');
    std::string_view digits = normalized;
    if (!digits.empty() && digits.front() == '+')
        digits.remove_prefix(1);
    if (digits.empty())
        return std::nullopt;
    double value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<int64_t> parseDigits(std::string_view digits)
{
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    int64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (error != std::errc() || end != digits.data() + digits.size())
        return std::nullopt;
    return value;
}

std::string methodList()
{
    std::string list;
    for (std::size_t i = 0; i < CalculationMethod::all.size(); ++i) {
        if (i > 0)
            list += i + 1 == CalculationMethod::all.size() ? " veya " : ", ";
        list += text(CalculationMethod(CalculationMethod::all[i]).id());
    }
    return list;
}

} // namespace

void OptionTable::add(Option option)
{
    options_.push_back(std::move(option));
}

void OptionTable::setOperands(std::function<void(std::string_view operand)> take)
{
    operands_ = std::move(take);
}

const Option *OptionTable::find(std::string_view name) const
{
    const auto found = std::find_if(options_.begin(), options_.end(), [&](const Option &option) { return option.name == name; });
    return found == options_.end() ? nullptr : &*found;
}

void OptionTable::parse(const std::vector<std::string> &args) const
{
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string_view arg = args[i];
        if (!arg.starts_with("--") && operands_) {
            operands_(arg);
            continue;
        }
        if (!arg.starts_with("--"))
            throw UsageError("beklenmeyen bağımsız değişken: " + text(arg));
        const std::size_t equals = arg.find('=');
        const std::string_view name = arg.substr(0, equals);
        // Every command takes --help, which wins before any parsing.
        if (name == "--help")
            continue;
        const Option *option = find(name);
        if (!option)
            throw UsageError("bilinmeyen seçenek: " + text(name));

        if (option->valueName.empty()) {
            if (equals != std::string_view::npos)
                throw UsageError(text(name) + " bir değer almaz: " + text(arg));
            option->apply({});
            continue;
        }
        if (equals != std::string_view::npos) {
            option->apply(arg.substr(equals + 1));
            continue;
        }
        // A following option is not taken for the value; a negative number is.
        if (i + 1 >= args.size() || std::string_view(args[i + 1]).starts_with("--"))
            throw UsageError(text(name) + " için bir değer gerekli (" + text(option->valueName) + ")");
        option->apply(args[++i]);
    }
}

std::string OptionTable::help() const
{
    std::vector<std::string> heads;
    std::size_t width = 0;
    for (const Option &option : options_) {
        heads.push_back(option.valueName.empty() ? text(option.name) : text(option.name) + " " + text(option.valueName));
        width = std::max(width, TextTable::displayWidth(heads.back()));
    }
    std::string out;
    for (std::size_t i = 0; i < options_.size(); ++i)
        out += "  " + TextTable::padded(heads[i], width) + "  " + text(options_[i].help) + "\n";
    return out;
}

bool wantsHelp(const std::vector<std::string> &args)
{
    return std::any_of(args.begin(), args.end(), [](const std::string &arg) { return arg == "--help" || arg == "-h"; });
}

std::string usage(std::string_view synopsis, std::string_view description, const OptionTable &options)
{
    OptionTable listed = options;
    listed.add({"--help", "", "bu yardımı göster", [](std::string_view) {}});
    return "Kullanım: orvel-cli " + text(synopsis) + "\n\n" + text(description) + "\n\nSeçenekler:\n" + listed.help();
}

namespace Values {

double number(std::string_view input, std::string_view what)
{
    const auto value = parseNumber(input);
    if (!value)
        throw UsageError("geçersiz " + text(what) + ": " + text(input) + " (bir sayı olmalı)");
    return *value;
}

double number(std::string_view input, std::string_view what, double min, double max)
{
    const auto value = parseNumber(input);
    if (!value || *value < min || *value > max)
        throw UsageError(rangeError(what, input, min, max, value ? "" : "bir sayı "));
    return *value;
}

int64_t integer(std::string_view input, std::string_view what, int64_t min, int64_t max)
{
    const bool negative = input.starts_with('-');
    const auto digits = parseDigits(negative || input.starts_with('+') ? input.substr(1) : input);
    const auto value = digits && negative ? std::optional<int64_t>(-*digits) : digits;
    if (!value || *value < min || *value > max)
        throw UsageError(rangeError(what, input, static_cast<double>(min), static_cast<double>(max), "bir tam sayı "));
    return *value;
}

DayKey date(std::string_view input)
{
    const auto fail = [&]() -> UsageError {
        return UsageError("geçersiz tarih: " + text(input) + " (YYYY-AA-GG biçiminde, takvimde var olan bir gün olmalı)");
    };
    if (input.size() != 10 || input[4] != '-' || input[7] != '-')
        throw fail();
    const auto year = parseDigits(input.substr(0, 4));
    const auto month = parseDigits(input.substr(5, 2));
    const auto day = parseDigits(input.substr(8, 2));
    if (!year || !month || !day || *year < 1 || *month < 1 || *month > 12 || *day < 1
        || *day > Calendars::daysInMonth(*year, *month))
        throw fail();
    // The sun's formulas and Diyanet's calendar hold for these years; past them a date would show
    // times and a Hijri year that mean nothing.
    if (*year < firstSupportedYear || *year > lastSupportedYear)
        throw UsageError("desteklenmeyen tarih: " + text(input) + " (" + std::to_string(firstSupportedYear) + " ile "
                         + std::to_string(lastSupportedYear) + " yılları arasında olmalı)");
    return {*year, *month, *day};
}

CivilTime minute(std::string_view input)
{
    const auto fail = [&]() -> UsageError {
        return UsageError("geçersiz an: " + text(input) + " (YYYY-AA-GGTSS:dd biçiminde, ör. 2026-03-10T18:47)");
    };
    if (input.size() != 16 || (input[10] != 'T' && input[10] != 't') || input[13] != ':')
        throw fail();
    const auto hour = parseDigits(input.substr(11, 2));
    const auto minute = parseDigits(input.substr(14, 2));
    if (!hour || !minute || *hour > 23 || *minute > 59)
        throw fail();
    DayKey day;
    try {
        day = date(input.substr(0, 10));
    } catch (const UsageError &error) {
        if (std::string_view(error.what()).starts_with("desteklenmeyen"))
            throw;
        throw fail();
    }
    return {day.year, day.month, day.day, *hour, *minute, 0};
}

std::string serviceURL(std::string_view input)
{
    std::string url(input);
    const std::size_t separator = url.find("://");
    std::string scheme = url.substr(0, separator == std::string::npos ? 0 : separator);
    std::transform(scheme.begin(), scheme.end(), scheme.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const std::size_t host = separator + 3;
    const bool printable = std::all_of(url.begin(), url.end(), [](char c) { return static_cast<unsigned char>(c) > 0x20 && c != 0x7f; });
    if ((scheme != "http" && scheme != "https") || !printable || host >= url.size() || url[host] == '/')
        throw UsageError("geçersiz servis adresi: " + url + " (http:// ya da https:// ile başlayan bir adres olmalı)");
    while (url.size() > host + 1 && url.back() == '/')
        url.pop_back();
    return url;
}

std::filesystem::path directory(std::string_view input)
{
    if (input.empty())
        throw UsageError("geçersiz önbellek klasörü: boş olamaz");
    const std::filesystem::path path(input);
    std::error_code error;
    if (std::filesystem::exists(path, error) && !std::filesystem::is_directory(path, error))
        throw UsageError("geçersiz önbellek klasörü: " + text(input) + " (bir dosya değil, klasör olmalı)");
    return path;
}

CalculationMethod method(std::string_view input)
{
    // Typed by hand: "ISNA" and "Diyanet" mean isna and diyanet.
    for (const CalculationMethod::Value value : CalculationMethod::all) {
        const std::string_view raw = CalculationMethod(value).id();
        const auto sameLetter = [](char a, char b) {
            return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
        };
        if (std::ranges::equal(raw, input, sameLetter))
            return CalculationMethod(value);
    }
    throw UsageError("bilinmeyen hesaplama yöntemi: " + text(input) + " (" + methodList() + " olmalı)");
}

} // namespace Values

void PlaceOptions::addTo(OptionTable &table)
{
    table.add({"--lat", "DERECE", "enlem, kuzey artı (−90…90; varsayılan: uygulamada seçili yer)",
               [this](std::string_view value) { latitude = Values::number(value, "enlem", -90, 90); }});
    table.add({"--lon", "DERECE", "boylam, doğu artı (−180…180; --lat ile birlikte)",
               [this](std::string_view value) { longitude = Values::number(value, "boylam", -180, 180); }});
    table.add({"--tz", "BÖLGE", "IANA saat dilimi, ör. Europe/Berlin",
               [this](std::string_view value) {
                   if (!TimeZone::known(value))
                       throw UsageError("bilinmeyen saat dilimi: " + text(value) + " (Europe/Istanbul gibi bir IANA adı olmalı)");
                   timeZoneID = text(value);
               }});
    table.add({"--name", "AD", "yerin gösterilen adı (varsayılan: seçili yerin adı ya da koordinatlar)",
               [this](std::string_view value) {
                   if (value.find_first_not_of(" \t") == std::string_view::npos)
                       throw UsageError("geçersiz yer adı: boş olamaz");
                   if (std::any_of(value.begin(), value.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }))
                       throw UsageError("geçersiz yer adı: " + text(value) + " (tek satır olmalı)");
                   name = text(value);
               }});
    table.add({"--method", "YÖNTEM", "hesaplama yöntemi: " + methodList() + " (varsayılan: uygulamadaki yöntem)",
               [this](std::string_view value) {
                   method = Values::method(value);
                   methodGiven = true;
               }});
}

Location PlaceOptions::location() const
{
    if (latitude.has_value() != longitude.has_value())
        throw UsageError(latitude ? "--lat ile birlikte --lon da gerekli" : "--lon ile birlikte --lat da gerekli");

    Location place = stored;
    if (latitude) {
        place.latitude = *latitude;
        place.longitude = *longitude;
        // A position given by its numbers is computed there, whatever the stored place's point.
        place.diyanetPoint.reset();
        // Nor is it in the stored place's country: its zone tells Türkiye from abroad.
        place.countryCode.clear();
        place.timeZoneID = TimeZone::current().id();
        place.name = DecimalText::fixed(*latitude, 4) + ", " + DecimalText::fixed(*longitude, 4);
    }
    if (timeZoneID)
        place.timeZoneID = *timeZoneID;
    if (name)
        place.name = *name;
    return place;
}

std::vector<DayKey> DayRange::days() const
{
    std::vector<DayKey> keys;
    keys.reserve(static_cast<size_t>(count));
    for (int64_t i = 0; i < count; ++i)
        keys.push_back(first.adding(i));
    return keys;
}

void DayRangeOptions::addTo(OptionTable &table)
{
    table.add({"--date", "YYYY-AA-GG", "ilk gün (varsayılan: yerin saat dilimine göre bugün)",
               [this](std::string_view value) { date = Values::date(value); }});
    table.add({"--days", "N", "kaç gün (1…400, varsayılan " + std::to_string(count) + ")",
               [this](std::string_view value) { count = Values::integer(value, "gün sayısı", 1, maxDays); }});
}

DayRange DayRangeOptions::range(const Location &location, const Clock &clock) const
{
    return {date ? *date : DayKey::from(clock.now(), location.timeZone()), count};
}

SourceOptions::SourceOptions()
    : serviceURL(AladhanClient::defaultBaseURL)
{
}

void SourceOptions::addTo(OptionTable &table)
{
    table.add({"--service", "ADRES", "web servisinin kök adresi (varsayılan " + serviceURL + ")",
               [this](std::string_view value) { serviceURL = Values::serviceURL(value); }});
    table.add({"--cache", "KLASÖR",
               "aylık vakitlerin saklandığı klasör (varsayılan $XDG_DATA_HOME/Orvel/Cache, yoksa "
               "~/.local/share/Orvel/Cache)",
               [this](std::string_view value) { cacheDirectory = Values::directory(value); }});
    table.add({"--offline", "", "vakitleri internete çıkmadan cihazda hesapla",
               [this](std::string_view) { offline = true; }});
}

DaySource SourceOptions::daySource(const Clock &clock) const
{
    if (offline)
        return calculatorSource();
    return repositorySource(cacheDirectory ? *cacheDirectory : PrayerRepository::defaultCacheDirectory(), serviceURL, clock);
}

DaysAnswer SourceOptions::days(const std::vector<DayKey> &keys, const TimesQuery &query, const Clock &clock) const
{
    return daySource(clock)(keys, query.location, query.method, query.times);
}

std::optional<std::string> SourceOptions::fallbackNotice(const DaysAnswer &answer) const
{
    if (offline || answer.source != TimesSource::offline)
        return std::nullopt;
    return "orvel-cli: web servisinden vakit alınamadı; vakitler cihazda hesaplandı";
}

} // namespace orvel::cli

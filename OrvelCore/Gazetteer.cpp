#include "Gazetteer.h"

#include <algorithm>
#include <map>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <mutex>
#include <numbers>
#include <utility>

#include <geonames/geonames.h>
#include <libintl.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace orvel::Gazetteer {

namespace {

// The data file is a few hundred kilobytes; anything far larger is not ours.
constexpr std::uintmax_t maximumFileSize = 8 * 1024 * 1024;
constexpr double diyanetReachKilometres = 15;
constexpr auto turkeyZone = "Europe/Istanbul";
constexpr auto turkeyCountry = "Türkiye";

// Words that mark a region the library left in English ("Mecca Region", "Central Java", "Lima
// region"); folded, as they are compared.
constexpr std::array<std::string_view, 49> englishRegionWords{
    "region", "district", "province", "governorate", "prefecture", "county", "municipality", "oblast", "voivodeship",
    "voivodship", "department", "division", "republic", "autonomous", "state", "territory", "capital", "special",
    "free", "islands", "peninsula", "valley", "country", "city", "saint", "emirate", "central", "north", "south",
    "east", "west", "northern", "southern", "eastern", "western", "northwest", "northeast", "southwest", "southeast",
    "upper", "lower", "greater", "lesser", "kray", "krai", "canton", "of", "and", "the"};

// Regions the library leaves in their English names though Turkish has its own.
constexpr std::array<std::pair<std::string_view, std::string_view>, 18> turkishRegionNames{{
    {"Apulia", "Puglia"}, {"Attica", "Atika"}, {"Azores", "Azorlar"}, {"Catalonia", "Katalonya"},
    {"Corsica", "Korsika"}, {"Crete", "Girit"}, {"Epirus", "Epir"}, {"Hesse", "Hessen"}, {"Lombardy", "Lombardiya"},
    {"Moscow", "Moskova"}, {"Navarre", "Navarra"}, {"Normandy", "Normandiya"}, {"Sardinia", "Sardunya"},
    {"Saxony", "Saksonya"}, {"Scotland", "İskoçya"}, {"Styria", "Steiermark"}, {"Thessaly", "Teselya"},
    {"Tyrol", "Tirol"}}};

struct CityDeleter {
    void operator()(GeonamesCity *city) const { geonames_city_free(city); }
};

std::string copy(const gchar *text)
{
    return text ? std::string(text) : std::string();
}

double radians(double degrees)
{
    return degrees * std::numbers::pi / 180;
}

std::vector<std::string> words(std::string_view text)
{
    std::vector<std::string> result;
    std::string current;
    for (const char c : text) {
        if (c == ' ' || c == ',' || c == '-' || c == '\'' || c == '(' || c == ')' || c == '.') {
            if (!current.empty())
                result.push_back(std::move(current));
            current.clear();
        } else {
            current += c;
        }
    }
    if (!current.empty())
        result.push_back(std::move(current));
    return result;
}

struct Names {
    std::string name;
    std::string state;
};

// A region the library translated is Turkish; one it left as it was keeps its name unless that is
// English or only repeats its city's ("Moscow, Moskova").
std::string withoutEnglishRegion(const std::string &state, const Names &untranslated)
{
    if (state != untranslated.state)
        return state;
    if (fold(state) == fold(untranslated.name))
        return {};
    const auto turkish = std::ranges::find(turkishRegionNames, state, &std::pair<std::string_view, std::string_view>::first);
    if (turkish != turkishRegionNames.end())
        return std::string(turkish->second);
    const std::vector<std::string> parts = words(fold(state));
    const bool english = std::ranges::any_of(parts, [](const std::string &word) {
        return std::ranges::find(englishRegionWords, word) != englishRegionWords.end();
    });
    return english ? std::string() : state;
}

// The library translates its names as they are asked for. With its catalogs out of reach it gives
// its own, English ones; the catalogs come back when this goes.
class UntranslatedNames {
public:
    UntranslatedNames()
        : folder_(copy(bindtextdomain("geonames", nullptr)))
    {
        bindtextdomain("geonames", "/dev/null");
    }
    ~UntranslatedNames() { bindtextdomain("geonames", folder_.empty() ? nullptr : folder_.c_str()); }
    UntranslatedNames(const UntranslatedNames &) = delete;
    UntranslatedNames &operator=(const UntranslatedNames &) = delete;

private:
    std::string folder_;
};

size_t accentedLetters(std::string_view text)
{
    // Bytes that begin a multi-byte UTF-8 sequence.
    return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) == 0xC0;
    }));
}

std::optional<double> number(const std::string &text)
{
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::vector<std::string> fields(const std::string &line)
{
    std::vector<std::string> result;
    std::string::size_type start = 0;
    while (true) {
        const auto tab = line.find('\t', start);
        result.push_back(line.substr(start, tab == std::string::npos ? std::string::npos : tab - start));
        if (tab == std::string::npos)
            return result;
        start = tab + 1;
    }
}

} // namespace

struct Index::Data {
    struct Entry {
        Place place;
        std::string key;                // the folded name
        // The folded words of name, state, country and aliases, each after a space (" kadikoy
        // istanbul …"): one string per place keeps the world's index small.
        std::string words;
        std::vector<std::string> aliases; // other exact names ("amasya merkez")
        // How well known the place is, for the order of results: its population, or for a
        // district whose town GeoNames counts within its city's, a share of the city's.
        int64_t weight = 0;
    };
    std::vector<Entry> entries;
    std::string problem;

    void weighCoreDistricts();
    void add(Place place, const std::vector<std::string> &aliases = {})
    {
        Entry entry;
        entry.key = fold(place.name);
        entry.place = std::move(place);
        for (const std::string &alias : aliases)
            entry.aliases.push_back(fold(alias));
        indexWords(entry);
        entries.push_back(std::move(entry));
    }

    static void indexWords(Entry &entry)
    {
        entry.words.clear();
        for (const std::string *part : {&entry.place.name, &entry.place.state, &entry.place.country}) {
            for (const std::string &word : words(fold(*part)))
                entry.words += ' ' + word;
        }
        for (const std::string &alias : entry.aliases) {
            for (const std::string &word : words(alias))
                entry.words += ' ' + word;
        }
        entry.words.shrink_to_fit();
    }

    void readTurkey(const std::filesystem::path &file);
    void readWorld();
};

void Index::Data::readTurkey(const std::filesystem::path &file)
{
    std::error_code error;
    const auto size = std::filesystem::file_size(file, error);
    std::ifstream stream(file, std::ios::binary);
    if (error || !stream) {
        problem = "Türkiye'nin il ve ilçe listesi bulunamadı (" + file.string() + ")";
        return;
    }
    if (size > maximumFileSize) {
        problem = "Türkiye'nin il ve ilçe listesi bozuk (" + file.string() + ")";
        return;
    }
    std::string line;
    bool header = true;
    size_t lineNumber = 0;
    size_t bad = 0;
    while (std::getline(stream, line)) {
        ++lineNumber;
        if (line.empty() || line.front() == '#')
            continue;
        if (header) {
            header = false;
            continue;
        }
        const std::vector<std::string> f = fields(line);
        const auto latitude = f.size() == 8 ? number(f[3]) : std::nullopt;
        const auto longitude = f.size() == 8 ? number(f[4]) : std::nullopt;
        const auto population = f.size() == 8 ? number(f[5]) : std::nullopt;
        if (!latitude || !longitude || !population || std::fabs(*latitude) > 90 || std::fabs(*longitude) > 180
            || f[1].empty() || f[1].size() > 100 || f[2].size() > 100) {
            ++bad;
            continue;
        }
        Place place{f[2].empty() ? f[1] : f[2], f[1], turkeyCountry, turkeyZone, *latitude, *longitude,
                    static_cast<int64_t>(std::clamp(*population, 0.0, 1e10)), std::nullopt, "TR"};
        const auto diyanetLatitude = number(f[6]);
        const auto diyanetLongitude = number(f[7]);
        if (diyanetLatitude && diyanetLongitude && std::fabs(*diyanetLatitude) <= 90 && std::fabs(*diyanetLongitude) <= 180)
            place.diyanetPoint = GeoPoint{*diyanetLatitude, *diyanetLongitude};
        // A "Merkez" district is its province's centre, which answers to the province's name.
        if (f[2] == "Merkez")
            continue;
        std::vector<std::string> aliases;
        if (f[2].empty())
            aliases.push_back(f[1] + " Merkez");
        add(std::move(place), std::move(aliases));
    }
    if (header || bad > 0)
        problem = "Türkiye'nin il ve ilçe listesi bozuk (" + file.string() + (header ? "" : ", " + std::to_string(bad) + " satır okunamadı") + ")";
    weighCoreDistricts();
}

void Index::Data::weighCoreDistricts()
{
    // A city's central districts (Kadıköy, Fatih) have no population of their own in GeoNames,
    // which counts them in the city's. Each gets an equal share of the city among its districts,
    // less a little for its distance from the centre, so that the city's heart comes first.
    std::map<std::string, const Entry *> centres;
    std::map<std::string, int64_t> districts;
    for (Entry &entry : entries) {
        entry.weight = entry.place.population;
        if (entry.place.name == entry.place.state)
            centres[entry.place.state] = &entry;
        else
            ++districts[entry.place.state];
    }
    for (Entry &entry : entries) {
        const auto centre = centres.find(entry.place.state);
        if (entry.place.population > 0 || centre == centres.end() || centre->second == &entry)
            continue;
        const Place &city = centre->second->place;
        const double kilometres = kilometresBetween(city.latitude, city.longitude, entry.place.latitude, entry.place.longitude);
        entry.weight = city.population / (districts[entry.place.state] + 1) - static_cast<int64_t>(kilometres * 1000);
    }
}

void Index::Data::readWorld()
{
    const gint count = geonames_get_n_cities();
    constexpr size_t none = SIZE_MAX;
    std::vector<size_t> entryOfCity(static_cast<size_t>(std::max(count, 0)), none);
    for (gint i = 0; i < count; ++i) {
        const std::unique_ptr<GeonamesCity, CityDeleter> city(geonames_get_city(i));
        if (!city || copy(geonames_city_get_country_code(city.get())) == "TR")
            continue;
        add({copy(geonames_city_get_name(city.get())), copy(geonames_city_get_state(city.get())),
             copy(geonames_city_get_country(city.get())), copy(geonames_city_get_timezone(city.get())),
             geonames_city_get_latitude(city.get()), geonames_city_get_longitude(city.get()), 0, std::nullopt,
             copy(geonames_city_get_country_code(city.get()))});
        entries.back().place.population = geonames_city_get_population(city.get());
        entries.back().weight = entries.back().place.population;
        entryOfCity[static_cast<size_t>(i)] = entries.size() - 1;
    }

    // The library's own names answer a search typed the international way ("Barcelona",
    // "Munich"), and tell which regions it left untranslated.
    const UntranslatedNames untranslated;
    for (gint i = 0; i < count; ++i) {
        const std::unique_ptr<GeonamesCity, CityDeleter> city(geonames_get_city(i));
        if (entryOfCity[static_cast<size_t>(i)] == none || !city)
            continue;
        Entry &entry = entries[entryOfCity[static_cast<size_t>(i)]];
        const Names own{copy(geonames_city_get_name(city.get())), copy(geonames_city_get_state(city.get()))};
        std::string state = withoutEnglishRegion(entry.place.state, own);
        const bool alias = fold(own.name) != entry.key;
        // The same name with its letters stripped ("Tromso" for "Tromsø") gives way to the
        // place's own spelling; a Turkish one ("Münih", "İzmir") stays.
        if (!alias && accentedLetters(own.name) > accentedLetters(entry.place.name))
            entry.place.name = own.name;
        if (!alias && state == entry.place.state)
            continue;
        if (alias)
            entry.aliases.push_back(fold(own.name));
        entry.place.state = std::move(state);
        indexWords(entry);
    }
}

Index::Index(const std::filesystem::path &turkeyFile, bool withWorld)
    : data_(std::make_unique<Data>())
{
    data_->readTurkey(turkeyFile);
    if (withWorld) {
        // The library keeps its tables in globals.
        static std::mutex libraryMutex;
        const std::lock_guard lock(libraryMutex);
        data_->readWorld();
    }
}

Index::~Index() = default;

const std::string &Index::problem() const
{
    return data_->problem;
}

size_t Index::size() const
{
    return data_->entries.size();
}

std::vector<Place> Index::search(std::string_view query, size_t limit) const
{
    const std::string folded = fold(query);
    const std::vector<std::string> queryWords = words(folded);
    if (queryWords.empty())
        return {};
    const std::string joined = [&] {
        std::string text;
        for (const std::string &word : queryWords)
            text += (text.empty() ? "" : " ") + word;
        return text;
    }();

    struct Hit {
        int rank;
        int64_t population;
        const Place *place;
    };
    // Each word of the query begins a word of the place.
    std::vector<std::string> starts;
    for (const std::string &word : queryWords)
        starts.push_back(' ' + word);
    std::vector<Hit> hits;
    for (const Data::Entry &entry : data_->entries) {
        const bool all = std::ranges::all_of(starts, [&](const std::string &start) {
            return entry.words.find(start) != std::string::npos;
        });
        if (!all)
            continue;
        int rank = 2;
        if (entry.key == joined || std::ranges::find(entry.aliases, joined) != entry.aliases.end())
            rank = 0;
        else if (entry.key.starts_with(joined))
            rank = 1;
        hits.push_back({rank, entry.weight, &entry.place});
    }
    std::ranges::stable_sort(hits, [](const Hit &a, const Hit &b) {
        return a.rank != b.rank ? a.rank < b.rank : a.population > b.population;
    });
    std::vector<Place> places;
    for (size_t i = 0; i < hits.size() && i < limit; ++i)
        places.push_back(*hits[i].place);
    return places;
}

std::optional<std::pair<Place, double>> Index::nearest(double latitude, double longitude, double withinKilometres) const
{
    const Place *best = nullptr;
    double bestDistance = withinKilometres;
    for (const Data::Entry &entry : data_->entries) {
        const double distance = kilometresBetween(latitude, longitude, entry.place.latitude, entry.place.longitude);
        if (distance <= bestDistance) {
            best = &entry.place;
            bestDistance = distance;
        }
    }
    if (!best)
        return std::nullopt;
    return std::pair{*best, bestDistance};
}

std::string fold(std::string_view text)
{
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    unicode.toLower(icu::Locale("tr"));
    unicode.findAndReplace(icu::UnicodeString(static_cast<UChar32>(0x0131)), icu::UnicodeString(u'i'));
    const icu::Normalizer2 *nfd = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeString decomposed = U_SUCCESS(status) ? nfd->normalize(unicode, status) : unicode;
    if (U_FAILURE(status))
        decomposed = unicode;
    icu::UnicodeString plain;
    for (int32_t i = 0; i < decomposed.length();) {
        const UChar32 c = decomposed.char32At(i);
        i += U16_LENGTH(c);
        // Letters that carry no separable accent: the way people type them without one.
        switch (c) {
        case 0x00F8: plain.append(u'o'); break;           // ø
        case 0x00E6: plain.append(u"ae"); break;          // æ
        case 0x00DF: plain.append(u"ss"); break;          // ß
        case 0x0142: plain.append(u'l'); break;           // ł
        case 0x0111: plain.append(u'd'); break;           // đ
        default:
            if (u_charType(c) != U_NON_SPACING_MARK)
                plain.append(c);
        }
    }
    std::string result;
    plain.toUTF8String(result);
    return result;
}

Placemark Place::placemark() const
{
    Placemark mark;
    if (!state.empty())
        mark.administrativeArea = state;
    mark.locality = name;
    mark.name = name;
    mark.latitude = latitude;
    mark.longitude = longitude;
    if (!timeZoneID.empty())
        mark.timeZoneID = timeZoneID;
    if (!countryCode.empty())
        mark.isoCountryCode = countryCode;
    return mark;
}

std::filesystem::path defaultTurkeyFile()
{
    constexpr auto name = "places-tr.tsv";
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    // bin/../share/orvel when installed; the build tree keeps a copy above its programs too.
    for (auto folder = program.parent_path(); !error && folder.has_relative_path(); folder = folder.parent_path()) {
        const auto beside = folder.parent_path() / "share" / "orvel" / name;
        if (std::filesystem::exists(beside, error))
            return beside;
        if (std::filesystem::exists(folder / "CMakeCache.txt", error))
            break; // the top of the build tree
    }
    return std::filesystem::path(ORVEL_DATA_DIR) / name;
}

const Index &defaultIndex()
{
    static const Index index(defaultTurkeyFile());
    return index;
}

void speakTurkish()
{
    setenv("LANGUAGE", "tr", 1);
    // gettext ignores LANGUAGE in the C locale, and would squeeze the names into its ASCII.
    const char *messages = std::setlocale(LC_MESSAGES, nullptr);
    if (!messages || std::strcmp(messages, "C") == 0 || std::strcmp(messages, "POSIX") == 0)
        std::setlocale(LC_MESSAGES, "C.UTF-8");
    bind_textdomain_codeset("geonames", "UTF-8");
}

std::vector<Place> search(std::string_view query)
{
    return defaultIndex().search(query);
}

std::optional<Nearby> nearest(double latitude, double longitude, double withinKilometres)
{
    const auto found = defaultIndex().nearest(latitude, longitude, withinKilometres);
    if (!found)
        return std::nullopt;
    return Nearby{found->first, found->second};
}

std::optional<GeoPoint> diyanetPointNear(double latitude, double longitude)
{
    const auto found = defaultIndex().nearest(latitude, longitude, diyanetReachKilometres);
    if (!found || found->first.country != turkeyCountry)
        return std::nullopt;
    return found->first.diyanetPoint;
}

double kilometresBetween(double latitude1, double longitude1, double latitude2, double longitude2)
{
    constexpr double earthRadius = 6371.0088;
    const double dLatitude = radians(latitude2 - latitude1);
    const double dLongitude = radians(longitude2 - longitude1);
    const double a = std::pow(std::sin(dLatitude / 2), 2)
        + std::cos(radians(latitude1)) * std::cos(radians(latitude2)) * std::pow(std::sin(dLongitude / 2), 2);
    return 2 * earthRadius * std::asin(std::min(1.0, std::sqrt(a)));
}

} // namespace orvel::Gazetteer

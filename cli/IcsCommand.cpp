#include "IcsCommand.h"

#include "AppSettings.h"
#include "CalendarFile.h"
#include "Clock.h"
#include "ReligiousDays.h"
#include "SafeFile.h"

#include <ostream>

namespace orvel::cli::IcsCommand {

namespace {

struct Choices {
    PlaceOptions place = AppSettings::placeOptions();
    DayRangeOptions range{30};
    std::set<Prayer::Value> prayers{Prayer::all.begin(), Prayer::all.end()};
    std::optional<std::filesystem::path> output;
    SourceOptions sources;
};

// "imsak,ogle,aksam": ids as times --json writes them.
std::set<Prayer::Value> prayerList(std::string_view text)
{
    std::set<Prayer::Value> prayers;
    while (!text.empty()) {
        const size_t comma = text.find(',');
        const std::string_view id = text.substr(0, comma);
        const std::optional<Prayer> prayer = Prayer::fromId(id);
        if (!prayer)
            throw UsageError("geçersiz vakit: " + std::string(id) + " (imsak, gunes, ogle, ikindi, aksam ya da yatsi)");
        prayers.insert(*prayer);
        text = comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1);
    }
    if (prayers.empty())
        throw UsageError("en az bir vakit verilmeli");
    return prayers;
}

OptionTable optionTable(Choices &choices)
{
    OptionTable table;
    choices.range.addTo(table);
    table.add({"--prayers", "LİSTE", "etkinlik olacak vakitler, virgülle: imsak,gunes,ogle,ikindi,aksam,yatsi (varsayılan hepsi)",
               [&choices](std::string_view value) { choices.prayers = prayerList(value); }});
    table.add({"--output", "DOSYA", "takvimi bu dosyaya yaz (varsayılan: standart çıktı)",
               [&choices](std::string_view value) { choices.output = std::filesystem::path(std::string(value)); }});
    choices.place.addTo(table);
    choices.sources.addTo(table);
    return table;
}

} // namespace

Request parse(const std::vector<std::string> &args, const Clock &clock)
{
    const Choices choices = parsed(args, optionTable);
    const TimesQuery query = choices.place.query();
    return {query, choices.range.range(query.location, clock), choices.prayers, choices.output, choices.sources};
}

std::string help()
{
    return usage("ics [seçenekler]",
                 "Vakitleri takvim uygulamaları için bir iCalendar dosyası (RFC 5545) olarak yazar: seçilen her\n"
                 "vakit anında bir etkinlik (yer adıyla), aralıktaki her dini gün bir tüm gün etkinliği. GNOME\n"
                 "Takvim, Thunderbird ya da aynı dosyaya abone bir telefon okur; yeniden aktarmak etkinlikleri\n"
                 "günceller. Yer, yöntem ve kaynak seçenekleri times komutundakilerle aynıdır.",
                 optionTable);
}

int run(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err)
{
    const Request request = parse(args, clock);
    const std::vector<DayKey> keys = request.range.days();
    const DaysAnswer answer = request.sources.days(keys, request, clock);
    if (const auto notice = request.sources.fallbackNotice(answer))
        err << *notice << '\n';
    const CalendarFile::Contents contents{
        request.location, request.method, answer.days, request.prayers,
        ReligiousDays::between(keys.front(), keys.back(), request.method, request.times.hijriCorrection), clock.now()};
    const std::string text = CalendarFile::ics(contents);
    if (!request.output) {
        out << text;
        return 0;
    }
    if (!SafeFile::write(*request.output, text)) {
        err << "orvel-cli: dosya yazılamadı: " << request.output->string() << '\n';
        return 1;
    }
    return 0;
}

} // namespace orvel::cli::IcsCommand

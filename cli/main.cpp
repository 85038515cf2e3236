#include "CliOptions.h"
#include "Clock.h"
#include "Settings.h"
#include "DiyanetCalendar.h"
#include "Gazetteer.h"
#include "DaysCommand.h"
#include "IcsCommand.h"
#include "ImsakiyeCommand.h"
#include "PlacesCommand.h"
#include "QiblaCommand.h"
#include "PrayerRepository.h"
#include "StatusCommand.h"
#include "StopCommand.h"
#include "TextTable.h"
#include "TimesCommand.h"

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace orvel;

struct Command {
    std::string_view name;
    std::string_view summary;
    int (*run)(const std::vector<std::string> &args, const Clock &clock, std::ostream &out, std::ostream &err);
    // Help wins over every other option, so a command never runs with --help.
    std::string (*help)();
};

constexpr std::array<Command, 8> commands{{
    {"times", "bir yerin namaz vakitleri, gün gün (tablo ya da --json)", cli::TimesCommand::run, cli::TimesCommand::help},
    {"status", "sıradaki vakit ve kalan süre (--format text, json, waybar, line ya da genmon)", cli::StatusCommand::run,
     cli::StatusCommand::help},
    {"places", "yer ara; --choose N ile uygulamanın yerini seç", cli::PlacesCommand::run, cli::PlacesCommand::help},
    {"imsakiye", "haftalık, aylık ya da Ramazan imsakiyesi (tablo ya da --json)", cli::ImsakiyeCommand::run,
     cli::ImsakiyeCommand::help},
    {"days", "bir yılın dini günleri ve geceleri (tablo ya da --json)", cli::DaysCommand::run, cli::DaysCommand::help},
    {"qibla", "kıble yönü, Kâbe'ye uzaklık ve günün kıble saati", cli::QiblaCommand::run, cli::QiblaCommand::help},
    {"ics", "vakitler ve dini günler takvim dosyası olarak (iCalendar)", cli::IcsCommand::run, cli::IcsCommand::help},
    {"stop", "açık olan Orvel'in çaldığı sesi sustur", cli::StopCommand::run, cli::StopCommand::help},
}};

std::string usage()
{
    std::string text = "Kullanım: orvel-cli KOMUT [seçenekler]\n\nKomutlar:\n";
    for (const Command &command : commands)
        text += "  " + cli::TextTable::padded(command.name, 8) + "  " + std::string(command.summary) + "\n";
    text += "\nSeçenekler:\n  --help    bu yardımı gösterir\n  --version sürümü gösterir\n";
    text += "\nBir komutun seçenekleri için: orvel-cli KOMUT --help\n";
    return text;
}

// Error messages stay on one line whatever the user typed.
std::string oneLine(std::string text)
{
    std::replace_if(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
    return text;
}

int dispatch(const std::vector<std::string> &args, const Clock &clock)
{
    if (args.empty())
        throw cli::UsageError("bir komut gerekli (komutlar için: orvel-cli --help)");
    const std::string &name = args.front();
    if (name == "--help" || name == "-h" || name == "help") {
        std::cout << usage();
        return 0;
    }
    if (name == "--version") {
        std::cout << "orvel-cli " ORVEL_VERSION "\n";
        return 0;
    }
    const auto command = std::find_if(commands.begin(), commands.end(), [&](const Command &c) { return c.name == name; });
    if (command == commands.end())
        throw cli::UsageError("bilinmeyen komut: " + name + " (komutlar için: orvel-cli --help)");
    const std::vector<std::string> options(args.begin() + 1, args.end());
    if (cli::wantsHelp(options)) {
        std::cout << command->help();
        return 0;
    }
    return command->run(options, clock, std::cout, std::cerr);
}

} // namespace

int main(int argc, char **argv)
{
    const std::vector<std::string> args(argv + 1, argv + argc);
    const SystemClock clock;
    Gazetteer::speakTurkish();
    DiyanetCalendar::keepMonthStartsIn(PrayerRepository::defaultCacheDirectory() / DiyanetCalendar::storeFileName);
    try {
        // A broken settings file is kept as it is; each run says why the defaults are shown.
        if (const auto problem = Settings::problem(); problem && !args.empty() && args.front() != "--help"
            && args.front() != "--version")
            std::cerr << "orvel-cli: uyarı: " << problem->toStdString() << '\n';
        return dispatch(args, clock);
    } catch (const cli::UsageError &error) {
        std::cerr << "orvel-cli: " << oneLine(error.what()) << '\n';
        return 2;
    } catch (const std::exception &error) {
        std::cerr << "orvel-cli: beklenmeyen hata: " << oneLine(error.what()) << '\n';
        return 1;
    }
}

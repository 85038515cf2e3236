#include "CliRun.h"
#include "Calendars.h"
#include "Clock.h"
#include "StatusCommand.h"
#include "StatusFollower.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <glib.h>

#include <csignal>
#include <cstdio>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

using namespace orvel;
using namespace orvel::cli;
using nlohmann::json;

namespace {

const TimeZone istanbul = TimeZone::named("Europe/Istanbul");

Instant at(int64_t hour, int64_t minute, int64_t second = 0)
{
    return Calendars::wallClock({2025, 6, 21, hour, minute, second}, istanbul);
}

StatusCommand::Request request(StatusCommand::Format format)
{
    StatusCommand::Request request;
    request.location = Location::istanbul();
    request.format = format;
    request.follow = true;
    return request;
}

std::vector<std::string> lines(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

// The text of a piece of Pango markup, read as Pango reads it: with GLib's markup parser.
std::string markupText(const std::string &markup)
{
    std::string text;
    GMarkupParser parser{};
    parser.text = [](GMarkupParseContext *, const gchar *chunk, gsize length, gpointer out, GError **) {
        static_cast<std::string *>(out)->append(chunk, length);
    };
    GMarkupParseContext *context = g_markup_parse_context_new(&parser, GMarkupParseFlags(0), &text, nullptr);
    const std::string document = "<markup>" + markup + "</markup>";
    GError *error = nullptr;
    const bool parsed = g_markup_parse_context_parse(context, document.data(), static_cast<gssize>(document.size()), &error)
        && g_markup_parse_context_end_parse(context, &error);
    g_markup_parse_context_free(context);
    EXPECT_TRUE(parsed) << (error ? error->message : "") << " in " << markup;
    g_clear_error(&error);
    return text;
}

// What XFCE's Generic Monitor takes from the output: the text between each tag and its end.
std::string between(const std::string &output, const std::string &tag)
{
    const std::size_t start = output.find("<" + tag + ">");
    const std::size_t end = output.find("</" + tag + ">");
    if (start == std::string::npos || end == std::string::npos || end < start)
        return {};
    return output.substr(start + tag.size() + 2, end - start - tag.size() - 2);
}

} // namespace

// Istanbul, 21 June 2025: the kerahat before Öğle runs from 13:01, Öğle enters at 13:11. A clock
// ticking every second writes one line a minute, and the kerahat and the entry in theirs.
TEST(StatusFollow, OneLinePerChangeAcrossAKerahatStartAndAnEntry)
{
    std::ostringstream out;
    StatusFollower follower(request(StatusCommand::Format::waybar), calculatorSource(), out);
    ManualClock clock(at(12, 58, 30));
    while (clock.now() < at(13, 13, 30)) {
        follower.show(clock.now());
        clock.advance(1);
    }
    const std::vector<std::string> written = lines(out.str());
    ASSERT_EQ(written.size(), 16u) << out.str(); // 12:58 … 13:13
    std::vector<std::pair<std::string, std::string>> shown;
    for (const std::string &line : written) {
        const json document = json::parse(line);
        shown.emplace_back(document.at("text"), document.at("class"));
    }
    EXPECT_EQ(shown[0], (std::pair<std::string, std::string>{"Öğle 0:13", "normal"}));
    EXPECT_EQ(shown[2], (std::pair<std::string, std::string>{"Öğle 0:11", "normal"}));
    EXPECT_EQ(shown[3], (std::pair<std::string, std::string>{"Öğle 0:10", "kerahat"}));
    EXPECT_EQ(shown[12], (std::pair<std::string, std::string>{"Öğle 0:01", "kerahat"}));
    EXPECT_EQ(shown[13], (std::pair<std::string, std::string>{"Öğle vakti", "adhan"}));
    EXPECT_EQ(shown[14], (std::pair<std::string, std::string>{"İkindi 3:59", "normal"}));

    // Across the night the days are asked for again, and the count runs to tomorrow's İmsak.
    std::ostringstream night;
    StatusFollower late(request(StatusCommand::Format::line), calculatorSource(), night);
    late.show(at(23, 59, 59));
    late.show(at(24, 0, 1));
    EXPECT_EQ(lines(night.str()), (std::vector<std::string>{"İmsak 3:25", "İmsak 3:24"}));
}

// A running Orvel's words stand in for the command's own, and only a change of them is written.
TEST(StatusFollow, OrvelsWordsWhileOneRuns)
{
    std::ostringstream out;
    StatusFollower follower(request(StatusCommand::Format::json), calculatorSource(), out);
    follower.show(at(19, 32));
    follower.setOrvelWords(StatusLine{"1:15", "Akşam ezanına 1 saat 15 dakika kaldı", StatusLine::State::normal});
    EXPECT_TRUE(follower.followsOrvel());
    follower.show(at(19, 32, 20));
    follower.show(at(19, 32, 40));
    // Orvel with nothing loaded yet says nothing worth showing: the command's words stay.
    follower.setOrvelWords(StatusLine{"", "Orvel", StatusLine::State::normal});
    follower.show(at(19, 32, 50));
    follower.setOrvelWords(std::nullopt);
    follower.show(at(19, 33));
    const std::vector<std::string> written = lines(out.str());
    ASSERT_EQ(written.size(), 4u) << out.str();
    EXPECT_EQ(json::parse(written[0]).at("title"), "Akşam 1:15");
    EXPECT_EQ(json::parse(written[1]).at("title"), "1:15");
    EXPECT_EQ(json::parse(written[2]).at("title"), "Akşam 1:15");
    EXPECT_EQ(json::parse(written[3]).at("title"), "Akşam 1:14");
}

TEST(StatusFollow, GenmonAsTheGenericMonitorReadsIt)
{
    const CliRun run = runCli({"status", "--offline", "--now", "2025-06-21T13:11", "--format", "genmon"});
    ASSERT_EQ(run.status, 0) << run.err;
    ASSERT_EQ(run.out.find('\n'), run.out.size() - 1) << run.out;
    EXPECT_EQ(markupText(between(run.out, "txt")), "Öğle vakti");
    EXPECT_EQ(markupText(between(run.out, "tool")),
              "İmsak 03:24\nGüneş 05:25\nÖğle 13:11\nİkindi 17:11\nAkşam 20:47\nYatsı 22:38\nİkindi ezanına 4 saat kaldı");
    // The click starts Orvel, whose second start brings the running one's panel forward.
    gchar **argv = nullptr;
    ASSERT_TRUE(g_shell_parse_argv(between(run.out, "txtclick").c_str(), nullptr, &argv, nullptr)) << run.out;
    const std::string program = argv[0];
    g_strfreev(argv);
    EXPECT_TRUE(program == "orvel" || program.ends_with("/orvel")) << program;
    EXPECT_TRUE(program == "orvel" || std::filesystem::is_regular_file(program)) << program;

    // Whatever Orvel says goes through markup intact.
    StatusCommand::Request genmon = request(StatusCommand::Format::genmon);
    genmon.now = at(13, 11);
    const StatusCommand::Moment moment = StatusCommand::withWords(
        StatusCommand::moment(genmon, calculatorSource()(StatusCommand::days(genmon), genmon.location, genmon.method, {})),
        StatusLine{"<Öğle> & İkindi", "a < b", StatusLine::State::normal});
    const std::string output = StatusCommand::genmon(genmon, moment, "orvel");
    EXPECT_EQ(markupText(between(output, "txt")), "<Öğle> & İkindi");
    EXPECT_TRUE(markupText(between(output, "tool")).ends_with("\na < b"));

    EXPECT_EQ(runCli({"status", "--offline", "--now", "2025-06-21T13:11", "--format", "line"}).out, "Öğle vakti\n");
}

// With no Orvel on the bus, the command writes its own status at once and keeps running.
TEST(StatusFollow, ItsOwnClockWhenNoOrvelRuns)
{
    const std::string command = "exec env TZ=Europe/Istanbul LC_ALL=C.UTF-8 DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent "
                                "XDG_CONFIG_HOME=" + quoted(configHome().string()) + " " + quoted(ORVEL_CLI_PATH)
        + " status --follow --offline --format line";
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        dup2(fds[1], STDOUT_FILENO);
        close(fds[0]);
        close(fds[1]);
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    close(fds[1]);
    FILE *out = fdopen(fds[0], "r");
    char buffer[256] = {};
    const bool read = std::fgets(buffer, sizeof buffer, out) != nullptr;
    // Still running: a status bar ends it from outside.
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, WNOHANG), 0);
    kill(child, SIGTERM);
    waitpid(child, &status, 0);
    std::fclose(out);
    ASSERT_TRUE(read);
    const std::string first = buffer;
    EXPECT_TRUE(first.ends_with("\n") && first.find(':') != std::string::npos) << first;
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
}

#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

struct CliRun {
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string readFile(const std::filesystem::path &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Reads the file and removes it.
inline std::string takeFile(const std::filesystem::path &path)
{
    std::string text = readFile(path);
    std::filesystem::remove(path);
    return text;
}

inline CliRun runShell(const std::string &command)
{
    const auto base = std::filesystem::temp_directory_path() / ("orvel-cli-test-" + std::to_string(getpid()));
    const int status = std::system((command + " >'" + base.string() + ".out' 2>'" + base.string() + ".err'").c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, takeFile(base.string() + ".out"), takeFile(base.string() + ".err")};
}

inline std::string quoted(const std::string &arg)
{
    std::string text = "'";
    for (const char c : arg)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

// The settings folder every run of this test program shares, away from the user's own.
inline std::filesystem::path configHome()
{
    return std::filesystem::temp_directory_path() / ("orvel-cli-test-config-" + std::to_string(getpid()));
}

// The application's settings file inside configHome().
inline std::filesystem::path settingsFile()
{
    return configHome() / "Orvel" / "Orvel.conf";
}

// Runs the built orvel-cli as a user would, in a pinned zone and locale.
inline CliRun runCli(const std::vector<std::string> &args, const std::string &zone = "Europe/Istanbul")
{
    std::string command = "env TZ=" + zone + " LC_ALL=C.UTF-8 XDG_CONFIG_HOME=" + quoted(configHome().string()) + " "
        + quoted(ORVEL_CLI_PATH);
    for (const std::string &arg : args)
        command += " " + quoted(arg);
    return runShell(command);
}

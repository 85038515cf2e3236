#pragma once

#include <string>
#include <vector>

// Runs the built orvel-cli as a user would, in a pinned zone and locale.
struct CliRun {
    int status = -1;
    std::string out;
    std::string err;
};

CliRun runCli(const std::vector<std::string> &args, const std::string &zone = "Europe/Istanbul");

std::vector<std::string> lines(const std::string &text);

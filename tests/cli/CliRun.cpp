#include "CliRun.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string quoted(const std::string &arg)
{
    std::string text = "'";
    for (const char c : arg)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

} // namespace

CliRun runCli(const std::vector<std::string> &args, const std::string &zone)
{
    const auto errPath = std::filesystem::temp_directory_path() / ("orvel-cli-test-" + std::to_string(getpid()) + ".err");
    std::string command = "env TZ=" + zone + " LC_ALL=C.UTF-8 " + quoted(ORVEL_CLI_PATH);
    for (const std::string &arg : args)
        command += " " + quoted(arg);
    command += " 2>" + quoted(errPath.string());

    CliRun run;
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe)
        return run;
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        run.out.append(buffer, n);
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    std::ifstream errFile(errPath);
    run.err.assign(std::istreambuf_iterator<char>(errFile), {});
    std::filesystem::remove(errPath);
    return run;
}

std::vector<std::string> lines(const std::string &text)
{
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        result.push_back(line);
    return result;
}

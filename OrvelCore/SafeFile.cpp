#include "SafeFile.h"

#include <system_error>

#if defined(_WIN32)
#include <fstream>
#include <iterator>
#else
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace orvel::SafeFile {

namespace fs = std::filesystem;

#if defined(_WIN32)

bool write(const fs::path &path, std::string_view text, bool)
{
    fs::path temporary = path;
    temporary += ".tmp";
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        file.write(text.data(), static_cast<std::streamsize>(text.size()));
        if (!file)
            return false;
    }
    std::error_code error;
    fs::rename(temporary, path, error);
    if (error)
        fs::remove(temporary, error);
    return !error;
}

std::optional<std::string> read(const fs::path &path, std::uintmax_t maxBytes)
{
    std::error_code error;
    if (!fs::is_regular_file(fs::symlink_status(path, error)) || fs::file_size(path, error) > maxBytes || error)
        return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return file.bad() ? std::nullopt : std::optional(text);
}

#else

namespace {

// Closes the descriptor when the scope ends.
struct Descriptor {
    int fd = -1;
    ~Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
};

bool writeAll(int fd, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

void syncFolder(const fs::path &folder)
{
    Descriptor directory{::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)};
    if (directory.fd >= 0)
        ::fsync(directory.fd);
}

} // namespace

bool write(const fs::path &path, std::string_view text, bool durable)
{
    // mkstemp opens exclusively: an existing file or link of that name is never written through.
    std::string pattern = path.string() + ".tmp-XXXXXX";
    Descriptor file{::mkstemp(pattern.data())};
    if (file.fd < 0)
        return false;
    const bool written = writeAll(file.fd, text) && (!durable || ::fsync(file.fd) == 0);
    // rename replaces a link at the target itself, never the file it points to.
    if (!written || ::rename(pattern.c_str(), path.c_str()) != 0) {
        ::unlink(pattern.c_str());
        return false;
    }
    if (durable)
        syncFolder(path.parent_path());
    return true;
}

std::optional<std::string> read(const fs::path &path, std::uintmax_t maxBytes)
{
    Descriptor file{::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK)};
    if (file.fd < 0)
        return std::nullopt;
    struct stat info {};
    if (::fstat(file.fd, &info) != 0 || !S_ISREG(info.st_mode) || static_cast<std::uintmax_t>(info.st_size) > maxBytes)
        return std::nullopt;
    std::string text;
    char buffer[8192];
    for (;;) {
        const ssize_t got = ::read(file.fd, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        text.append(buffer, static_cast<size_t>(got));
        if (text.size() > maxBytes)
            return std::nullopt;
    }
    return text;
}

#endif

} // namespace orvel::SafeFile

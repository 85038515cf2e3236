#include "SafeFile.h"

#include <system_error>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvel::SafeFile {

namespace fs = std::filesystem;

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

} // namespace orvel::SafeFile

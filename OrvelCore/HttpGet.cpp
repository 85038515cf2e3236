#include "HttpGet.h"

#include <algorithm>
#include <cctype>
#include <array>
#include <memory>

#include <curl/curl.h>

namespace orvel::Http {

namespace {

// A month of times is some 90 kB; anything far larger is not an answer Orvel asked for and must
// not fill the memory.
constexpr size_t maximumBodySize = 16 * 1024 * 1024;

void initialiseCurl()
{
    static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (initialised != CURLE_OK)
        throw TransportError(curl_easy_strerror(initialised));
}

struct Transfer {
    CURL *handle = nullptr;
    std::string body;
    bool refused = false;  // a status other than 200: its body is not wanted
    bool oversized = false;
};

size_t receive(char *data, size_t size, size_t count, void *context)
{
    auto *transfer = static_cast<Transfer *>(context);
    long status = 0;
    curl_easy_getinfo(transfer->handle, CURLINFO_RESPONSE_CODE, &status);
    if (status != 200) {
        transfer->refused = true;
        return 0;
    }
    const size_t bytes = size * count;
    if (transfer->body.size() + bytes > maximumBodySize) {
        transfer->oversized = true;
        return 0;
    }
    transfer->body.append(data, bytes);
    return bytes;
}

} // namespace

StatusError::StatusError(long status)
    : std::runtime_error("Sunucu " + std::to_string(status) + " durum koduyla yanıt verdi")
    , status_(status)
{
}

std::string queryValue(std::string_view text, std::string_view keep)
{
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(text.size());
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const bool plain = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9')
            || c == '-' || c == '.' || c == '_' || c == '~' || keep.find(c) != std::string_view::npos;
        if (plain) {
            out += c;
        } else {
            out += '%';
            out += hex[byte >> 4];
            out += hex[byte & 0x0F];
        }
    }
    return out;
}

std::string get(const std::string &url, std::chrono::milliseconds timeout)
{
    initialiseCurl();
    const std::unique_ptr<CURL, void (*)(CURL *)> handle(curl_easy_init(), curl_easy_cleanup);
    if (!handle)
        throw TransportError(curl_easy_strerror(CURLE_FAILED_INIT));
    CURL *const curl = handle.get();

    Transfer transfer;
    transfer.handle = curl;
    std::array<char, CURL_ERROR_SIZE> error{};
    const long milliseconds = std::max<long>(1, static_cast<long>(timeout.count()));
    static const std::string userAgent = std::string("Orvel/") + ORVEL_VERSION;

    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, error.data());
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    // A plain http:// address the user gave stays allowed, but an https:// one never redirects to
    // plain text.
    std::string scheme = url.substr(0, std::min<size_t>(url.size(), 8));
    std::transform(scheme.begin(), scheme.end(), scheme.begin(), [](unsigned char c) { return std::tolower(c); });
    const bool secure = scheme == "https://";
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_REDIR_PROTOCOLS_STR, secure ? "https" : "http,https");
    curl_easy_setopt(curl, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(curl, CURLOPT_MAXREDIRS, 10L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, 2L);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, milliseconds);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, milliseconds);
    curl_easy_setopt(curl, CURLOPT_USERAGENT, userAgent.c_str());
    curl_easy_setopt(curl, CURLOPT_ACCEPT_ENCODING, "");
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, receive);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &transfer);

    const CURLcode result = curl_easy_perform(curl);
    long status = 0;
    curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &status);
    if (transfer.refused || (result == CURLE_OK && status != 200))
        throw StatusError(status);
    if (transfer.oversized)
        throw TransportError("Sunucunun yanıtı beklenenden çok büyük");
    if (result != CURLE_OK)
        throw TransportError(error[0] != '\0' ? error.data() : curl_easy_strerror(result));
    return std::move(transfer.body);
}


} // namespace orvel::Http

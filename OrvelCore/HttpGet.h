#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

// One HTTP(S) GET through libcurl: certificate checks, redirects, the proxy variables, a time
// limit, and a User-Agent naming Orvel. Every web service Orvel asks goes through here.
namespace orvel::Http {

// No answer at all (no route, refused, time-out, TLS failure, an oversized body, …).
class TransportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// An answer with a status other than 200.
class StatusError : public std::runtime_error {
public:
    explicit StatusError(long status);
    long status() const { return status_; }

private:
    long status_;
};

// The body of a 200 answer. `timeout` bounds the connection and the whole transfer.
std::string get(const std::string &url, std::chrono::milliseconds timeout);

// Percent-encoding of a query value, UTF-8 byte by byte; `keep` lists punctuation left as it is.
std::string queryValue(std::string_view text, std::string_view keep = {});

} // namespace orvel::Http

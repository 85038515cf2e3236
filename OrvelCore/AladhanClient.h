#pragma once

#include "CalculationMethod.h"
#include "DayTimes.h"
#include "HttpGet.h"
#include "Location.h"
#include "MonthKey.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace orvel {

class TimeZone;

// Fetches one month of times from the Aladhan web service and parses the answer.
class AladhanClient {
public:
    static constexpr std::string_view defaultBaseURL = "https://api.aladhan.com/v1";

    // The client's own failures: a status other than 200 (HTTP or the body's "code"), or a day
    // whose date or times cannot be read.
    class ClientError : public std::runtime_error {
    public:
        enum class Kind { badStatus, badPayload };
        static ClientError badStatus(long status);
        static ClientError badPayload();
        Kind kind() const { return kind_; }
        long status() const { return status_; }

    private:
        ClientError(Kind kind, long status, const std::string &what);
        Kind kind_;
        long status_;
    };

    // No network answer at all (no route, time-out, TLS failure, …).
    using TransportError = Http::TransportError;

    explicit AladhanClient(std::string baseURL = std::string(defaultBaseURL),
                           std::chrono::milliseconds timeout = std::chrono::seconds(15));

    const std::string &baseURL() const { return baseURL_; }

    // The full request URL of a month.
    std::string requestURL(MonthKey month, const Location &location, CalculationMethod method) const;
    // Fetches and parses one month, which must be the whole month asked for (MonthCheck). Throws
    // ClientError, TransportError, or the JSON decoder's nlohmann::json::exception for a body
    // that is not the expected JSON.
    std::vector<DayTimes> month(MonthKey month, const Location &location, CalculationMethod method) const;

    static std::vector<DayTimes> parse(std::string_view body, const TimeZone &zone);

private:
    std::string baseURL_;
    std::chrono::milliseconds timeout_;
};

} // namespace orvel

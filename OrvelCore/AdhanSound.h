#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace orvel {

// What sounds when a time enters.
class AdhanSound {
public:
    enum Value { system, chime, custom, none };

    static constexpr std::array<Value, 4> allCases{system, chime, custom, none};

    constexpr AdhanSound(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }

    static std::optional<AdhanSound> fromRawValue(std::string_view raw);
    std::string_view rawValue() const;
    std::string_view label() const; // "Bildirim sesi", "Yumuşak zil", "Kendi ses dosyam", "Sessiz"
    std::string_view description() const; // what the choice does, one short line
    bool isPlayedByApp() const { return value_ == chime || value_ == custom; }

private:
    Value value_;
};

} // namespace orvel

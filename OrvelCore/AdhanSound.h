#pragma once

#include "Enumeration.h"

namespace orvel {

namespace detail::adhanSound {
enum Value { system, chime, custom, none };
}

// What sounds when a time enters.
class AdhanSound : public Enumeration<AdhanSound, detail::adhanSound::Value, 4> {
public:
    using Enumeration::Enumeration;
    using enum detail::adhanSound::Value;

    static constexpr Names ids{"system", "chime", "custom", "none"};
    static constexpr Names labels{
        "Bildirim sesi",
        "Yumuşak zil",
        "Kendi ses dosyam",
        "Sessiz",
    };

    // What the choice does, one short line.
    std::string_view description() const { return descriptions[value_]; }
    bool isPlayedByApp() const { return value_ == chime || value_ == custom; }

private:
    static constexpr std::array<std::string_view, 4> descriptions{
        "Bildirimle birlikte kısa sistem sesi",
        "Uygulamanın kendi yumuşak zil sesi",
        "Seçtiğiniz kayıt baştan sona çalınır",
        "Bildirimler sessiz gelir",
    };
};

} // namespace orvel

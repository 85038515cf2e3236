#pragma once

#include "Enumeration.h"

namespace orvel {

struct AdhanSoundChoices {
    enum Value { system, chime, custom, none };
    static constexpr Names<4> ids{"system", "chime", "custom", "none"};
    static constexpr Names<4> labels{"Bildirim sesi", "Yumuşak zil", "Kendi ses dosyam", "Sessiz"};
};

// What sounds when a time enters.
class AdhanSound : public Enumeration<AdhanSoundChoices, AdhanSound> {
public:
    using Enumeration::Enumeration;

    // What the choice does, one short line.
    std::string_view description() const { return descriptions[value_]; }
    bool isPlayedByApp() const { return value_ == chime || value_ == custom; }

private:
    static constexpr Names<4> descriptions{
        "Bildirimle birlikte kısa sistem sesi",
        "Uygulamanın kendi yumuşak zil sesi",
        "Seçtiğiniz kayıt baştan sona çalınır",
        "Bildirimler sessiz gelir",
    };
};

} // namespace orvel

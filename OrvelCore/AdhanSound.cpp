#include "AdhanSound.h"

namespace orvel {

namespace {

struct Entry {
    AdhanSound::Value value;
    std::string_view raw;
    std::string_view label;
    std::string_view description;
};

constexpr std::array<Entry, 4> entries{{
    {AdhanSound::system, "system", "Bildirim sesi", "Bildirimle birlikte kısa sistem sesi"},
    {AdhanSound::chime, "chime", "Yumuşak zil", "Uygulamanın kendi yumuşak zil sesi"},
    {AdhanSound::custom, "custom", "Kendi ses dosyam", "Seçtiğiniz kayıt baştan sona çalınır"},
    {AdhanSound::none, "none", "Sessiz", "Bildirimler sessiz gelir"},
}};

const Entry &entryOf(AdhanSound::Value value)
{
    return entries[static_cast<size_t>(value)];
}

} // namespace

std::optional<AdhanSound> AdhanSound::fromRawValue(std::string_view raw)
{
    for (const Entry &entry : entries) {
        if (entry.raw == raw)
            return AdhanSound(entry.value);
    }
    return std::nullopt;
}

std::string_view AdhanSound::rawValue() const
{
    return entryOf(value_).raw;
}

std::string_view AdhanSound::label() const
{
    return entryOf(value_).label;
}

std::string_view AdhanSound::description() const
{
    return entryOf(value_).description;
}

} // namespace orvel

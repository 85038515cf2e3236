#include "AdhanSound.h"

namespace orvel {

namespace {

struct Entry {
    AdhanSound::Value value;
    std::string_view raw;
    std::string_view label;
};

constexpr std::array<Entry, 4> entries{{
    {AdhanSound::system, "system", "Bildirim sesi"},
    {AdhanSound::chime, "chime", "Yumuşak zil"},
    {AdhanSound::custom, "custom", "Kendi ses dosyam"},
    {AdhanSound::none, "none", "Sessiz"},
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

} // namespace orvel

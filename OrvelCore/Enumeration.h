#pragma once

#include <array>
#include <type_traits>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace orvel {

// A closed set of choices with the stable ids they are stored and exchanged under. A choice
// converts to and from its enumerator, so that it works in switches, as an index and as
// `Prayer::ogle`.
template <typename Self, typename V, std::size_t N>
class Enumeration {
public:
    using Value = V;
    // What the enumeration lists for each choice, in enumerator order: `ids`, and `labels` where
    // the choice is shown by a name of its own.
    using Names = std::array<std::string_view, N>;

    static constexpr std::array<Value, N> all = [] {
        std::array<Value, N> values{};
        for (std::size_t i = 0; i < N; ++i)
            values[i] = static_cast<Value>(i);
        return values;
    }();

    constexpr Enumeration(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }
    constexpr int index() const { return static_cast<int>(value_); }

    constexpr std::string_view id() const { return Self::ids[value_]; }
    constexpr std::string_view label() const
        requires requires { Self::labels; }
    {
        return Self::labels[value_];
    }

    static constexpr std::optional<Self> fromId(std::string_view id)
    {
        for (const Value value : all) {
            if (Self::ids[value] == id)
                return Self(value);
        }
        return std::nullopt;
    }

protected:
    Value value_;
};

template <typename T>
concept AnEnumeration = std::is_base_of_v<Enumeration<T, typename T::Value, T::all.size()>, T>;

// Choices travel in JSON as their ids.
template <typename Json, AnEnumeration T>
void to_json(Json &json, const T &choice)
{
    json = choice.id();
}

template <typename Json, AnEnumeration T>
void from_json(const Json &json, T &choice)
{
    const std::string id = json.template get<std::string>();
    const std::optional<T> parsed = T::fromId(id);
    if (!parsed)
        throw Json::other_error::create(501, "unknown value: " + id, &json);
    choice = *parsed;
}

} // namespace orvel

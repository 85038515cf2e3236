#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace orvel {

// The ids or labels of an enumeration's choices, in enumerator order.
template <std::size_t N>
using Names = std::array<std::string_view, N>;

// A closed set of choices with the stable ids they are stored and exchanged under. `Choices`
// holds an unscoped `enum Value`, its `ids` and, where each choice is shown by a name of its own,
// its `labels`; its enumerators are then the enumeration's, as in `Prayer::ogle`. A choice
// converts to and from its enumerator, so that it works in switches and as an index. An
// enumeration with rules of its own derives from this and names itself as `Self`.
template <typename Choices, typename Self = void>
class Enumeration : public Choices {
    using Type = std::conditional_t<std::is_void_v<Self>, Enumeration, Self>;

public:
    using Value = typename Choices::Value;

    static constexpr std::array<Value, Choices::ids.size()> all = [] {
        std::array<Value, Choices::ids.size()> values{};
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = static_cast<Value>(i);
        return values;
    }();

    constexpr Enumeration(Value value)
        : value_(value)
    {
    }
    constexpr operator Value() const { return value_; }
    constexpr int index() const { return static_cast<int>(value_); }

    constexpr std::string_view id() const { return Choices::ids[value_]; }
    constexpr std::string_view label() const
        requires requires { Choices::labels; }
    {
        return Choices::labels[value_];
    }

    static constexpr std::optional<Type> fromId(std::string_view id)
    {
        for (const Value value : all) {
            if (Choices::ids[value] == id)
                return Type(value);
        }
        return std::nullopt;
    }

protected:
    Value value_;
};

template <typename T>
concept AnEnumeration = std::is_same_v<decltype(T::fromId(std::string_view())), std::optional<T>>;

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

// The library's values from and to those of another JSON library.
#pragma once

#include <stdexcept>

#include <nlohmann/json.hpp>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "Text.h"

inline nlohmann::json JsonOf(const Veltrane::TaviDesktopSDK::JsonValue& value)
{
    return nlohmann::json::parse(Json(value));
}

// Throws std::invalid_argument for a number with decimals, which the library has not. An array may hold strings only.
inline Veltrane::TaviDesktopSDK::JsonValue ValueOf(const nlohmann::json& source)
{
    using Veltrane::TaviDesktopSDK::JsonValue;
    if (source.is_boolean())
        return JsonValue(source.get<bool>());
    if (source.is_number_integer())
        return JsonValue(source.get<long long>());
    if (source.is_string())
        return String(source.get<std::string>().c_str());
    JsonValue value;
    if (source.is_object())
    {
        value[Key("")] = JsonValue(); // even without members it is an object
        value.RemoveKey(Key(""));
        for (const auto& [key, member] : source.items())
            value[Key(key.c_str())] = ValueOf(member);
    }
    else if (source.is_array())
    {
        for (const nlohmann::json& element : source)
            value[Key(element.get<std::string>().c_str())] = JsonValue();
        value = value.GetKeyList();
    }
    else if (!source.is_null())
    {
        throw std::invalid_argument("the library has no value like " + source.dump());
    }
    return value;
}

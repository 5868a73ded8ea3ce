// Callbacks that only count the finished payloads: `context` points to the count, a std::uint64_t. They are defined in
// a source file of their own, so that the compiler cannot optimize for their not reading the payload.
#pragma once

#include <string_view>

#include <nlohmann/json_fwd.hpp>
#include <rapidjson/fwd.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

int DiscardValue(const Veltrane::TaviDesktopSDK::JsonValue& payload, void* context,
                 Veltrane::TaviDesktopSDK::JsonValue& reply);
int DiscardNlohmann(const nlohmann::json& payload, void* context);
int DiscardRapidJson(const rapidjson::Document& payload, void* context);
int DiscardText(std::string_view payload, void* context);

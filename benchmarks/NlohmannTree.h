// A payload as a tree of nlohmann::json, for Comparison.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

class NlohmannTree
{
public:
    using Finished = nlohmann::json;

    void Add(std::string_view key, std::string_view text) { json.emplace(key, text); }
    void Add(std::string_view key, std::int64_t number) { json.emplace(key, number); }

    void AddObject(std::string_view key, const auto& fill)
    {
        NlohmannTree object;
        fill(object);
        json.emplace(key, std::move(object.json));
    }

    const nlohmann::json& Finish() { return json; }

private:
    nlohmann::json json = nlohmann::json::object();
};

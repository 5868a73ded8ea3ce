// Payloads as trees of nlohmann::json: an engine of Comparison.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

#include "Comparison.h"

class NlohmannTree
{
public:
    using Callback = int (*)(const nlohmann::json& payload, void* context);

    class Object
    {
    public:
        Object() : json(nlohmann::json::object()) {}
        explicit Object(const nlohmann::json& base) : json(base) {}

        void Add(std::string_view key, std::string_view text) { json.emplace(key, text); }
        void Add(std::string_view key, std::int64_t number) { json.emplace(key, number); }

        nlohmann::json json;
    };

    class Payload : public Object
    {
    public:
        explicit Payload(const NlohmannTree& engine) : Object(engine.description) {}

        template <typename Fill>
        void AddObject(std::string_view key, const Fill& fill)
        {
            Object object;
            fill(object);
            json.emplace(key, std::move(object.json));
        }
    };

    using Prepared = nlohmann::json;

    NlohmannTree(const ProductDescription& product, Callback target, void* targetContext);

    void Send(Payload&& payload) const { callback(payload.json, context); }
    Prepared Prepare(Payload&& payload) const { return std::move(payload.json); }
    void SendPrepared(const Prepared& prepared, std::int64_t milliseconds) const;

private:
    nlohmann::json description;
    Callback callback;
    void* context;
};

extern template class Comparison<NlohmannTree>;

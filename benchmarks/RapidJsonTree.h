// Payloads as RapidJSON documents, a new one with its own pool for each event: an engine of Comparison. Keys are
// constants and are not copied; texts are copied into the pool.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include <rapidjson/document.h>

#include "Comparison.h"

class RapidJsonTree
{
public:
    using Callback = int (*)(const rapidjson::Document& payload, void* context);

    class Object
    {
    public:
        Object(rapidjson::Value& target, rapidjson::Document::AllocatorType& pool) : value(target), allocator(pool) {}

        void Add(std::string_view key, std::string_view text)
        {
            value.AddMember(Reference(key), rapidjson::Value(text.data(), Size(text), allocator), allocator);
        }

        void Add(std::string_view key, std::int64_t number)
        {
            value.AddMember(Reference(key), rapidjson::Value(number), allocator);
        }

        template <typename Fill>
        void AddObject(std::string_view key, const Fill& fill)
        {
            rapidjson::Value member(rapidjson::kObjectType);
            Object object(member, allocator);
            fill(object);
            value.AddMember(Reference(key), member, allocator);
        }

    private:
        static rapidjson::SizeType Size(std::string_view text) { return static_cast<rapidjson::SizeType>(text.size()); }

        static rapidjson::Value::StringRefType Reference(std::string_view key)
        {
            return rapidjson::StringRef(key.data(), key.size());
        }

        rapidjson::Value& value;
        rapidjson::Document::AllocatorType& allocator;
    };

    class Payload
    {
    public:
        explicit Payload(const RapidJsonTree& engine);

        void Add(std::string_view key, const auto& value) { Object(document, document.GetAllocator()).Add(key, value); }

        void AddObject(std::string_view key, const auto& fill)
        {
            Object(document, document.GetAllocator()).AddObject(key, fill);
        }

        rapidjson::Document document;
    };

    using Prepared = std::unique_ptr<rapidjson::Document>;

    RapidJsonTree(const ProductDescription& product, Callback target, void* targetContext);

    void Send(Payload&& payload) const { callback(payload.document, context); }
    Prepared Prepare(Payload&& payload) const;
    void SendPrepared(const Prepared& prepared, std::int64_t milliseconds) const;

private:
    ProductDescription description;
    Callback callback;
    void* context;
};

extern template class Comparison<RapidJsonTree>;

// The harness looks at expected keys only. This looks at the rest: what each reporting call sends, in whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "CatalogueModel.h"
#include "CatalogueSource.h"
#include "Differences.h"
#include "Program.h"
#include "Utf8Path.h"

using nlohmann::json;

namespace
{

// The value that the reference shows for the edit timer, which varies.
constexpr int ExampleOfTheEditTimer = 90'000;

using Payloads = std::map<std::string, json>; // by reporting method

// What the event reference shows.
Payloads KeptPayloads()
{
    const json reference = json::parse(ReadFile(PathOf(SOURCE_DIR "/docs/events.json")));
    Payloads payloads;
    for (const json& group : reference.at("groups"))
    {
        for (const json& event : group.at("events"))
            payloads[event.at("method")] = event.at("payload");
    }
    return payloads;
}

Payloads SentPayloads()
{
    std::map<std::string, std::string> methods; // by title
    for (const CatalogueCall& call : ReadCatalogueSource())
        methods[call.title] = call.method;

    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    copy.Run();
    const std::vector<json> calls = copy.Calls("TrackEvent");
    EXPECT_EQ(calls.size(), TheCatalogue().size()) << "not one event for each test";
    Payloads payloads;
    for (std::size_t i = 0; i < std::min(calls.size(), TheCatalogue().size()); ++i)
    {
        json payload = calls[i]["payload"];
        const auto timer = payload.find("document_editing_length_ms");
        if (timer != payload.end() && timer->is_number_integer() && *timer >= 0)
            *timer = ExampleOfTheEditTimer;
        payloads[methods[TheCatalogue()[i].title]] = payload;
    }
    return payloads;
}

} // namespace

TEST(EventReference, HasExactlyThePayloadsThatAreSent)
{
    const Payloads sent = SentPayloads();
    const Payloads kept = KeptPayloads();
    std::vector<std::string> wrong;
    for (const auto& [method, payload] : sent)
    {
        if (!kept.contains(method))
            wrong.push_back(method + " has no payload there.");
        else if (kept.at(method) != payload)
            wrong.push_back(method + " sends otherwise:\n" + JsonDifferences(kept.at(method), payload));
    }
    for (const auto& [method, payload] : kept)
    {
        if (!sent.contains(method))
            wrong.push_back(method + " is there and sends nothing.");
    }
    if (!wrong.empty())
        ADD_FAILURE() << "docs/events.json is not what is sent. Where the change is meant, run scripts/reference.sh.\n"
                      << FirstFew(wrong);
}

// Sequences of reporting calls with arbitrary arguments: each sends exactly one payload, whose text is JSON and which
// has all its keys, whatever is in them.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>
#include <nlohmann/json.hpp>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/ValueText.h>

#include "ArbitraryCalls.h"

namespace Sdk = Veltrane::TaviDesktopSDK;
using nlohmann::json;

namespace
{

void Require(bool condition, const std::string& otherwise)
{
    if (condition)
        return;
    std::cerr << "reporting: " << otherwise << std::endl;
    std::abort();
}

int Keep(const Sdk::JsonValue& payload, void* context, Sdk::JsonValue&)
{
    static_cast<std::vector<Sdk::JsonValue>*>(context)->push_back(payload);
    return 0;
}

using Keys = std::set<std::string>;

class Session
{
public:
    Session()
    {
        Sdk::JsonValue flags;
        flags[Corvane::TextOf("Testing_EnableCallback")] = Sdk::JsonValue(true);
        Sdk::SetTestingFlags(Sdk::TaviString(), flags);
        Sdk::SetTestingCallback(Sdk::TaviString(), Keep, &payloads);
    }
    ~Session() { Sdk::SetTestingCallback(Sdk::TaviString(), nullptr, nullptr); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // The keys of what the report sends, those in objects with the object's before them.
    Keys Report(const ArbitraryReport& report, const NumberSource& source)
    {
        payloads.clear();
        report.report(source);
        Require(payloads.size() == 1, report.method + " sends " + std::to_string(payloads.size()) + " events, not one");
        const std::string text = payloads.front().GetJsonString().c_str();
        const json payload = json::parse(text, nullptr, false);
        Require(payload.is_object(), report.method + " sends what is no JSON: " + text);
        Keys keys;
        const json leaves = payload.flatten();
        for (const auto& [path, value] : leaves.items())
            keys.insert(path);
        return keys;
    }

private:
    std::vector<Sdk::JsonValue> payloads;
};

// The keys that each method sends, by a call with all the greatest numbers that there can be: so there are tools, too.
std::map<std::string, Keys> KeysOfAll()
{
    Session session;
    std::map<std::string, Keys> keys;
    for (const ArbitraryReport& report : ArbitraryReports())
        keys[report.method] = session.Report(report, [](std::uint64_t greatest) { return greatest; });
    return keys;
}

// Without tools there is no last one.
Keys WithoutTools(Keys keys)
{
    keys.erase("/component_attributes/COMMON.ZEPH_NB_TOOL_NAME");
    keys.erase("/component_attributes/COMMON.ZEPH_NB_TOOL_HIDDEN");
    return keys;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::map<std::string, Keys> expected = KeysOfAll();
    FuzzedDataProvider input(data, size);
    const NumberSource source = [&input](std::uint64_t greatest)
    { return input.ConsumeIntegralInRange<std::uint64_t>(0, greatest); };
    Session session;
    while (input.remaining_bytes() > 0)
    {
        const ArbitraryReport& report = ArbitraryReports().at(source(ArbitraryReports().size() - 1));
        const Keys keys = session.Report(report, source);
        const Keys& whole = expected.at(report.method);
        Require(keys == whole || (report.method == "TrackNavBarStartup" && keys == WithoutTools(whole)),
                report.method + " sends " + json(keys).dump() + ", not " + json(whole).dump());
    }
    return 0;
}

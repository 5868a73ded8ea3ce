// The harness looks at expected keys only. This looks at the rest: what each reporting call sends, in whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "CatalogueModel.h"
#include "Program.h"
#include "Utf8Path.h"

using nlohmann::json;

namespace
{

// What is measured shows in the reference as this.
constexpr int ExampleOfTheEditTimer = 90'000;

using Payloads = std::map<std::string, json>; // by reporting method

// What the event reference shows: below each method's heading, a block of JSON.
Payloads KeptPayloads()
{
    Payloads payloads;
    std::istringstream lines(ReadFile(PathOf(SOURCE_DIR "/docs/events.md")));
    std::string method;
    std::string block;
    bool inBlock = false;
    for (std::string line; std::getline(lines, line);)
    {
        if (line.starts_with("### "))
        {
            method = line.substr(4);
        }
        else if (line == "```json")
        {
            inBlock = true;
        }
        else if (inBlock && line == "```")
        {
            payloads[method] = json::parse(block);
            block.clear();
            inBlock = false;
        }
        else if (inBlock)
        {
            block += line;
        }
    }
    return payloads;
}

Payloads SentPayloads()
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    copy.Run();
    const std::vector<json> calls = copy.Calls("TrackEvent");
    EXPECT_EQ(calls.size(), TheCatalogue().size());
    Payloads payloads;
    for (std::size_t i = 0; i < std::min(calls.size(), TheCatalogue().size()); ++i)
    {
        json payload = calls[i]["payload"];
        const auto timer = payload.find("document_editing_length_ms");
        if (timer != payload.end() && timer->is_number_integer() && *timer >= 0)
            *timer = ExampleOfTheEditTimer;
        const std::string name = TheCatalogue()[i].title.substr(std::string("Testing ").size());
        payloads[name.starts_with("StartTrack") ? name : "Track" + name] = payload;
    }
    return payloads;
}

std::map<std::string, int> CallsInTheCatalogue()
{
    std::map<std::string, int> calls;
    const std::string source = ReadFile(PathOf(SOURCE_DIR "/harness/Catalogue.cpp"));
    const std::regex call(R"((?:tavi|Instance\(\))\.(\w+)\()");
    for (std::sregex_iterator match(source.begin(), source.end(), call), end; match != end; ++match)
        ++calls[(*match)[1]];
    return calls;
}

std::vector<std::string> PublicMethods()
{
    std::vector<std::string> methods;
    const std::string header = ReadFile(PathOf(SOURCE_DIR "/telemetry/CorvaneTavi.h"));
    const std::size_t begin = header.find("public:");
    const std::string declarations = header.substr(begin, header.find("private:") - begin);
    const std::regex declaration(R"(\n    (?:static )?[\w:]+[ &]+(\w+)\()");
    for (std::sregex_iterator match(declarations.begin(), declarations.end(), declaration), end; match != end; ++match)
        methods.push_back((*match)[1]);
    return methods;
}

} // namespace

TEST(Catalogue, EveryCallSendsExactlyThePayloadOfTheEventReference)
{
    const Payloads sent = SentPayloads();
    EXPECT_EQ(sent.size(), TheCatalogue().size());
    EXPECT_EQ(sent, KeptPayloads());
}

TEST(Catalogue, CallsEveryPublicReportingMethodOnce)
{
    const std::vector<std::string> methods = PublicMethods();
    EXPECT_GE(methods.size(), TheCatalogue().size()) << "declarations were overlooked";
    std::map<std::string, int> calls = CallsInTheCatalogue();
    for (const std::string& method : methods)
    {
        // These report nothing, or are what the others report through.
        if (method == "Instance" || method == "StartSdk" || method == "GetProductKey" || method == "TrackWaypoint")
            continue;
        EXPECT_EQ(calls[method], method == "AddDocument" ? 2 : 1) << method;
    }
}

// The harness looks at expected keys only. This looks at the rest: what each reporting call sends, in whole.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "CatalogueModel.h"
#include "Program.h"

using nlohmann::json;

namespace
{

// One line an event, in the order of the tests: the title and the payload. What differs from run to run is masked.
std::vector<json> SentEvents()
{
    const ProgramCopy copy(ProgramCopy::Library::Faulty);
    copy.Run();
    std::vector<json> calls = copy.Calls("TrackEvent");
    std::vector<json> events;
    for (json& call : calls)
    {
        json& payload = call["payload"];
        const auto timer = payload.find("document_editing_length_ms");
        if (timer != payload.end() && timer->is_number_integer() && *timer >= 0)
            *timer = "masked";
        const std::size_t index = events.size();
        const std::string title = index < TheCatalogue().size() ? TheCatalogue()[index].title : "beyond the catalogue";
        events.push_back({{"title", title}, {"payload", payload}});
    }
    return events;
}

std::map<std::string, int> CallsInTheCatalogue()
{
    std::map<std::string, int> calls;
    const std::string source = ReadFile(SOURCE_DIR "/harness/Catalogue.cpp");
    const std::regex call(R"((?:tavi|Instance\(\))\.(\w+)\()");
    for (std::sregex_iterator match(source.begin(), source.end(), call), end; match != end; ++match)
        ++calls[(*match)[1]];
    return calls;
}

std::vector<std::string> PublicMethods()
{
    std::vector<std::string> methods;
    const std::string header = ReadFile(SOURCE_DIR "/telemetry/CorvaneTavi.h");
    const std::size_t begin = header.find("public:");
    const std::string declarations = header.substr(begin, header.find("private:") - begin);
    const std::regex declaration(R"(\n    (?:static )?[\w:]+[ &]+(\w+)\()");
    for (std::sregex_iterator match(declarations.begin(), declarations.end(), declaration), end; match != end; ++match)
        methods.push_back((*match)[1]);
    return methods;
}

} // namespace

TEST(Catalogue, EveryCallSendsExactlyTheKeptPayload)
{
    std::vector<json> kept;
    std::ifstream file(TEST_DATA_DIR "/payloads.jsonl");
    for (std::string line; std::getline(file, line);)
        kept.push_back(json::parse(line));

    const std::vector<json> sent = SentEvents();
    EXPECT_EQ(sent.size(), kept.size());
    for (std::size_t i = 0; i < std::min(sent.size(), kept.size()); ++i)
        EXPECT_EQ(sent[i], kept[i]) << "the line is now: " << sent[i].dump();
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

#include <check/Run.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <check/PayloadCheck.h>
#include <check/Status.h>
#include <harness/Catalogue.h>
#include <harness/Driver.h>
#include <telemetry/CorvaneTavi.h>

using nlohmann::json;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace Corvane
{

namespace
{

struct ReceivedPayload
{
    std::string text;
    bool isOfACall; // else no call was in progress
};

// What the testing callback gets.
struct Inbox
{
    std::vector<ReceivedPayload> payloads;
    bool callIsInProgress = false;
    bool hasLostAny = false;
    bool isClosed = false;
};

Inbox& TheInbox()
{
    // Without a destructor's call: the library may hand over a payload while the process ends.
    static Inbox& inbox = *new Inbox;
    return inbox;
}

int Receive(const JsonValue& payload, void* context, JsonValue&)
{
    Inbox& inbox = *static_cast<Inbox*>(context);
    if (inbox.isClosed)
    {
        std::cerr << "tavi_check: a payload without a test in progress, after the last test" << std::endl;
        std::_Exit(Status::Failed);
    }
    try
    {
        const TaviString text = payload.GetJsonString();
        inbox.payloads.push_back(
            {text.c_str() != nullptr ? std::string(text.c_str(), text.size()) : "", inbox.callIsInProgress});
    }
    catch (...) // no exception may leave through the library
    {
        inbox.hasLostAny = true;
    }
    return 0;
}

// While it lives, what is written to std::cout is kept.
class KeptOutput
{
public:
    KeptOutput() : previous(std::cout.rdbuf(kept.rdbuf())) {}
    ~KeptOutput() { std::cout.rdbuf(previous); }
    KeptOutput(const KeptOutput&) = delete;
    KeptOutput& operator=(const KeptOutput&) = delete;

    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines;
        std::istringstream text(kept.str());
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }

private:
    std::ostringstream kept;
    std::streambuf* previous;
};

struct CheckedCall
{
    std::function<void()> call;
    json arguments = json::object(); // other than the catalogue's, by parameter
    std::string what = {};           // opens each fault
};

struct CheckedTest
{
    std::string name;
    std::vector<CheckedCall> calls;
};

// The catalogue's documents have one number as size and as source. In this one they differ.
CheckedCall ChangeOfAnotherDocument()
{
    return {[]
            {
                CorvaneTavi::Instance().AddDocument(L"fileName3", L"fileExtension3", 4042, 7);
                CorvaneTavi::Instance().StartTrackFileChange(L"fileName3");
            },
            {{"name", "fileName3"}, {"extension", "fileExtension3"}, {"size", 4042}, {"source", 7}},
            "a document of size 4042 and source 7: "};
}

std::vector<CheckedTest> CheckedTests()
{
    std::vector<CheckedTest> tests;
    VisitTests(
        [&tests](const char* name, const JsonValue&, ReportingCall call) {
            tests.push_back({name, {{[call] { call(CorvaneTavi::Instance()); }}}});
        });
    VisitDocumentTest(
        [&tests](const char* name, const JsonValue&, DocumentStep prepare, DocumentStep report)
        {
            const auto call = [prepare, report]
            {
                prepare();
                report();
            };
            tests.push_back({name, {{call}, ChangeOfAnotherDocument()}});
        });
    return tests;
}

class TestRun
{
public:
    TestRun(const CheckedTest& runTest, const DocumentEvent* documentedEvent) : test(runTest), event(documentedEvent)
    {
        outcome.name = test.name;
        outcome.method = event != nullptr ? event->method : "";
    }

    TestOutcome Outcome(bool isStrict)
    {
        const auto start = std::chrono::steady_clock::now();
        if (event == nullptr)
            outcome.faults.emplace_back("docs/events.json has no event of this test: it is out of date");
        for (const CheckedCall& call : test.calls)
            Check(call);
        outcome.furtherKeys.assign(furtherKeys.begin(), furtherKeys.end());
        outcome.unsentKeys.assign(unsentKeys.begin(), unsentKeys.end());
        if (isStrict)
        {
            for (const std::string& key : furtherKeys)
                outcome.faults.push_back(key + " is not expected");
            for (const std::string& key : unsentKeys)
                outcome.faults.push_back(key + " is expected, not sent");
        }
        outcome.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return outcome;
    }

private:
    void Check(const CheckedCall& checked)
    {
        const std::size_t first = TheInbox().payloads.size();
        Make(checked);
        const std::vector<ReceivedPayload> received(TheInbox().payloads.begin() + static_cast<std::ptrdiff_t>(first),
                                                    TheInbox().payloads.end());
        outcome.payloads += received.size();
        if (received.empty())
            AddFault(checked, "no payload was received");
        else if (received.size() > 1)
            AddFault(checked, std::to_string(received.size()) + " payloads were received, not one");
        for (std::size_t i = 0; i < received.size() && event != nullptr; ++i)
            Judge(checked, received[i].text, received.size() > 1 ? "payload " + std::to_string(i + 1) + ": " : "");
    }

    void Make(const CheckedCall& checked)
    {
        const KeptOutput output;
        TheInbox().callIsInProgress = true;
        try
        {
            checked.call();
        }
        catch (const std::exception& error)
        {
            AddFault(checked, std::string("the call threw an exception: ") + error.what());
        }
        TheInbox().callIsInProgress = false;
        for (const std::string& line : output.Lines())
        {
            outcome.messages.push_back(line);
            AddFault(checked, "the call printed \"" + line + "\"");
        }
    }

    void Judge(const CheckedCall& checked, const std::string& text, const std::string& which)
    {
        const json payload = json::parse(text, nullptr, false);
        if (payload.is_discarded())
        {
            AddFault(checked, which + "the payload is no JSON text: " + text);
            return;
        }
        const PayloadFindings findings = CheckPayload(payload, WithArguments(*event, checked.arguments));
        for (const std::string& fault : findings.faults)
            AddFault(checked, which + fault);
        furtherKeys.insert(findings.furtherKeys.begin(), findings.furtherKeys.end());
        unsentKeys.insert(findings.unsentKeys.begin(), findings.unsentKeys.end());
    }

    void AddFault(const CheckedCall& checked, const std::string& fault)
    {
        outcome.faults.push_back(checked.what + fault);
    }

    const CheckedTest& test;
    const DocumentEvent* event;
    std::set<std::string> furtherKeys;
    std::set<std::string> unsentKeys;
    TestOutcome outcome;
};

// Whether the library is in test mode then. What the wrapper prints on the way is an error, too.
bool Start(std::vector<std::string>& errors)
{
    const KeptOutput output;
    const std::optional<Refusal> refusal = EnterTestMode(Receive, &TheInbox());
    const std::vector<std::string> lines = output.Lines();
    std::transform(lines.begin(), lines.end(), std::back_inserter(errors),
                   [](const std::string& line) { return "the start printed \"" + line + "\""; });
    if (refusal)
        errors.push_back(refusal->sentence + (refusal->status ? ": status " + std::to_string(*refusal->status) : ""));
    return !refusal;
}

} // namespace

std::size_t RunOutcome::FailedTests() const
{
    const auto hasFailed = [](const TestOutcome& test) { return !test.faults.empty(); };
    return static_cast<std::size_t>(std::count_if(tests.begin(), tests.end(), hasFailed));
}

std::vector<std::string> TestNames()
{
    const std::vector<CheckedTest> tests = CheckedTests();
    std::vector<std::string> names;
    std::transform(tests.begin(), tests.end(), std::back_inserter(names),
                   [](const CheckedTest& test) { return test.name; });
    return names;
}

RunOutcome RunChecks(const Document& document, const std::vector<std::string>& names, bool isStrict)
{
    RunOutcome outcome;
    TheInbox() = {};
    const std::vector<CheckedTest> tests = CheckedTests();
    for (const DocumentEvent& event : document.events)
    {
        if (std::none_of(tests.begin(), tests.end(),
                         [&event](const CheckedTest& test) { return test.name == event.test; }))
            outcome.errors.push_back("docs/events.json has an event of a test " + event.test +
                                     ", which there is not: it is out of date");
    }
    const bool isInTestMode = Start(outcome.errors);
    for (const CheckedTest& test : tests)
    {
        if (isInTestMode && std::find(names.begin(), names.end(), test.name) != names.end())
            outcome.tests.push_back(TestRun(test, FindEvent(document, test.name)).Outcome(isStrict));
    }
    for (const ReceivedPayload& payload : TheInbox().payloads)
    {
        if (!payload.isOfACall)
            outcome.errors.push_back("a payload without a test in progress: " + payload.text);
        outcome.payloads.push_back(payload.text);
    }
    if (TheInbox().hasLostAny)
        outcome.errors.emplace_back("a payload could not be kept");
    return outcome;
}

void RefuseFurtherPayloads()
{
    TheInbox().isClosed = true;
}

} // namespace Corvane

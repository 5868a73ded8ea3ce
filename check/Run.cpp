#include <check/Run.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <sstream>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <check/Options.h>
#include <check/ReportingMethods.h>
#include <check/Text.h>
#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

using nlohmann::json;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

namespace Corvane
{

namespace
{

// Captures what is written to std::cout.
class CapturedOutput
{
public:
    CapturedOutput() : previous(std::cout.rdbuf(captured.rdbuf())) {}
    ~CapturedOutput() { std::cout.rdbuf(previous); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines;
        std::istringstream text(captured.str());
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }

private:
    std::ostringstream captured;
    std::streambuf* previous;
};

struct Run
{
    const Document& document;
    const std::filesystem::path& productPath;
    const Progress& progress;
    std::optional<Judge> judge = {}; // set by Start()
    RunOutcome outcome = {};
    std::size_t taken = 0; // number of the recorder's payloads that are judged

    RunOutcome Outcome(const std::vector<std::string>& names)
    {
        const auto recorder = Start();
        progress.onStart(outcome);
        if (!outcome.isInTestMode)
            return outcome;
        for (const ReportingMethod& method : ReportingMethods())
        {
            if (std::find(names.begin(), names.end(), method.name) == names.end())
                continue;
            progress.onTest(outcome, TestName(method.name));
            outcome.tests.push_back(Prove(method, *recorder));
            progress.onVerdict(outcome.tests.back());
        }
        TakeStrayPayloads(*recorder);
        if (recorder->HasLostAny())
            outcome.errors.emplace_back("a payload could not be kept");
        return outcome;
    }

    std::unique_ptr<PayloadRecorder> Start()
    {
        const CapturedOutput output;
        auto recorder = std::make_unique<PayloadRecorder>();
        for (const std::string& line : output.Lines())
            outcome.errors.push_back("the start printed \"" + line + "\"");
        outcome.isInTestMode = recorder->Refusal().empty();
        if (!outcome.isInTestMode)
        {
            outcome.errors.push_back(recorder->Refusal());
            return recorder;
        }
        const ProductFile product = ReadProductFile(productPath);
        judge.emplace(product, LibraryTakesEmptyForNone());
        outcome.productRemark = product.remark;
        if (const std::string key = CorvaneTavi::Instance().GetProductKey(); key != product.ProductKey())
            outcome.errors.push_back("GetProductKey() returns " + JsonTextOf(key) + ", not " +
                                     JsonTextOf(product.ProductKey()));
        return recorder;
    }

    // Payloads that came since the last call are errors.
    void TakeStrayPayloads(const PayloadRecorder& recorder)
    {
        for (; taken < recorder.Payloads().size(); ++taken)
        {
            outcome.payloads.push_back({"", recorder.JsonText(taken)});
            outcome.errors.push_back("a payload came without a call: " + outcome.payloads.back().text);
        }
    }

    TestOutcome Prove(const ReportingMethod& method, const PayloadRecorder& recorder)
    {
        const auto start = std::chrono::steady_clock::now();
        TestOutcome test{TestName(method.name), method.name, {}, {}, 0, 0, 0};
        const DocumentEvent* const event = FindEvent(document, method.name);
        if (event == nullptr)
            AddFault(test, "", {"", nullptr, nullptr, "docs/events.json lacks this method; it is out of date"});
        std::set<std::string> remarks;
        for (const ProbingCall& call : ProbingCalls(method))
        {
            TakeStrayPayloads(recorder);
            const std::string callText = CallText(method, call);
            Make(test, callText, call);
            const std::size_t received = recorder.Payloads().size() - taken;
            ++test.calls;
            test.payloads += received;
            // A whitelist can only have known names.
            const bool mayBeFiltered =
                event != nullptr && event->nameFrom &&
                std::find(event->names.begin(), event->names.end(),
                          call.arguments.at(*event->nameFrom).get<std::string>()) == event->names.end();
            if (received != 1 && !(received == 0 && mayBeFiltered))
                AddFault(test, callText,
                         {"", 1, received,
                          received == 0 ? "no payload was received"
                                        : std::to_string(received) + " payloads were received, not one"});
            if (received == 0 && mayBeFiltered)
                remarks.insert(UnknownNameIsFiltered);
            for (std::size_t i = 0; i < received; ++i, ++taken)
            {
                const std::string text = recorder.JsonText(taken);
                outcome.payloads.push_back({callText, text});
                const json payload = json::parse(text, nullptr, false);
                if (payload.is_null() && mayBeFiltered)
                    remarks.insert(UnknownNameIsFiltered);
                else if (payload.is_discarded())
                    AddFault(test, callText, {"", json::object(), text, "the payload is no JSON text: " + text});
                else if (event != nullptr)
                {
                    const Findings findings = judge->OfCall(*event, call.arguments, payload);
                    for (const Fault& fault : findings.faults)
                        AddFault(test, callText, fault);
                    for (const Fault& fault : findings.productFaults)
                        ++outcome.productFaults[fault.message];
                    remarks.insert(findings.remarks.begin(), findings.remarks.end());
                }
            }
        }
        for (const std::string& remark : remarks)
            ++outcome.remarks[remark];
        test.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return test;
    }

    static void Make(TestOutcome& test, const std::string& callText, const ProbingCall& call)
    {
        const CapturedOutput output;
        try
        {
            call.make();
        }
        catch (const std::exception& error)
        {
            AddFault(test, callText,
                     {"", nullptr, nullptr, std::string("the call threw an exception: ") + error.what()});
        }
        for (const std::string& line : output.Lines())
        {
            test.messages.push_back(line);
            AddFault(test, callText, {"", nullptr, nullptr, "the call printed \"" + line + "\""});
        }
    }

    // Later faults of the same key are only counted.
    static void AddFault(TestOutcome& test, const std::string& callText, const Fault& fault)
    {
        const auto known = std::find_if(test.faults.begin(), test.faults.end(),
                                        [&fault](const CallFault& other) {
                                            return other.fault.key == fault.key &&
                                                   (!fault.key.empty() || other.fault.message == fault.message);
                                        });
        if (known == test.faults.end())
            test.faults.push_back({callText, fault, 1});
        else
            ++known->calls;
    }

    static constexpr const char* UnknownNameIsFiltered = "The library hands over no payload for an event whose name is "
                                                         "not in the vocabulary";
};

int Refuse(const JsonValue&, void*, JsonValue&)
{
    std::cerr << "tavi_check: a payload came without a call, after the last test" << std::endl;
    std::_Exit(Status::Failed);
}

} // namespace

std::vector<std::string> RunOutcome::FailedTests() const
{
    std::vector<std::string> failed;
    for (const TestOutcome& test : tests)
    {
        if (!test.faults.empty())
            failed.push_back(test.name);
    }
    return failed;
}

std::vector<std::string> RunOutcome::Errors(bool isStrict) const
{
    std::vector<std::string> all = errors;
    for (const auto& [message, count] : productFaults)
        all.push_back(message + ", in " + std::to_string(count) + " of " + std::to_string(payloads.size()) +
                      " payloads");
    if (isStrict)
    {
        if (!productRemark.empty())
            all.push_back(productRemark);
        for (const auto& [message, count] : remarks)
            all.push_back(message);
    }
    return all;
}

RunOutcome ProveMethods(const Document& document, const std::filesystem::path& productFile,
                        const std::vector<std::string>& methods, const Progress& progress)
{
    return Run{document, productFile, progress}.Outcome(methods);
}

void RefuseFurtherPayloads()
{
    TaviString productKey;
    productKey.SetString(CorvaneTavi::Instance().GetProductKey().c_str());
    Veltrane::TaviDesktopSDK::SetTestingCallback(productKey, Refuse, nullptr);
}

} // namespace Corvane

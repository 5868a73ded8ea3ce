// What a report costs, from the typed call until a callback that discards the finished payload has returned: by the
// wrapper, and by two other ways to make the same payload. scripts/bench.sh runs it.
//
//     reporting_benchmark [OPTION]...               measures times; the options are Google Benchmark's
//     reporting_benchmark count REPORT              sends the report 1000 times within CountedReports(), for callgrind
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>
#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

#include "Comparison.h"
#include "Events.h"
#include "NlohmannTree.h"
#include "WrittenText.h"

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;

// A function that callgrind sees: it counts within.
[[gnu::noinline]] void CountedReports(const std::function<void()>& send);

void CountedReports(const std::function<void()>& send)
{
    for (int i = 0; i < 1000; ++i)
        send();
}

namespace
{

struct Report
{
    std::string name; // the event's and its maker's
    std::function<void()> send;
};

std::uint64_t delivered = 0; // payloads, by all

int DiscardValue(const JsonValue&, void*, JsonValue&)
{
    ++delivered;
    return 0;
}

template <typename Payload>
void Discard(const Payload&)
{
    ++delivered;
}

// The product as the wrapper describes it.
ProductDescription DescribeProduct()
{
    std::istringstream productKey(CorvaneTavi::Instance().GetProductKey());
    ProductDescription product = {{"product_id_provider", "upi1"}};
    for (const char* level : {"product_line_name", "product_release_id", "product_master_id", "product_build_id"})
        std::getline(productKey, product[level], '&');
    return product;
}

template <typename Reporter>
void AddEvents(std::vector<Report>& reports, const std::string& maker, Reporter& reporter)
{
    AddDocument(reporter);
    for (const Event<Reporter>& event : Events<Reporter>)
        reports.push_back({event.name + ("/" + maker), [&reporter, event] { event.report(reporter); }});
}

void Measure(benchmark::State& state, const Report& report)
{
    const std::uint64_t before = delivered;
    for (auto _ : state)
        report.send();
    if (std::cmp_not_equal(delivered - before, state.iterations()))
        state.SkipWithError("payloads are missing");
}

int Count(const std::vector<Report>& reports, std::string_view name)
{
    for (const Report& report : reports)
    {
        if (report.name != name)
            continue;
        CountedReports(report.send);
        return delivered == 1000 ? 0 : 1;
    }
    std::cerr << "There is no report " << name << std::endl;
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    CorvaneTavi& wrapper = CorvaneTavi::Instance();
    Comparison<NlohmannTree> nlohmann(DescribeProduct(), Discard<nlohmann::json>);
    Comparison<WrittenText> floor(DescribeProduct(), Discard<std::string_view>);

    const Corvane::PayloadRecorder testMode; // its callback is replaced
    TaviString productKey;
    productKey.SetString(wrapper.GetProductKey().c_str());
    if (!testMode.Refusal().empty() || SetTestingCallback(productKey, DiscardValue, nullptr) != 0)
    {
        std::cerr << "The library does not enter test mode: " << testMode.Refusal() << std::endl;
        return 1;
    }
    std::vector<Report> reports;
    AddEvents(reports, "wrapper", wrapper);
    AddEvents(reports, "nlohmann", nlohmann);
    AddEvents(reports, "floor", floor);
    for (const std::size_t length : std::to_array<std::size_t>({10, 100, 1000, 10'000}))
        reports.push_back({"Track3DCKeyPressed-" + std::to_string(length) + "/wrapper",
                           [&wrapper, text = std::wstring(length, L'x')] { wrapper.Track3DCKeyPressed(text); }});

    delivered = 0;
    if (argc == 3 && std::string_view(argv[1]) == "count")
        return Count(reports, argv[2]);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    for (const Report& report : reports)
        benchmark::RegisterBenchmark(report.name.c_str(), Measure, std::cref(report));
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

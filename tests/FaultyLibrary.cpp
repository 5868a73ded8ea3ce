// The functions of a telemetry library for tests that fails where a script says so. They use declared members of values
// and facets only, which are the stand-in's or the second library's.
//
// TAVI_FAULT_SCRIPT names the script, a JSON object. For each function it may hold an object whose members say how a
// call is answered: "1", "2", ... that call, "default" every other. An answer may hold
//   "status"       what the function returns; if left out, IsOptedIn 1 and others 0. SetHostProduct returns false
//   "hostProduct"  the identifier that Initialize gives
//   "callbacks"    how often TrackEvent calls the testing callback; 1 if left out
//   "payload"      what TrackEvent hands over in place of the payload; an array may hold strings only
//   "payloads"     an array of what TrackEvent hands over one by one in place of the payload; of SetTestingCallback,
//                  what the callback is handed as soon as it is registered
//   "patch"        a JSON Patch (RFC 6902) of the payload
//   "prints"       a text that the library prints on standard output; "" ends the process there instead
//   "atExit"       of SetTestingCallback: an array of what the callback is handed when the library is unloaded
// TAVI_FAULT_LOG, if set, names the file to which every call is added with its arguments, a JSON object a line.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "support/JsonConversion.h"

using nlohmann::json;

namespace Veltrane::TaviDesktopSDK
{

namespace
{

using Callback = int (*)(const JsonValue& payload, void* context, JsonValue& reply);

std::vector<JsonValue> ValuesOf(const json& sources)
{
    std::vector<JsonValue> values;
    for (const json& source : sources)
        values.push_back(ValueOf(source));
    return values;
}

class Faults
{
public:
    Faults()
    {
        if (const char* const file = std::getenv("TAVI_FAULT_SCRIPT"))
            script = json::parse(std::ifstream(file));
        if (const char* const file = std::getenv("TAVI_FAULT_LOG"))
            log.open(file, std::ios::app);
    }
    ~Faults() { HandOver(atExit); }
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;

    void HandOver(const std::vector<JsonValue>& payloads) const
    {
        for (const JsonValue& payload : payloads)
        {
            JsonValue reply;
            if (callback != nullptr)
                callback(payload, callbackContext, reply);
        }
    }

    // The scripted answer to the next call of `function`, which is logged with its arguments.
    json Answer(const std::string& function, json arguments)
    {
        arguments["function"] = function;
        log << arguments.dump() << std::endl;
        const std::string number = std::to_string(++calls[function]);
        const json answers = script.value(function, json::object());
        json answer = answers.contains(number) ? answers[number] : answers.value("default", json::object());
        if (answer.contains("prints"))
            Print(answer["prints"]);
        return answer;
    }

    std::map<std::string, JsonValue> products; // descriptions given to Initialize, by the identifier that it returned
    std::vector<JsonValue> atExit;
    Callback callback = nullptr;
    void* callbackContext = nullptr;

private:
    static void Print(const std::string& text)
    {
        if (text.empty())
            std::_Exit(9);
        // Held back until the process ends, where standard output is no terminal.
        static_cast<void>(std::fputs(text.c_str(), stdout));
    }

    json script = json::object();
    std::ofstream log;
    std::map<std::string, int> calls;
};

Faults& TheFaults()
{
    static Faults faults;
    return faults;
}

int StatusOf(const json& answer, int otherwise = 0)
{
    return answer.value("status", otherwise);
}

} // namespace

int Initialize(const Facet::Product& product, TaviString& hostProduct)
{
    JsonValue description = product.Build(JsonValue());
    const json answer = TheFaults().Answer("Initialize", {{"product", JsonOf(description)}});
    hostProduct.SetString(answer.value("hostProduct", "faulty-host-product").c_str());
    TheFaults().products[Text(hostProduct)] = description;
    return StatusOf(answer);
}

bool SetHostProduct(const TaviString& hostProduct)
{
    TheFaults().Answer("SetHostProduct", {{"hostProduct", Text(hostProduct)}});
    return false;
}

int TrackEvent(const TaviString& hostProduct, const Facet::Core& core, const JsonValue* extra)
{
    constexpr int unknownHostProduct = 40;
    Faults& faults = TheFaults();
    const auto product = faults.products.find(Text(hostProduct));
    if (product == faults.products.end())
        return unknownHostProduct;
    JsonValue payload = core.Build(product->second);
    const json answer = faults.Answer("TrackEvent", {{"hostProduct", Text(hostProduct)},
                                                     {"extra", extra != nullptr ? JsonOf(*extra) : json()},
                                                     {"payload", JsonOf(payload)}});
    if (answer.contains("payload"))
        payload = ValueOf(answer["payload"]);
    if (answer.contains("patch"))
        payload = ValueOf(JsonOf(payload).patch(answer["patch"]));
    if (answer.contains("payloads"))
        faults.HandOver(ValuesOf(answer["payloads"]));
    else
        faults.HandOver(std::vector<JsonValue>(answer.value("callbacks", std::size_t{1}), payload));
    return StatusOf(answer);
}

int IsOptedIn(JsonValue* details)
{
    return StatusOf(TheFaults().Answer("IsOptedIn", {{"hasDetails", details != nullptr}}), 1);
}

int SetTestingFlags(const TaviString& productKey, const JsonValue& flags)
{
    return StatusOf(
        TheFaults().Answer("SetTestingFlags", {{"productKey", Text(productKey)}, {"flags", JsonOf(flags)}}));
}

int SetTestingCallback(const TaviString& productKey, Callback callback, void* context)
{
    Faults& faults = TheFaults();
    const json answer = faults.Answer("SetTestingCallback", {{"productKey", Text(productKey)}});
    if (StatusOf(answer) == 0)
    {
        faults.callback = callback;
        faults.callbackContext = context;
        faults.HandOver(ValuesOf(answer.value("payloads", json::array())));
        faults.atExit = ValuesOf(answer.value("atExit", json::array()));
    }
    return StatusOf(answer);
}

} // namespace Veltrane::TaviDesktopSDK

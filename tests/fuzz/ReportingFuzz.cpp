// Sequences of reporting calls with arbitrary arguments: each sends exactly one payload, whose text is JSON and which
// has all its attributes, whatever is in them.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>
#include <nlohmann/json.hpp>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/CorvaneTavi.h>
#include <telemetry/ValueText.h>

namespace Sdk = Veltrane::TaviDesktopSDK;

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

class Session
{
public:
    Session(const std::uint8_t* data, std::size_t size) : input(data, size)
    {
        Sdk::JsonValue flags;
        flags[Corvane::TextOf("Testing_EnableCallback")] = Sdk::JsonValue(true);
        Sdk::SetTestingFlags(Sdk::TaviString(), flags);
        Sdk::SetTestingCallback(Sdk::TaviString(), Keep, &payloads);
    }
    ~Session() { Sdk::SetTestingCallback(Sdk::TaviString(), nullptr, nullptr); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void Run()
    {
        while (input.remaining_bytes() > 0)
            CallOne();
    }

private:
    std::wstring Text()
    {
        std::wstring text(input.ConsumeIntegralInRange<std::size_t>(0, 40), L'\0');
        const bool wide = input.ConsumeBool();
        for (wchar_t& unit : text)
            unit = static_cast<wchar_t>(wide ? input.ConsumeIntegral<std::uint32_t>()
                                             : input.ConsumeIntegral<std::uint16_t>());
        return text;
    }

    template <typename Integer>
    Integer Number()
    {
        return input.ConsumeIntegral<Integer>();
    }

    bool Flag() { return input.ConsumeBool(); }
    double Real() { return input.ConsumeFloatingPoint<double>(); }
    float SmallReal() { return input.ConsumeFloatingPoint<float>(); }

    // `members` is how many attributes the object under `object` must have.
    void Expect(const char* object, int members)
    {
        Require(payloads.size() == 1, "a call sends " + std::to_string(payloads.size()) + " events, not one");
        const Sdk::JsonValue& payload = payloads.front();
        const std::string text = payload.GetJsonString().c_str();
        Require(nlohmann::json::accept(text), "a payload is no JSON: " + text);
        const int count = payload[Corvane::TextOf(object)].GetCount();
        Require(count == members, std::string(object) + " has " + std::to_string(count) + " members, not " +
                                      std::to_string(members) + ": " + text);
        payloads.clear();
    }

    void CallOne()
    {
        constexpr auto attributes = "component_attributes";
        CorvaneTavi& tavi = CorvaneTavi::Instance();
        switch (Number<std::uint8_t>() % 12)
        {
        case 0:
            tavi.Track3DCKeyPressed(Text());
            return Expect(attributes, 1);
        case 1:
            tavi.TrackMaterialSelection(Text(), Text(), Number<std::uint64_t>(), Text(), Text(), Text(), Text());
            return Expect(attributes, 7);
        case 2:
            tavi.TrackAnalysisDetails(Text(), Text(), Number<std::int32_t>(), Text(), Number<std::int32_t>());
            return Expect(attributes, 5);
        case 3:
            tavi.TrackNavBarDragMove(input.ConsumeRandomLengthString(40), Flag(), Text(), Flag());
            return Expect(attributes, 3);
        case 4:
        {
            std::vector<NavBarToolState> tools(input.ConsumeIntegralInRange<std::size_t>(0, 5));
            for (NavBarToolState& tool : tools)
                tool = {Text(), Flag()};
            tavi.TrackNavBarStartup(Flag(), Flag(), Text(), Flag(), tools);
            return Expect(attributes, tools.empty() ? 5 : 7);
        }
        case 5:
            tavi.TrackSteerWheelLoadOption(Flag(), Flag(), Number<std::int32_t>(), Number<std::int32_t>(), Real(),
                                           Real(), Flag(), Flag(), Flag(), Flag(), Real(), Flag(), Flag(), Flag(),
                                           Flag());
            return Expect(attributes, 15);
        case 6:
            tavi.TrackDorvelLoadOption(Text(), Text(), SmallReal(), Flag(), Flag(), Flag(), Flag(), SmallReal(),
                                       SmallReal(), Flag(), Flag(), Flag());
            return Expect(attributes, 12);
        case 7:
            tavi.TrackCommandInvoked(Text(), Number<std::int64_t>(), Number<std::uint64_t>(), Text(), Text(), Text());
            return Expect(attributes, 6);
        case 8:
            tavi.TrackUserEvent(Text(), Text(), Number<std::uint64_t>(), Text(), Text(), Text());
            return Expect(attributes, 4);
        case 9:
            tavi.TrackFileInput(Text(), Flag(), Text(), Text(), Number<std::int32_t>(), Flag(), Number<std::int32_t>(),
                                Number<std::int32_t>(), Number<std::int32_t>(), Number<std::int32_t>(),
                                Number<std::int32_t>(), Number<std::int32_t>(), Number<std::int32_t>(),
                                Number<std::int32_t>(), Text(), Text(), Text());
            return Expect("content_meta", 15);
        case 10:
            tavi.TrackUpdateLicense(Text(), Text(), Text(), Text(), Number<std::int32_t>(), Number<std::int32_t>(),
                                    Number<std::int32_t>());
            return Expect("entitlement_properties", 3);
        default:
            CallDocument(tavi);
        }
    }

    // Documents stay with the wrapper for good: few names, so that they are replaced and do not pile up.
    void CallDocument(CorvaneTavi& tavi)
    {
        const std::wstring name = std::wstring(L"document") + static_cast<wchar_t>(L'0' + Number<std::uint8_t>() % 4);
        if (Flag())
        {
            tavi.AddDocument(name, Text(), Number<std::uint64_t>(), Number<std::uint32_t>());
            registered.insert(name);
            Require(payloads.empty(), "AddDocument sends an event");
        }
        tavi.StartTrackFileChange(name);
        if (registered.contains(name))
            Expect("content_meta", 4);
    }

    FuzzedDataProvider input;
    std::vector<Sdk::JsonValue> payloads;
    static inline std::set<std::wstring> registered;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Session(data, size).Run();
    return 0;
}

#include "ArbitraryCalls.h"

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <functional>
#include <limits>
#include <set>
#include <tuple>
#include <type_traits>

#include <telemetry/CorvaneTavi.h>

namespace
{

template <typename Value, std::size_t Count>
Value OneOf(const NumberSource& source, const std::array<Value, Count>& values)
{
    return values.at(static_cast<std::size_t>(source(Count - 1)));
}

// A new type of parameter is a new overload. The last parameter is there to choose one.
bool Make(const NumberSource& source, std::type_identity<bool>)
{
    return source(1) == 1;
}

template <std::integral Integer>
Integer Make(const NumberSource& source, std::type_identity<Integer>)
{
    using Limits = std::numeric_limits<Integer>;
    if (source(3) == 0)
        return OneOf(source, std::array<Integer, 5>{0, 1, Limits::min(), Limits::max(), static_cast<Integer>(-1)});
    return static_cast<Integer>(source(std::numeric_limits<std::make_unsigned_t<Integer>>::max()));
}

template <std::floating_point Real>
Real Make(const NumberSource& source, std::type_identity<Real>)
{
    using Limits = std::numeric_limits<Real>;
    using Bits = std::conditional_t<sizeof(Real) == 4, std::uint32_t, std::uint64_t>;
    const std::uint64_t choice = source(2);
    if (choice == 0)
        return OneOf(source, std::array{Real{0}, -Real{0}, Real{1}, Limits::infinity(), -Limits::infinity(),
                                        Limits::quiet_NaN(), Limits::max(), Limits::lowest(), Limits::denorm_min()});
    if (choice == 1)
        return static_cast<Real>(source(2'000'000)) / 1024 - 900;
    return std::bit_cast<Real>(static_cast<Bits>(source(std::numeric_limits<Bits>::max())));
}

template <typename Unit>
std::basic_string<Unit> MakeText(const NumberSource& source)
{
    const std::uint64_t greatestUnit = OneOf(source, std::array<std::uint64_t, 4>{0x7f, 0xff, 0xffff, 0xffff'ffff});
    const std::uint64_t choice = source(15);
    if (choice == 0)
        return {};
    if (choice == 1)
        return std::basic_string<Unit>(400, static_cast<Unit>(source(greatestUnit)));
    std::basic_string<Unit> text(static_cast<std::size_t>(source(40)), Unit{});
    for (Unit& unit : text)
        unit = static_cast<Unit>(source(greatestUnit));
    return text;
}

std::wstring Make(const NumberSource& source, std::type_identity<std::wstring>)
{
    return MakeText<wchar_t>(source);
}

std::string Make(const NumberSource& source, std::type_identity<std::string>)
{
    return MakeText<char>(source);
}

std::vector<NavBarToolState> Make(const NumberSource& source, std::type_identity<std::vector<NavBarToolState>>)
{
    std::vector<NavBarToolState> tools(static_cast<std::size_t>(source(3)));
    for (NavBarToolState& tool : tools)
        tool = {MakeText<wchar_t>(source), source(1) == 1};
    return tools;
}

template <typename... Parameters>
ArbitraryReport Report(const char* name, void (CorvaneTavi::*method)(Parameters...))
{
    const auto report = [method](const NumberSource& source)
    {
        // In braces, so that the arguments are made from the first to the last.
        const std::tuple<std::remove_cvref_t<Parameters>...> arguments{
            Make(source, std::type_identity<std::remove_cvref_t<Parameters>>())...};
        std::apply([method](const auto&... values) { std::invoke(method, CorvaneTavi::Instance(), values...); },
                   arguments);
    };
    return {name, report};
}

// Documents stay with the wrapper for good: few names, so that they are replaced and do not pile up.
void ReportDocument(const NumberSource& source)
{
    static std::set<std::wstring> registered;
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    const std::wstring name = OneOf(
        source, std::array<std::wstring, 4>{L"document", L"", L"\xd800 and \xfdd0", std::wstring(1000, L'\x20ac')});
    if (registered.insert(name).second || source(1) == 1)
    {
        const std::tuple<std::wstring, std::uint64_t, std::uint32_t> arguments{
            Make(source, std::type_identity<std::wstring>()), Make(source, std::type_identity<std::uint64_t>()),
            Make(source, std::type_identity<std::uint32_t>())};
        std::apply([&](const auto&... values) { tavi.AddDocument(name, values...); }, arguments);
    }
    tavi.StartTrackFileChange(name);
}

} // namespace

const std::vector<ArbitraryReport>& ArbitraryReports()
{
    static const std::vector<ArbitraryReport> reports = {
#include "ArbitraryReports.inc"
        {"StartTrackFileChange", ReportDocument},
    };
    return reports;
}

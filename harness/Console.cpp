#include <harness/Console.h>

#include <iostream>
#include <string>
#include <string_view>
#include <utility>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <harness/NarrowText.h>

using Veltrane::TaviDesktopSDK::TaviString;

namespace Corvane
{

namespace
{

class Utf8Buffer : public std::wstreambuf
{
protected:
    int_type overflow(int_type unit) override
    {
        // `unit` is always a character: where wchar_t has 16 bits, U+FFFF has the same value as eof().
        const wchar_t character = traits_type::to_char_type(unit);
        return xsputn(&character, 1) == 1 ? traits_type::not_eof(unit) : traits_type::eof();
    }

    std::streamsize xsputn(const wchar_t* text, std::streamsize count) override
    {
        std::wstring wide = std::move(heldBack);
        heldBack.clear();
        wide.append(text, static_cast<std::size_t>(count));
        // The other half of a pair of surrogates may come with the next call.
        if (!wide.empty() && wide.back() >= 0xD800 && wide.back() <= 0xDBFF)
        {
            heldBack.assign(1, wide.back());
            wide.pop_back();
        }
        return Write(wide) ? count : 0;
    }

    int sync() override
    {
        const std::wstring wide = std::exchange(heldBack, {});
        return Write(wide) && std::cout.rdbuf()->pubsync() == 0 ? 0 : -1;
    }

private:
    static bool Write(std::wstring_view wide)
    {
        // The library's strings end at a null character: text that holds some goes piece by piece.
        for (;;)
        {
            const std::size_t end = wide.find(L'\0');
            const TaviString utf8 = NarrowText(std::wstring(wide.substr(0, end)));
            if (utf8.size() != 0 && !WriteBytes({utf8.c_str(), utf8.size()}))
                return false;
            if (end == std::wstring_view::npos)
                return true;
            if (!WriteBytes(std::string_view("\0", 1)))
                return false;
            wide.remove_prefix(end + 1);
        }
    }

    static bool WriteBytes(std::string_view bytes)
    {
        const auto count = static_cast<std::streamsize>(bytes.size());
        return std::cout.rdbuf()->sputn(bytes.data(), count) == count;
    }

    std::wstring heldBack; // a high surrogate, at most
};

} // namespace

Utf8Console::Utf8Console() : buffer(std::make_unique<Utf8Buffer>()), previous(std::wcout.rdbuf(buffer.get())) {}

Utf8Console::~Utf8Console()
{
    std::wcout.flush();
    std::wcout.rdbuf(previous);
}

class StandardOutput::Buffer : public std::streambuf
{
public:
    std::error_code Failure() const { return failure; }

protected:
    int_type overflow(int_type unit) override
    {
        // `unit` is always a character.
        pending += traits_type::to_char_type(unit);
        return traits_type::not_eof(unit);
    }

    std::streamsize xsputn(const char* text, std::streamsize count) override
    {
        pending.append(text, static_cast<std::size_t>(count));
        return count;
    }

    int sync() override
    {
        const std::string text = std::exchange(pending, {});
        if (!failure)
            failure = system.Write(text);
        return failure ? -1 : 0;
    }

private:
    SystemConsole system;
    std::string pending;
    std::error_code failure;
};

StandardOutput::StandardOutput() : buffer(std::make_unique<Buffer>()), previous(std::cout.rdbuf(buffer.get())) {}

StandardOutput::~StandardOutput()
{
    static_cast<void>(Flush());
    std::cout.rdbuf(previous);
}

std::error_code StandardOutput::Flush()
{
    std::wcout.flush();
    buffer->pubsync();
    return buffer->Failure();
}

} // namespace Corvane

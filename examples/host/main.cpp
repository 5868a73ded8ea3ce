// A host application that reports a session: documents are opened and changed, a mesh is changed, an analysis is run, a
// report is written. With --print it shows each payload that leaves: add a call to ReportSession() and see what it
// sends.
#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>

#include <TaviDesktopSDK/TaviDesktopSDK.h>
#include <telemetry/CorvaneTavi.h>

namespace Sdk = Veltrane::TaviDesktopSDK;
using Sdk::JsonValue;
using Sdk::TaviString;

namespace
{

const char* const Usage = R"(Usage: example_host [--print]

Reports a session of a host application: documents, a mesh, an analysis, a report.

  --print  show each payload as it leaves, as JSON in UTF-8, and upload nothing
  --help   show this
)";

enum ExitStatus : int
{
    Reported = 0,
    Failed = 1, // no test mode, or output that cannot be written
    BadOption = 2,
};

// What the library's IsOptedIn returns for a user who does not take part.
constexpr int NotOptedIn = 4;

// The host's own code for where a document came from.
constexpr std::uint32_t FromDisk = 1;

TaviString LibraryText(const std::string& text)
{
    TaviString copy;
    copy.SetString(text.c_str());
    return copy;
}

void OpenDocument(CorvaneTavi& tavi, const std::wstring& name, const std::wstring& extension, std::int32_t size)
{
    tavi.TrackFileInput(L"open", true, L"3D", extension, size, false, // not from a network
                        0, 2, 5, 0,                                   // objects: 2D, 3D, annotations, unknown
                        0, 0, 0, 0,                                   // references to drawings and to images
                        L"CVSTUDIO", L"2026.1.F", L"CVSTUDIO_S");     // what it was last saved by
    tavi.AddDocument(name, extension, static_cast<std::uint64_t>(size), FromDisk);
}

void ReportSession(CorvaneTavi& tavi)
{
    OpenDocument(tavi, L"cover.sdy", L"sdy", 48'211);
    OpenDocument(tavi, L"Geh\u00E4use.sdy", L"sdy", 1'730'442);
    tavi.StartTrackFileChange(L"cover.sdy");

    tavi.TrackMeshPropertyChanged(L"Global edge length", L"3.0 mm", L"2.5 mm");
    tavi.TrackCommandInvoked(L"Generate Mesh", 0, 1, L"mesh", L"ribbon", L"Generates the mesh");
    tavi.TrackMeshSize(128'000, 64'500);
    tavi.StartTrackFileChange(L"Geh\u00E4use.sdy");

    tavi.TrackAnalysisPropertyChanged(L"Fill", L"Fill and pack");
    tavi.TrackAnalysisDetails(L"Thermoplastics injection moulding", L"Fill and pack", 2, L"Custom", 4);

    tavi.TrackReport(L"cover", L"pptx", 1, 1);
}

// An object has a line for each of its members; every other value stands on one.
void Print(const JsonValue& value, const std::string& indent)
{
    const JsonValue keys = value.GetKeyList();
    const int count = keys.GetCount();
    if (count == 0)
    {
        std::cout << value.GetJsonString().c_str();
        return;
    }
    const std::string deeper = indent + "    ";
    std::cout << "{\n";
    for (int i = 0; i < count; ++i)
    {
        std::cout << deeper << keys[i].GetJsonString().c_str() << ": ";
        Print(value[keys[i].operator TaviString()], deeper);
        std::cout << (i + 1 < count ? ",\n" : "\n");
    }
    std::cout << indent << "}";
}

int PrintPayload(const JsonValue& payload, void*, JsonValue&)
{
    Print(payload, "");
    std::cout << std::endl;
    return 0;
}

// Puts the library into test mode, in which it hands each payload to the callback. False when the library refuses.
bool StartPrinting(const TaviString& productKey)
{
    if (Sdk::IsOptedIn(nullptr) == NotOptedIn)
    {
        std::cerr << "example_host: nothing is sent, for the user has not opted in to usage-data collection\n";
        return false;
    }
    JsonValue flags;
    flags[LibraryText("Testing_EnableCallback")] = JsonValue(true);
    flags[LibraryText("Testing_EnableWhitelistDownload")] = JsonValue(true);
    flags[LibraryText("Testing_EnableUpload")] = JsonValue(false);
    int status = Sdk::SetTestingFlags(productKey, flags);
    if (status == 0)
        status = Sdk::SetTestingCallback(productKey, PrintPayload, nullptr);
    if (status != 0)
        std::cerr << "example_host: the telemetry library refuses test mode with status " << status << "\n";
    return status == 0;
}

ExitStatus Run(int argc, char** argv)
{
    bool print = false;
    for (int i = 1; i < argc; ++i)
    {
        const std::string_view option = argv[i];
        if (option == "--help")
        {
            std::cout << Usage;
            return Reported;
        }
        if (option != "--print")
        {
            std::cerr << "example_host: unknown option \"" << option << "\"; --help shows those there are\n";
            return BadOption;
        }
        print = true;
    }

    CorvaneTavi& tavi = CorvaneTavi::Instance();
    if (print && !StartPrinting(LibraryText(tavi.GetProductKey())))
        return Failed;
    if (!print)
        std::cout << "Reporting for " << tavi.GetProductKey() << std::endl;
    ReportSession(tavi);
    if (!print)
        std::cout << "Reported; --print shows what is sent" << std::endl;
    return Reported;
}

} // namespace

int main(int argc, char** argv)
{
    const ExitStatus status = Run(argc, argv);
    std::cout.flush();
    if (std::cout.good())
        return status;
    std::cerr << "example_host: standard output cannot be written\n";
    return Failed;
}

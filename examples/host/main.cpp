// A host application that reports a session: documents are opened and changed, a mesh is changed, an analysis is run, a
// report is written. With --print it shows what is sent: add a call to ReportSession() and see its payload.
#include <cstdint>
#include <iostream>
#include <string>
#include <string_view>

#include <recorder/PayloadRecorder.h>
#include <telemetry/CorvaneTavi.h>

namespace
{

const char* const Usage = R"(Usage: example_host [--print]

Reports a session of a host application: documents, a mesh, an analysis, a report.

  --print  show each payload as a line of JSON, and upload nothing
  --help   show this
)";

enum ExitStatus : int
{
    Reported = 0,
    Failed = 1, // nothing can be recorded, or output cannot be written
    BadOption = 2,
};

// The host's own code for where a document came from.
constexpr std::uint32_t FromDisk = 1;

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

ExitStatus PrintSession()
{
    const Corvane::PayloadRecorder recorder;
    if (!recorder.Refusal().empty())
    {
        std::cerr << "example_host: nothing is recorded: " << recorder.Refusal() << "\n";
        return Failed;
    }
    ReportSession(CorvaneTavi::Instance());
    recorder.WriteLines(std::cout);
    return Reported;
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

    if (print)
        return PrintSession();

    CorvaneTavi& tavi = CorvaneTavi::Instance();
    std::cout << "Reporting for " << tavi.GetProductKey() << std::endl;
    ReportSession(tavi);
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

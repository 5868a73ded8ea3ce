// A host application's smallest use of the wrapper: a document is opened and changed, a mesh is made.
#include <iostream>
#include <string>

#include <telemetry/CorvaneTavi.h>

int main()
{
    const std::wstring document = L"cover.sdy";

    // The first access reads UPI/upiconfig.xml beside this program and starts the telemetry library.
    CorvaneTavi& tavi = CorvaneTavi::Instance();
    std::cout << "Reporting for " << tavi.GetProductKey() << std::endl;

    tavi.AddDocument(document, L"sdy", 48'211, 0); // the edit timer runs from here
    tavi.TrackCommandInvoked(L"Generate Mesh", 0, 1, L"mesh", L"ribbon", L"Generates the mesh");
    tavi.TrackMeshSize(128'000, 64'500);
    tavi.StartTrackFileChange(document);

    // A report that the library refuses prints one line and stops nobody.
    return 0;
}

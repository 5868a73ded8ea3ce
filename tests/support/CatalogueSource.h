// The tests of the program's catalogue as its source has them, so that none can be missed.
#pragma once

#include <string>
#include <vector>

struct CatalogueCall
{
    std::string title;              // "Testing MeshSize"
    std::string method;             // "TrackMeshSize", the last one that the test calls
    int line;                       // of harness/Catalogue.cpp, counted from 1
    std::vector<std::string> calls; // all methods of the wrapper that the test calls, in order
};

// In the order in which they run.
std::vector<CatalogueCall> ReadCatalogueSource();

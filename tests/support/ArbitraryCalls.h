// Calls of the reporting methods with arguments of all kinds: empty, long and ill-formed texts, the least and the
// greatest numbers, infinities, lists without members.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Gives a number from 0 to `greatest`. All that is arbitrary comes from it: the same numbers make the same calls.
using NumberSource = std::function<std::uint64_t(std::uint64_t greatest)>;

struct ArbitraryReport
{
    std::string method;                              // "TrackMeshSize"
    std::function<void(const NumberSource&)> report; // one call, and so one event
};

// Of all methods that report; StartTrackFileChange is called for one of a few documents, which AddDocument makes or
// replaces.
const std::vector<ArbitraryReport>& ArbitraryReports();

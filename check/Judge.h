// Judges payloads by docs/events.json.
//
// The keys that the wrapper writes must be at their places with the right values, and objects that it writes hold no
// others. What the library adds is its own affair: a product's description or an edit timer that does not come, or
// comes in another form, is a remark, and so is a further key at the payload's top level.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/Document.h>
#include <check/ProductFile.h>

namespace Corvane
{

struct Fault
{
    std::string key;         // with its object before it, as in "content_meta: COMMON.FILE.NAME"; empty: of no key
    nlohmann::json expected; // null: nothing
    nlohmann::json sent;     // null: nothing
    std::string sentence;
};

struct Findings
{
    std::vector<Fault> faults;
    std::vector<Fault> productFaults; // of the product's description, which is in every payload
    std::vector<std::string> remarks;
};

class Judge
{
public:
    // `takesEmptyForNone` tells of a library that leaves out what is given an empty text.
    Judge(ProductFile productFile, bool takesEmptyForNone);

    // A payload of a call with these arguments.
    Findings OfCall(const DocumentEvent& event, const std::vector<nlohmann::json>& arguments,
                    const nlohmann::json& payload) const;

    // A payload of unknown arguments: values of the host are judged by their form.
    Findings OfCaptured(const DocumentEvent& event, const nlohmann::json& payload) const;

private:
    ProductFile product;
    bool emptyIsNone;
};

// Whether the telemetry library that the program uses does so.
bool LibraryTakesEmptyForNone();

} // namespace Corvane

// Judges payloads by docs/events.json.
//
// The keys that the wrapper writes must be at their places with the right values, and objects that the wrapper writes
// hold no others. The library decides what it adds: a product's description or an edit timer that is absent or has
// another form is a remark, and so is a further key at the payload's top level.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include <check/Document.h>
#include <check/ProductFile.h>

namespace Corvane
{

struct Fault
{
    std::string key;         // after its object, as in "content_meta: COMMON.FILE.NAME"; empty: the payload as a whole
    nlohmann::json expected; // null: nothing
    nlohmann::json sent;     // null: nothing
    std::string message;
};

struct Findings
{
    std::vector<Fault> faults = {};
    std::vector<Fault> productFaults = {}; // of the product's description, which is in every payload
    std::vector<std::string> remarks = {};

    // The messages of all faults, those of the product's description last.
    std::vector<std::string> Messages() const;
};

class Judge
{
public:
    // `takesEmptyForNone`: the library leaves out a key whose text is empty.
    Judge(ProductFile productFile, bool takesEmptyForNone)
        : product(std::move(productFile)), emptyIsNone(takesEmptyForNone)
    {
    }

    // Judges a payload of a call with these arguments.
    Findings OfCall(const DocumentEvent& event, const std::vector<nlohmann::json>& arguments,
                    const nlohmann::json& payload) const;

    // Judges a payload of unknown arguments: the host's values are judged by their form.
    Findings OfCaptured(const DocumentEvent& event, const nlohmann::json& payload) const;

private:
    ProductFile product;
    bool emptyIsNone;
};

// Whether the telemetry library in use takes an empty text for none.
bool LibraryTakesEmptyForNone();

} // namespace Corvane

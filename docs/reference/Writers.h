// The event reference as a document.
#pragma once

#include <string>

#include "Reference.h"

// Paragraphs, with code between backticks.
inline constexpr const char* Introduction =
    R"(What each reporting method of `CorvaneTavi` sends. The payloads are those that the calls of the test program make, in
the library's test mode with our stand-in; what the closed library adds before it uploads is not known here. A value's
type is that of the argument it comes from, "as text" where it is sent as a string: flags as "True" and "False". "From"
names the parameter. "Fixed" is the same in every such event, and what is "measured" comes from the telemetry library.)";

inline constexpr const char* AboutCommonFields = "The host product's description.";

inline constexpr const char* AboutUnsentTexts =
    R"(Names and keys of the vocabulary that no method sends of itself: other parts of the host have them, or a caller gives
them.)";

// What a person reads of a field beside its key.
inline std::string FromOf(const Field& field, const std::string& quotedParameter)
{
    if (field.measured)
        return "measured";
    return field.from.empty() ? "fixed" : quotedParameter;
}

std::string AsMarkdown(const Reference& reference);

// One self-contained page: the template with its marks, each "<!-- NAME -->" on a line of its own, replaced.
std::string AsPage(const Reference& reference, const std::string& pageTemplate);

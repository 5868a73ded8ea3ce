// The event reference as a document.
#pragma once

#include <string>

#include "Reference.h"

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

#include <algorithm>
#include <cctype>
#include <sstream>

#include "Writers.h"

namespace
{

const char* const Opening = R"(# Events

<!-- Written by scripts/reference.sh. Not to be edited. -->

What each reporting method of `CorvaneTavi` sends. The payloads are those that the calls of the test program make, in
the library's test mode with our stand-in; what the closed library adds before it uploads is not known here.
`events.html` beside this is the same with a search; `scripts/reference.sh` writes both.

A value's type is that of the argument it comes from, "as text" where it is sent as a string: flags as "True" and
"False". "from" names the parameter. "fixed" is the same in every such event, and what is "measured" comes from the
telemetry library.

## Contents

)";

const char* const OpeningOfUnsent = R"(
## Defined and not sent

Names and keys of the vocabulary that no method sends of itself: other parts of the host have them, or a caller gives
them.

)";

std::string Code(const std::string& text)
{
    return "`" + text + "`";
}

std::string LinkTo(const std::string& heading)
{
    std::string anchor;
    for (const char character : heading)
    {
        if (character == ' ')
            anchor += '-';
        else if (std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '-')
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    }
    return "[" + heading + "](#" + anchor + ")";
}

void WriteFields(std::ostream& out, const std::vector<Field>& fields)
{
    if (fields.empty())
        return;
    out << "\n| key | in | type | from | example |\n|---|---|---|---|---|\n";
    for (const Field& field : fields)
        out << "| " << Code(field.key) << " | " << (field.object.empty() ? "" : Code(field.object)) << " | "
            << field.type << " | " << FromOf(field, Code(field.from)) << " | " << Code(field.example) << " |\n";
}

void WriteEvent(std::ostream& out, const Event& event)
{
    out << "\n### " << event.method << "\n\n```cpp\n";
    for (const std::string& signature : event.signatures)
        out << signature << "\n";
    out << "```\n\nEvent ";
    if (event.name.empty())
        out << "without a name";
    else
        out << Code(event.name) << (event.nameFrom.empty() ? "" : " (from " + Code(event.nameFrom) + ")");
    out << ", type " << Code(event.type) << ", scope " << Code(event.scope) << ".\n";
    WriteFields(out, event.fields);
    out << "\n```json\n" << event.payload << "\n```\n";
}

} // namespace

std::string AsMarkdown(const Reference& reference)
{
    std::ostringstream out;
    out << Opening;
    for (const Group& group : reference.groups)
    {
        out << "- " << LinkTo(group.heading) << "\n";
        for (const Event& event : group.events)
            out << "    - " << LinkTo(event.method) << (event.name.empty() ? "" : ": " + Code(event.name)) << "\n";
    }
    out << "- " << LinkTo("In every event") << "\n- " << LinkTo("Defined and not sent") << "\n";

    for (const Group& group : reference.groups)
    {
        out << "\n## " << group.heading << "\n";
        for (const std::string& note : group.notes)
            out << "\n" << note << "\n";
        for (const Event& event : group.events)
            WriteEvent(out, event);
    }

    out << "\n## In every event\n\nThe host product's description.\n";
    WriteFields(out, reference.common);

    out << OpeningOfUnsent;
    for (const UnsentText& unsent : reference.unsent)
        out << "- " << Code(unsent.text)
            << (unsent.namedInExampleOf.empty()
                    ? ""
                    : ", the name given in the example of " + LinkTo(unsent.namedInExampleOf))
            << "\n";
    return out.str();
}

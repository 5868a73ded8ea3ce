#include <algorithm>
#include <cctype>
#include <sstream>

#include "Writers.h"

namespace
{

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
    out << "\n| Key | In | Type | From | Example |\n|---|---|---|---|---|\n";
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
    out << "# Events\n\n<!-- Written by scripts/reference.sh. Not to be edited. -->\n\n"
        << Introduction
        << "\n\n`events.html` beside this is the same with a search; `scripts/reference.sh` writes both.\n"
           "\n## Contents\n\n";
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

    out << "\n## In every event\n\n" << AboutCommonFields << "\n";
    WriteFields(out, reference.common);

    out << "\n## Defined and not sent\n\n" << AboutUnsentTexts << "\n\n";
    for (const UnsentText& unsent : reference.unsent)
        out << "- " << Code(unsent.text)
            << (unsent.namedInExampleOf.empty()
                    ? ""
                    : ", the name given in the example of " + LinkTo(unsent.namedInExampleOf))
            << "\n";
    return out.str();
}

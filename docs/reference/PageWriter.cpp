#include <map>
#include <sstream>
#include <stdexcept>

#include "Writers.h"

namespace
{

std::string Escaped(const std::string& text)
{
    std::string escaped;
    for (const char character : text)
    {
        if (character == '&')
            escaped += "&amp;";
        else if (character == '<')
            escaped += "&lt;";
        else
            escaped += character;
    }
    return escaped;
}

std::string Code(const std::string& text)
{
    return "<code>" + Escaped(text) + "</code>";
}

// HTML of text that has code between backticks.
std::string Paragraph(const std::string& text)
{
    std::string paragraph = "<p>";
    std::istringstream parts(text);
    bool isCode = false;
    for (std::string part; std::getline(parts, part, '`'); isCode = !isCode)
        paragraph += isCode ? Code(part) : Escaped(part);
    return paragraph + "</p>\n";
}

std::string IdOf(const std::string& heading)
{
    std::string id = heading;
    for (char& character : id)
    {
        if (character == ' ' || character == ',')
            character = '-';
    }
    return id;
}

std::string LinkTo(const std::string& id, const std::string& content)
{
    return "<a href='#" + id + "'>" + content + "</a>";
}

std::string Contents(const Reference& reference)
{
    std::ostringstream out;
    out << "<ul>\n";
    for (const Group& group : reference.groups)
    {
        out << "<li data-of='" << IdOf(group.heading) << "'>" << LinkTo(IdOf(group.heading), group.heading)
            << "\n<ul>\n";
        for (const Event& event : group.events)
            out << "<li data-of='" << event.method << "'>" << LinkTo(event.method, event.method) << "</li>\n";
        out << "</ul></li>\n";
    }
    out << "</ul>\n";
    return out.str();
}

void WriteFields(std::ostream& out, const std::vector<Field>& fields)
{
    if (fields.empty())
        return;
    out << "<table>\n<thead><tr><th scope='col'>Key</th><th scope='col'>In</th><th scope='col'>Type</th>"
           "<th scope='col'>From</th><th scope='col'>Example</th></tr></thead>\n<tbody>\n";
    for (const Field& field : fields)
        out << "<tr><th scope='row' class='key'>" << LinkTo("key-" + field.key, Code(field.key))
            << "</th><td data-label='In'>" << (field.object.empty() ? "" : Code(field.object))
            << "</td><td data-label='Type'>" << field.type << "</td><td data-label='From'>"
            << FromOf(field, Code(field.from)) << "</td><td data-label='Example'>" << Code(field.example)
            << "</td></tr>\n";
    out << "</tbody>\n</table>\n";
}

void WriteEvent(std::ostream& out, const Event& event)
{
    out << "<article id='" << event.method << "' tabindex='-1' aria-labelledby='heading-" << event.method
        << "'>\n<h3 id='heading-" << event.method << "'>" << event.method << "</h3>\n<pre class='signature'><code>";
    for (const std::string& signature : event.signatures)
        out << Escaped(signature) << "\n";
    out << "</code></pre>\n<p>Event ";
    if (event.name.empty())
        out << "without a name";
    else
        out << "<code class='name'>" << event.name << "</code>"
            << (event.nameFrom.empty() ? "" : " (from " + Code(event.nameFrom) + ")");
    out << ", type " << Code(event.type) << ", scope " << Code(event.scope) << ".</p>\n";
    WriteFields(out, event.fields);
    out << "<details><summary>Payload of " << event.method << "</summary><pre><code>" << Escaped(event.payload)
        << "</code></pre></details>\n</article>\n";
}

std::string Events(const Reference& reference)
{
    std::ostringstream out;
    for (const Group& group : reference.groups)
    {
        out << "<section id='" << IdOf(group.heading) << "' tabindex='-1'>\n<h2>" << group.heading << "</h2>\n";
        for (const std::string& note : group.notes)
            out << Paragraph(note);
        for (const Event& event : group.events)
            WriteEvent(out, event);
        out << "</section>\n";
    }
    return out.str();
}

std::string Common(const Reference& reference)
{
    std::ostringstream out;
    out << Paragraph(AboutCommonFields);
    WriteFields(out, reference.common);
    return out.str();
}

// A list of all keys, each with the events that carry it.
std::string Keys(const Reference& reference)
{
    std::map<std::string, std::string> links;
    for (const Field& field : reference.common)
        links[field.key] = "every event\n";
    for (const Group& group : reference.groups)
    {
        for (const Event& event : group.events)
        {
            for (const Field& field : event.fields)
                links[field.key] += LinkTo(event.method, event.method) + "\n";
        }
    }
    std::ostringstream out;
    for (const auto& [key, events] : links)
        out << "<li id='key-" << key << "' tabindex='-1'>" << Code(key) << ": " << events << "</li>\n";
    return out.str();
}

std::string Unsent(const Reference& reference)
{
    std::ostringstream out;
    out << Paragraph(AboutUnsentTexts) << "<ul class='list'>\n";
    for (const UnsentText& unsent : reference.unsent)
    {
        out << "<li>" << Code(unsent.text);
        if (!unsent.namedInExampleOf.empty())
            out << ", the name given in the example of " << LinkTo(unsent.namedInExampleOf, unsent.namedInExampleOf);
        out << "</li>\n";
    }
    out << "</ul>\n";
    return out.str();
}

void Replace(std::string& page, const std::string& name, const std::string& content)
{
    const std::string mark = "<!-- " + name + " -->\n";
    const std::size_t at = page.find(mark);
    if (at == std::string::npos)
        throw std::runtime_error("the template has no mark " + name);
    page.replace(at, mark.size(), content);
}

} // namespace

std::string AsPage(const Reference& reference, const std::string& pageTemplate)
{
    std::string page = pageTemplate;
    Replace(page, "INTRODUCTION", Paragraph(Introduction));
    Replace(page, "CONTENTS", Contents(reference));
    Replace(page, "EVENTS", Events(reference));
    Replace(page, "COMMON", Common(reference));
    Replace(page, "KEYS", Keys(reference));
    Replace(page, "UNSENT", Unsent(reference));
    return page;
}

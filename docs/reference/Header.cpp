#include "Header.h"

#include <algorithm>
#include <regex>
#include <sstream>

namespace
{

void Append(std::string& text, char separator, const std::string& part)
{
    if (!text.empty())
        text += separator;
    text += part;
}

std::vector<std::string> ParameterNames(const std::string& signature)
{
    std::vector<std::string> names;
    const std::regex parameter(R"((\w+)(?=[,)]))");
    for (std::sregex_iterator found(signature.begin(), signature.end(), parameter), end; found != end; ++found)
        names.push_back((*found)[1]);
    return names;
}

Declaration MakeDeclaration(const std::string& signature, const std::string& comment)
{
    Declaration declaration;
    const std::size_t name = std::string("void ").size();
    declaration.name = signature.substr(name, signature.find('(') - name);
    declaration.signature = signature;
    declaration.parameters = ParameterNames(signature);
    const std::size_t headingEnd = comment.find('.');
    declaration.heading = comment.substr(0, headingEnd);
    if (headingEnd != std::string::npos && headingEnd + 2 < comment.size())
        declaration.note = comment.substr(headingEnd + 2);
    return declaration;
}

} // namespace

std::vector<Declaration> ReadMethods(const std::string& header)
{
    const std::size_t begin = header.find("\npublic:\n");
    std::istringstream lines(header.substr(begin, header.find("\nprivate:\n") - begin));
    std::vector<Declaration> declarations;
    std::string comment;
    std::string signature;
    for (std::string line; std::getline(lines, line);)
    {
        const std::string text = line.substr(std::min<std::size_t>(4, line.size()));
        if (text.empty())
        {
            comment.clear();
        }
        else if (text.starts_with("// "))
        {
            Append(comment, ' ', text.substr(3));
        }
        else
        {
            Append(signature, '\n', text);
            if (!text.ends_with(";"))
                continue;
            if (signature.starts_with("void "))
                declarations.push_back(MakeDeclaration(signature, comment));
            signature.clear();
        }
    }
    return declarations;
}

#include <telemetry/MiniXml.h>

#include <memory>
#include <string_view>
#include <utility>

namespace Corvane
{

namespace
{

// Without a callback Mini-XML prints on the error stream.
void IgnoreError(void*, const char*) {}

// The entities that XML predefines; Mini-XML 4 itself lacks "apos". For any other name -1, which ends the reading.
int CharacterOf(void*, const char* entity)
{
    const std::pair<std::string_view, char> predefined[] = {
        {"amp", '&'}, {"apos", '\''}, {"gt", '>'}, {"lt", '<'}, {"quot", '"'}};
    for (const auto& [name, character] : predefined)
        if (name == entity)
            return character;
    return -1;
}

} // namespace

mxml_node_t* LoadXmlFile(std::FILE* file)
{
    const std::unique_ptr<mxml_options_t, decltype(&mxmlOptionsDelete)> options(mxmlOptionsNew(), &mxmlOptionsDelete);
    mxmlOptionsSetErrorCallback(options.get(), &IgnoreError, nullptr);
    mxmlOptionsSetEntityCallback(options.get(), &CharacterOf, nullptr);
    return mxmlLoadFile(nullptr, options.get(), file);
}

mxml_node_t* FindElement(mxml_node_t* start, mxml_node_t* top, const char* element, bool descend)
{
    return mxmlFindElement(start, top, element, nullptr, nullptr, descend ? MXML_DESCEND_ALL : MXML_DESCEND_NONE);
}

} // namespace Corvane

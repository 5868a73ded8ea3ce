#include <telemetry/MiniXml.h>

namespace Corvane
{

mxml_node_t* LoadXmlFile(std::FILE* file)
{
    // Without a callback Mini-XML prints on the error stream. It cannot return the callback that was set before.
    mxmlSetErrorCallback([](const char*) {});
    mxml_node_t* const tree = mxmlLoadFile(nullptr, file, nullptr);
    mxmlSetErrorCallback(nullptr);
    return tree;
}

mxml_node_t* FindElement(mxml_node_t* start, mxml_node_t* top, const char* element, bool descend)
{
    return mxmlFindElement(start, top, element, nullptr, nullptr, descend ? MXML_DESCEND : MXML_NO_DESCEND);
}

} // namespace Corvane

#include <telemetry/MiniXml.h>

namespace Corvane
{

namespace
{

// Without a callback Mini-XML prints on the error stream. It cannot return the callback that was set before.
class SilentMiniXml
{
public:
    SilentMiniXml()
    {
        mxmlSetErrorCallback([](const char*) {});
    }
    ~SilentMiniXml() { mxmlSetErrorCallback(nullptr); }
    SilentMiniXml(const SilentMiniXml&) = delete;
    SilentMiniXml& operator=(const SilentMiniXml&) = delete;
};

} // namespace

mxml_node_t* LoadXmlFile(std::FILE* file)
{
    const SilentMiniXml silent;
    return mxmlLoadFile(nullptr, file, nullptr);
}

mxml_node_t* FindElement(mxml_node_t* start, mxml_node_t* top, const char* element, bool descend)
{
    return mxmlFindElement(start, top, element, nullptr, nullptr, descend ? MXML_DESCEND : MXML_NO_DESCEND);
}

} // namespace Corvane

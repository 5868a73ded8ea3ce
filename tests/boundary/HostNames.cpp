// A host application whose own names our sources use as well. It compiles only while our public headers leave these
// names to it; that the wrapper defines no others outside its namespace is seen in its symbols.
enum class Attribute : int;
enum class Attributes : int;
enum class EventScopes : int;
enum class EventTypes : int;
enum class FacetAccess : int;
enum class FacetField : int;
enum class FacetFields : int;
enum class FacetKeys : int;
enum class Vocabulary : int;
enum HostNames
{
    ComponentFacet,
    ExecutableFolder,
    FacetEntries,
    FindElement,
    LoadXmlFile,
    ModuleFolder,
    NarrowText,
    OpenForReading,
    ScopeLetters,
    SetFacetObjectMembers,
    SetText,
    TextOf,
};

#include "PublicHeaders.h"
#include <recorder/PayloadRecorder.h>

int main()
{
    return CorvaneTavi::Instance().GetProductKey().empty() || SetText == TextOf ? 1 : 0;
}

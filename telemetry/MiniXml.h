// Hides the differences between the versions of Mini-XML. MiniXml3.cpp is for version 3, MiniXml4.cpp for version 4;
// CMake picks one.
#pragma once

#include <cstdio>

#include <mxml.h>

namespace Corvane
{

// mxmlLoadFile without a parent: the first node of what `file` holds, owned by the caller. Null when the file is not
// well-formed. Nothing is printed.
mxml_node_t* LoadXmlFile(std::FILE* file);

// mxmlFindElement for elements of that name, whatever their attributes. Null when there is none.
mxml_node_t* FindElement(mxml_node_t* start, mxml_node_t* top, const char* element, bool descend);

} // namespace Corvane

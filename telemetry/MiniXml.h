// What differs between the versions of Mini-XML. MiniXml3.cpp is for version 3, MiniXml4.cpp for version 4; CMake
// picks.
#pragma once

#include <cstdio>

#include <mxml.h>

// Adds what `file` holds to `parent`, which may be null, and returns its first node: owned by `parent`, or by the
// caller when there is none. Null when the file is not well-formed. Nothing is printed.
mxml_node_t* LoadXmlFile(mxml_node_t* parent, std::FILE* file);

// mxmlFindElement for elements of that name, whatever their attributes. Null when there is none.
mxml_node_t* FindElement(mxml_node_t* start, mxml_node_t* top, const char* element, bool descend);

// True for "<?...?>", an XML declaration among them; false for null.
bool IsDirective(mxml_node_t* node);

// The text of a text node, which owns it; null for any other.
const char* TextOf(mxml_node_t* node);

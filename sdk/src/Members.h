// Members of one object in another.
#pragma once

#include <TaviDesktopSDK/JsonValue.h>

#include "JsonObject.h"

namespace Veltrane::TaviDesktopSDK
{

struct Members
{
    // Copies each member of the object `from` into `into`, replacing one of the same key. Any other `from` has none.
    static void Merge(JsonValue& into, const JsonValue& from);

    // The same without copies: the member becomes part of both. `into` is null, or was made by this.
    static void Borrow(JsonValue& into, const JsonValue& from)
    {
        const Node::Object* const source = Node::ObjectIn(from);
        if (source == nullptr || source->Count() == 0)
            return;
        if (into.node == nullptr)
            into.node = Node::Object::MakeFor(source->Count());
        static_cast<Node::Object*>(into.node)->Borrow(*source);
    }

    // Leaves null of what Borrow made, and the members to where they were borrowed from.
    static void GiveBack(JsonValue& borrower) noexcept
    {
        if (borrower.node != nullptr)
            Node::Object::ReleaseEmptied(static_cast<Node::Object*>(std::exchange(borrower.node, nullptr)));
    }

private:
    using Node = JsonValue::Node;
};

} // namespace Veltrane::TaviDesktopSDK

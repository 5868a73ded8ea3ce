#include "RapidJsonTree.h"

#include <utility>

RapidJsonTree::Payload::Payload(const RapidJsonTree& engine) : document(rapidjson::kObjectType)
{
    Add("product_line_name", engine.description.line);
    Add("product_release_id", engine.description.release);
    Add("product_master_id", engine.description.master);
    Add("product_build_id", engine.description.build);
    Add("product_id_provider", engine.description.provider);
}

RapidJsonTree::RapidJsonTree(const ProductDescription& product, Callback target, void* targetContext)
    : description(product), callback(target), context(targetContext)
{
}

RapidJsonTree::Prepared RapidJsonTree::Prepare(Payload&& payload) const
{
    return std::make_unique<rapidjson::Document>(std::move(payload.document));
}

void RapidJsonTree::SendPrepared(const Prepared& prepared, std::int64_t milliseconds) const
{
    rapidjson::Document payload;
    payload.CopyFrom(*prepared, payload.GetAllocator());
    Object(payload, payload.GetAllocator()).Add("document_editing_length_ms", milliseconds);
    callback(payload, context);
}

template class Comparison<RapidJsonTree>;

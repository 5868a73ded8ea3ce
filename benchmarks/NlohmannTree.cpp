#include "NlohmannTree.h"

NlohmannTree::NlohmannTree(const ProductDescription& product, Callback target, void* targetContext)
    : description{{"product_line_name", product.line},
                  {"product_release_id", product.release},
                  {"product_master_id", product.master},
                  {"product_build_id", product.build},
                  {"product_id_provider", product.provider}},
      callback(target), context(targetContext)
{
}

void NlohmannTree::SendPrepared(const Prepared& prepared, std::int64_t milliseconds) const
{
    nlohmann::json payload = prepared;
    payload.emplace("document_editing_length_ms", milliseconds);
    callback(payload, context);
}

template class Comparison<NlohmannTree>;

#include "HandWritten.h"

HandWritten::HandWritten(const ProductDescription& product, Callback target, void* targetContext)
    : buffer(std::make_unique<char[]>(BufferSize)), callback(target), context(targetContext)
{
    Payload text(*this);
    text.Write("{");
    text.Add("product_line_name", product.line);
    text.Add("product_release_id", product.release);
    text.Add("product_master_id", product.master);
    text.Add("product_build_id", product.build);
    text.Add("product_id_provider", product.provider);
    description = text.Text();
}

void HandWritten::Payload::WriteEscaped(char byte)
{
    constexpr std::string_view hexDigits = "0123456789abcdef";
    *at++ = '\\';
    if (byte == '"' || byte == '\\')
    {
        *at++ = byte;
        return;
    }
    const auto code = static_cast<unsigned char>(byte);
    Write("u00");
    *at++ = hexDigits[code >> 4];
    *at++ = hexDigits[code & 0xF];
}

void HandWritten::SendPrepared(const Prepared& prepared, std::int64_t milliseconds) const
{
    Payload payload(*this, prepared);
    payload.Add("document_editing_length_ms", milliseconds);
    Send(std::move(payload));
}

template class Comparison<HandWritten>;

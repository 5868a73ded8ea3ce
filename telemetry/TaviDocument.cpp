#include <telemetry/TaviDocument.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include <telemetry/CorvaneTavi.h>
#include <telemetry/FacetFields.h>
#include <telemetry/FacetHelpers.h>
#include <telemetry/ValueText.h>
#include <telemetry/Vocabulary.h>

using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

namespace
{

Facet::Content MakeContent(const std::wstring& name, const std::wstring& extension, std::uint64_t size,
                           std::uint32_t source)
{
    Facet::Content content;
    SetFacetEntry(content, FacetField::content_name, TextOf(name));
    SetFacetEntry(content, FacetField::content_type, TextOf(extension));
    SetFacetEntry(content, FacetField::content_root, TextOf(std::uint64_t{source}));
    SetFacetEntry(content, FacetField::content_size, JsonValue(static_cast<long long>(size)));

    const auto entry = [&content](const char* key) { return content.GetFacetEntry(TaviString(key)); };
    const auto textEntry = [&entry](const char* key) { return static_cast<TaviString>(entry(key)); };
    const std::int64_t sentSize = static_cast<long long>(entry(FacetField::content_size));
    AttributeMap meta;
    meta[TextOf(Vocabulary::COMMON_FILE_NAME)] = textEntry(FacetField::content_name);
    meta[TextOf(Vocabulary::COMMON_FILE_TYPE)] = textEntry(FacetField::content_type);
    meta[TextOf(Vocabulary::COMMON_FILE_SIZE)] = TextOf(sentSize);
    meta[TextOf(Vocabulary::COMMON_FILE_SOURCE)] = textEntry(FacetField::content_root);
    SetFacetObjectMembers(content, FacetField::content_meta, meta);
    return content;
}

} // namespace

TaviDocument::TaviDocument() = default;

TaviDocument::TaviDocument(const std::wstring& name, const std::wstring& extension, std::uint64_t size,
                           std::uint32_t source)
    : core(std::make_unique<Facet::Core>())
{
    SetEventType(*core, "D");
    SetEventScope(*core, ContentScope);
    Facet::Content content = MakeContent(name, extension, size, source);
    content.StartDocumentEditTimer();
    core->ContentFacet() = content;
}

TaviDocument::~TaviDocument() = default;

void TaviDocument::TrackEvent(const CorvaneTavi& tavi) const
{
    if (core != nullptr)
        tavi.Send(*core, "TaviDocument::TrackEvent");
}

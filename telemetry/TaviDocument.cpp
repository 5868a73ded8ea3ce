#include <telemetry/TaviDocument.h>

#include <utility>

#include <telemetry/CorvaneTavi.h>
#include <telemetry/FacetAccess.h>
#include <telemetry/FacetFields.h>
#include <telemetry/FacetHelpers.h>
#include <telemetry/ValueText.h>
#include <telemetry/Vocabulary.h>

using namespace Corvane;
using Veltrane::TaviDesktopSDK::JsonValue;
using Veltrane::TaviDesktopSDK::TaviString;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

namespace
{

void FillContent(Facet::Content& content, const std::wstring& name, const std::wstring& extension, std::uint64_t size,
                 std::uint32_t source)
{
    SetFacetEntry(content, TextOf(FacetField::content_name), TextOf(name));
    SetFacetEntry(content, TextOf(FacetField::content_type), TextOf(extension));
    SetFacetEntry(content, TextOf(FacetField::content_root), TextOf(std::uint64_t{source}));
    SetFacetEntry(content, TextOf(FacetField::content_size), JsonValue(static_cast<long long>(size)));

    // Read back from the facet: what the library did not take as an entry is no member either.
    const auto entry = [&content](const char* key) -> const JsonValue&
    { return FacetEntries(std::as_const(content))[TextOf(key)]; };
    const std::int64_t sentSize = static_cast<long long>(entry(FacetField::content_size));
    AttributeMap meta;
    meta[TextOf(Vocabulary::COMMON_FILE_NAME)] = entry(FacetField::content_name).operator TaviString();
    meta[TextOf(Vocabulary::COMMON_FILE_TYPE)] = entry(FacetField::content_type).operator TaviString();
    meta[TextOf(Vocabulary::COMMON_FILE_SIZE)] = TextOf(sentSize);
    meta[TextOf(Vocabulary::COMMON_FILE_SOURCE)] = entry(FacetField::content_root).operator TaviString();
    SetFacetObjectMembers(content, FacetField::content_meta, meta);
}

} // namespace

TaviDocument::TaviDocument() = default;

TaviDocument::TaviDocument(const std::wstring& name, const std::wstring& extension, std::uint64_t size,
                           std::uint32_t source)
    : core(std::make_unique<Facet::Core>())
{
    SetEventType(*core, "D");
    SetEventScope(*core, ContentScope);
    Facet::Content content;
    FillContent(content, name, extension, size, source);
    content.StartDocumentEditTimer();
    ContentFacet(*core) = content;
}

TaviDocument::~TaviDocument() = default;

void TaviDocument::TrackEvent(const CorvaneTavi& tavi) const
{
    if (core != nullptr)
        tavi.Send(*core, "TaviDocument::TrackEvent");
}

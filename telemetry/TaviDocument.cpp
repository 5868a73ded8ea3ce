#include <telemetry/TaviDocument.h>

#include <utility>

#include <telemetry/Attributes.h>
#include <telemetry/CorvaneTavi.h>
#include <telemetry/EventCodes.h>
#include <telemetry/FacetAccess.h>
#include <telemetry/FacetFields.h>
#include <telemetry/FacetHelpers.h>
#include <telemetry/Vocabulary.h>

using namespace Corvane;
using Veltrane::TaviDesktopSDK::JsonValue;
namespace Facet = Veltrane::TaviDesktopSDK::Facet;

namespace
{

void FillContent(Facet::Content& content, const std::wstring& name, const std::wstring& extension, std::uint64_t size,
                 std::uint32_t source)
{
    SetFacetEntry(content, TextOf(FacetFields::content_name), TextOf(name));
    SetFacetEntry(content, TextOf(FacetFields::content_type), TextOf(extension));
    SetFacetEntry(content, TextOf(FacetFields::content_root), TextOf(std::uint64_t{source}));
    SetFacetEntry(content, TextOf(FacetFields::content_size), JsonValue(static_cast<long long>(size)));

    // Read back, so that "content_meta" omits what the library did not store.
    const JsonValue& storedSize = FacetEntries(std::as_const(content))[TextOf(FacetFields::content_size)];
    const std::int64_t sentSize = static_cast<long long>(storedSize);
    AttributeMap meta;
    meta[TextOf(Vocabulary::COMMON_FILE_NAME)] = FacetEntryText(content, FacetFields::content_name);
    meta[TextOf(Vocabulary::COMMON_FILE_TYPE)] = FacetEntryText(content, FacetFields::content_type);
    meta[TextOf(Vocabulary::COMMON_FILE_SIZE)] = TextOf(sentSize);
    meta[TextOf(Vocabulary::COMMON_FILE_SOURCE)] = FacetEntryText(content, FacetFields::content_root);
    SetFacetObjectMembers(content, FacetFields::content_meta, meta);
}

} // namespace

TaviDocument::TaviDocument() = default;

TaviDocument::TaviDocument(const std::wstring& name, const std::wstring& extension, std::uint64_t size,
                           std::uint32_t source)
    : core(std::make_unique<Facet::Core>())
{
    SetEventType(*core, EventTypes::Content);
    SetEventScope(*core, EventScopes::Content);
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

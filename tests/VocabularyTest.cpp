#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <harness/FacetKeys.h>
#include <telemetry/FacetFields.h>
#include <telemetry/Vocabulary.h>

#include "Utf8Path.h"
#include "VocabularySource.h"

using namespace Corvane;

namespace
{

std::string Contents(const char* path)
{
    std::ifstream file(PathOf(path), std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<VocabularyConstant> ConstantsOfTheHeader()
{
    const std::string header = Contents(SOURCE_DIR "/telemetry/Vocabulary.h");
    std::vector<VocabularyConstant> constants = ReadVocabulary(header);
    std::size_t keywords = 0;
    for (std::size_t at = header.find("\ninline "); at != std::string::npos; at = header.find("\ninline ", at + 1))
        ++keywords;
    EXPECT_EQ(constants.size(), keywords) << "a definition has another form";
    return constants;
}

} // namespace

TEST(Vocabulary, AConstantIsNamedByItsTextWithDotsMadeUnderscores)
{
    for (const VocabularyConstant& constant : ConstantsOfTheHeader())
    {
        std::string name = constant.text;
        std::replace(name.begin(), name.end(), '.', '_');
        if (constant.name != name)
            ADD_FAILURE() << constant.name << " is \"" << constant.text << "\", the text of a constant named " << name;
    }
}

TEST(Vocabulary, HasNoTextTwice)
{
    std::map<std::string, std::string> names; // by text
    for (const VocabularyConstant& constant : ConstantsOfTheHeader())
    {
        const auto [found, isNew] = names.try_emplace(constant.text, constant.name);
        if (!isNew)
            ADD_FAILURE() << found->second << " and " << constant.name << " are both \"" << constant.text << "\"";
    }
    EXPECT_FALSE(names.empty());
}

TEST(Vocabulary, KeepsOddSpellings)
{
    using namespace Corvane::Vocabulary;
    const std::pair<const std::wstring&, const wchar_t*> oddities[] = {
        {CORVANE_FLOW_MHB3D_ANALYIS_AIM, L"CORVANE.FLOW.MHB3D.ANALYIS_AIM"},
        {CV_RESULT_USAGE, L"CV.RESULT_USAGE"},
        {CV_RESULTS_USAGE_NAME, L"CV.RESULTS_USAGE_NAME"},
        {CV_RESULTS_USAGE_PLOTNAME, L"CV.RESULTS_USAGE_PLOTNAME"},
        {CV_UI_MATERIAL_SELECTION, L"CV.UI.MATERIAL_SELECTION"},
        {CV_FILE_INPUT_IS_ADD_OR_IMPORT, L"CV.FILE_INPUT.IS_ADD_OR_IMPORT"},
        {CV_FILE_IMPORT_SUCCESS, L"CV.FILE_IMPORT_SUCCESS"},
        {COMMON_ZEPH_KEY_ID, L"COMMON.ZEPH_KEY_ID"},
        {CONTENT_FACET, L"CONTENT_FACET"},
        {document_editing_length_ms, L"document_editing_length_ms"},
    };
    for (const auto& [constant, text] : oddities)
        EXPECT_EQ(constant, text);
}

TEST(FacetKeys, AreTheFieldsThatExpectedPayloadsAreReadBy)
{
    const std::pair<const std::wstring&, const wchar_t*> keys[] = {
        {FacetKeys::component_name, L"component_name"},
        {FacetKeys::component_attributes, L"component_attributes"},
        {FacetKeys::content_meta, L"content_meta"},
        {FacetKeys::entitlement_usage, L"entitlement_usage"},
        {FacetKeys::entitlement_license_id, L"entitlement_license_id"},
        {FacetKeys::entitlement_properties, L"entitlement_properties"},
        {FacetKeys::product_suite_name, L"product_suite_name"},
        {FacetKeys::type, L"type"},
    };
    for (const auto& [key, text] : keys)
        EXPECT_EQ(key, text);
}

TEST(FacetFields, AreInTheFixedOrder)
{
    const std::vector<std::string_view> expected = {"type",
                                                    "scope",
                                                    "product_id_provider",
                                                    "product_line_name",
                                                    "product_release_id",
                                                    "product_master_id",
                                                    "product_build_id",
                                                    "product_key",
                                                    "product_suite_name",
                                                    "content_type",
                                                    "content_size",
                                                    "content_meta",
                                                    "entitlement_usage",
                                                    "entitlement_license_id",
                                                    "entitlement_properties",
                                                    "user_info",
                                                    "provider_name",
                                                    "user_id",
                                                    "roles",
                                                    "logged_in",
                                                    "ldap_registration",
                                                    "ldap_root",
                                                    "component_type",
                                                    "component_name",
                                                    "component_attributes"};
    EXPECT_EQ(std::vector<std::string_view>(FacetFields::Names.begin(), FacetFields::Names.end()), expected);
}

TEST(FacetFields, OfDocumentsAreOutsideTheTable)
{
    EXPECT_STREQ(FacetFields::content_name, "content_name");
    EXPECT_STREQ(FacetFields::content_root, "content_root");
}

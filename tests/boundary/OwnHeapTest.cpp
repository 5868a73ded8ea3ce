// Program and library each have a heap of their own here, and may free nothing from the other's. These tests prove that
// such a free is detected; the unit tests, which are in the same program, prove that there is none.
#include <cstddef>
#include <cstring>
#include <new>
#include <string>

#include <gtest/gtest.h>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

#include "OwnHeap.h"
#include "Text.h"

using namespace Veltrane::TaviDesktopSDK;

namespace
{

// The block behind a handle.
template <typename Handle>
void* BlockOf(const Handle& handle)
{
    void* block = nullptr;
    std::memcpy(&block, static_cast<const void*>(&handle), sizeof(block));
    return block;
}

} // namespace

TEST(OwnHeap, TheProgramFreeingWhatTheLibraryAllocatedIsDetected)
{
    const TaviString text = Key("text");
    ASSERT_NE(BlockOf(text), nullptr);
    EXPECT_DEATH(::operator delete(BlockOf(text)), "The program frees a block that is not its own");
}

TEST(OwnHeap, TheLibraryFreeingWhatTheProgramAllocatedIsDetected)
{
    const std::string block(100, 'x');
    EXPECT_DEATH(Facet::Base::operator delete(const_cast<char*>(block.data())),
                 "The library frees a block that is not its own");
}

// The library's heap refuses blocks of 128 MiB.
TEST(OwnHeap, RunningOutOfMemoryInTheLibraryReachesTheProgramAsAnException)
{
    std::string text;
    text.resize(0x8000000, 'x');
    TaviString string;
    EXPECT_THROW(string.SetString(text.c_str()), std::bad_alloc);
    EXPECT_EQ(string.c_str(), nullptr);
    JsonValue value;
    EXPECT_THROW(value.SetString(text.c_str()), std::bad_alloc);
    EXPECT_TRUE(IsNull(value));
}

TEST(OwnHeap, AFacetLivesInTheLibrarysHeapWhoeverCreatesIt)
{
    const std::size_t before = OwnBlockCount();
    auto* const facet = new Facet::Content;
    EXPECT_EQ(OwnBlockCount(), before);
    delete facet;
}

TEST(OwnHeap, TheLibrarysValuesTakeNothingOfTheProgramsHeap)
{
    const std::size_t before = OwnBlockCount();
    TaviString text = Key("a text that is too long for any small buffer, by far");
    text.SetStringW(L"and another one, which is wide and not short either, as may be seen");
    JsonValue value;
    value[text].SetString(text.c_str());
    value[Key("copy")] = value;
    const TaviString json = value.GetJsonString();
    EXPECT_NE(json.c_strw(), nullptr);
    EXPECT_EQ(OwnBlockCount(), before);
}

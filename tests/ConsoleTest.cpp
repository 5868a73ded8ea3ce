// That wide text comes out as UTF-8, between narrow text, is tested with the whole program.
#include <iostream>
#include <streambuf>
#include <string>

#include <gtest/gtest.h>

#include "OutputCapture.h"

using namespace Corvane;

TEST(Console, NoCharacterSilencesTheStream)
{
    const OutputCapture capture;
    for (const wchar_t unit : {wchar_t{0xD800}, wchar_t{0xDC00}, wchar_t{0xFFFF}, wchar_t{0x7F}, wchar_t{1}})
        std::wcout << unit << L'|' << std::flush;
    EXPECT_TRUE(std::wcout.good());
    std::wcout << L"still here" << std::endl;
    EXPECT_EQ(capture.Text(), "\xEF\xBF\xBD|\xEF\xBF\xBD|\xEF\xBF\xBF|\x7F|\x01|still here\n");
}

TEST(Console, APairOfSurrogatesIsOneCharacterWhereverItIsCut)
{
    const std::wstring pair{wchar_t{0xD83D}, wchar_t{0xDE00}};
    const OutputCapture capture;
    std::wcout << pair << pair[0] << pair[1];
    std::wcout.put(pair[0]).put(pair[1]) << std::endl;
    EXPECT_EQ(capture.Text(), "\xF0\x9F\x98\x80\xF0\x9F\x98\x80\xF0\x9F\x98\x80\n");
}

TEST(Console, AHalfOfAPairComesOutWhenTheStreamIsFlushed)
{
    const OutputCapture capture;
    std::wcout << wchar_t{0xD83D} << std::flush;
    EXPECT_EQ(capture.Text(), "\xEF\xBF\xBD");
}

TEST(Console, NullCharactersAreKept)
{
    const OutputCapture capture;
    std::wcout << std::wstring(L"a\0\0b", 4) << std::endl;
    EXPECT_EQ(capture.Text(), std::string("a\0\0b\n", 5));
}

TEST(Console, OutputThatCannotBeWrittenPutsTheStreamIntoAnErrorState)
{
    class Full : public std::streambuf
    {
        int sync() override { return -1; }
    };
    for (const std::wstring& text : {std::wstring(L"text"), std::wstring(1, L'\0'), std::wstring()})
    {
        const Utf8Console console;
        Full full;
        std::streambuf* const previous = std::cout.rdbuf(&full);
        std::wcout << text << std::flush;
        EXPECT_TRUE(std::wcout.bad());
        std::wcout.clear();
        std::cout.rdbuf(previous);
        std::cout.clear();
    }
}

TEST(Console, WhatIsHeldBackComesOutWhenStandardOutputEnds)
{
    testing::internal::CaptureStdout();
    {
        const StandardOutput output;
        std::cout << "text";
        std::wcout << wchar_t{0xD83D};
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "text\xEF\xBF\xBD");
}

TEST(Console, TheStreamWorksAsBeforeWhenTheConsoleIsGone)
{
    std::wstreambuf* const before = std::wcout.rdbuf();
    {
        const Utf8Console console;
        EXPECT_NE(std::wcout.rdbuf(), before);
    }
    EXPECT_EQ(std::wcout.rdbuf(), before);
}

// The measured objects, of many members or of many levels: how one is made, and how all its members are looked up once.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <TaviDesktopSDK/TaviDesktopSDK.h>

class Members
{
public:
    explicit Members(std::size_t count)
    {
        keys.resize(count);
        for (std::size_t i = 0; i < count; ++i)
            keys[i].SetString(("member" + std::to_string(i)).c_str());
    }

    Veltrane::TaviDesktopSDK::JsonValue Build() const
    {
        Veltrane::TaviDesktopSDK::JsonValue object;
        for (const Veltrane::TaviDesktopSDK::TaviString& key : keys)
            object[key].SetString("some text");
        return object;
    }

    bool LookUp(const Veltrane::TaviDesktopSDK::JsonValue& object) const
    {
        bool found = true;
        for (const Veltrane::TaviDesktopSDK::TaviString& key : keys)
            found &= object[key].Compare(Veltrane::TaviDesktopSDK::JsonValue()) != 0;
        return found;
    }

private:
    std::vector<Veltrane::TaviDesktopSDK::TaviString> keys;
};

class Levels
{
public:
    explicit Levels(std::size_t depth) : count(depth) { key.SetString("level"); }

    Veltrane::TaviDesktopSDK::JsonValue Build() const
    {
        Veltrane::TaviDesktopSDK::JsonValue object;
        Veltrane::TaviDesktopSDK::JsonValue* level = &object;
        for (std::size_t i = 0; i < count; ++i)
            level = &(*level)[key];
        level->SetString("some text");
        return object;
    }

    bool LookUp(const Veltrane::TaviDesktopSDK::JsonValue& object) const
    {
        const Veltrane::TaviDesktopSDK::JsonValue* level = &object;
        for (std::size_t i = 0; i < count; ++i)
            level = &(*level)[key];
        return level->Compare(Veltrane::TaviDesktopSDK::JsonValue()) != 0;
    }

private:
    std::size_t count;
    Veltrane::TaviDesktopSDK::TaviString key;
};

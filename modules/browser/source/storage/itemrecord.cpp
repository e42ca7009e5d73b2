#include "storage/itemrecord.h"

namespace browser {

namespace {

constexpr int yearShift = 16, monthShift = 8;
constexpr int hourShift = 26, minuteShift = 20, secondShift = 14;

uint16_t Field(int32_t packed, int shift, uint32_t mask)
{
    return static_cast<uint16_t>(static_cast<uint32_t>(packed) >> shift & mask);
}

} // namespace

String ItemRecord::GetPath() const
{
    const BaseContainer* path = values.GetContainer(ItemPath);
    return path ? path->GetText(PathText) : String();
}

uint32_t ItemRecord::GetPathHash() const
{
    const BaseContainer* path = values.GetContainer(ItemPath);
    return path ? static_cast<uint32_t>(path->GetInt32(PathHashValue, 0)) : 0;
}

bool ItemRecord::SetPath(const String& path, uint32_t hash)
{
    BaseContainer* own = values.DemandContainer(ItemPath);
    return own && own->SetText(PathText, path) && own->SetInt32(PathHashValue, static_cast<int32_t>(hash));
}

bool ItemRecord::HasPath(const String& path, bool exactly) const
{
    const String own = GetPath();
    return own == path || (!exactly && IsSameFolded(own, path));
}

bool PackDate(const FileDate& date, BaseContainer& packed)
{
    const uint32_t day = uint32_t(date.year) << yearShift | uint32_t(date.month) << monthShift | date.day;
    const uint32_t time = uint32_t(date.hour) << hourShift | uint32_t(date.minute) << minuteShift | uint32_t(date.second) << secondShift;
    return packed.SetInt32(0, static_cast<int32_t>(day)) && packed.SetInt32(1, static_cast<int32_t>(time));
}

FileDate UnpackDate(const BaseContainer* packed)
{
    if (!packed)
        return {};
    const int32_t day = packed->GetInt32(0, 0), time = packed->GetInt32(1, 0);
    return { Field(day, yearShift, 0xFFFF), Field(day, monthShift, 0xFF),   Field(day, 0, 0xFF),
             Field(time, hourShift, 0x3F),  Field(time, minuteShift, 0x3F), Field(time, secondShift, 0x3F) };
}

bool IsSameFolded(const String& a, const String& b)
{
    return host->text->compareFolding(a.Value(), b.Value()) == 0;
}

bool StartsWithFolded(const String& text, const String& prefix)
{
    if (text.Length() < prefix.Length())
        return false;
    const String part = text.Part(0, prefix.Length());
    return part.Length() == prefix.Length() && IsSameFolded(part, prefix);
}

} // namespace browser

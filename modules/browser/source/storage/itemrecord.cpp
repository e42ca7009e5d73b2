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

bool ItemRecord::HasPath(const String& other, bool exactly) const
{
    return path == other || (!exactly && IsSameFolded(path, other));
}

bool ItemRecord::SetPath(const String& newPath, uint32_t hash)
{
    ItemPlace changed;
    if (!values.DemandContainer(ItemPath) || !changed.Prepare(*this, newPath, hash))
        return false;
    changed.Take();
    return true;
}

// A copy keeps nothing of what was looked at in the original.
bool ItemRecord::SetValues(const BaseContainer& read)
{
    const BaseContainer* own = read.GetContainer(ItemPath);
    pathHash = own ? static_cast<uint32_t>(own->GetInt32(PathHashValue, 0)) : 0;
    const bool hasPath = own ? ReadText(*own, PathText, path) : read.TypeOf(ItemPath) != VX3_VALUE_CONTAINER;
    return hasPath && values.Set(read) && values.SetId(id);
}

bool ItemPlace::Prepare(ItemRecord& moved, const String& newPath, uint32_t newHash)
{
    record = &moved;
    target = moved.values.FindContainer(ItemPath);
    hash = newHash;
    return target && path.Set(newPath) && values.Set(*target) && values.SetText(PathText, path)
        && values.SetInt32(PathHashValue, static_cast<int32_t>(newHash));
}

void ItemPlace::Take()
{
    target->Swap(values);
    record->path = std::move(path);
    record->pathHash = hash;
}

bool ReadText(const BaseContainer& container, int32_t key, String& text)
{
    if (host->container->getText(container.Value(), key, text.Value()))
        return true;
    text.Clear();
    return container.TypeOf(key) != VX3_VALUE_TEXT;
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

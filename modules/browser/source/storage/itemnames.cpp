// The texts of an item.

#include "storage/browserdatabaseitem.h"
#include "storage/librarynames.h"

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;
constexpr int32_t descriptionText = 0;

String LastPart(const String& path)
{
    return path.Part(path.FindLast('/') + 1);
}

} // namespace

String BrowserDatabaseItem::GetName(bool useFallback) const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* names = record->values.GetContainer(ItemNames);
    String name = names ? ChooseText(*names) : String();
    return name.IsEmpty() && useFallback ? LastPart(record->GetPath()) : name;
}

bool BrowserDatabaseItem::SetName(const String& name)
{
    return SetNameIn(CurrentLanguage(), name);
}

String BrowserDatabaseItem::GetNameIn(int32_t language) const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* names = record->values.GetContainer(ItemNames);
    return names ? names->GetText(language) : String();
}

bool BrowserDatabaseItem::SetNameIn(int32_t language, const String& name)
{
    return ApplyTo(ItemNames, [&](BaseContainer& names) { return names.SetText(language, name); });
}

bool BrowserDatabaseItem::HasSeveralNames() const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* names = record->values.GetContainer(ItemNames);
    int32_t language = 0, type = 0, texts = 0;
    for (int32_t place = 0; names && names->EntryAt(place, language, type); place++)
        texts += type == VX3_VALUE_TEXT;
    return texts > 1;
}

bool BrowserDatabaseItem::NameAt(int32_t place, int32_t& language, String& name) const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* names = record->values.GetContainer(ItemNames);
    int32_t type = 0;
    if (!names || !names->EntryAt(place, language, type))
        return false;
    name = names->GetText(language);
    return true;
}

String BrowserDatabaseItem::GetDescription() const
{
    const ReadGuard guard(database->Lock(), rank);
    const BaseContainer* description = record->values.GetContainer(ItemDescription);
    return description ? description->GetText(descriptionText) : String();
}

bool BrowserDatabaseItem::SetDescription(const String& text)
{
    if (BaseContainer old; text.IsEmpty() && IsWritable() && !CopyContainer(ItemDescription, old))
        return true;
    return ApplyTo(ItemDescription, [&](BaseContainer& description) { return description.SetText(descriptionText, text); });
}

} // namespace browser

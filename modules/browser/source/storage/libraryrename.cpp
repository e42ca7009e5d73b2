// The names of a library: as it is shown, as it is addressed, and what happens where two
// claim one.

#include <cstring>

#include "storage/browserdatabase.h"
#include "storage/librarynames.h"
#include "storage/librarytable.h"

namespace browser {

namespace {

constexpr LockRank rank = LockRank::Library;

// In front of the first ".libvx", whatever its case, or behind the text.
bool InsertSuffix(String& text, const String& suffix)
{
    constexpr const char* extension = ".libvx";
    const auto length = static_cast<int32_t>(std::strlen(extension));
    const String wanted(extension);
    int32_t place = text.Length();
    for (int32_t i = 0; i + length <= text.Length() && place == text.Length(); i++)
        if (IsSameFolded(text.Part(i, length), wanted))
            place = i;
    return text.Insert(place, suffix);
}

} // namespace

bool BrowserDatabase::SetLibraryName(const String& name)
{
    const WriteGuard guard(lock, rank);
    if (state.libraryName == name)
        return true;
    String kept;
    if (!kept.Set(name))
        return false;
    state.libraryName = std::move(kept);
    state.infoDirty = state.dirty = true;
    return true;
}

bool BrowserDatabase::SetLocalizedName(const String& name)
{
    const WriteGuard guard(lock, rank);
    if (state.localizedNames.GetText(CurrentLanguage()) == name)
        return true;
    if (!state.localizedNames.SetText(CurrentLanguage(), name))
        return false;
    state.infoDirty = state.dirty = true;
    return true;
}

String BrowserDatabase::GetDisplayName(bool useFileName) const
{
    const ReadGuard guard(lock, rank);
    String name = ChooseText(state.localizedNames);
    return name.IsEmpty() && useFileName ? state.filePath.Last() : name;
}

bool BrowserDatabase::SetCategory(const String& text)
{
    const WriteGuard guard(lock, rank);
    String kept;
    if (!kept.Set(text))
        return false;
    state.category = std::move(kept);
    state.dirty = state.hasCategory = state.categoryDirty = true;
    return true;
}

bool BrowserDatabase::GetCategory(String& text) const
{
    const ReadGuard guard(lock, rank);
    text = state.category;
    return !text.IsEmpty();
}

// The items are not in the index.
bool BrowserDatabase::RenameItems(const String& oldName, const String& newName)
{
    bool areRenamed = true;
    for (size_t place = 0; place < state.items.PlaceCount(); place++) {
        ItemRecord* record = state.items.At(place);
        if (!record || record->state != ItemState::Live)
            continue;
        const String& path = record->GetPath();
        if (!StartsWithFolded(path, oldName))
            continue;
        const String rest = path.Part(oldName.Length());
        const bool isWhole = rest.Length() == path.Length() - oldName.Length();
        String renamed;
        areRenamed = isWhole && renamed.Set(newName) && renamed.Append(rest) && record->SetPath(renamed, PathHash(renamed)) && areRenamed;
        NoteChanged(*record);
    }
    return areRenamed;
}

// Of two libraries with one name the later one gets another. `suffix` is what it is told
// apart by; empty if the name is free.
String BrowserDatabase::FindFreeName(String& suffix)
{
    const String oldName = GetLibraryName();
    const LibraryRef other(oldName.IsEmpty() ? LibraryRef() : FindLibraryByName(oldName, this));
    if (!other)
        return oldName;
    const bool standsBesideCopy = other->IsReferenceCopy() && !IsReferenceCopy();
    for (int32_t counter = 0;; counter++) {
        String name = oldName, number;
        suffix = String(counter == 0 && standsBesideCopy ? ".local" : ".");
        if (!(counter == 0 && standsBesideCopy) && !(number.SetInteger(counter + 1) && suffix.Append(number)))
            return oldName;
        if (!InsertSuffix(name, suffix) || !FindLibraryByName(name, this))
            return name;
    }
}

// It is not written unless somebody asks for it.
void BrowserDatabase::TakeName(const String& name, const String& suffix)
{
    state.readOnly = true;
    String shown = ChooseText(state.localizedNames);
    if (shown.IsEmpty())
        shown = state.filePath.Last();
    if (InsertSuffix(shown, suffix))
        (void)state.localizedNames.SetText(CurrentLanguage(), shown);
    (void)RenameItems(state.libraryName, name);
    state.libraryName = name;
    state.dirty = state.infoDirty = true;
}

// One move at a time, and before any node is locked.
bool BrowserDatabase::MoveLibrary(const String& newPrefix)
{
    if (FindLibraryByName(newPrefix, this))
        return false;
    const WriteGuard guard(lock, rank);
    const LockGuard moving(ItemMoveLock(), LockRank::ItemMove);
    const String oldName = state.libraryName;
    String name = newPrefix;
    Array<int32_t> uses;
    if (state.items.PlaceCount() > 0 && !uses.Extend(state.items.PlaceCount()))
        return false;
    for (size_t place = state.items.PlaceCount(); place > 0; place--) // from behind, as others stand in the index
        if (ItemRecord* record = state.items.At(place - 1); record && record->state == ItemState::Live)
            uses[place - 1] = TakeFromIndex(*record);
    const bool areRenamed = RenameItems(oldName, name);
    state.libraryName = std::move(name);
    state.dirty = state.infoDirty = true;
    for (size_t place = 0; place < state.items.PlaceCount(); place++) {
        ItemRecord* record = state.items.At(place);
        if (BrowserHashNode* node = record && record->state == ItemState::Live ? IndexItem(*record, record->GetPathHash()) : nullptr) {
            node->AddUses(*record, uses[place] - 1); // it came with one
        }
    }
    return areRenamed;
}

} // namespace browser

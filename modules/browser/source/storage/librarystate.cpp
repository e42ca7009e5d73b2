#include "storage/librarystate.h"

#include "storage/infokeys.h"

namespace browser {

FileStamp StampOf(const FilePath& path)
{
    VX3FolderEntry entry = {};
    if (!host->folder->inspect(path.Value(), &entry))
        return {};
    host->text->destruct(&entry.name);
    return { entry.size, entry.modified };
}

bool operator==(const FileStamp& a, const FileStamp& b)
{
    return a.length == b.length && CompareDates(a.date, b.date) == 0;
}

bool MakeSibling(const FilePath& path, const char* suffix, FilePath& sibling)
{
    String name = path.Last();
    return !name.IsEmpty() && name.Append(suffix) && sibling.Set(path) && sibling.SetLast(name);
}

bool RemoveFile(const FilePath& path)
{
    return !host->folder->exists(path.Value()) || host->folder->remove(path.Value(), VX3_REMOVE_FOR_GOOD, 0, nullptr, nullptr, nullptr);
}

bool MakeInfo(const LibraryState& library, BaseContainer& info)
{
    return info.SetInt32(InfoVersion, currentVersion) && info.SetText(InfoName, library.libraryName)
        && info.SetInt32(InfoReadOnly, library.readOnly) && info.SetContainer(InfoNames, library.localizedNames);
}

bool MakeCategory(const LibraryState& library, BaseContainer& category)
{
    return category.SetText(CategoryText, library.category);
}

} // namespace browser

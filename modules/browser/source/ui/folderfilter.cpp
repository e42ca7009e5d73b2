#include "ui/folderfilter.h"

#include "plugins/filetypes.h"
#include "services/preferences.h"

namespace browser {

namespace {

struct FilterSwitch {
    bool FolderFilter::*field;
    Preference key;
};

// The place of a row is its bit.
constexpr FilterSwitch filterSwitches[] = {
    { &FolderFilter::showUnknown, Preference::ShowUnknown }, { &FolderFilter::showKnown, Preference::ShowKnown },
    { &FolderFilter::showNative, Preference::ShowNative },   { &FolderFilter::showOther3d, Preference::ShowOther3d },
    { &FolderFilter::showMovies, Preference::ShowMovies },   { &FolderFilter::showImages, Preference::ShowImages },
};

FolderFilter FromBits(uint32_t bits)
{
    FolderFilter filter;
    for (size_t i = 0; i < std::size(filterSwitches); i++)
        filter.*filterSwitches[i].field = (bits >> i & 1) != 0;
    return filter;
}

uint32_t ToBits(const FolderFilter& filter)
{
    uint32_t bits = 0;
    for (size_t i = 0; i < std::size(filterSwitches); i++)
        bits |= uint32_t(filter.*filterSwitches[i].field) << i;
    return bits;
}

bool IsNativeScene(BrowserContentNode& node)
{
    String type;
    node.GetTypeName(type, TypeDetail::Specific);
    return type == ResourceText(Texts::NativeSceneType);
}

// Kept: whoever shows other scenes sees those of this system with them.
bool KeepsScene(const FolderFilter& filter, BrowserContentNode& node)
{
    return filter.showOther3d || (filter.showNative && IsNativeScene(node));
}

bool Keeps(uint32_t bits, BrowserContentNode& node)
{
    if (node.CanHoldChildren())
        return true;
    const FolderFilter filter = FromBits(bits);
    BrowserPluginInterface* plugin = node.GetPlugin(node.HasFlags(Attribute::link) ? URL_LINK_TARGET : 0);
    if (!plugin)
        return filter.showUnknown;
    const int32_t type = plugin->GetTypeId(nullptr);
    if (type == sceneFiles.typeId)
        return KeepsScene(filter, node);
    if (type == imageFiles.typeId)
        return filter.showImages;
    if (type == movieFiles.typeId)
        return filter.showMovies;
    return filter.showKnown;
}

} // namespace

FolderFilter FolderFilter::FromPreferences()
{
    FolderFilter filter;
    for (const FilterSwitch& row : filterSwitches)
        filter.*row.field = GetPreferenceNumber(row.key) != 0;
    return filter;
}

// With all switched on no node is asked for its type.
EntryFilter FolderFilter::ToEntryFilter() const
{
    return *this == FolderFilter() ? EntryFilter() : EntryFilter{ Keeps, ToBits(*this) };
}

} // namespace browser

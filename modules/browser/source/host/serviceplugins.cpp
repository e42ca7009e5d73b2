// The sections for plugins and for icons.

#include "host/servicetable.h"
#include "model/pluginregistry.h"
#include "ui/iconservice.h"

namespace browser {

namespace {

VX3Bool AddPlugin(VX3Plugin* plugin, VX3Bool matchFiles)
{
    return RegisterPlugin(FromC(plugin), matchFiles ? MatchFiles::Yes : MatchFiles::No);
}

void TakePlugin(VX3Plugin* plugin)
{
    UnregisterPlugin(FromC(plugin));
}

VX3Plugin* PluginAt(int32_t index)
{
    return ToC(GetPluginByIndex(index));
}

VX3Plugin* PluginOfId(int32_t typeId)
{
    return ToC(FindPluginById(typeId));
}

VX3Bool PluginForUrl(VX3Url* url, VX3Bool deep, VX3Plugin** out)
{
    BrowserPluginInterface* found = nullptr;
    bool any = FindPluginForUrl(BrowserURL::Of(url), deep ? PluginTest::Deep : PluginTest::Quick, &found);
    if (out)
        *out = ToC(found);
    return any;
}

int32_t TypeId(VX3Plugin* plugin, VX3String* name)
{
    return FromC(plugin)->GetTypeId(name ? &String::Of(name) : nullptr);
}

VX3Bool TypeNames(VX3Plugin* plugin, VX3Bool specific, VX3String* out)
{
    Array<String> names;
    if (!FromC(plugin)->GetTypeNames(specific ? TypeDetail::Specific : TypeDetail::General, names))
        return false;
    String joined;
    for (const String& name : names)
        if ((!joined.IsEmpty() && !joined.Append("\n")) || !joined.Append(name))
            return false;
    String::Of(out) = std::move(joined);
    return true;
}

VX3Bool MatchesFiles(VX3Plugin* plugin)
{
    return DoesMatchFiles(FromC(plugin));
}

Preview* AsPreview(VX3Preview* preview)
{
    return reinterpret_cast<Preview*>(preview);
}

VX3Preview* IconPreview(int32_t number, int32_t size)
{
    return ToC(GetIcon(static_cast<Icon>(number), size));
}

VX3Preview* WrapBitmap(VX3Bitmap* bitmap, uint32_t flags, VX3Bool owned)
{
    if (!owned)
        return ToC(Make<Preview>()(bitmap, flags));
    return ToC(Make<Preview>()(HostBitmap(bitmap), flags));
}

VX3Bitmap* BitmapOfPreview(VX3Preview* preview)
{
    return AsPreview(preview)->Bitmap();
}

uint32_t FlagsOfPreview(VX3Preview* preview)
{
    return AsPreview(preview)->Flags();
}

void ReleasePreview(VX3Preview* preview)
{
    Destroy(AsPreview(preview));
}

constexpr VX3PluginFunctions pluginSection = { AddPlugin,    TakePlugin, GetPluginCount, PluginAt,    PluginOfId,
                                               PluginForUrl, TypeId,     TypeNames,      MatchesFiles };
constexpr VX3IconFunctions iconSection = { IconCount,  IconFileName,    GetIconBitmap,  IconPreview,
                                           WrapBitmap, BitmapOfPreview, FlagsOfPreview, ReleasePreview };

} // namespace

const VX3PluginFunctions* PluginSection()
{
    return &pluginSection;
}

const VX3IconFunctions* IconSection()
{
    return &iconSection;
}

} // namespace browser

// The section for URLs.

#include "host/servicetable.h"

namespace browser {

namespace {

BrowserURL& At(VX3Url* url)
{
    return BrowserURL::Of(url);
}

constexpr VX3UrlFunctions urlSection = {
    [](VX3Url* url) {
        At(url).~BrowserURL();
        *url = {};
    },
    [](VX3Url* to, const VX3Url* from) { At(to) = BrowserURL::Of(from); },
    [](VX3Url* url, const VX3String* text) { At(url).SetText(String::Of(text)); },
    [](VX3Url* url, const VX3Path* path) { At(url).SetFile(FilePath::Of(path)); },
    [](VX3Url* url, const VX3Path* path, const VX3String* text) { At(url).SetFileAndText(FilePath::Of(path), String::Of(text)); },
    [](VX3Url* url) { return At(url).GetText().Value(); },
    [](VX3Url* url, VX3String* name) { At(url).GetName(String::Of(name)); },
    [](VX3Url* url, VX3Url* parent) { At(url).GetParent(At(parent)); },
    [](VX3Url* url, const VX3String* name, VX3Url* joined) { At(url).Join(String::Of(name), At(joined)); },
    [](VX3Url* a, VX3Url* b) { return VX3Bool(At(a).Equals(At(b))); },
    [](VX3Url* url) { return At(url).GetHash(); },
    [](VX3Url* url, uint32_t hash) { At(url).SetHash(hash); },
    [](VX3Url* url) { return VX3Bool(At(url).HasFile()); },
    [](VX3Url* url, VX3Path* path) { return VX3Bool(At(url).GetFile(FilePath::Of(path))); },
    [](VX3Url* url, const VX3String* suffix) { return VX3Bool(At(url).HasExtension(String::Of(suffix))); },
    [](VX3Url* url, VX3String* suffix) { At(url).GetExtension(String::Of(suffix)); },
    [](const VX3Url* url) { return VX3Bool(BrowserURL::Of(url).HasContent()); },
};

} // namespace

const VX3UrlFunctions* UrlSection()
{
    return &urlSection;
}

} // namespace browser

#include "model/browserutils.h"

namespace browser {

namespace {

constexpr int32_t codeLength = 4;

int32_t languageCount = 0; // 0: not counted yet

// Is `child` a link to what `source` stands for, or to what `source` links to itself?
bool IsLinkTo(BrowserContentNode& child, BrowserContentNode* source)
{
    BrowserURL target, wanted;
    if (!source || !(child.GetAttributes(nullptr) & Attribute::link) || !child.GetUrl(target, URL_LINK_TARGET))
        return false;
    if (source->GetUrl(wanted, 0) && target.Equals(wanted))
        return true;
    bool isLink = (source->GetAttributes(nullptr) & Attribute::link) != 0;
    return isLink && source->GetUrl(wanted, URL_LINK_TARGET) && target.Equals(wanted);
}

bool IsWholeNumber(const String& text)
{
    int64_t number;
    return text.ToInteger(number);
}

// "a.1.tif" falls into "a" and ".tif": a counter that was put in earlier does not grow.
void SplitName(const String& name, String& stem, String& extension)
{
    int32_t dot = name.FindLast('.');
    stem = dot < 0 ? name : name.Part(0, dot);
    extension = dot < 0 ? String() : name.Part(dot);
    int32_t inner = stem.FindLast('.');
    if (inner >= 0 && IsWholeNumber(stem.Part(inner + 1)))
        (void)stem.Erase(inner, stem.Length() - inner);
}

} // namespace

int32_t TypeCodeFromText(const String& text)
{
    String lower = text.Lower();
    Units units = lower.View();
    if (units.empty() || units.size() > codeLength)
        return 0;
    uint32_t code = 0;
    for (size_t i = 0; i < codeLength; i++)
        code = code << 8 | (i < units.size() && units[i] < 128 ? units[i] : 0);
    return static_cast<int32_t>(code);
}

void TextFromTypeCode(int32_t code, String& out)
{
    VX3Unit units[codeLength];
    for (size_t i = 0; i < codeLength; i++)
        units[i] = static_cast<uint32_t>(code) >> (24 - 8 * i) & 0xFF;
    size_t length = codeLength;
    while (length && !units[length - 1])
        length--;
    (void)out.Set(Units(units, length));
}

int32_t GetLanguageCode(int32_t index, String* name)
{
    String code;
    if (!host->resource->language(index, name ? name->Value() : nullptr, code.Value(), nullptr))
        return 0;
    return TypeCodeFromText(code.Part(0, codeLength));
}

int32_t CountHostLanguages()
{
    while (!languageCount) {
        int32_t count = 0;
        while (host->resource->language(count, nullptr, nullptr, nullptr))
            count++;
        languageCount = count ? count : 1;
    }
    return languageCount;
}

void ForgetLanguages()
{
    languageCount = 0;
}

ContentRef FindChildByName(ContentRef parent, const String& name, ContentRef linkSource, FollowLinks follow, bool& foundByLink)
{
    foundByLink = false;
    if (!parent || name.IsEmpty())
        return ContentRef();
    String wanted = name.Lower();
    NodeRef first;
    Array<NodeRef> children;
    parent->GetFirstChild(first);
    if (!parent->CollectChildren(children))
        return ContentRef();
    for (NodeRef& node : children) {
        String own;
        ContentOf(node)->GetName(own);
        if (follow == FollowLinks::Yes && IsLinkTo(*ContentOf(node), linkSource.Get())) {
            foundByLink = true;
            return ToContent(node);
        }
        if (own.Lower() == wanted)
            return ToContent(node);
    }
    return ContentRef();
}

ContentRef FindChildByUrl(ContentRef child, ContentRef parent, FollowLinks follow, bool& foundByLink)
{
    BrowserURL url;
    String name;
    foundByLink = false;
    if (!child || !child->GetUrl(url, 0))
        return ContentRef();
    url.GetName(name);
    return FindChildByName(std::move(parent), name, std::move(child), follow, foundByLink);
}

void MakeUniqueName(const String& name, ContentRef parent, String& out)
{
    bool byLink;
    out = name;
    String stem, extension;
    SplitName(name, stem, extension);
    for (int64_t counter = 1; FindChildByName(parent, out, ContentRef(), FollowLinks::No, byLink); counter++) {
        String number;
        out = stem;
        if (!number.SetInteger(counter) || !out.Append(".") || !out.Append(number) || !out.Append(extension))
            return out.Clear(); // Half a name might be taken.
    }
}

} // namespace browser

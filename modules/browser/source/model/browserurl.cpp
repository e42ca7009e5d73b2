#include "model/browserurl.h"

#include <algorithm>
#include <array>

#include "model/crc32.h"
#include "services/allocation.h"

namespace browser {

namespace {

constexpr VX3Unit slash = '/';
constexpr VX3Unit backslash = '\\';
constexpr char filePrefix[] = "file://localhost";
constexpr int32_t filePrefixLength = sizeof filePrefix - 1;
constexpr int32_t pathStart = filePrefixLength + 1; // behind the prefix and its slash
constexpr char networkPrefix[] = "network:/";
constexpr size_t stackUnits = 1024;
constexpr size_t hashStackUnits = 2048;

bool (*networkResolver)(BrowserURL& url, FilePath& path) = nullptr;

// Units of a text on the stack, or on the heap if they are more; without memory the
// text is cut to what the stack holds rather than failing the call.
template <size_t StackUnits>
class UnitBuffer
{
public:
    explicit UnitBuffer(Units source, SourcePlace place = SourcePlace::Here())
        : UnitBuffer({}, source, place)
    {
    }
    // One text behind the other; `start` fits on the stack.
    UnitBuffer(Units start, Units rest, SourcePlace place = SourcePlace::Here())
        : count(start.size() + rest.size())
    {
        if (count > StackUnits)
            heap = static_cast<VX3Unit*>(HostAlloc(count * sizeof(VX3Unit), place));
        if (!heap)
            count = std::min(count, StackUnits);
        std::copy_n(rest.data(), count - start.size(), std::copy(start.begin(), start.end(), Data()));
    }
    ~UnitBuffer()
    {
        if (heap)
            HostFree(heap);
    }
    VX3Unit* Data() { return heap ? heap : stack; }
    Units View() { return { Data(), count }; }

private:
    VX3Unit stack[StackUnits];
    VX3Unit* heap = nullptr;
    size_t count;
};

// The prefix and its slash as units.
constexpr auto fileStart = [] {
    std::array<VX3Unit, pathStart> units = {};
    std::copy_n(filePrefix, filePrefixLength, units.begin());
    units.back() = slash;
    return units;
}();

} // namespace

void ConnectNetworkResolver(bool (*resolver)(BrowserURL& url, FilePath& path))
{
    networkResolver = resolver;
}

BrowserURL& BrowserURL::operator=(const BrowserURL& other)
{
    if (path.Set(other.path) && text.Set(other.text)) {
        flags = other.flags;
        hash = other.hash;
    } else {
        SetText(String());
    }
    return *this;
}

void BrowserURL::SetText(const String& newText)
{
    flags = textGiven | textCanonical;
    if (text.Set(newText))
        DropTrailingSlash();
    else
        text.Clear();
}

void BrowserURL::SetFile(const FilePath& newPath)
{
    flags = pathValid;
    if (!path.Set(newPath))
        path.Clear();
}

void BrowserURL::SetFileAndText(const FilePath& newPath, const String& newText)
{
    SetFile(newPath);
    flags |= textCanonical;
    if (!text.Set(newText))
        text.Clear();
}

void BrowserURL::SettleZero()
{
    if (!(flags & (textGiven | textCanonical | pathValid)))
        flags |= textGiven | textCanonical;
}

// Only where a further slash stands in front: "file:/" keeps its slash.
void BrowserURL::DropTrailingSlash()
{
    int32_t length = text.Length();
    if (length >= 2 && text.View()[size_t(length) - 1] == slash && text.FindLast(slash, length - 2) >= 0)
        (void)text.Erase(length - 1, 1);
}

const String& BrowserURL::GetText()
{
    SettleZero();
    if (!(flags & textCanonical))
        MakeCanonical();
    return text;
}

// Without memory the text is empty: a part of it would be the address of another place.
void BrowserURL::MakeCanonical()
{
    flags |= textCanonical;
    if (path.IsEmpty() || !ComposeText())
        text.Clear();
}

bool BrowserURL::ComposeText()
{
    String tail;
    if (!path.GetUrlTail(tail))
        return false;
    if (tail.IsEmpty())
        return text.Set(filePrefix);
    UnitBuffer<stackUnits> buffer(fileStart, tail.View());
    std::replace(buffer.Data() + pathStart, buffer.Data() + buffer.View().size(), backslash, slash);
    return text.Set(buffer.View());
}

bool BrowserURL::KeyOfFile(const FilePath& file, Key& out)
{
    String tail, prefix;
    if (!prefix.Set(filePrefix) || !file.GetUrlTail(tail))
        return false;
    CrcState state = ContinueCrcFolding(crcStart, prefix.View());
    out.length = filePrefixLength;
    if (!tail.IsEmpty()) {
        state = ContinueCrcFolding(ContinueCrcOfUnit(state, slash), tail.View());
        out.length += 1 + static_cast<uint32_t>(tail.Length());
    }
    out.hash = FinishCrc(state);
    return true;
}

void BrowserURL::GetName(String& out)
{
    int32_t at = GetText().FindLast(slash);
    out = at < 0 ? text : text.Part(at + 1);
}

void BrowserURL::GetParent(BrowserURL& out)
{
    SettleZero();
    if (!(flags & textCanonical)) {
        FilePath directory = path.Directory();
        if (directory.IsEmpty())
            out.SetText(String("file:/"));
        else
            out.SetFile(directory);
        return;
    }
    int32_t at = text.FindLast(slash);
    if (at >= 0 && at == text.Length() - 1)
        at = at ? text.FindLast(slash, at - 1) : -1;
    out.SetText(at > 0 ? text.Part(0, at) : String());
}

void BrowserURL::Join(const String& name, BrowserURL& out)
{
    String joined = GetText();
    if (!joined.IsEmpty())
        (void)joined.Append("/");
    (void)joined.Append(name);
    out.SetText(joined);
}

void BrowserURL::Append(const String& name)
{
    Join(name, *this);
}

void BrowserURL::AppendAlways(const String& name)
{
    String joined = GetText();
    (void)joined.Append("/");
    (void)joined.Append(name);
    SetText(joined);
}

uint32_t BrowserURL::GetHash()
{
    if (flags & hashValid)
        return hash;
    UnitBuffer<hashStackUnits> buffer(GetText().View());
    hash = FinishCrc(ContinueCrcFolding(crcStart, buffer.View()));
    flags |= hashValid;
    return hash;
}

void BrowserURL::SetHash(uint32_t stored)
{
    hash = stored;
    flags |= hashValid;
}

bool BrowserURL::HasFile()
{
    SettleZero();
    if (flags & conversionFailed)
        return false;
    if ((flags & pathValid) || !(flags & textGiven))
        return true;
    bool found = false;
    if (text.StartsWith(filePrefix))
        found = SetPathFromText();
    else if (networkResolver && text.StartsWith(networkPrefix))
        found = networkResolver(*this, path);
    flags |= found ? pathValid : conversionFailed;
    return found;
}

bool BrowserURL::SetPathFromText()
{
    String tail;
    const int32_t length = text.Length() > pathStart ? text.Length() - pathStart : 0;
    return (!length || tail.Set(text.View().subspan(pathStart))) && path.SetUrlTail(tail);
}

bool BrowserURL::GetFile(FilePath& out)
{
    return HasFile() && out.Set(path);
}

FilePath BrowserURL::GetFileCopy()
{
    FilePath copy;
    (void)GetFile(copy);
    return copy;
}

String BrowserURL::LastComponent()
{
    String name;
    GetName(name);
    return name;
}

bool BrowserURL::HasExtension(const String& suffix)
{
    if (HasFile())
        return path.HasSuffix(suffix);
    String name = LastComponent();
    int32_t dot = name.FindLast('.');
    return (dot < 0 ? String() : name.Part(dot + 1)) == suffix;
}

void BrowserURL::GetExtension(String& out)
{
    String name = LastComponent();
    int32_t dot = name.FindLast('.');
    out = dot < 0 ? String() : name.Part(dot + 1).Lower();
}

bool BrowserURL::HasContent() const
{
    if (flags & textGiven)
        return !text.IsEmpty();
    return (flags & pathValid) && !path.IsEmpty();
}

} // namespace browser

// The verb selfcheck: is what is installed whole, and does it keep its promises?
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <set>
#include <tuple>

#include "nodes.h"
#include "verbs.h"

namespace vx3::console {

namespace {

constexpr int32_t iconCount = 45;
constexpr const char* languages[] = { "us", "de" };

class Checks
{
public:
    void Check(bool isGood, const std::string& what)
    {
        std::printf("%-6s  %s\n", isGood ? "ok" : "FAILED", what.c_str());
        allGood = allGood && isGood;
    }
    bool AllGood() const { return allGood; }

private:
    bool allGood = true;
};

struct SectionRow {
    const char* name;
    size_t size;
    bool isPresent;
    size_t reserved; // leading entries that are none
};

// In the order of VX3Browser.
constexpr SectionRow sectionTable[] = {
    { "windows", sizeof(VX3BrowserWindows), false, 0 },    { "tree", sizeof(VX3TreeFunctions), true, 0 },
    { "icons", sizeof(VX3IconFunctions), true, 0 },        { "libraries", sizeof(VX3LibraryFunctions), true, 0 },
    { "items", sizeof(VX3ItemFunctions), true, 0 },        { "plugins", sizeof(VX3PluginFunctions), true, 0 },
    { "urls", sizeof(VX3UrlFunctions), true, 0 },          { "references", sizeof(VX3ReferenceFunctions), true, 0 },
    { "links", sizeof(VX3LinkFunctions), true, 0 },        { "nodes", sizeof(VX3NodeFunctions), true, 1 },
    { "sdkNodes", sizeof(VX3SdkNodeFunctions), false, 0 }, { "sdkPlugins", 0, false, 0 },
    { "dispatch", sizeof(VX3DispatchFunctions), true, 0 }, { "tools", sizeof(VX3ToolFunctions), true, 1 },
};

// A section is a row of function pointers; `tools` begins with its size instead of one.
bool IsFilled(const void* section, const SectionRow& row)
{
    void* const* functions = static_cast<void* const*>(section);
    return std::all_of(functions + row.reserved, functions + row.size / sizeof(void*), [](void* function) { return function; });
}

void CheckTable(const Session& session, Checks& checks)
{
    const VX3RegistryServices* registry = session.Host().registry;
    const VX3Browser& browser = session.Browser();
    bool isBounded = !registry->find(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION, sizeof(VX3Browser) + 1)
        && !registry->find(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION + 1, sizeof(VX3Browser));
    checks.Check(isBounded, "the table has version 1000 and 112 bytes");
    const void* const* sections = reinterpret_cast<const void* const*>(&browser);
    for (const SectionRow& row : sectionTable) {
        const void* section = *sections++;
        bool isAsTold = row.isPresent ? section && IsFilled(section, row) : !section;
        checks.Check(isAsTold, std::string("section ") + row.name + (row.isPresent ? " is there and filled" : " is none"));
    }
    checks.Check(browser.tools->size >= static_cast<int64_t>(sizeof(VX3ToolFunctions)), "the section tools tells its size");
}

// CRC-32 of IEEE 802.3, bit by bit and apart from the module's own.
uint32_t Checksum(const std::string& bytes)
{
    uint32_t value = ~0u;
    for (unsigned char byte : bytes) {
        value ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            value = value >> 1 ^ (value & 1 ? 0xEDB88320u : 0u);
    }
    return ~value;
}

// Of an ASCII text as 16-bit units, the high byte first, in lower case.
uint32_t HashOf(const std::string& ascii)
{
    std::string bytes;
    for (char c : ascii) {
        bytes += '\0';
        bytes += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return Checksum(bytes);
}

Url UrlOfText(const VX3Browser& browser, const std::string& text)
{
    Url url(browser);
    url.SetText(core::Text(std::string_view(text)));
    return url;
}

void CheckHashes(const VX3Browser& browser, Checks& checks)
{
    for (const char* text : { "file:/", "PRESET:/A", "preset://user.libvx/sub", "file://localhost/home/Some One/Picture (1).TIF" }) {
        Url url = UrlOfText(browser, text);
        checks.Check(browser.urls->getHash(url.Get()) == HashOf(text), std::string("hash of ") + text + " is " + HexText(HashOf(text)));
    }
}

void CheckPathRoundTrip(const VX3Browser& browser, const std::string& path, Checks& checks)
{
    Url fromPath(browser);
    fromPath.SetFile(core::Path(path));
    Url fromText(browser);
    fromText.SetText(fromPath.Text());
    bool isSame = fromText.NativePath() == path && fromText.Equals(fromPath)
        && browser.urls->getHash(fromText.Get()) == browser.urls->getHash(fromPath.Get());
    Url parent(browser);
    Url joined(browser);
    core::Text name;
    browser.urls->getParent(fromText.Get(), parent.Get());
    browser.urls->getName(fromText.Get(), name.Get());
    browser.urls->join(parent.Get(), name.Get(), joined.Get());
    bool isRoot = path == "/";
    checks.Check(isSame && (isRoot || joined.Equals(fromPath)), "path, URL, parent and name agree for " + Quoted(path));
}

void CheckUrls(const VX3Browser& browser, Checks& checks)
{
    for (const char* path : { "/", "/a", "/a b#?%:x", "/a/\xFF name", "/a/back\\slash", "/U/u", "/a/\xC3\xA4\xF0\x9F\x98\x80.png" })
        CheckPathRoundTrip(browser, path, checks);
    checks.Check(UrlOfText(browser, "preset://").Text().Utf8() == "preset:/", "preset:// is read as preset:/");
    checks.Check(UrlOfText(browser, "a/b//").Text().Utf8() == "a/b/", "one slash is dropped at the end");
}

void CheckRoots(const VX3Browser& browser, Checks& checks)
{
    constexpr const char* rootUrls[RootCount] = { "preset:/", "catalog:/", "file:/", "recent:/", "search:/", "favorite:/" };
    for (int32_t index = 0; index < RootCount; ++index) {
        NodeHandle root = RootOf(browser, index);
        bool isGood = root && UrlOf(browser, root).Text().Utf8() == rootUrls[index] && !NameOf(browser, root).Utf8().empty();
        checks.Check(isGood, std::string("root ") + rootUrls[index]);
    }
    checks.Check(!RootOf(browser, RootCount), "there is no further root");
}

using Picture = std::tuple<int32_t, int32_t, std::string>;

Picture ReadPicture(const Session& session, int32_t number)
{
    const VX3BitmapServices* bitmaps = session.Host().bitmap;
    const VX3Bitmap* bitmap = session.Browser().icons->iconBitmap(number, 0);
    if (!bitmap)
        return {};
    int32_t width = bitmaps->width(bitmap);
    int32_t height = bitmaps->height(bitmap);
    std::string pixels(static_cast<size_t>(width) * static_cast<size_t>(height) * 4, '\0');
    for (int32_t y = 0; y < height; ++y)
        bitmaps->readPixels(bitmap, 0, y, width,
                            reinterpret_cast<uint8_t*>(&pixels[static_cast<size_t>(y) * static_cast<size_t>(width) * 4]));
    return { width, height, pixels };
}

void CheckIcons(const Session& session, Checks& checks)
{
    int32_t count = session.Browser().icons->iconCount();
    checks.Check(count == iconCount && !session.Browser().icons->iconFile(count), std::to_string(iconCount) + " icons");
    std::map<Picture, int32_t> seen;
    for (int32_t number = 0; number < count; ++number) {
        Picture picture = ReadPicture(session, number);
        const char* file = session.Browser().icons->iconFile(number);
        std::string what = "icon " + std::to_string(number) + " " + (file ? file : "-");
        auto [other, isNew] = seen.emplace(picture, number);
        checks.Check(std::get<0>(picture) > 0 && file, what + " loads");
        if (!isNew)
            checks.Check(false, what + " differs from icon " + std::to_string(other->second));
    }
    checks.Check(!session.Browser().icons->iconBitmap(count, 0), "there is no picture behind the last icon");
}

// The numbers of the texts in a language's file.
std::set<int32_t> NumbersOf(const Session& session, const std::string& language)
{
    const std::string& module = session.ModuleFile();
    std::ifstream file(module.substr(0, module.rfind('/')) + "/res/strings/" + language + ".txt");
    std::set<int32_t> numbers;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] >= '0' && line[0] <= '9')
            numbers.insert(static_cast<int32_t>(std::strtol(line.c_str(), nullptr, 10)));
    return numbers;
}

void CheckTexts(const Session& session, const std::string& language, Checks& checks)
{
    const VX3ResourceServices* resources = session.Host().resource;
    VX3Resources* loaded = resources->load(core::Path(session.ModuleFile()).Get());
    std::set<int32_t> numbers = NumbersOf(session, languages[0]);
    checks.Check(loaded && !numbers.empty(), "texts can be loaded");
    std::string missing;
    for (int32_t number : numbers) {
        core::Text text;
        if (!resources->text(loaded, number, text.Get()) || text.Utf8().empty())
            missing += " " + std::to_string(number);
    }
    resources->free(loaded);
    checks.Check(missing.empty(), std::to_string(numbers.size()) + " texts are not empty" + (missing.empty() ? "" : ":" + missing));
    checks.Check(NumbersOf(session, language) == numbers, "the language " + language + " has every text");
}

bool IsEmpty(const core::LiveObjects& left)
{
    return left.memoryBlocks == 0 && left.texts == 0 && left.paths == 0 && left.containers == 0 && left.files == 0 && left.walks == 0
        && left.watches == 0 && left.bitmaps == 0 && left.threads == 0 && left.semaphores == 0 && left.resources == 0
        && left.compressors == 0;
}

void CheckPublished(const Session& session, const std::string& language, Checks& checks)
{
    CheckTable(session, checks);
    CheckHashes(session.Browser(), checks);
    CheckUrls(session.Browser(), checks);
    CheckRoots(session.Browser(), checks);
    CheckTexts(session, language, checks);
    CheckIcons(session, checks);
}

void CheckLife(Command command, const std::string& language, Checks& checks)
{
    command.options[Option::Lang] = language;
    Session session;
    Failure failure = session.Open(command);
    checks.Check(!failure, "life with the language " + language + (failure ? ": " + failure.sentence : " begins"));
    if (!failure)
        CheckPublished(session, language, checks);
    checks.Check(IsEmpty(session.Close()), "life with the language " + language + " leaves nothing behind");
}

} // namespace

int RunSelfcheck(const Command& command)
{
    Checks checks;
    for (const char* language : languages)
        CheckLife(command, language, checks);
    return checks.AllGood() ? 0 : 1;
}

} // namespace vx3::console

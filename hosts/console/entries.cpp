#include "entries.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace vx3::console {

namespace {

constexpr int32_t kindCreated = 0;
constexpr int32_t kindModified = 1;

struct AttributeRow {
    uint32_t bit;
    size_t column; // of the letters
    char letter;
    const char* word;
};

constexpr size_t letterCount = 5;
constexpr AttributeRow attributeTable[] = {
    { VX3_NODE_CONTAINER, 0, 'c', "container" }, { VX3_NODE_FOLDER, 0, 'd', "folder" },      { VX3_NODE_BUNDLE, 0, 'b', "bundle" },
    { VX3_NODE_LINK, 1, 'l', "link" },           { VX3_NODE_READONLY, 2, 'r', "read-only" }, { VX3_NODE_VOLUME, 3, 'v', "volume" },
    { VX3_NODE_BROKEN_LINK, 4, '!', "broken" },  { VX3_NODE_REMOVED, 4, '-', "removed" },
};

// Characters, not bytes: what the columns are made of.
int WidthOf(const std::string& utf8)
{
    return static_cast<int>(std::count_if(utf8.begin(), utf8.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string HexBytes(const std::string& bytes)
{
    std::string hex;
    for (unsigned char byte : bytes) {
        char digits[4];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        hex += digits;
    }
    return hex;
}

void WriteDate(JsonWriter& json, const char* name, const VX3FileDate& date)
{
    std::string text = DateText(date);
    if (text.empty())
        json.Null(name);
    else
        json.Text(name, text);
}

std::string SizeText(const Entry& entry)
{
    bool hasSize = (entry.attributes & (VX3_NODE_FOLDER | VX3_NODE_CONTAINER | VX3_NODE_BUNDLE)) == 0;
    return hasSize ? std::to_string(entry.size) : "-";
}

void ReadPlugin(const Session& session, const NodeHandle& node, TypeTest test, Entry& entry)
{
    const VX3Browser& browser = session.Browser();
    VX3Plugin* plugin = browser.nodes->getPlugin(node.Get(), test == TypeTest::ByName ? VX3_PLUGIN_QUICK_TEST : 0);
    if (!plugin || !browser.plugins)
        return;
    core::Text name;
    entry.plugin = browser.plugins->typeId(plugin, name.Get());
    entry.pluginName = name.Utf8();
}

} // namespace

Entry ReadEntry(const Session& session, const NodeHandle& node, TypeTest test)
{
    const VX3Browser& browser = session.Browser();
    Entry entry;
    Url url = UrlOf(browser, node);
    entry.url = url.Text().Utf8();
    entry.urlBytes = url.Bytes();
    entry.path = url.NativePath();
    core::Text name = NameOf(browser, node);
    entry.name = name.Utf8();
    entry.nameBytes = core::NativeNameBytes(*name.Get());
    ReadPlugin(session, node, test, entry);
    core::Text type;
    browser.nodes->getTypeName(node.Get(), type.Get(), 0);
    entry.type = type.Utf8();
    entry.nodeType = browser.nodes->getNodeType(node.Get());
    entry.attributes = browser.nodes->getAttributes(node.Get(), &entry.size);
    browser.nodes->getDate(node.Get(), kindCreated, &entry.created);
    browser.nodes->getDate(node.Get(), kindModified, &entry.modified);
    entry.hash = browser.urls->getHash(url.Get());
    return entry;
}

std::string DateText(const VX3FileDate& date)
{
    if (date.year == 0 && date.month == 0 && date.day == 0)
        return {};
    char text[64];
    std::snprintf(text, sizeof text, "%04u-%02u-%02uT%02u:%02u:%02u", date.year, date.month, date.day, date.hour, date.minute, date.second);
    return text;
}

std::string AttributeLetters(uint32_t attributes)
{
    std::string letters(letterCount, '-');
    for (const AttributeRow& row : attributeTable)
        if (attributes & row.bit)
            letters[row.column] = row.letter;
    return letters;
}

std::string AttributeWords(uint32_t attributes)
{
    std::string words;
    for (const AttributeRow& row : attributeTable)
        if (attributes & row.bit)
            (words += words.empty() ? "" : ", ") += row.word;
    return words;
}

bool WantsColour()
{
    const char* refused = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    bool isDumb = !terminal || std::string(terminal) == "dumb";
    return isatty(STDOUT_FILENO) && !(refused && *refused) && !isDumb;
}

std::string ColouredName(const Entry& entry, bool withColour)
{
    std::string name = Shown(entry.nameBytes);
    if (!withColour)
        return name;
    const char* colour = "";
    if (entry.attributes & VX3_NODE_BROKEN_LINK)
        colour = "\033[31m";
    else if (entry.attributes & VX3_NODE_LINK)
        colour = "\033[36m";
    else if (IsHolder(entry.attributes))
        colour = "\033[1;34m";
    return *colour ? colour + name + "\033[0m" : name;
}

void WriteEntry(JsonWriter& json, const Entry& entry)
{
    json.BeginEntry();
    json.Text("url", entry.url);
    json.Text("name", entry.name);
    json.Text("type", entry.type);
    json.Number("nodeType", entry.nodeType);
    if (entry.plugin)
        json.Number("plugin", *entry.plugin);
    else
        json.Null("plugin");
    json.Text("attributes", HexText(entry.attributes));
    json.Number("size", entry.size);
    WriteDate(json, "created", entry.created);
    WriteDate(json, "modified", entry.modified);
    json.Text("hash", HexText(entry.hash));
    if (entry.nameBytes != entry.name)
        json.Text("nameBytes", HexBytes(entry.nameBytes));
    if (entry.urlBytes != entry.url)
        json.Text("urlBytes", HexBytes(entry.urlBytes));
    if (entry.depth)
        json.Number("depth", *entry.depth);
    json.EndEntry();
}

void PrintTable(const std::vector<Entry>& entries)
{
    bool withColour = WantsColour();
    int sizeWidth = 1;
    int typeWidth = 1;
    for (const Entry& entry : entries) {
        sizeWidth = std::max(sizeWidth, WidthOf(SizeText(entry)));
        typeWidth = std::max(typeWidth, WidthOf(Shown(entry.type)));
    }
    for (const Entry& entry : entries) {
        std::string date = DateText(entry.modified);
        std::replace(date.begin(), date.end(), 'T', ' ');
        std::string type = Shown(entry.type);
        std::printf("%s  %*s  %-19s  %s%*s  %s\n", AttributeLetters(entry.attributes).c_str(), sizeWidth, SizeText(entry).c_str(),
                    date.empty() ? "-" : date.c_str(), type.c_str(), typeWidth - WidthOf(type), "",
                    ColouredName(entry, withColour).c_str());
    }
}

void PrintFields(const Entry& entry)
{
    auto print = [](const char* label, const std::string& value) { std::printf("%-11s %s\n", label, value.empty() ? "-" : value.c_str()); };
    std::string words = AttributeWords(entry.attributes);
    print("Name:", Shown(entry.nameBytes));
    print("URL:", Shown(entry.urlBytes));
    print("Path:", Shown(entry.path));
    print("Type:", Shown(entry.type));
    print("Node type:", std::to_string(entry.nodeType));
    print("Plugin:", entry.plugin ? std::to_string(*entry.plugin) + " " + Shown(entry.pluginName) : "");
    print("Attributes:", HexText(entry.attributes) + (words.empty() ? "" : " " + words));
    print("Size:", SizeText(entry));
    print("Created:", DateText(entry.created));
    print("Modified:", DateText(entry.modified));
    print("Hash:", HexText(entry.hash));
}

} // namespace vx3::console

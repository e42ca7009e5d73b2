#include "libraryvalues.h"

#include <charconv>
#include <cstdio>

#include "entries.h"
#include "librarykeys.h"
#include "libraryscan.h"

namespace vx3::console {

namespace {

// What a container is, which gives its keys their meaning.
enum class Group { Unknown, Info, Category, Item, Text, Source, Previews, Preview, Path, View, Data, ScanSizes, Date, Names };

struct KeyRow {
    Group group;
    int32_t key;
    const char* name;
    Group nested = Group::Unknown;
};

constexpr KeyRow keyTable[] = {
    { Group::Info, key::infoVersion, "version" },
    { Group::Info, key::infoName, "url" },
    { Group::Info, key::infoNames, "names", Group::Names },
    { Group::Info, key::infoReadOnly, "readOnly" },
    { Group::Category, key::categoryText, "category" },
    { Group::Category, key::categoryNames, "names", Group::Names },
    { Group::Item, key::itemType, "type" },
    { Group::Item, key::itemWords, "words" },
    { Group::Item, key::itemDescription, "description", Group::Text },
    { Group::Item, key::itemSource, "source", Group::Source },
    { Group::Item, key::itemPreviews, "previews", Group::Previews },
    { Group::Item, key::itemPath, "path", Group::Path },
    { Group::Item, key::itemView, "view", Group::View },
    { Group::Item, key::itemChanged, "changed", Group::Date },
    { Group::Item, key::itemCreated, "created", Group::Date },
    { Group::Item, key::itemData, "data", Group::Data },
    { Group::Item, key::itemSettings, "settings" },
    { Group::Item, key::itemNames, "names", Group::Names },
    { Group::Item, key::itemSubtype, "subtype" },
    { Group::Item, key::itemScanState, "scanState" },
    { Group::Item, key::itemScanSizes, "scanSizes" },
    { Group::Text, 0, "text" },
    { Group::Source, 0, "width" },
    { Group::Source, 1, "height" },
    { Group::Source, 2, "depth" },
    { Group::Source, 3, "alpha" },
    { Group::Source, 4, "format" },
    { Group::Preview, key::previewFile, "file" },
    { Group::Preview, key::previewWidth, "width" },
    { Group::Preview, key::previewHeight, "height" },
    { Group::Preview, key::previewGrade, "grade" },
    { Group::Preview, key::previewDate, "date", Group::Date },
    { Group::Preview, key::previewOffset, "offset" },
    { Group::Path, key::pathText, "text" },
    { Group::Path, key::pathOldPreviews, "oldPreviews", Group::Previews },
    { Group::Path, key::pathHash, "hash" },
    { Group::Path, key::pathLink, "link" },
    { Group::Path, key::pathLinkIsRelative, "linkIsRelative" },
    { Group::View, 0, "flags" },
    { Group::View, 6, "positions" },
    { Group::View, 10, "order" },
    { Group::View, 11, "value" },
    { Group::View, 12, "day" },
    { Group::View, 13, "time" },
    { Group::Data, key::dataOffset, "offset" },
    { Group::Data, key::dataMode, "mode" },
    { Group::Data, key::dataUnpacked, "unpacked" },
};

const KeyRow* FindKey(Group group, int32_t key)
{
    for (const KeyRow& row : keyTable)
        if (row.group == group && row.key == key)
            return &row;
    return nullptr;
}

std::string NameOf(Group group, int32_t key)
{
    if (const KeyRow* row = FindKey(group, key))
        return row->name;
    std::string language = group == Group::Names ? LanguageText(static_cast<uint32_t>(key)) : "";
    return language.empty() ? std::to_string(key) : Shown(language);
}

Group NestedGroup(Group group, int32_t key)
{
    if (group == Group::Previews)
        return Group::Preview;
    const KeyRow* row = FindKey(group, key);
    return row ? row->nested : Group::Unknown;
}

bool IsHash(Group group, int32_t key)
{
    return group == Group::Path && key == key::pathHash;
}

std::string FloatText(double number)
{
    char digits[64];
    std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    return std::string(digits, result.ptr);
}

class Rows
{
public:
    void Add(Group group, ContainerView container, const std::string& keys, const std::string& names);
    std::vector<ValueRow> rows;

private:
    void AddNested(Group group, ContainerView nested, ValueRow row);
};

void Rows::AddNested(Group group, ContainerView nested, ValueRow row)
{
    row.type = group == Group::Date ? "date" : "container";
    if (group == Group::Date)
        row.text = DateText(UnpackDate(nested));
    else
        row.text = std::to_string(nested.Count()) + (nested.Count() == 1 ? " entry" : " entries")
            + (nested.Id() ? ", id " + std::to_string(nested.Id()) : "");
    rows.push_back(row);
    if (group != Group::Date)
        Add(group, nested, row.keys + ".", row.name + ".");
}

void Rows::Add(Group group, ContainerView container, const std::string& keys, const std::string& names)
{
    for (int32_t place = 0; place < container.Count(); ++place) {
        int32_t key = container.KeyAt(place);
        ValueRow row = { keys + std::to_string(key), names + NameOf(group, key), "", "" };
        switch (container.TypeOf(key)) {
        case VX3_VALUE_INT32:
            row.type = "int32";
            row.text = IsHash(group, key) ? HexText(static_cast<uint32_t>(container.Int32(key))) : std::to_string(container.Int32(key));
            break;
        case VX3_VALUE_INT64:
            row.type = "int64";
            row.text = std::to_string(container.Int64(key));
            break;
        case VX3_VALUE_FLOAT:
            row.type = "float";
            row.text = FloatText(container.Float(key));
            break;
        case VX3_VALUE_BOOL:
            row.type = "truth";
            row.text = container.Truth(key) ? "true" : "false";
            break;
        case VX3_VALUE_TEXT:
            row.type = "text";
            row.text = container.Text(key).Utf8();
            break;
        case VX3_VALUE_BYTES:
            row.type = "bytes";
            row.text = std::to_string(container.ByteCount(key)) + " bytes";
            break;
        default: AddNested(NestedGroup(group, key), container.Nested(key), row); continue;
        }
        rows.push_back(row);
    }
}

Group GroupOf(uint32_t chunkTag)
{
    if (chunkTag == tag::info)
        return Group::Info;
    return chunkTag == tag::category ? Group::Category : Group::Item;
}

} // namespace

std::vector<ValueRow> ValuesOf(uint32_t tag, ContainerView container)
{
    Rows rows;
    rows.Add(GroupOf(tag), container, "", "");
    return std::move(rows.rows);
}

} // namespace vx3::console

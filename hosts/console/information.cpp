// The verbs that tell of the browser itself: plugins, icons, prefs.
#include <cstdio>
#include <optional>

#include "entries.h"
#include "verbs.h"

namespace vx3::console {

namespace {

struct SettingType {
    int32_t type;
    const char* name;
};

constexpr SettingType settingTypes[] = {
    { VX3_VALUE_INT32, "number" },
    { VX3_VALUE_FLOAT, "fraction" },
    { VX3_VALUE_TEXT, "text" },
    { VX3_VALUE_CONTAINER, "container" },
};

const char* TypeNameOf(const VX3Preference& setting)
{
    for (const SettingType& row : settingTypes)
        if (row.type == setting.type)
            return row.name;
    return "other";
}

bool IsNumber(const VX3Preference& setting)
{
    return setting.type == VX3_VALUE_INT32 || setting.type == VX3_VALUE_FLOAT;
}

std::optional<VX3Preference> FindSetting(const VX3Browser& browser, const std::string& word)
{
    VX3Preference setting = {};
    for (int32_t index = 0; browser.tools->preference(index, &setting); ++index)
        if (word == setting.name || word == std::to_string(setting.key))
            return setting;
    return {};
}

std::string ValueOf(const VX3Browser& browser, const VX3Preference& setting)
{
    core::Text value;
    browser.tools->getPreference(setting.key, value.Get());
    return value.Utf8();
}

std::string Digits(double number)
{
    char text[64];
    std::snprintf(text, sizeof text, "%g", number);
    return text;
}

void WriteSetting(JsonWriter& json, const VX3Browser& browser, const VX3Preference& setting)
{
    json.BeginEntry();
    json.Number("key", setting.key);
    json.Text("name", setting.name);
    json.Text("type", TypeNameOf(setting));
    json.Text("value", ValueOf(browser, setting));
    if (IsNumber(setting)) {
        json.Float("fallback", setting.fallback);
        json.Float("lowest", setting.lowest);
        json.Float("highest", setting.highest);
    }
    json.EndEntry();
}

int ListSettings(const Command& command, const VX3Browser& browser)
{
    std::optional<JsonWriter> json;
    if (command.Has(Option::Json))
        json.emplace(stdout);
    VX3Preference setting = {};
    for (int32_t index = 0; browser.tools->preference(index, &setting); ++index) {
        if (json)
            WriteSetting(*json, browser, setting);
        else
            std::printf("%3d  %-26s %s\n", setting.key, setting.name, Shown(ValueOf(browser, setting)).c_str());
    }
    return static_cast<int>(Exit::Done);
}

int GetSetting(const Command& command, const VX3Browser& browser, const VX3Preference& setting)
{
    if (command.Has(Option::Json)) {
        JsonWriter json(stdout);
        WriteSetting(json, browser, setting);
    } else
        std::printf("%s\n", Shown(ValueOf(browser, setting)).c_str());
    return static_cast<int>(Exit::Done);
}

int SetSetting(Session& session, const VX3Preference& setting, const std::string& value)
{
    std::string range = IsNumber(setting) ? " from " + Digits(setting.lowest) + " to " + Digits(setting.highest) : "";
    core::Text text{ std::string_view(value) };
    if (!session.Browser().tools->setPreference(setting.key, text.Get())) {
        Say(Quoted(value) + " is not a value of " + setting.name + ", which is a " + TypeNameOf(setting) + range);
        return static_cast<int>(Exit::Refused);
    }
    if (session.Core().StorePreferences())
        return static_cast<int>(Exit::Done);
    Say("the settings could not be written; the old ones are kept");
    return static_cast<int>(Exit::Refused);
}

std::vector<std::string> TypeNamesOf(const VX3Browser& browser, VX3Plugin* plugin)
{
    core::Text names;
    browser.plugins->typeNames(plugin, 1, names.Get());
    std::vector<std::string> result;
    for (const std::string& name : SplitChoices(names.Utf8(), '\n'))
        if (!name.empty())
            result.push_back(name);
    return result;
}

void PrintPlugin(const Command& command, const VX3Browser& browser, int32_t index)
{
    VX3Plugin* plugin = browser.plugins->byIndex(index);
    core::Text name;
    int32_t typeId = browser.plugins->typeId(plugin, name.Get());
    const char* matches = browser.plugins->matchesFiles(plugin) ? "files" : "-";
    std::printf("%3d  %8d  %-5s  %s\n", index, typeId, matches, Shown(name.Utf8()).c_str());
    if (command.Has(Option::Names))
        for (const std::string& typeName : TypeNamesOf(browser, plugin))
            std::printf("     %s\n", Shown(typeName).c_str());
}

void WritePlugin(JsonWriter& json, const Command& command, const VX3Browser& browser, int32_t index)
{
    VX3Plugin* plugin = browser.plugins->byIndex(index);
    core::Text name;
    json.BeginEntry();
    json.Number("index", index);
    json.Number("plugin", browser.plugins->typeId(plugin, name.Get()));
    json.Text("name", name.Utf8());
    json.Truth("matchesFiles", browser.plugins->matchesFiles(plugin) != 0);
    if (command.Has(Option::Names))
        json.Texts("typeNames", TypeNamesOf(browser, plugin));
    json.EndEntry();
}

struct IconRow {
    int32_t number;
    const char* file;
    int32_t width = 0; // 0 if it could not be loaded
    int32_t height = 0;
};

IconRow ReadIcon(const Session& session, int32_t number)
{
    const VX3IconFunctions* icons = session.Browser().icons;
    const VX3BitmapServices* bitmaps = session.Host().bitmap;
    IconRow row = { number, icons->iconFile(number) };
    if (const VX3Bitmap* bitmap = icons->iconBitmap(number, 0)) {
        row.width = bitmaps->width(bitmap);
        row.height = bitmaps->height(bitmap);
    }
    return row;
}

void WriteIcon(JsonWriter& json, const IconRow& row)
{
    json.BeginEntry();
    json.Number("number", row.number);
    json.Text("file", row.file ? row.file : "");
    json.Number("width", row.width);
    json.Number("height", row.height);
    json.EndEntry();
}

} // namespace

int RunPlugins(const Command& command, Session& session)
{
    const VX3Browser& browser = session.Browser();
    std::optional<JsonWriter> json;
    if (command.Has(Option::Json))
        json.emplace(stdout);
    for (int32_t index = 0; index < browser.plugins->count(); ++index) {
        if (json)
            WritePlugin(*json, command, browser, index);
        else
            PrintPlugin(command, browser, index);
    }
    return static_cast<int>(Exit::Done);
}

int RunIcons(const Command& command, Session& session)
{
    Outcome outcome;
    if (command.Has(Option::Sheet)) {
        Failure failure = SaveIconSheet(session, AbsolutePath(command.Value(Option::Sheet)));
        if (failure)
            outcome.Fail(failure);
        return outcome.Code();
    }
    std::optional<JsonWriter> json;
    if (command.Has(Option::Json))
        json.emplace(stdout);
    for (int32_t number = 0; number < session.Browser().icons->iconCount(); ++number) {
        IconRow row = ReadIcon(session, number);
        if (json)
            WriteIcon(*json, row);
        else
            std::printf("%2d  %3d x %3d  %s\n", row.number, row.width, row.height, row.file ? row.file : "-");
        if (row.width > 0)
            outcome.Done();
        else
            outcome.Fail({ Exit::Damaged, "icon " + std::to_string(number) + " cannot be loaded" });
    }
    return outcome.Code();
}

int RunPrefs(const Command& command, Session& session)
{
    const VX3Browser& browser = session.Browser();
    const std::vector<std::string>& words = command.arguments;
    if (words.empty())
        return ListSettings(command, browser);
    bool isGet = words[0] == "get" && words.size() == 2;
    bool isSet = words[0] == "set" && words.size() == 3;
    if (!isGet && !isSet) {
        Say(std::string("the form is: vx3 prefs ") + RowOf(Verb::Prefs).synopsis);
        return static_cast<int>(Exit::Usage);
    }
    std::optional<VX3Preference> setting = FindSetting(browser, words[1]);
    if (!setting) {
        Say("there is no setting " + Quoted(words[1]) + "; vx3 prefs lists all of them");
        return static_cast<int>(Exit::NotFound);
    }
    return isGet ? GetSetting(command, browser, *setting) : SetSetting(session, *setting, words[2]);
}

} // namespace vx3::console

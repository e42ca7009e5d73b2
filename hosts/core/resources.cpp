#include "resources.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <unordered_map>
#include <vector>

#include "hoststate.h"
#include "livecounts.h"
#include "services.h"
#include "values.h"

// Constant after loading, so that any thread may read.
struct VX3Resources {
    std::filesystem::path folder;
    std::unordered_map<int32_t, std::u16string> texts;
};

namespace vx3::core {

namespace {

namespace files = std::filesystem;

constexpr const char* fallbackLanguage = "us";
constexpr int32_t languageNameNumber = 0; // each list begins with the name of its language

struct Language {
    std::string code;
    std::u16string name;
};

std::mutex languageLock;
std::vector<Language> languages; // under languageLock: all that any loaded module has, `us` first

using TextTable = std::unordered_map<int32_t, std::u16string>;

std::string Unescape(std::string_view text)
{
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        bool isEscape = text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == 'n' || text[i + 1] == '\\');
        if (!isEscape)
            plain += text[i];
        else
            plain += text[++i] == 'n' ? '\n' : text[i];
    }
    return plain;
}

std::string_view SkipBlanks(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
}

// A line that is not a number, `=` and a text says nothing.
void ReadLine(std::string_view line, TextTable& table)
{
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    int32_t number = -1;
    auto [end, failure] = std::from_chars(line.data(), line.data() + line.size(), number);
    if (failure != std::errc() || number < 0)
        return;
    std::string_view rest = SkipBlanks(line.substr(static_cast<size_t>(end - line.data())));
    if (rest.starts_with('='))
        table[number] = Text(Unescape(SkipBlanks(rest.substr(1)))).Units();
}

// Lays the texts of a file over the table.
bool ReadTexts(const files::path& file, TextTable& table)
{
    std::ifstream lines(file);
    if (!lines)
        return false;
    for (std::string line; std::getline(lines, line);)
        ReadLine(line, table);
    return true;
}

std::u16string NameOfLanguage(const files::path& file, const std::string& code)
{
    TextTable table;
    ReadTexts(file, table);
    std::u16string name = table[languageNameNumber];
    return name.empty() ? Text(code).Units() : name;
}

void NoteLanguage(const files::path& file)
{
    std::string code = file.stem().string();
    auto isNoted = [&](const Language& language) { return language.code == code; };
    auto comesFirst = [](const Language& a, const Language& b) {
        return (a.code != fallbackLanguage) != (b.code != fallbackLanguage) ? a.code == fallbackLanguage : a.code < b.code;
    };
    std::lock_guard guard(languageLock);
    if (std::any_of(languages.begin(), languages.end(), isNoted))
        return;
    languages.push_back({ code, NameOfLanguage(file, code) });
    std::sort(languages.begin(), languages.end(), comesFirst);
}

void NoteLanguages(const files::path& folder)
{
    std::error_code failure;
    for (files::directory_iterator entry(folder, failure), end; !failure && entry != end; entry.increment(failure))
        if (entry->path().extension() == ".txt")
            NoteLanguage(entry->path());
}

VX3Resources* LoadFrom(const files::path& resourceFolder)
{
    const files::path folder = resourceFolder / "strings";
    auto resources = std::make_unique<VX3Resources>();
    resources->folder = resourceFolder;
    bool hasFallback = ReadTexts(folder / (std::string(fallbackLanguage) + ".txt"), resources->texts);
    const std::string& code = CurrentSettings().language;
    bool hasLanguage = code != fallbackLanguage && ReadTexts(folder / (code + ".txt"), resources->texts);
    if (!hasFallback && !hasLanguage)
        return nullptr;
    NoteLanguages(folder);
    liveCounters.resources.Add();
    return resources.release();
}

VX3Resources* Load(const VX3Path* module)
{
    try {
        return LoadFrom(files::path(NativeBytes(*module)).parent_path() / "res");
    } catch (const std::exception&) { // no memory
        return nullptr;
    }
}

void Free(VX3Resources* resources)
{
    if (!resources)
        return;
    delete resources;
    liveCounters.resources.Subtract();
}

VX3Bool SetUnits(VX3String* text, const std::u16string& units)
{
    return TextServices()->setUnits(text, reinterpret_cast<const VX3Unit*>(units.data()), static_cast<int32_t>(units.size()));
}

// What stands in the place of a text that nobody has written.
void SetMark(VX3String* text, int32_t number)
{
    std::array<char, 16> mark = { '#' };
    auto end = std::to_chars(mark.begin() + 1, mark.end(), number).ptr;
    TextServices()->set(text, mark.data(), static_cast<int32_t>(end - mark.data()), VX3_ENCODING_PLAIN);
}

VX3Bool TextOf(VX3Resources* resources, int32_t number, VX3String* text)
{
    if (!resources) {
        TextServices()->destruct(text);
        return 0;
    }
    if (auto found = resources->texts.find(number); found != resources->texts.end())
        return SetUnits(text, found->second);
    SetMark(text, number);
    return 0;
}

VX3Bool LanguageAt(int32_t index, VX3String* name, VX3String* code, VX3Bool* isCurrent)
{
    std::lock_guard guard(languageLock);
    if (index < 0 || index >= static_cast<int32_t>(languages.size()))
        return 0;
    const Language& language = languages[static_cast<size_t>(index)];
    if (name && !SetUnits(name, language.name))
        return 0;
    if (code && !SetUnits(code, std::u16string(language.code.begin(), language.code.end())))
        return 0;
    if (isCurrent)
        *isCurrent = language.code == CurrentSettings().language;
    return 1;
}

// A host of this kind offers no keywords of its own.
VX3Bool Keyword(int32_t, VX3String*)
{
    return 0;
}

} // namespace

std::string ResourceFolder(const VX3Resources* resources)
{
    return resources ? resources->folder.native() : std::string();
}

const VX3ResourceServices* ResourceServices()
{
    static constexpr VX3ResourceServices services = { Load, Free, TextOf, LanguageAt, Keyword };
    return &services;
}

} // namespace vx3::core

#include "options.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "outcome.h"
#include "verbs.h"

namespace vx3::console {

namespace {

constexpr size_t anyNumber = SIZE_MAX;

constexpr uint32_t Bit(Verb verb)
{
    return 1u << static_cast<uint32_t>(verb);
}

template <class... Verbs>
constexpr uint32_t Bits(Verbs... verbs)
{
    return (Bit(verbs) | ...);
}

constexpr uint32_t Bit(Option option)
{
    return 1u << static_cast<uint32_t>(option);
}

constexpr uint32_t nodeListings = Bits(Verb::Roots, Verb::Ls, Verb::Stat, Verb::Tree, Verb::Plugins, Verb::Icons, Verb::Prefs);
constexpr uint32_t listings = nodeListings | Bit(Verb::Lib);
constexpr uint32_t changes = Bits(Verb::Mkdir, Verb::Rename, Verb::Move, Verb::Copy, Verb::Delete);
constexpr uint32_t withModule = nodeListings | changes | Bits(Verb::Lib, Verb::Script, Verb::Selfcheck);
constexpr uint32_t everywhere = UINT32_MAX;
constexpr uint32_t ofModule = Bit(Option::Profile) | Bit(Option::Lang) | Bit(Option::Module);

constexpr VerbRow verbTable[] = {
    { Verb::Roots, "roots", "", Takes::Nothing, "", 0, 0, "list the roots of the tree",
      "Lists the tops of the tree of content, each with its URL." },
    { Verb::Ls, "ls", "[PLACE...]", Takes::Place, "", 0, anyNumber, "list folders",
      "Lists what each place holds, or the place itself if it is no folder; without a place the current folder. "
      "The columns are attributes, size in bytes, date of the last change, type and name. "
      "The attributes are d for a folder, c for another holder of items and b for a bundle, then l for a link, r for read-only, "
      "v for a volume and ! for a broken link.\n"
      "Types are told by names alone; stat looks into the files. Hidden files are not part of the tree." },
    { Verb::Stat, "stat", "PLACE...", Takes::Place, "", 1, anyNumber, "tell everything about places",
      "Prints all fields of each place. The type of a file is found by its bytes." },
    { Verb::Tree, "tree", "[PLACE]", Takes::Place, "", 0, 1, "draw a folder with all below it",
      "Draws the place, or the current folder, and what lies below it. A volume that also hangs below the computer is entered "
      "there and not a second time. How many folders and files there were stands on the standard error output." },
    { Verb::Mkdir, "mkdir", "PLACE...", Takes::Place, "", 1, anyNumber, "make folders", "Makes each folder in a folder that exists." },
    { Verb::Rename, "rename", "PLACE NAME", Takes::Place, "", 2, 2, "give an item another name",
      "Gives the item another name in its folder. Nothing that exists is replaced." },
    { Verb::Move, "move", "PLACE... FOLDER", Takes::Place, "", 2, anyNumber, "move items into a folder",
      "Moves each item into the folder, which must exist and lie on the same volume. Nothing that exists is replaced." },
    { Verb::Copy, "copy", "PLACE... TARGET", Takes::Place, "", 2, anyNumber, "copy items into a folder",
      "Copies each item with all below it into the folder TARGET. A single item may be given a new name by a target that does not "
      "exist yet. Nothing that exists is replaced, and a copy that fails or is cancelled leaves nothing behind." },
    { Verb::Delete, "delete", "PLACE...", Takes::Place, "", 1, anyNumber, "delete items",
      "Deletes each item with all below it, hidden files included. Asks first; without a terminal it needs --yes. "
      "Links are deleted and not followed." },
    { Verb::Plugins, "plugins", "", Takes::Nothing, "", 0, 0, "list the kinds of content",
      "Lists the plugins for kinds of content in the order in which they are asked: index, type id, whether the plugin takes part in "
      "finding the type of files, and name." },
    { Verb::Icons, "icons", "", Takes::Nothing, "", 0, 0, "list or draw the icons",
      "Lists the browser's icons: number, size in pixels and file. With --sheet they are drawn into one picture, at 16, 32, 64 and "
      "128 pixels on a light and on a dark ground." },
    { Verb::Prefs, "prefs", "[get SETTING | set SETTING VALUE]", Takes::Word, "get|set", 0, 3, "read and write settings",
      "Lists all settings with their values, or reads or writes one, given by its number or its name. Settings are kept in the "
      "profile." },
    { Verb::Lib, "lib", "VERB FILE [ARGUMENT...]", Takes::File, "", 1, anyNumber, "look into library files, and change them",
      "Works on library and catalog files (.libvx, .catvx). info, ls, check, dump and recover read them without the browser, and as they "
      "are: none is locked, and none is written but by recover with --yes. A file that the browser would call damaged ends with 4.\n"
      "The other verbs go through the browser. The PATH of an item is what stands behind the URL of the library; slashes around it and "
      "the case of letters do not count, and an empty part, a part . or .. or a control character is refused. A file that cannot be "
      "changed is left as it was. A damaged one is copied to FILE.bak before it is changed, and is not changed while there is such "
      "a file. What is no library is never written." },
    { Verb::Script, "script", "FILE", Takes::File, "", 1, 1, "use the windows by a script",
      "Plays what a user would do in the browser's windows, line by line, without a screen: clicks, keys, drags, waiting. What the "
      "script dumps is printed. The clock of the windows stands unless the script moves it. Files and folders that it makes lie in "
      "a folder that is made for it and removed at the end, and so does the profile, so that each run is like the first; the "
      "language is English. An answer that is missing, a row or a gadget that is not there, or a call from a wrong thread ends the "
      "run with 1.\n"
      "At the end the longest time that one event took stands on the standard error output. Lines that follow one that opens "
      "something run inside it; vx3 help script lists them all." },
    { Verb::Selfcheck, "selfcheck", "", Takes::Nothing, "", 0, 0, "test the installation",
      "Loads the module twice, in each of its languages, and checks what it publishes: table, hashes, texts, icons, roots, URLs. "
      "One line for each check." },
    { Verb::Completion, "completion", "bash|zsh|fish", Takes::Word, "bash|zsh|fish", 1, 1, "write a completion script",
      "Writes a script that lets the shell complete verbs, options and places." },
    { Verb::Help, "help", "[VERB]", Takes::Word, "", 0, 1, "explain the program or a verb",
      "Explains the program or one verb. With --man it writes the manual page." },
};

constexpr SubVerbRow subVerbTable[] = {
    { Verb::Lib, "info", "FILE", 1, 1, 0,
      "Tells what the file is: name, version, category, items, chunks by kind, live and dead bytes, whether a rewrite is due and "
      "whether it is damaged.",
      RunLibInfo },
    { Verb::Lib, "ls", "FILE [PATH]", 1, 2, Bit(Option::Sort) | Bit(Option::Reverse),
      "Lists the items, or those at and below PATH: id, size of the data in bytes, number of previews, date of the last change, type "
      "and path. Paths begin behind the URL of the library.",
      RunLibLs },
    { Verb::Lib, "check", "FILE", 1, 1, 0,
      "Reads everything, data and previews too, and tells what is wrong and at which byte. What is worth knowing and not wrong is "
      "told as a note.",
      RunLibCheck },
    { Verb::Lib, "dump", "FILE", 1, 1, Bit(Option::Raw),
      "A line for each chunk: offset, kind, id, length, and whether it is in use, with the values of its container below. Chunks "
      "that the browser does not come to are unread.",
      RunLibDump },
    { Verb::Lib, "recover", "FILE [SOURCE]", 1, 2, Bit(Option::Yes),
      "Compares the file with FILE.bak and FILE.new, which a rewrite leaves behind, or with SOURCE, and tells which is best; a SOURCE "
      "that can be read always is. If it is not FILE, ends with 5; with --yes it is copied to FILE, and what was there is kept as "
      "FILE.damaged. Ends with 4 if FILE is damaged and none is better.",
      RunLibRecover },
    { Verb::Lib, "create", "FILE", 1, 1, ofModule | Bit(Option::Name),
      "Makes a library with nothing in it. Its URL is made from the name of the file. Nothing that exists is replaced.", RunLibCreate },
    { Verb::Lib, "put", "FILE PATH SOURCE [PATH SOURCE]...", 3, anyNumber, ofModule,
      "Stores the bytes of the file SOURCE as the item PATH, packed if that makes them smaller. What the item held before is replaced. Of "
      "a folder all "
      "files are stored below PATH, which may be / then; links to folders are not followed. After an interrupt what was stored stays.",
      RunLibPut },
    { Verb::Lib, "get", "FILE PATH TARGET", 3, 3, ofModule,
      "Writes the data of an item to a file, or into the folder TARGET. Nothing that exists is replaced.", RunLibGet },
    { Verb::Lib, "rm", "FILE PATH...", 2, anyNumber, ofModule, "Takes items out of the library. Their room is free after a compact.",
      RunLibRm },
    { Verb::Lib, "mv", "FILE PATH PATH", 3, 3, ofModule, "Gives an item another path. Nothing that exists is replaced.", RunLibMv },
    { Verb::Lib, "name", "FILE [TEXT]", 1, 2, ofModule,
      "Tells how the library is shown in the language of --lang, or says how it is to be.", RunLibName },
    { Verb::Lib, "preview put", "FILE PATH [NUMBER] SOURCE...", 3, anyNumber, ofModule | Bit(Option::Grade),
      "Stores pictures as previews of an item, from NUMBER on or behind those that are there. JPEG and TIFF files are stored as they are, "
      "other pictures as one of them.",
      RunLibPreviewPut },
    { Verb::Lib, "preview get", "FILE PATH NUMBER TARGET", 4, 4, ofModule,
      "Writes the picture of a preview to a file. Nothing that exists is replaced.", RunLibPreviewGet },
    { Verb::Lib, "preview ls", "FILE PATH", 2, 2, ofModule, "Lists the previews of an item: number, width, height, grade and date.",
      RunLibPreviewLs },
    { Verb::Lib, "freeze", "FILE", 1, 1, ofModule, "Marks the library as read-only. There is no way back.", RunLibFreeze },
    { Verb::Lib, "compact", "FILE", 1, 1, ofModule,
      "Writes the library anew without what is dead in it, and tells its size before and after. The old file is kept as FILE.bak.",
      RunLibCompact },
};

constexpr OptionRow optionTable[] = {
    { Option::Json, "json", Takes::Nothing, "", "", listings, "print one JSON document" },
    { Option::Sort, "sort", Takes::Word, "ORDER", "name|modified|created|size|type|none", Bits(Verb::Ls, Verb::Tree, Verb::Lib),
      "order of the items; name if not given" },
    { Option::Reverse, "reverse", Takes::Nothing, "", "", Bits(Verb::Ls, Verb::Tree, Verb::Lib),
      "turn the order around; folders stay first" },
    { Option::Depth, "depth", Takes::Word, "N", "", Bit(Verb::Tree), "levels to descend; 0 draws the place alone" },
    { Option::Grade, "grade", Takes::Word, "N", "", Bit(Verb::Lib), "rank of a preview among those of its size; 1 if not given" },
    { Option::Name, "name", Takes::Word, "TEXT", "", Bit(Verb::Lib), "how a new library is shown, in the language of --lang" },
    { Option::DryRun, "dry-run", Takes::Nothing, "", "", changes, "ask and count, but change nothing" },
    { Option::Yes, "yes", Takes::Nothing, "", "", Bits(Verb::Delete, Verb::Lib), "delete or recover without asking" },
    { Option::Trash, "trash", Takes::Nothing, "", "", Bit(Verb::Delete), "delete into the trash of the desktop" },
    { Option::Raw, "raw", Takes::Nothing, "", "", Bit(Verb::Lib), "print the chunks without what is in them" },
    { Option::Names, "names", Takes::Nothing, "", "", Bit(Verb::Plugins), "print the type names of each plugin too" },
    { Option::Sheet, "sheet", Takes::File, "FILE", "", Bit(Verb::Icons), "draw all icons into a PNG file" },
    { Option::Folder, "folder", Takes::Folder, "DIR", "", Bit(Verb::Script), "the folder of the script, which is kept" },
    { Option::Shot, "shot", Takes::File, "FILE", "", Bit(Verb::Script), "draw the window in front into a PNG file at the end" },
    { Option::Man, "man", Takes::Nothing, "", "", Bit(Verb::Help), "write the manual page" },
    { Option::Profile, "profile", Takes::Folder, "DIR", "", withModule, "keep all folders of the host below DIR" },
    { Option::Lang, "lang", Takes::Word, "CODE", "us|de", withModule, "language of the names of types and roots" },
    { Option::Module, "module", Takes::File, "FILE", "", withModule, "the browser module to load" },
    { Option::Help, "help", Takes::Nothing, "", "", everywhere, "explain the program or the verb" },
    { Option::Version, "version", Takes::Nothing, "", "", everywhere, "print the version" },
};

constexpr ExitRow exitTable[] = {
    { 0, "done" },    { 1, "done, with errors in some items" }, { 2, "the command line was not understood" }, { 3, "not found" },
    { 4, "damaged" }, { 5, "refused, or read-only" },           { 6, "conflict: the target exists" },         { 7, "cancelled" },
};

constexpr VariableRow variableTable[] = {
    { "VX3_BROWSER_MODULE", "the browser module to load, if --module is not given" },
    { "NO_COLOR", "if set and not empty, nothing is coloured" },
};

const OptionRow* FindOption(const std::string& name)
{
    for (const OptionRow& row : optionTable)
        if (name == row.name)
            return &row;
    return nullptr;
}

bool IsNumber(const std::string& text)
{
    return !text.empty() && text.size() < 10 && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string CheckValue(const OptionRow& row, const std::string& value)
{
    std::string name = std::string("--") + row.name;
    if (value.empty())
        return name + " needs a value: " + row.value;
    bool isNumeric = row.option == Option::Depth || row.option == Option::Grade;
    if (isNumeric && !IsNumber(value))
        return name + " needs a whole number, not " + Quoted(value);
    if (!*row.choices)
        return {};
    std::vector<std::string> choices = SplitChoices(row.choices);
    if (std::find(choices.begin(), choices.end(), value) == choices.end())
        return name + " is one of " + row.choices + ", not " + Quoted(value);
    return {};
}

// Reads the option at `index` and its value, which may be the next word.
std::string ParseOption(const std::vector<std::string>& words, size_t& index, Command& command)
{
    const std::string& word = words[index];
    size_t equals = word.find('=');
    bool isLong = word.compare(0, 2, "--") == 0; // a letter is not to be taken for a hyphen: `-yyes` is no `--yes`
    const OptionRow* row = word == "-h" ? FindOption("help") : isLong ? FindOption(word.substr(2, equals - 2)) : nullptr;
    if (!row)
        return "unknown option " + Quoted(word);
    if (row->takes == Takes::Nothing) {
        if (equals != std::string::npos)
            return Quoted(word.substr(0, equals)) + " takes no value";
        command.options[row->option] = "";
        return {};
    }
    std::string value;
    if (equals != std::string::npos)
        value = word.substr(equals + 1);
    else if (index + 1 < words.size())
        value = words[++index];
    command.options[row->option] = value;
    return CheckValue(*row, value);
}

std::string TakeWord(const std::string& word, Command& command)
{
    if (command.verb != Verb::None) {
        command.arguments.push_back(word);
        return {};
    }
    const VerbRow* row = FindVerb(word);
    if (!row)
        return "unknown verb " + Quoted(word);
    command.verb = row->verb;
    return {};
}

std::string FormOf(const VerbRow& verb)
{
    return std::string("the form is: vx3 ") + verb.name + " " + verb.synopsis;
}

// A name of two words becomes one argument.
void JoinSubVerb(Command& command)
{
    std::vector<std::string>& words = command.arguments;
    if (words.size() < 2 || !FindSubVerb(command.verb, words[0] + " " + words[1]))
        return;
    words[0] += " " + words[1];
    words.erase(words.begin() + 1);
}

std::string NoSubVerb(const VerbRow& verb, const std::string& word)
{
    std::string behind;
    for (const SubVerbRow& row : subVerbTable)
        if (std::vector<std::string> words = SplitChoices(row.name, ' '); row.verb == verb.verb && words[0] == word)
            (behind += behind.empty() ? "" : "|") += words.back();
    if (behind.empty())
        return std::string(verb.name) + " has no verb " + Quoted(word);
    return std::string(verb.name) + " " + word + " needs one of " + behind + " behind it";
}

// The first argument names the row, which tells of the others.
std::string CheckSubVerb(const VerbRow& verb, Command& command)
{
    JoinSubVerb(command);
    const SubVerbRow* row = FindSubVerb(command.verb, command.arguments[0]);
    std::string name = std::string(verb.name) + " " + command.arguments[0];
    if (!row)
        return NoSubVerb(verb, command.arguments[0]);
    uint32_t ofSome = 0;
    for (const SubVerbRow& other : subVerbTable)
        ofSome |= other.verb == command.verb ? other.options : 0;
    for (const OptionRow& option : optionTable)
        if (command.Has(option.option) && (ofSome & ~row->options & Bit(option.option)))
            return name + " has no option --" + option.name;
    size_t count = command.arguments.size() - 1;
    if (count < row->least || count > row->most)
        return "the form is: vx3 " + name + " " + row->synopsis;
    return command.arguments[1].empty() ? "a file must not be empty" : "";
}

std::string CheckCommand(Command& command)
{
    if (command.Has(Option::Help) || command.Has(Option::Version))
        return {};
    if (command.verb == Verb::None)
        return "a verb is missing";
    const VerbRow& verb = RowOf(command.verb);
    for (const OptionRow& row : optionTable)
        if (command.Has(row.option) && !BelongsTo(row, command.verb))
            return std::string(verb.name) + " has no option --" + row.name;
    if (command.arguments.size() < verb.least || command.arguments.size() > verb.most)
        return FormOf(verb);
    if (!SubVerbNames(command.verb).empty())
        return CheckSubVerb(verb, command);
    if (verb.takes == Takes::Place && std::find(command.arguments.begin(), command.arguments.end(), "") != command.arguments.end()
        && command.verb != Verb::Rename)
        return "a place must not be empty";
    return {};
}

} // namespace

std::span<const VerbRow> VerbTable()
{
    return verbTable;
}

std::span<const SubVerbRow> SubVerbTable()
{
    return subVerbTable;
}

std::span<const OptionRow> OptionTable()
{
    return optionTable;
}

std::span<const ExitRow> ExitTable()
{
    return exitTable;
}

std::span<const VariableRow> VariableTable()
{
    return variableTable;
}

const VerbRow* FindVerb(const std::string& name)
{
    for (const VerbRow& row : verbTable)
        if (name == row.name)
            return &row;
    return nullptr;
}

const VerbRow& RowOf(Verb verb)
{
    return verbTable[static_cast<size_t>(verb)];
}

const SubVerbRow* FindSubVerb(Verb verb, const std::string& name)
{
    for (const SubVerbRow& row : subVerbTable)
        if (row.verb == verb && name == row.name)
            return &row;
    return nullptr;
}

std::string SubVerbNames(Verb verb)
{
    std::string names, last;
    for (const SubVerbRow& row : subVerbTable) {
        std::string first = SplitChoices(row.name, ' ')[0];
        if (row.verb == verb && first != std::exchange(last, first))
            (names += names.empty() ? "" : "|") += first;
    }
    return names;
}

std::string FirstWords(const VerbRow& row)
{
    std::string names = SubVerbNames(row.verb);
    if (row.verb == Verb::Help)
        for (const VerbRow& verb : verbTable)
            (names += names.empty() ? "" : "|") += verb.name;
    return names.empty() ? row.choices : names;
}

bool BelongsTo(const OptionRow& row, Verb verb)
{
    return (row.verbs & Bit(verb)) != 0;
}

std::vector<std::string> SplitChoices(const std::string& choices, char separator)
{
    std::vector<std::string> parts;
    size_t begin = 0;
    while (begin < choices.size()) {
        size_t end = std::min(choices.find(separator, begin), choices.size());
        parts.push_back(choices.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

std::string Command::Value(Option option, const std::string& fallback) const
{
    auto found = options.find(option);
    return found == options.end() ? fallback : found->second;
}

std::string ParseCommand(const std::vector<std::string>& words, Command& command)
{
    bool optionsEnded = false;
    for (size_t index = 0; index < words.size(); ++index) {
        const std::string& word = words[index];
        if (!optionsEnded && word == "--") {
            optionsEnded = true;
            continue;
        }
        bool isOption = !optionsEnded && word.size() > 1 && word[0] == '-';
        std::string error = isOption ? ParseOption(words, index, command) : TakeWord(word, command);
        if (!error.empty())
            return error;
    }
    return CheckCommand(command);
}

static_assert(std::size(verbTable) == static_cast<size_t>(Verb::None), "a row for each verb, in their order");
static_assert(
    [] {
        for (size_t index = 0; index < std::size(verbTable); ++index)
            if (static_cast<size_t>(verbTable[index].verb) != index)
                return false;
        return true;
    }(),
    "verbs stand in their order");

} // namespace vx3::console

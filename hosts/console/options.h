// The one table of verbs and options. The parser, the help, the manual page and the
// completions are all made from it.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace vx3::console {

enum class Verb {
    Roots,
    Ls,
    Stat,
    Tree,
    Mkdir,
    Rename,
    Move,
    Copy,
    Delete,
    Plugins,
    Icons,
    Prefs,
    Lib,
    Script,
    Selfcheck,
    Completion,
    Help,
    None
};

enum class Option {
    Json,
    Sort,
    Reverse,
    Depth,
    Grade,
    Name,
    DryRun,
    Yes,
    Trash,
    Raw,
    Names,
    Sheet,
    Folder,
    Shot,
    Man,
    Profile,
    Lang,
    Module,
    Help,
    Version
};

// What an option or an argument is, for completion.
enum class Takes { Nothing, Word, File, Folder, Place };

struct VerbRow {
    Verb verb;
    const char* name;
    const char* synopsis;
    Takes takes;         // kind of its arguments
    const char* choices; // words that the first argument may be, separated by '|'; may be empty
    size_t least;        // number of arguments
    size_t most;
    const char* summary;
    const char* text; // paragraphs, separated by line ends
};

struct Command;

// A verb behind a verb, with arguments and options of its own.
struct SubVerbRow {
    Verb verb;        // to which it belongs
    const char* name; // one word or two
    const char* synopsis;
    size_t least; // number of arguments behind the name
    size_t most;
    uint32_t options; // a bit for each of those that the verb has and not every one behind it
    const char* text;
    int (*run)(const Command& command);
};

struct OptionRow {
    Option option;
    const char* name; // without dashes
    Takes takes;
    const char* value;   // name of the value; empty if it takes none
    const char* choices; // allowed values separated by '|'; empty if any
    uint32_t verbs;      // a bit for each verb that has it
    const char* help;
};

struct ExitRow {
    int code;
    const char* meaning;
};

struct VariableRow {
    const char* name;
    const char* meaning;
};

std::span<const VerbRow> VerbTable();
std::span<const SubVerbRow> SubVerbTable();
std::span<const OptionRow> OptionTable();
std::span<const ExitRow> ExitTable();
std::span<const VariableRow> VariableTable();

const VerbRow* FindVerb(const std::string& name);
const VerbRow& RowOf(Verb verb);
const SubVerbRow* FindSubVerb(Verb verb, const std::string& name); // none if the verb has no such
std::string SubVerbNames(Verb verb);                               // their first words, separated by '|'; empty if it has none
bool BelongsTo(const OptionRow& row, Verb verb);
std::string FirstWords(const VerbRow& row); // that its first argument may be, separated by '|'; empty if any
std::vector<std::string> SplitChoices(const std::string& choices, char separator = '|');

// A command line that was understood.
struct Command {
    Verb verb = Verb::None;
    std::vector<std::string> arguments;
    std::map<Option, std::string> options;

    bool Has(Option option) const { return options.count(option) != 0; }
    std::string Value(Option option, const std::string& fallback = {}) const;
};

// Reads the words behind the program's name. Answers an empty text, or what is wrong.
std::string ParseCommand(const std::vector<std::string>& words, Command& command);

} // namespace vx3::console

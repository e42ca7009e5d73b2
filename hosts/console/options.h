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
    Script,
    Selfcheck,
    Completion,
    Help,
    None
};

enum class Option { Json, Sort, Reverse, Depth, DryRun, Yes, Trash, Names, Sheet, Folder, Shot, Man, Profile, Lang, Module, Help, Version };

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
std::span<const OptionRow> OptionTable();
std::span<const ExitRow> ExitTable();
std::span<const VariableRow> VariableTable();

const VerbRow* FindVerb(const std::string& name);
const VerbRow& RowOf(Verb verb);
bool BelongsTo(const OptionRow& row, Verb verb);
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

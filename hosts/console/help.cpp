// The words of --help and of the verb help.
#include <cstdio>

#include "gui/script.h"
#include "verbs.h"

namespace vx3::console {

namespace {

constexpr size_t lineWidth = 78;
constexpr size_t firstColumn = 2;
constexpr size_t secondColumn = 20;

// Prints words, broken between them, from a column on.
void PrintWrapped(const std::string& text, size_t indent, size_t column)
{
    for (const std::string& paragraph : SplitChoices(text, '\n')) {
        for (const std::string& word : SplitChoices(paragraph, ' ')) {
            bool isFull = column > indent && column + 1 + word.size() > lineWidth;
            if (isFull)
                std::putchar('\n');
            if (isFull || column < indent)
                std::printf("%*s", static_cast<int>(isFull ? indent : indent - column), "");
            else if (column > indent)
                std::putchar(' ');
            column = isFull || column <= indent ? indent + word.size() : column + 1 + word.size();
            std::fputs(word.c_str(), stdout);
        }
        std::putchar('\n');
        column = 0;
    }
}

void PrintRow(const std::string& left, const std::string& right)
{
    std::printf("%*s%s", static_cast<int>(firstColumn), "", left.c_str());
    size_t column = firstColumn + left.size();
    if (column + 2 > secondColumn) {
        std::putchar('\n');
        column = 0;
    }
    PrintWrapped(right, secondColumn, column);
}

// The name and the arguments, then in a line of its own what it does.
void PrintSubVerbs(Verb verb)
{
    std::printf("\nVerbs:\n");
    for (const SubVerbRow& row : SubVerbTable())
        if (row.verb == verb)
            PrintRow(std::string(row.name) + " " + row.synopsis, row.text);
}

void PrintOptions(Verb verb, bool ofAllVerbs)
{
    std::printf("\nOptions:\n");
    for (const OptionRow& row : OptionTable()) {
        bool isCommon = row.option == Option::Help || row.option == Option::Version || row.option == Option::Profile
            || row.option == Option::Lang || row.option == Option::Module;
        if (ofAllVerbs ? !isCommon : !BelongsTo(row, verb))
            continue;
        std::string choices = *row.choices ? std::string(": ") + row.choices : "";
        PrintRow(std::string("--") + row.name + (*row.value ? std::string(" ") + row.value : ""), row.help + choices);
    }
    PrintRow("--", "end of the options");
}

void PrintProgram()
{
    std::printf("vx3 " VX3_VERSION "\nUsage: vx3 VERB [OPTION...] [ARGUMENT...]\n\nVerbs:\n");
    for (const VerbRow& row : VerbTable())
        PrintRow(row.name, row.summary);
    PrintOptions(Verb::None, true);
    std::printf("\n");
    PrintWrapped("A PLACE is a path, or a URL such as file://localhost/home or preset:/. vx3 help VERB explains a verb.", 0, 0);
    std::printf("\nExit codes:\n");
    for (const ExitRow& row : ExitTable())
        PrintRow(std::to_string(row.code), row.meaning);
}

} // namespace

void PrintHelp(Verb verb)
{
    if (verb == Verb::None)
        return PrintProgram();
    const VerbRow& row = RowOf(verb);
    std::printf("Usage: vx3 %s [OPTION...]%s%s\n\n", row.name, *row.synopsis ? " " : "", row.synopsis);
    PrintWrapped(row.text, 0, 0);
    if (!SubVerbNames(verb).empty())
        PrintSubVerbs(verb);
    PrintOptions(verb, false);
    if (verb == Verb::Script)
        std::printf("\nLines of a script:\n%s", gui::ScriptHelp().c_str());
}

int RunHelp(const Command& command)
{
    if (command.Has(Option::Man)) {
        std::fputs(ManualPage().c_str(), stdout);
        return static_cast<int>(Exit::Done);
    }
    Verb verb = Verb::None;
    if (!command.arguments.empty()) {
        const VerbRow* row = FindVerb(command.arguments[0]);
        if (!row) {
            Say("unknown verb " + Quoted(command.arguments[0]));
            return static_cast<int>(Exit::Usage);
        }
        verb = row->verb;
    }
    PrintHelp(verb);
    return static_cast<int>(Exit::Done);
}

} // namespace vx3::console

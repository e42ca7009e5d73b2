// The manual page, in the man macros of roff.
#include <utility>

#include "verbs.h"

namespace vx3::console {

namespace {

constexpr size_t lineWidth = 70; // hyphens grow to two characters
constexpr const char* pageDate = "2026-11-22";

// Roff takes a point or an apostrophe at the start of a line for a request, a bare
// hyphen for a typographic one, and a backslash for an escape.
std::string Roff(const std::string& text)
{
    std::string roff;
    for (char c : text) {
        bool startsLine = roff.empty() || roff.back() == '\n';
        if (startsLine && (c == '.' || c == '\''))
            roff += "\\&";
        if (c == '-')
            roff += "\\-";
        else if (c == '\\')
            roff += "\\e";
        else
            roff += c;
    }
    return roff;
}

// A new line for each sentence, as roff wants it; line ends begin paragraphs.
std::string Sentences(const std::string& text)
{
    std::string roff;
    for (const std::string& paragraph : SplitChoices(text, '\n')) {
        roff += roff.empty() ? "" : ".PP\n";
        std::string line;
        for (const std::string& word : SplitChoices(paragraph, ' ')) {
            bool isFull = line.size() + word.size() > lineWidth;
            bool endsSentence = !line.empty() && line.back() == '.';
            if (isFull || endsSentence)
                roff += Roff(std::exchange(line, {})) + "\n";
            line += (line.empty() ? "" : " ") + word;
        }
        roff += Roff(line) + "\n";
    }
    return roff;
}

std::string Term(const std::string& bold, const std::string& italic, const std::string& text)
{
    std::string term = "\\fB" + Roff(bold) + "\\fR" + (italic.empty() ? "" : " \\fI" + Roff(italic) + "\\fR");
    return ".TP\n" + term + "\n" + Sentences(text);
}

std::string VerbsOf(const OptionRow& row)
{
    std::string names;
    for (const VerbRow& verb : VerbTable())
        if (BelongsTo(row, verb.verb))
            (names += names.empty() ? "" : ", ") += verb.name;
    return BelongsTo(row, Verb::Completion) ? "" : " (" + names + ")";
}

std::string SubVerbs(Verb verb)
{
    std::string terms;
    for (const SubVerbRow& row : SubVerbTable())
        if (row.verb == verb)
            terms += Term(row.name, row.synopsis, row.text);
    return terms;
}

std::string VerbSections()
{
    std::string page = ".SH VERBS\n";
    for (const VerbRow& row : VerbTable())
        page += ".SS vx3 " + Roff(std::string(row.name) + (*row.synopsis ? " " : "") + row.synopsis) + "\n" + Sentences(row.text)
            + SubVerbs(row.verb);
    return page;
}

std::string OptionSection()
{
    std::string page = ".SH OPTIONS\n";
    for (const OptionRow& row : OptionTable()) {
        std::string choices = *row.choices ? std::string("; one of ") + row.choices : "";
        page += Term(std::string("--") + row.name, row.value, row.help + choices + VerbsOf(row));
    }
    return page + Term("--", "", "end of the options");
}

} // namespace

std::string ManualPage()
{
    std::string page = std::string(".TH VX3 1 ") + pageDate + " \"vx3 " VX3_VERSION "\" \"User Commands\"\n";
    page += ".SH NAME\nvx3 \\- browse and change content from the command line\n";
    page += ".SH SYNOPSIS\n\\fBvx3\\fR \\fIVERB\\fR [\\fIOPTION\\fR...] [\\fIARGUMENT\\fR...]\n";
    page += ".SH DESCRIPTION\n";
    page += Sentences("Loads the content browser as an application does and works on its tree of content. "
                      "A PLACE is a path, or a URL such as file://localhost/home, file:/ or preset:/. "
                      "Data goes to the standard output, words go to the standard error output.");
    page += VerbSections() + OptionSection();
    page += ".SH EXIT STATUS\n";
    for (const ExitRow& row : ExitTable())
        page += Term(std::to_string(row.code), "", row.meaning);
    page += ".PP\n" + Sentences("Of several places the others are still done. Then the code is 1 if some worked, else that of the worst.");
    page += ".SH ENVIRONMENT\n";
    for (const VariableRow& row : VariableTable())
        page += Term(row.name, "", row.meaning);
    page += ".SH EXAMPLES\n";
    page += Term("vx3 ls --sort size --reverse ~/Pictures", "", "lists a folder, the largest first");
    page += Term("vx3 copy a.png b.png shelf", "", "copies two files into the folder shelf");
    page += Term("vx3 stat --json preset:/", "", "tells of the root of the presets, for a program");
    page += Term("vx3 lib check shelf.libvx", "", "reads a library file and tells what is wrong with it");
    return page;
}

} // namespace vx3::console

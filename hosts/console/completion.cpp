// Completion scripts for the shells, made from the table of options.
#include <algorithm>
#include <cstdio>

#include "verbs.h"

namespace vx3::console {

namespace {

std::string Replaced(std::string text, char from, const std::string& to)
{
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, 1, to);
    return text;
}

std::string Words(const std::string& choices)
{
    return Replaced(choices, '|', " ");
}

std::string VerbNames()
{
    std::string names;
    for (const VerbRow& row : VerbTable())
        (names += names.empty() ? "" : " ") += row.name;
    return names;
}

bool TakesFiles(const VerbRow& row)
{
    return row.takes == Takes::Place || row.takes == Takes::File;
}

std::string OptionNames(Verb verb)
{
    std::string names;
    for (const OptionRow& row : OptionTable())
        if (BelongsTo(row, verb))
            ((names += names.empty() ? "" : " ") += "--") += row.name;
    return names;
}

std::string BashValues()
{
    std::string script;
    for (const OptionRow& row : OptionTable()) {
        std::string option = std::string("        --") + row.name + ") ";
        if (*row.choices)
            script += option + "COMPREPLY=($(compgen -W '" + Words(row.choices) + "' -- \"$word\")); return ;;\n";
        else if (row.takes == Takes::Folder || row.takes == Takes::File)
            script += option + "_vx3_files " + (row.takes == Takes::Folder ? "-d" : "-f") + "; return ;;\n";
        else if (row.takes == Takes::Word)
            script += option + "return ;;\n";
    }
    return script;
}

// The options behind which a word is a value and no verb.
std::string OptionsWithValues()
{
    std::string names;
    for (const OptionRow& row : OptionTable())
        if (row.takes != Takes::Nothing)
            ((names += names.empty() ? "" : "|") += "--") += row.name;
    return names;
}

std::string BashVerbs()
{
    std::string script;
    for (const VerbRow& row : VerbTable()) {
        std::string first = Words(FirstWords(row));
        // With words of its own, a verb takes files behind the first of them.
        const char* places = !TakesFiles(row) ? "" : first.empty() ? "1" : "$behind";
        script += std::string("        ") + row.name + ") options='" + OptionNames(row.verb) + "'; words='" + first + "'; places=" + places
            + " ;;\n";
    }
    return script;
}

std::string BashScript()
{
    return "# Completion of vx3 for bash.\n"
           "_vx3_files()\n"
           "{\n"
           "    local IFS=$'\\n'\n"
           "    compopt -o filenames 2>/dev/null\n"
           "    COMPREPLY=($(compgen \"$1\" -- \"$word\"))\n"
           "}\n"
           "_vx3()\n"
           "{\n"
           "    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} verb= options= words= places= behind= index\n"
           "    COMPREPLY=()\n"
           "    [[ $before == = ]] && before=${COMP_WORDS[COMP_CWORD-2]}\n"
           "    case $before in\n"
        + BashValues()
        + "    esac\n"
          "    for ((index = 1; index < COMP_CWORD; ++index)); do\n"
          "        case ${COMP_WORDS[index]} in\n"
          "            "
        + OptionsWithValues()
        + ") [[ ${COMP_WORDS[index+1]} == = ]] && ((++index)); ((++index)) ;;\n"
          "            -*) ;;\n"
          "            *) [[ -n $verb ]] && behind=1 || verb=${COMP_WORDS[index]} ;;\n"
          "        esac\n"
          "    done\n"
          "    case $verb in\n"
          "        '') words='"
        + VerbNames() + "'; options='" + OptionNames(Verb::None) + "' ;;\n" + BashVerbs()
        + "    esac\n"
          "    if [[ $word == -* ]]; then\n"
          "        COMPREPLY=($(compgen -W \"$options\" -- \"$word\"))\n"
          "    elif [[ -n $places ]]; then\n"
          "        _vx3_files -f\n"
          "    else\n"
          "        COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n"
          "    fi\n"
          "}\n"
          "complete -F _vx3 vx3\n";
}

// Text between single quotes of a shell, and inside the brackets of a zsh option.
std::string ZshText(const std::string& text)
{
    std::string escaped = Replaced(text, '\'', "'\\''");
    for (char c : { '[', ']', ':' })
        escaped = Replaced(escaped, c, std::string("\\") + c);
    return escaped;
}

std::string ZshOption(const OptionRow& row)
{
    std::string option =
        std::string("            '--") + row.name + (row.takes == Takes::Nothing ? "" : "=") + "[" + ZshText(row.help) + "]";
    if (row.takes != Takes::Nothing) {
        std::string action = *row.choices ? "(" + Words(row.choices) + ")" : row.takes == Takes::Folder ? "_files -/" : "_files";
        option += std::string(":") + row.value + ":" + (row.takes == Takes::Word && !*row.choices ? " " : action);
    }
    return option + "' \\\n";
}

std::string ZshVerb(const VerbRow& verb)
{
    std::string script = std::string("        ") + verb.name + ")\n            _arguments \\\n";
    for (const OptionRow& row : OptionTable())
        if (BelongsTo(row, verb.verb))
            script += ZshOption(row);
    std::string first = Words(FirstWords(verb));
    if (TakesFiles(verb) && !first.empty())
        script += "            '1:word:(" + first + ")' '*:file:_files' ;;\n";
    else if (TakesFiles(verb))
        script += "            '*:place:_files' ;;\n";
    else if (!first.empty())
        script += "            '1:word:(" + first + ")' ;;\n";
    else
        script += "            && return ;;\n";
    return script;
}

std::string ZshScript()
{
    std::string script = "#compdef vx3\n"
                         "# Completion of vx3 for zsh.\n"
                         "_vx3() {\n"
                         "    local -a verbs\n"
                         "    verbs=(\n";
    for (const VerbRow& row : VerbTable())
        script += std::string("        '") + row.name + ":" + ZshText(row.summary) + "'\n";
    script += "    )\n"
              "    if (( CURRENT == 2 )); then\n"
              "        _describe verb verbs\n"
              "        return\n"
              "    fi\n"
              "    local verb=$words[2]\n"
              "    shift words\n"
              "    (( CURRENT-- ))\n"
              "    case $verb in\n";
    for (const VerbRow& row : VerbTable())
        script += ZshVerb(row);
    return script
        + "    esac\n"
          "}\n"
          "if [[ $funcstack[1] == _vx3 ]]; then\n"
          "    _vx3 \"$@\"\n"
          "else\n"
          "    compdef _vx3 vx3\n"
          "fi\n";
}

std::string FishText(const std::string& text)
{
    return "'" + Replaced(Replaced(text, '\\', "\\\\"), '\'', "\\'") + "'";
}

std::string FishOption(const OptionRow& row)
{
    std::string verbs;
    for (const VerbRow& verb : VerbTable())
        if (BelongsTo(row, verb.verb))
            (verbs += " ") += verb.name;
    std::string line = "complete -c vx3 -n '__fish_seen_subcommand_from" + verbs + "' -l " + row.name;
    if (*row.choices)
        line += " -x -a '" + Words(row.choices) + "'";
    else if (row.takes == Takes::Folder)
        line += " -x -a '(__fish_complete_directories)'";
    else if (row.takes != Takes::Nothing)
        line += row.takes == Takes::File ? " -r -F" : " -x";
    return line + " -d " + FishText(row.help) + "\n";
}

std::string FishSubVerbs(const VerbRow& row, const std::string& words)
{
    std::string seen = "__fish_seen_subcommand_from ";
    std::string line = "complete -c vx3 -n '" + seen + row.name + "; and ";
    return line + "not " + seen + words + "' -a '" + words + "'\n" + line + seen + words + "' -F\n";
}

std::string FishScript()
{
    std::string script = "# Completion of vx3 for fish.\ncomplete -c vx3 -f\n";
    for (const VerbRow& row : VerbTable()) {
        script += std::string("complete -c vx3 -n __fish_use_subcommand -a ") + row.name + " -d " + FishText(row.summary) + "\n";
        std::string seen = std::string("complete -c vx3 -n '__fish_seen_subcommand_from ") + row.name + "'";
        std::string first = Words(FirstWords(row));
        if (TakesFiles(row) && !first.empty())
            script += FishSubVerbs(row, first);
        else if (TakesFiles(row))
            script += seen + " -F\n";
        else if (!first.empty())
            script += seen + " -a '" + first + "'\n";
    }
    for (const OptionRow& row : OptionTable())
        script += FishOption(row);
    return script;
}

} // namespace

int RunCompletion(const Command& command)
{
    const std::string& shell = command.arguments[0];
    std::string script = shell == "bash" ? BashScript() : shell == "zsh" ? ZshScript() : shell == "fish" ? FishScript() : "";
    if (script.empty()) {
        Say("there is no completion for the shell " + Quoted(shell) + ", but for bash, zsh and fish");
        return static_cast<int>(Exit::Usage);
    }
    std::fputs(script.c_str(), stdout);
    return static_cast<int>(Exit::Done);
}

} // namespace vx3::console

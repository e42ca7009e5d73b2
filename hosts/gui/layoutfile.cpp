#include "gui/layoutfile.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <limits>
#include <unordered_set>

namespace vx3::gui {

namespace {

constexpr size_t mostBytes = 256 * 1024;
constexpr size_t mostGadgets = 4000;
constexpr int mostDepth = 32;
constexpr int32_t mostPixels = 10000;
constexpr size_t mostWeights = 64;

// What a kind takes besides the attributes of all.
enum Takes : uint32_t {
    takesChildren = 1,
    takesOneChild = 2,
    takesColumns = 4,
    takesWeights = 8,
    takesText = 16,
    takesTip = 32,
    takesIcon = 64,
    takesRange = 128
};

struct Kind {
    std::string_view word;
    int32_t kind;
    uint32_t takes;
    uint32_t flags; // that may be set by word, besides those of all
};

constexpr Kind kinds[] = {
    { "dialog", VX3_GADGET_GROUP, takesChildren | takesColumns | takesText, 0 },
    { "group", VX3_GADGET_GROUP, takesChildren | takesColumns | takesText, 0 },
    { "splitter", VX3_GADGET_SPLITTER, takesChildren | takesColumns | takesWeights | takesText, 0 },
    { "scroll", VX3_GADGET_SCROLL, takesChildren | takesOneChild | takesText, 0 },
    { "tabs", VX3_GADGET_TABS, takesChildren | takesText, 0 },
    { "text", VX3_GADGET_TEXT, takesText | takesTip, 0 },
    { "edit", VX3_GADGET_EDIT, takesText | takesTip, VX3_FLAG_READ_ONLY },
    { "multiline", VX3_GADGET_MULTILINE, takesText | takesTip, VX3_FLAG_READ_ONLY },
    { "number", VX3_GADGET_NUMBER, takesTip | takesRange, VX3_FLAG_PERCENT },
    { "date", VX3_GADGET_DATE, takesTip, 0 },
    { "check", VX3_GADGET_CHECK, takesText | takesTip, 0 },
    { "button", VX3_GADGET_BUTTON, takesText | takesTip, 0 },
    { "bitmapbutton", VX3_GADGET_BITMAP_BUTTON, takesTip | takesIcon, VX3_FLAG_TOGGLE | VX3_FLAG_MENU },
    { "combo", VX3_GADGET_COMBO, takesTip, VX3_FLAG_EDIT },
    { "slider", VX3_GADGET_SLIDER, takesTip | takesRange, VX3_FLAG_PERCENT },
    { "progress", VX3_GADGET_PROGRESS, takesTip, 0 },
    { "separator", VX3_GADGET_SEPARATOR, 0, 0 },
    { "space", VX3_GADGET_SPACE, 0, 0 },
    { "area", VX3_GADGET_AREA, 0, 0 },
    { "tree", VX3_GADGET_TREE, 0, 0 },
    { "subdialog", VX3_GADGET_SUBDIALOG, 0, 0 },
};

constexpr uint32_t flagsOfAll = VX3_FLAG_LEFT | VX3_FLAG_RIGHT | VX3_FLAG_HIDDEN;

struct FlagWord {
    std::string_view word;
    uint32_t flag;
};

constexpr FlagWord flagWords[] = {
    { "left", VX3_FLAG_LEFT },       { "right", VX3_FLAG_RIGHT },   { "hidden", VX3_FLAG_HIDDEN }, { "readonly", VX3_FLAG_READ_ONLY },
    { "percent", VX3_FLAG_PERCENT }, { "toggle", VX3_FLAG_TOGGLE }, { "menu", VX3_FLAG_MENU },     { "edit", VX3_FLAG_EDIT },
};

// Where the reading stopped. The text is made by whoever throws it, the place by the parser.
struct LayoutError {
    size_t at;
    std::string message;
};

struct Token {
    std::string_view text; // empty: the end of the file
    size_t at = 0;
};

std::string Quoted(std::string_view text)
{
    constexpr size_t mostShown = 40;
    return "'" + std::string(text.substr(0, mostShown)) + (text.size() > mostShown ? "…'" : "'");
}

// Braces, semicolons, equals signs, and runs of everything else but blanks and comments.
class Lexer
{
public:
    explicit Lexer(std::string_view ownText)
        : text(ownText)
    {
        Advance();
    }

    const Token& Current() const { return current; }
    bool Is(std::string_view wanted) const { return current.text == wanted; }

    Token Take()
    {
        const Token taken = current;
        Advance();
        return taken;
    }

private:
    static constexpr std::string_view blanks = " \t\r\n";
    static constexpr std::string_view marks = "{};=";

    void SkipBlanks()
    {
        while (next < text.size()) {
            if (text[next] == '#')
                next = std::min(text.find('\n', next), text.size());
            else if (blanks.find(text[next]) != std::string_view::npos)
                ++next;
            else
                return;
        }
    }

    void Advance()
    {
        SkipBlanks();
        size_t end = next;
        if (end < text.size() && marks.find(text[end]) != std::string_view::npos)
            ++end;
        else
            end = std::min(text.find_first_of(" \t\r\n{};=#", end), text.size());
        current = { text.substr(next, end - next), next };
        next = end;
    }

    std::string_view text;
    size_t next = 0;
    Token current;
};

template <typename Number>
bool ReadNumber(std::string_view text, Number& number)
{
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    return failure == std::errc() && end == text.data() + text.size() && std::isfinite(static_cast<double>(number));
}

int32_t WholeNumber(const Token& token, int32_t least, int32_t most)
{
    int32_t number = 0;
    if (!ReadNumber(token.text, number))
        throw LayoutError{ token.at, Quoted(token.text) + " is not a whole number" };
    if (number < least || number > most)
        throw LayoutError{ token.at, Quoted(token.text) + " is not between " + std::to_string(least) + " and " + std::to_string(most) };
    return number;
}

double Decimal(const Token& token)
{
    double number = 0;
    if (!ReadNumber(token.text, number))
        throw LayoutError{ token.at, Quoted(token.text) + " is not a number" };
    return number;
}

// `h`, `v` or `hv` as bits.
uint32_t Directions(const Token& token, uint32_t horizontal, uint32_t vertical)
{
    uint32_t bits = 0;
    for (char letter : token.text) {
        const uint32_t bit = letter == 'h' ? horizontal : letter == 'v' ? vertical : 0;
        if (bit == 0 || (bits & bit))
            throw LayoutError{ token.at, Quoted(token.text) + " is none of h, v, hv" };
        bits |= bit;
    }
    return bits;
}

// One attribute that is written with a value.
struct Attribute {
    std::string_view word;
    uint32_t takes; // one of these a kind must take; 0: all do
    void (*read)(LayoutNode& node, const Token& value);
};

void ReadDirection(LayoutNode& node, const Token& value)
{
    if (value.text != "h" && value.text != "v")
        throw LayoutError{ value.at, Quoted(value.text) + " is neither h nor v" };
    node.shape.columns = value.text == "h" ? columnsOfRow : 1;
}

void ReadStep(LayoutNode& node, const Token& value)
{
    node.step = Decimal(value);
    if (node.step <= 0)
        throw LayoutError{ value.at, "a step must be more than 0" };
}

void ReadWeights(LayoutNode& node, const Token& value)
{
    for (size_t from = 0; from <= value.text.size();) {
        const size_t end = std::min(value.text.find(':', from), value.text.size());
        const Token weight = { value.text.substr(from, end - from), value.at + from };
        node.weights.push_back(Decimal(weight));
        if (node.weights.back() <= 0)
            throw LayoutError{ weight.at, "a weight must be more than 0" };
        if (node.weights.size() > mostWeights)
            throw LayoutError{ weight.at, "more than " + std::to_string(mostWeights) + " weights" };
        from = end + 1;
    }
}

constexpr int32_t mostNumber = std::numeric_limits<int32_t>::max();

constexpr Attribute attributes[] = {
    { "fit", 0, [](LayoutNode& node, const Token& value) { node.shape.flags |= Directions(value, VX3_FLAG_FIT_H, VX3_FLAG_FIT_V); } },
    { "scale", 0, [](LayoutNode& node, const Token& value) { node.shape.flags |= Directions(value, VX3_FLAG_SCALE_H, VX3_FLAG_SCALE_V); } },
    { "minwidth", 0, [](LayoutNode& node, const Token& value) { node.shape.minWidth = WholeNumber(value, 0, mostPixels); } },
    { "minheight", 0, [](LayoutNode& node, const Token& value) { node.shape.minHeight = WholeNumber(value, 0, mostPixels); } },
    { "dir", takesColumns, ReadDirection },
    { "columns", takesColumns, [](LayoutNode& node, const Token& value) { node.shape.columns = WholeNumber(value, 1, columnsOfRow); } },
    { "weights", takesWeights, ReadWeights },
    { "text", takesText, [](LayoutNode& node, const Token& value) { node.text = WholeNumber(value, 1, mostNumber); } },
    { "tip", takesTip, [](LayoutNode& node, const Token& value) { node.tip = WholeNumber(value, 1, mostNumber); } },
    { "icon", takesIcon, [](LayoutNode& node, const Token& value) { node.icon = WholeNumber(value, 1, mostNumber); } },
    { "min", takesRange, [](LayoutNode& node, const Token& value) { node.least = Decimal(value); } },
    { "max", takesRange, [](LayoutNode& node, const Token& value) { node.most = Decimal(value); } },
    { "step", takesRange, ReadStep },
};

template <typename Row, size_t count>
const Row* FindWord(const Row (&rows)[count], std::string_view word)
{
    const auto found = std::find_if(std::begin(rows), std::end(rows), [&](const Row& row) { return row.word == word; });
    return found == std::end(rows) ? nullptr : found;
}

class Parser
{
public:
    explicit Parser(std::string_view text)
        : lexer(text)
    {
    }

    LayoutNode ReadFile(int32_t number)
    {
        if (!lexer.Is("dialog"))
            throw LayoutError{ lexer.Current().at, "a layout begins with 'dialog " + std::to_string(number) + "'" };
        LayoutNode root;
        const size_t at = lexer.Current().at;
        ReadGadget(root, 0);
        if (root.shape.id != number)
            throw LayoutError{ at, "the dialog of this file must have the number " + std::to_string(number) };
        root.shape.flags |= VX3_FLAG_FIT_H | VX3_FLAG_FIT_V | VX3_FLAG_SCALE_H | VX3_FLAG_SCALE_V;
        if (!lexer.Current().text.empty())
            throw LayoutError{ lexer.Current().at, "nothing may stand behind the dialog" };
        return root;
    }

private:
    void ReadGadget(LayoutNode& node, int depth)
    {
        const Token word = lexer.Take();
        const Kind* kind = FindWord(kinds, word.text);
        if (!kind || (kind == kinds) != (depth == 0))
            throw LayoutError{ word.at, Quoted(word.text) + " is no kind of gadget" };
        if (++count > mostGadgets)
            throw LayoutError{ word.at, "more than " + std::to_string(mostGadgets) + " gadgets" };
        node.shape.kind = kind->kind;
        node.shape.columns = kind->kind == VX3_GADGET_SPLITTER ? columnsOfRow : 1;
        ReadId(node);
        ReadAttributes(node, *kind);
        CheckAttributes(node, word);
        if (kind->takes & takesChildren)
            ReadChildren(node, *kind, word, depth);
    }

    void ReadId(LayoutNode& node)
    {
        const Token& token = lexer.Current();
        if (token.text.empty() || token.text.find_first_not_of("-0123456789") != std::string_view::npos)
            return;
        node.shape.id = WholeNumber(token, 0, mostNumber);
        if (node.shape.id != 0 && !ids.insert(node.shape.id).second)
            throw LayoutError{ token.at, "the number " + std::string(token.text) + " is there twice" };
        lexer.Take();
    }

    void ReadAttributes(LayoutNode& node, const Kind& kind)
    {
        std::vector<std::string_view> seen;
        while (!lexer.Is("{") && !lexer.Is("}") && !lexer.Is(";") && !lexer.Current().text.empty()) {
            const Token word = lexer.Take();
            if (std::find(seen.begin(), seen.end(), word.text) != seen.end())
                throw LayoutError{ word.at, Quoted(word.text) + " is there twice" };
            seen.push_back(word.text);
            if (lexer.Is("="))
                ReadValue(node, kind, word);
            else
                ReadFlag(node, kind, word);
        }
    }

    void ReadValue(LayoutNode& node, const Kind& kind, const Token& word)
    {
        const Attribute* attribute = FindWord(attributes, word.text);
        if (!attribute)
            throw LayoutError{ word.at, Quoted(word.text) + " is no attribute" };
        if (attribute->takes && !(attribute->takes & kind.takes))
            throw LayoutError{ word.at, std::string(kind.word) + " has no " + Quoted(word.text) };
        lexer.Take();
        attribute->read(node, lexer.Take());
    }

    void ReadFlag(LayoutNode& node, const Kind& kind, const Token& word)
    {
        const FlagWord* flag = FindWord(flagWords, word.text);
        if (!flag)
            throw LayoutError{ word.at, Quoted(word.text) + " is neither an attribute with '=' nor a word; is a ';' missing?" };
        if (!(flag->flag & (kind.flags | flagsOfAll)))
            throw LayoutError{ word.at, std::string(kind.word) + " cannot be " + Quoted(word.text) };
        node.shape.flags |= flag->flag;
    }

    static void CheckAttributes(const LayoutNode& node, const Token& word)
    {
        constexpr uint32_t sides = VX3_FLAG_LEFT | VX3_FLAG_RIGHT;
        if ((node.shape.flags & sides) == sides)
            throw LayoutError{ word.at, "left and right exclude each other" };
        if (node.least > node.most)
            throw LayoutError{ word.at, "min is more than max" };
    }

    void ReadChildren(LayoutNode& node, const Kind& kind, const Token& word, int depth)
    {
        if (depth >= mostDepth)
            throw LayoutError{ word.at, "more than " + std::to_string(mostDepth) + " groups inside each other" };
        if (!lexer.Is("{"))
            throw LayoutError{ lexer.Current().at, Quoted(word.text) + " needs its children in braces" };
        lexer.Take();
        while (!lexer.Is("}")) {
            if (lexer.Current().text.empty())
                throw LayoutError{ word.at, "the brace of this " + std::string(kind.word) + " is never closed" };
            node.children.emplace_back();
            ReadGadget(node.children.back(), depth + 1);
            ReadEnd(node.children.back());
        }
        lexer.Take();
        if ((kind.takes & takesOneChild) && node.children.size() > 1)
            throw LayoutError{ word.at, "a scroll group has one child" };
        if (!node.weights.empty() && node.weights.size() != node.children.size())
            throw LayoutError{ word.at, "a splitter needs a weight for each child" };
    }

    // A group ends with its brace, the others with a semicolon or that of their group.
    void ReadEnd(const LayoutNode& node)
    {
        const bool isGroup = node.shape.kind < VX3_GADGET_TEXT;
        if (lexer.Is(";"))
            lexer.Take();
        else if (!isGroup && !lexer.Is("}"))
            throw LayoutError{ lexer.Current().at, lexer.Is("{") ? "only groups have children" : "a ';' is missing" };
    }

    Lexer lexer;
    std::unordered_set<int32_t> ids;
    size_t count = 0;
};

std::string PlaceIn(std::string_view text, size_t at)
{
    const std::string_view before = text.substr(0, std::min(at, text.size()));
    const auto line = std::count(before.begin(), before.end(), '\n') + 1;
    const size_t lineStart = before.rfind('\n') + 1; // 0 behind none
    return std::to_string(line) + ":" + std::to_string(before.size() - lineStart + 1) + ": ";
}

} // namespace

std::string_view WordOfKind(int32_t kind)
{
    // The first row is a group as well, under the name of a file's root.
    const auto found = std::find_if(std::begin(kinds) + 1, std::end(kinds), [&](const Kind& row) { return row.kind == kind; });
    return found == std::end(kinds) ? std::string_view() : found->word;
}

bool ParseLayout(std::string_view text, int32_t number, LayoutNode& root, std::string& error)
{
    if (text.size() > mostBytes) {
        error = "1:1: the file is larger than " + std::to_string(mostBytes) + " bytes";
        return false;
    }
    try {
        root = Parser(text).ReadFile(number);
        return true;
    } catch (const LayoutError& failure) {
        error = PlaceIn(text, failure.at) + failure.message;
        return false;
    }
}

bool LoadLayoutFile(const std::string& file, int32_t number, LayoutNode& root, std::string& error)
{
    std::ifstream stream(file, std::ios::binary);
    std::string text(mostBytes + 1, '\0');
    stream.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!stream.is_open() || stream.bad()) {
        error = file + ": cannot be read";
        return false;
    }
    text.resize(static_cast<size_t>(stream.gcount()));
    if (ParseLayout(text, number, root, error))
        return true;
    error = file + ":" + error;
    return false;
}

} // namespace vx3::gui

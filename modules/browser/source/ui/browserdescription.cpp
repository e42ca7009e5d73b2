// The state of a window as lines of text, for scripts and tests.

#include <string_view>

#include "ui/browserdialog.h"

namespace browser {

namespace {

// Lines of words; forgets that it ran out of memory until the end.
class Lines
{
public:
    explicit Lines(String& wanted)
        : text(wanted)
    {
        text.Clear();
    }
    Lines& Add(const char* word)
    {
        complete = text.Append(word) && complete;
        return *this;
    }
    Lines& Add(const String& word)
    {
        complete = text.Append(word) && complete;
        return *this;
    }
    Lines& Add(int64_t number)
    {
        String digits;
        complete = digits.SetInteger(number) && complete;
        return Add(digits);
    }
    bool IsComplete() const { return complete; }

private:
    String& text;
    bool complete = true;
};

String NameOf(const NodeRef& node)
{
    String name;
    if (node)
        ContentOf(node)->GetName(name);
    return name;
}

void DescribeEntries(ContentViewEntryList& list, Lines& lines)
{
    Array<NodeRef> nodes;
    const SelectionState state = list.GetState();
    lines.Add("entries ").Add(state.count).Add(" selected ").Add(state.selectedCount).Add("\n");
    lines.Add("anchor ").Add(state.anchor).Add(" focus ").Add(state.focus);
    lines.Add(" first ").Add(state.first).Add(" last ").Add(state.last).Add("\n");
    for (int32_t i = 0; i < state.count; i++)
        lines.Add(list.IsSelected(i) ? "* " : "  ").Add(NameOf(list.GetNode(i))).Add("\n");
}

void DescribeHistory(const BrowserHistory& history, Lines& lines)
{
    using Direction = BrowserHistory::Direction;
    String url;
    for (int32_t row = history.CountRows(Direction::Back); row > 0; row--)
        if (history.GetRow(Direction::Back, row, url))
            lines.Add("  ").Add(url).Add("\n");
    if (history.Get(0, url))
        lines.Add("* ").Add(url).Add("\n");
    for (int32_t row = 1; history.GetRow(Direction::Forward, row, url); row++)
        lines.Add("  ").Add(url).Add("\n");
}

} // namespace

bool BrowserDialog::Describe(const char* what, String& text)
{
    Lines lines(text);
    const std::string_view word(what);
    if (word == "list") {
        DescribeEntries(folderDialog.GetList(), lines);
    } else if (word == "history") {
        DescribeHistory(history, lines);
    } else if (word == "state") {
        lines.Add("url ").Add(currentUrl.GetText()).Add("\n");
        lines.Add("sort ").Add(static_cast<int64_t>(folderDialog.GetSortKey())).Add("\n");
        lines.Add("zoom ").Add(static_cast<int64_t>(folderDialog.GetZoom() * 100 + 0.5)).Add("\n"); // percent
        const ScrollPlace place = folderDialog.GetPlace();
        lines.Add("at ").Add(place.index).Add(" rest ").Add(place.offset);
        lines.Add(" top ").Add(folderDialog.View().SeenPart().y1).Add("\n"); // pixels
    } else {
        return false;
    }
    return lines.IsComplete();
}

} // namespace browser

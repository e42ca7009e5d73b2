// The section for tools: sorted children, settings, windows.

#include "host/prefspage.h"
#include "host/servicetable.h"
#include "model/urlresolver.h"
#include "search/sortby.h"
#include "services/preferences.h"
#include "ui/browserdialog.h"
#include "ui/windowregistry.h"

namespace browser {

namespace {

// An array for the caller: its count stands in front of the first node.
struct NodeArrayHead {
    int64_t count;
    int64_t reserved;
};

VX3Node** MakeNodeArray(Array<NodeRef>& nodes)
{
    auto* head = static_cast<NodeArrayHead*>(HostAlloc(sizeof(NodeArrayHead) + nodes.Count() * sizeof(VX3Node*), SourcePlace::Here()));
    if (!head)
        return nullptr;
    *head = { static_cast<int64_t>(nodes.Count()), 0 };
    auto** array = reinterpret_cast<VX3Node**>(head + 1);
    for (size_t i = 0; i < nodes.Count(); i++)
        array[i] = ToC(static_cast<BrowserContentNode*>(nodes[i].Take()));
    return array;
}

VX3Node** SortedChildren(int32_t order, VX3Node* first, int32_t* count)
{
    Array<NodeRef> sorted;
    *count = 0;
    NodeRef node = NodeRef::Adopt(FromC(first));
    if (!node)
        return nullptr;
    VX3Node** array = MakeSortedChildren(SortModeOf(order), std::move(node), sorted) ? MakeNodeArray(sorted) : nullptr;
    *count = array ? static_cast<int32_t>(sorted.Count()) : -1;
    return array;
}

void FreeNodes(VX3Node** nodes)
{
    if (!nodes)
        return;
    NodeArrayHead* head = reinterpret_cast<NodeArrayHead*>(nodes) - 1;
    for (int64_t i = 0; i < head->count; i++)
        FromC(nodes[i])->Release();
    HostFree(head);
}

int32_t Compare(int32_t order, VX3Node* a, VX3Node* b)
{
    return CompareNodes(SortModeOf(order), FromC(a), FromC(b));
}

void FindNearest(VX3Url* url, VX3Node** out)
{
    ContentRef found;
    FindNearestNode(BrowserURL::Of(url), found);
    GiveOut(std::move(found), out);
}

void MarkNodeDirty(VX3Node* node)
{
    FromC(node)->MarkDirty();
}

VX3Bool PreferenceRow(int32_t index, VX3Preference* out)
{
    return PreferenceAt(index, *out);
}

VX3Bool GetPreference(int32_t key, VX3String* value)
{
    return GetPreferenceText(key, String::Of(value));
}

VX3Bool SetPreference(int32_t key, const VX3String* value)
{
    return SetPreferenceText(key, String::Of(value));
}

// A place as somebody types it.
BrowserURL UrlOfPlace(const VX3String* place)
{
    const String& text = String::Of(place);
    const Units units = text.View();
    const bool isDrive = units.size() >= 3 && units[1] == ':' && units[2] == '\\';
    if (!isDrive && (units.empty() || units[0] != '/'))
        return BrowserURL(text);
    FilePath path;
    (void)path.SetText(text);
    return BrowserURL(path);
}

VX3Bool OpenWindowAt(const VX3String* place)
{
    BrowserURL url = UrlOfPlace(place);
    if (!url.HasContent())
        GetStartUrl(url);
    return OpenBrowserWindow(url);
}

VX3Bool GoTo(int32_t slot, const VX3String* place)
{
    BrowserDialog* window = FindBrowserWindow(slot);
    BrowserURL url = UrlOfPlace(place);
    return window && window->GoToUrl(url);
}

VX3Bool DescribeWindow(int32_t slot, const char* what, VX3String* text)
{
    BrowserDialog* window = FindBrowserWindow(slot);
    return window && window->Describe(what, String::Of(text));
}

VX3Bool IsWorking(int32_t slot)
{
    BrowserDialog* window = FindBrowserWindow(slot);
    return window && window->HasWork();
}

constexpr VX3ToolFunctions toolSection = { sizeof(VX3ToolFunctions),
                                           SortedChildren,
                                           FreeNodes,
                                           Compare,
                                           FindNearest,
                                           MarkNodeDirty,
                                           PreferenceRow,
                                           GetPreference,
                                           SetPreference,
                                           OpenWindowAt,
                                           GoTo,
                                           DescribeWindow,
                                           IsWorking,
                                           &libraryToolSection };

} // namespace

const VX3ToolFunctions* ToolSection()
{
    return &toolSection;
}

} // namespace browser

#include <algorithm>

#include "groups.h"

namespace vx3::bench {

using browser::ContentRef;
using browser::NodeRef;

namespace {

constexpr int repeats = 5;
constexpr VX3Unit needle[] = { 'o', 'a', 'k' };

struct Walked {
    size_t entries = 0;
    size_t hits = 0;
};

VX3Unit Fold(VX3Unit unit)
{
    return unit >= 'A' && unit <= 'Z' ? static_cast<VX3Unit>(unit | 0x20) : unit;
}

bool HasNeedle(browser::Units name)
{
    auto same = [](VX3Unit a, VX3Unit b) { return Fold(a) == b; };
    return std::search(name.begin(), name.end(), std::begin(needle), std::end(needle), same) != name.end();
}

// Every folder is brought up to date before its names are tested.
Walked SearchNames(const ContentRef& top)
{
    Walked walked;
    std::vector<ContentRef> open = { top };
    while (!open.empty()) {
        ContentRef folder = std::move(open.back());
        open.pop_back();
        folder->Populate();
        NodeRef next;
        for (NodeRef child = FirstChildOf(folder); child; child = std::move(next)) {
            child->GetNext(next);
            browser::BrowserContentNode* node = browser::ContentOf(child);
            walked.entries++;
            walked.hits += HasNeedle(node->GetNameRef().View());
            if (node->CanHoldChildren())
                open.push_back(browser::ToContent(child));
        }
    }
    return walked;
}

} // namespace

void MeasureWalk(Scene& scene, const std::string& path)
{
    Samples first, known;
    Walked walked;
    for (int i = 0; i < repeats; i++) {
        ContentRef top = scene.AddFolder(path);
        double start = NowSeconds();
        walked = SearchNames(top);
        first.Add(NowSeconds() - start);
        start = NowSeconds();
        Walked again = SearchNames(top);
        known.Add(NowSeconds() - start);
        if (again.entries != walked.entries || again.hits != walked.hits)
            std::fprintf(stderr, "the second search found %zu of %zu\n", again.hits, walked.hits);
    }
    PrintCaseOf("search_ms", walked.entries, first.Median() * millisecond, "ms");
    PrintCaseOf("search_known_ms", walked.entries, known.Median() * millisecond, "ms");
}

} // namespace vx3::bench

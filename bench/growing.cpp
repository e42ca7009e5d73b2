#include "groups.h"
#include "model/urlresolver.h"

namespace vx3::bench {

using browser::ContentRef;
using browser::NodeRef;

namespace {

constexpr int repeats = 9;
constexpr size_t lookups = 1000; // for one sample

std::vector<browser::String> UrlsOfChildren(const ContentRef& folder)
{
    std::vector<browser::String> texts;
    NodeRef next;
    for (NodeRef child = FirstChildOf(folder); child; child = std::move(next)) {
        child->GetNext(next);
        browser::BrowserURL url;
        browser::ContentOf(child)->GetUrl(url, 0);
        texts.push_back(url.GetText());
    }
    return texts;
}

// Random children, each through a URL of its own that has not been asked for its hash.
double FindTime(const ContentRef& folder, const std::vector<browser::String>& texts, uint64_t& random)
{
    std::vector<browser::BrowserURL> wanted;
    for (size_t i = 0; i < lookups; i++)
        wanted.emplace_back(browser::String(texts[NextRandom(&random) % texts.size()].View()));
    size_t found = 0;
    double start = NowSeconds();
    for (browser::BrowserURL& url : wanted) {
        ContentRef node;
        browser::FindNodeByUrl(url, browser::FindPlain, folder, node);
        found += node && node != folder;
    }
    double taken = NowSeconds() - start;
    if (found != lookups)
        std::fprintf(stderr, "found %zu of %zu\n", found, lookups);
    return taken / lookups;
}

} // namespace

void MeasureGrowth(Scene& scene)
{
    for (size_t count : { size_t(1'000), size_t(10'000), size_t(100'000) }) {
        ContentRef folder = scene.AddMadeFolder(count);
        std::vector<browser::String> texts = UrlsOfChildren(folder);
        Samples times;
        uint64_t random = 3;
        for (int i = 0; i < repeats; i++)
            times.Add(FindTime(folder, texts, random));
        PrintCaseOf("find_url_us", count, times.Median() * microsecond, "us");
        folder->Remove();
    }
}

} // namespace vx3::bench

// Owners of nodes and URLs of the published table, and what is asked of a node.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "core/values.h"
#include "vx3/browser.h"

namespace vx3::console {

// Holds one reference of a node. Main thread only, like the program.
class NodeHandle
{
public:
    NodeHandle() = default;
    // Takes over a reference, as an out argument carries it; `newNode` may be none.
    NodeHandle(const VX3Browser& newBrowser, VX3Node* newNode)
        : browser(&newBrowser)
        , node(newNode)
    {
    }
    NodeHandle(const NodeHandle& other)
        : browser(other.browser)
        , node(other.Pass())
    {
    }
    NodeHandle(NodeHandle&& other) noexcept
        : browser(other.browser)
        , node(std::exchange(other.node, nullptr))
    {
    }
    NodeHandle& operator=(NodeHandle other) noexcept;
    ~NodeHandle();

    VX3Node* Get() const { return node; }
    explicit operator bool() const { return node != nullptr; }
    // A further reference, for an argument that the callee consumes.
    VX3Node* Pass() const;

private:
    const VX3Browser* browser = nullptr;
    VX3Node* node = nullptr;
};

class Url
{
public:
    explicit Url(const VX3Browser& newBrowser)
        : browser(&newBrowser)
    {
    }
    Url(const Url& other);
    Url(Url&& other) noexcept
        : browser(other.browser)
        , value(std::exchange(other.value, {}))
    {
    }
    Url& operator=(Url other) noexcept;
    ~Url();

    VX3Url* Get() { return &value; }
    void SetFile(const core::Path& path);
    void SetText(const core::Text& text);
    core::Text Text();
    // The path for the operating system; empty if the URL has none.
    std::string NativePath();
    // The bytes to give on a command line: as Text, with names as the system has them.
    std::string Bytes();
    bool Equals(Url& other);

private:
    const VX3Browser* browser;
    VX3Url value = {};
};

Url UrlOf(const VX3Browser& browser, const NodeHandle& node);
core::Text NameOf(const VX3Browser& browser, const NodeHandle& node);
uint32_t AttributesOf(const VX3Browser& browser, const NodeHandle& node);
bool IsHolder(uint32_t attributes); // may have children
NodeHandle ParentOf(const VX3Browser& browser, const NodeHandle& node);
NodeHandle FirstChildOf(const VX3Browser& browser, const NodeHandle& node);
NodeHandle RootOf(const VX3Browser& browser, int32_t index);
std::vector<NodeHandle> SortedChildrenOf(const VX3Browser& browser, const NodeHandle& node, int32_t order, bool reverse);

enum RootIndex { RootPresets, RootCatalogs, RootComputer, RootRecent, RootSearch, RootFavorites, RootCount };

} // namespace vx3::console

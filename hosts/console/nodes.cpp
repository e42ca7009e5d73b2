#include "nodes.h"

#include <algorithm>

#include "core/services.h"

namespace vx3::console {

NodeHandle& NodeHandle::operator=(NodeHandle other) noexcept
{
    std::swap(browser, other.browser);
    std::swap(node, other.node);
    return *this;
}

NodeHandle::~NodeHandle()
{
    if (node)
        browser->references->release(node);
}

VX3Node* NodeHandle::Pass() const
{
    if (node)
        browser->references->addRef(node);
    return node;
}

Url::Url(const Url& other)
    : browser(other.browser)
{
    browser->urls->copy(&value, &other.value);
}

Url& Url::operator=(Url other) noexcept
{
    std::swap(browser, other.browser);
    std::swap(value, other.value);
    return *this;
}

Url::~Url()
{
    browser->urls->destruct(&value);
}

void Url::SetFile(const core::Path& path)
{
    browser->urls->setFile(&value, path.Get());
}

void Url::SetText(const core::Text& text)
{
    browser->urls->setText(&value, text.Get());
}

core::Text Url::Text()
{
    core::Text text;
    core::TextServices()->copy(text.Get(), browser->urls->getText(&value));
    return text;
}

std::string Url::NativePath()
{
    core::Path path;
    return browser->urls->getFile(&value, path.Get()) ? path.Native() : std::string();
}

std::string Url::Bytes()
{
    return core::NativeNameBytes(*Text().Get());
}

bool Url::Equals(Url& other)
{
    return browser->urls->equals(&value, &other.value) != 0;
}

Url UrlOf(const VX3Browser& browser, const NodeHandle& node)
{
    Url url(browser);
    browser.nodes->getUrl(node.Get(), url.Get(), 0);
    return url;
}

core::Text NameOf(const VX3Browser& browser, const NodeHandle& node)
{
    core::Text name;
    browser.nodes->getName(node.Get(), name.Get());
    return name;
}

uint32_t AttributesOf(const VX3Browser& browser, const NodeHandle& node)
{
    return browser.nodes->getAttributes(node.Get(), nullptr);
}

bool IsHolder(uint32_t attributes)
{
    return (attributes & (VX3_NODE_FOLDER | VX3_NODE_CONTAINER)) != 0;
}

NodeHandle ParentOf(const VX3Browser& browser, const NodeHandle& node)
{
    VX3Node* parent = nullptr;
    browser.links->getParent(node.Get(), &parent);
    return NodeHandle(browser, parent);
}

NodeHandle FirstChildOf(const VX3Browser& browser, const NodeHandle& node)
{
    VX3Node* child = nullptr;
    browser.nodes->getFirstChild(node.Get(), &child);
    return NodeHandle(browser, child);
}

NodeHandle RootOf(const VX3Browser& browser, int32_t index)
{
    VX3Node* root = nullptr;
    browser.tree->getRootByIndex(index, &root);
    return NodeHandle(browser, root);
}

std::vector<NodeHandle> SortedChildrenOf(const VX3Browser& browser, const NodeHandle& node, int32_t order, bool reverse)
{
    std::vector<NodeHandle> children;
    NodeHandle first = FirstChildOf(browser, node);
    if (!first)
        return children;
    int32_t count = 0;
    VX3Node** array = browser.tools->sortedChildren(order, first.Pass(), &count);
    for (int32_t index = 0; index < count; ++index) {
        browser.references->addRef(array[index]);
        children.emplace_back(browser, array[index]);
    }
    browser.tools->freeNodes(array);
    if (!reverse)
        return children;
    auto isHolder = [&](const NodeHandle& child) { return IsHolder(AttributesOf(browser, child)); };
    bool foldersFirst = std::is_partitioned(children.begin(), children.end(), isHolder);
    std::reverse(children.begin(), children.end());
    if (foldersFirst)
        std::stable_partition(children.begin(), children.end(), isHolder);
    return children;
}

} // namespace vx3::console

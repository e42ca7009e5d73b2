// From a URL to its node: the longest prefix wins, and an index changes no answer.

#include "support/modulefixture.h"

#include <random>

#include "model/contenttree.h"
#include "model/urlresolver.h"

using namespace browser;
using namespace vx3::tests;

namespace {

// A node with a URL of its own choice.
class UrlNode final : public BrowserContentNode
{
public:
    UrlNode(const String& text, uint32_t startFlags, bool keyed)
        : BrowserContentNode(NodeClass::BaseList, startFlags)
        , url(text)
    {
        if (keyed)
            InitIndexKey(url.GetHash(), static_cast<uint32_t>(text.Length()));
    }
    NodeType GetNodeType() const override { return NodeType::BaseList; }
    void GetName(String& out) override { out = name; }
    const String& GetNameRef() override { return name; }
    bool GetUrl(BrowserURL& out, uint32_t) override
    {
        out = url;
        return true;
    }
    BrowserURL url;
    String name;
};

class Resolver : public ModuleTest
{
protected:
    Resolver()
    {
        contentTree.tree = Make<BrowserContentTree>()();
        computer = Add(nullptr, "file:/");
        contentTree.indexedRoots[size_t(RootIndex::Computer)].Set(computer);
        presets = Add(nullptr, "preset:/");
    }
    ~Resolver() override
    {
        computer = presets = ContentRef();
        contentTree.ForgetRoots();
        contentTree.tree->RemoveChildren();
        delete contentTree.tree;
        contentTree.tree = nullptr;
    }

    ContentRef Add(RTreeNode* parent, const std::string& url, bool keyed = true, uint32_t flags = 1)
    {
        ContentRef node(Make<UrlNode>()(TextOf(url), flags, keyed));
        node->InsertLast(parent ? parent : contentTree.tree);
        return node;
    }
    static std::string Find(const std::string& text, int32_t mode = FindPlain, ContentRef start = ContentRef())
    {
        BrowserURL url(TextOf(text));
        ContentRef found;
        FindNodeByUrl(url, mode, std::move(start), found);
        return found ? Utf8(static_cast<UrlNode*>(found.Get())->url.GetText()) : "none";
    }
    static std::string Nearest(const std::string& text)
    {
        BrowserURL url(TextOf(text));
        ContentRef found;
        FindNearestNode(url, found);
        return found ? Utf8(static_cast<UrlNode*>(found.Get())->url.GetText()) : "none";
    }

    ContentRef computer, presets;
};

TEST_F(Resolver, TheLongestPrefixIsEntered)
{
    ContentRef ab = Add(presets.Get(), "preset://ab");
    EXPECT_EQ(Find("preset:/"), "preset:/");
    EXPECT_EQ(Find("PRESET://AB"), "preset://ab");
    EXPECT_EQ(Find("preset://abc/x"), "none");
    EXPECT_EQ(Find("preset://abc/x", FindDeepest), "preset://ab");
    EXPECT_EQ(Nearest("preset://abc/x"), "preset:/");
    EXPECT_EQ(Find("", FindDeepest), "none");
    EXPECT_EQ(Find("nowhere:/", FindDeepest), "none");
    EXPECT_EQ(Nearest("nowhere:/"), "file:/");
    Add(presets.Get(), "preset://abc");
    EXPECT_EQ(Find("preset://abc/x", FindDeepest), "preset://abc");
}

TEST_F(Resolver, VolumesThatNestAreToldApartAtNames)
{
    Add(computer.Get(), "file://localhost", true, Attribute::volume | 1);
    Add(computer.Get(), "file://localhost/media/usb", true, Attribute::volume | 1);
    ContentRef root;
    EXPECT_EQ(Find("file://localhost/media/usb2/x", FindDeepest), "file://localhost");
    EXPECT_EQ(Find("file://localhost/media/usb/x", FindDeepest), "file://localhost/media/usb");
    EXPECT_EQ(Find("file://localhost"), "file://localhost");
}

TEST_F(Resolver, OfFilesThatDifferInCaseTheExactOneIsMeant)
{
    ContentRef volume = Add(computer.Get(), "file://localhost", true, Attribute::volume | 1);
    ContentRef upper = Add(volume.Get(), "file://localhost/U"), lower = Add(volume.Get(), "file://localhost/u");
    Add(lower.Get(), "file://localhost/u/q");
    for (int extra = 0; extra < 2; extra++) {
        EXPECT_EQ(Find("file://localhost/u"), "file://localhost/u");
        EXPECT_EQ(Find("file://localhost/U"), "file://localhost/U");
        EXPECT_EQ(Find("file://localhost/u/q"), "file://localhost/u/q");
        EXPECT_EQ(Find("FILE://localhost/U"), "file://localhost/U") << "no exact one: the first";
        for (int i = 0; i < 100; i++) // the second time round with an index
            Add(volume.Get(), "file://localhost/other" + std::to_string(i));
    }
    Add(presets.Get(), "preset://U");
    Add(presets.Get(), "preset://u");
    EXPECT_EQ(Find("preset://u"), "preset://U") << "elsewhere the first";
}

// Random siblings, with and without keys: the index gives what a walk gives.
TEST_F(Resolver, TheIndexAnswersAsAWalkDoes)
{
    std::mt19937 random(3);
    ContentRef indexed = Add(presets.Get(), "preset://i"), walked = Add(presets.Get(), "preset://w");
    auto name = [&] {
        std::string text;
        for (size_t i = 1 + random() % 4; i > 0; i--)
            text += "abAB"[random() % 4];
        return text;
    };
    for (int i = 0; i < 150; i++) {
        const std::string text = name();
        Add(indexed.Get(), "preset://i/" + text);
        Add(walked.Get(), "preset://w/" + text, false);
    }
    int found = 0;
    for (int i = 0; i < 2000; i++) {
        const std::string text = name() + name() + (random() % 2 ? "/x" : "");
        for (int32_t mode : { int32_t(FindPlain), int32_t(FindDeepest) }) {
            std::string one = Find("preset://i/" + text, mode), other = Find("preset://w/" + text, mode);
            found += one != "none";
            if (one.size() > 9)
                one[9] = 'w';
            ASSERT_EQ(one, other) << text;
        }
    }
    EXPECT_GT(found, 500);
}

struct Made {
    std::vector<std::string> urls;
};

void MakeNode(const NodeRequest& request, void* context, ContentRef& out)
{
    static_cast<Made*>(context)->urls.push_back(Utf8(request.url.GetText()));
    ContentRef node(Make<UrlNode>()(request.url.GetText(), 1u, true));
    EXPECT_TRUE(request.isFolder);
    EXPECT_TRUE(node->AttachTo(*request.parent));
    out = std::move(node);
}

TEST_F(Resolver, MissingLevelsComeIntoBeing)
{
    Made made;
    ContentRef library = Add(presets.Get(), "preset://lib"), node, again;
    BrowserURL url("preset://lib/a/b/c");
    EnsureNodeForUrl(library, url, MakeNode, &made, node);
    EXPECT_EQ(made.urls, (std::vector<std::string>{ "preset://lib/a", "preset://lib/a/b", "preset://lib/a/b/c" }));
    EnsureNodeForUrl(library, url, MakeNode, &made, again);
    EXPECT_EQ(again.Get(), node.Get());
    EXPECT_EQ(made.urls.size(), 3u);
}

TEST_F(Resolver, NothingIsAttachedBelowWhatWasRemoved)
{
    ContentRef gone = Add(presets.Get(), "preset://gone"), late(Make<UrlNode>()(TextOf("preset://gone/x"), 1u, true));
    gone->Remove();
    EXPECT_TRUE(gone->IsRemoved());
    EXPECT_FALSE(late->AttachTo(*gone));
    EXPECT_FALSE(gone->AttachTo(*presets)) << "what was removed stays so";
    EXPECT_FALSE(presets->AttachTo(*presets)) << "below itself";
}

TEST_F(Resolver, ReorderingPutsTheGivenOnesFirst)
{
    std::vector<ContentRef> nodes;
    for (const char* name : { "a", "b", "c", "d" })
        nodes.push_back(Add(presets.Get(), std::string("preset://") + name));
    BrowserContentNode* order[] = { nodes[3].Get(), nodes[1].Get() };
    EXPECT_FALSE(ReorderChildren(1, order, 2));
    EXPECT_FALSE(ReorderChildren(0, order, 0));
    ASSERT_TRUE(ReorderChildren(0, order, 2));
    std::string names;
    NodeRef child;
    for (presets->GetFirstChild(child); child; child->GetNext(child))
        names += Utf8(static_cast<UrlNode*>(child.Get())->url.GetText()).back();
    EXPECT_EQ(names, "dbac");
    BrowserContentNode* twice[] = { nodes[1].Get(), nodes[1].Get() };
    EXPECT_FALSE(ReorderChildren(0, twice, 2));
    BrowserContentNode* strangers[] = { nodes[0].Get(), computer.Get() };
    EXPECT_FALSE(ReorderChildren(0, strangers, 2));
}

TEST_F(Resolver, RootsByIndex)
{
    ContentRef root;
    GetRootByIndex(2, root);
    EXPECT_EQ(root.Get(), computer.Get());
    GetRootByIndex(6, root);
    EXPECT_FALSE(root);
    GetRootNode(ContentRef(), root);
    EXPECT_EQ(root.Get(), computer.Get());
    EXPECT_FALSE(AttachToRoot(ContentRef(), 2));
}

} // namespace

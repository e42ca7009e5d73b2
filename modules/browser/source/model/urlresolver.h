// From a URL to its node.
//
// The tree is walked from the roots by the longest URL that is a prefix of the target in
// lower case, each level being listed when it is first needed. The answers are those of
// a walk over all siblings; a level with many children is asked by hash instead. Safe on
// any thread: it sees each level as it stands at that moment.
#pragma once

#include "model/browserinterface.h"

namespace browser {

enum FindMode : int32_t {
    FindPlain = VX3_FIND_PLAIN,
    FindDeepest = VX3_FIND_DEEPEST,   // the deepest node reached is the answer if the whole URL is not there
    FindPopulate = VX3_FIND_POPULATE, // bring each level up to date before descending
};

// From `start` and its following siblings, or from the roots.
void FindNodeByUrl(BrowserURL& url, int32_t mode, ContentRef start, ContentRef& out);
void FindNetworkNode(BrowserURL& url, ContentRef& out);

// The deepest node that holds the URL component by component; at last the computer.
void FindNearestNode(BrowserURL& url, ContentRef& out);

// Makes the node of a folder or entry of a library.
struct NodeRequest {
    ContentRef parent;
    ContentRef existing; // or none
    BrowserURL& url;
    const String& name;
    bool isFolder;
    int32_t type;
};
using NodeFactory = void (*)(const NodeRequest& request, void* context, ContentRef& out);

// The node of a URL at or below `parent`; every missing level becomes a folder.
void EnsureNodeForUrl(ContentRef parent, BrowserURL& url, NodeFactory factory, void* context, ContentRef& out);

} // namespace browser

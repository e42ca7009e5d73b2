// An element of the scene, wrapped so that it can be dragged and shown like content.
//
// It does not own the element, hangs in no tree, and answers all but its name and its
// URL with the defaults of BrowserContentNode.
#pragma once

#include "model/browserinterface.h"

namespace browser {

class BrowserBaseListNode final : public BrowserContentNode
{
public:
    BrowserBaseListNode(void* sceneElement, const String& elementName)
        : BrowserContentNode(NodeClass::BaseList)
        , element(sceneElement)
        , name(elementName)
    {
    }

    NodeType GetNodeType() const override { return NodeType::BaseList; }
    void GetName(String& out) override { out = name; }
    const String& GetNameRef() override { return name; }
    bool GetUrl(BrowserURL& out, uint32_t) override
    {
        String text("baselist://");
        (void)text.Append(name);
        out.SetText(text);
        return true;
    }
    void* Element() const { return element; }

private:
    void* const element;
    const String name;
};

} // namespace browser

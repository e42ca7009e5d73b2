// A node with a picture at hand, as those have whose previews are stored: what the grid of
// a benchmark is made of.
#pragma once

#include "gridscene.h"
#include "model/browserinterface.h"

namespace vx3::bench {

class PictureNode final : public browser::BrowserContentNode
{
public:
    PictureNode(const browser::String& ownName, VX3Bitmap* ownPicture)
        : BrowserContentNode(browser::NodeClass::BaseList)
        , name(ownName)
        , picture(ownPicture)
    {
    }
    browser::NodeType GetNodeType() const override { return browser::NodeType::BaseList; }
    void GetName(browser::String& out) override { out = name; }
    const browser::String& GetNameRef() override { return name; }
    bool GetUrl(browser::BrowserURL& out, uint32_t) override
    {
        browser::String text("baselist://");
        (void)text.Append(name);
        out.SetText(text);
        return true;
    }
    browser::Preview* GetPreview(uint32_t, int32_t) override { return browser::Make<browser::Preview>()(picture, 0u); }

private:
    const browser::String name;
    VX3Bitmap* const picture; // the benchmark's
};

} // namespace vx3::bench

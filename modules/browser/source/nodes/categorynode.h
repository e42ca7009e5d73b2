// A fixed heading of the tree: the computer, the libraries, the favourites.
//
// It has a name, a URL and an icon, and its children are what others put there. It lives
// as long as the tree.
#pragma once

#include "model/browserinterface.h"

namespace browser {

class CategoryNode final : public BrowserContentNode
{
public:
    CategoryNode(const String& ownName, const String& url, Icon icon);
    CategoryNode(const String& ownName, const String& url, const FilePath& imagePath);

    NodeType GetNodeType() const override { return NodeType::Category; }
    BrowserPluginInterface* GetPlugin(uint32_t request) override;
    void GetName(String& out) override { out = name; }
    const String& GetNameRef() override { return name; }
    bool GetUrl(BrowserURL& out, uint32_t request) override;
    bool GetDate(DateKind kind, FileDate& out) override;
    uint32_t GetAttributes(int64_t* size) override;
    Preview* GetPreview(uint32_t request, int32_t size) override;
    int64_t Populate() override;
    bool NotesChanges() const override { return true; }
    ErrorCode CreateFolder(ChangeMode mode, const String& newName, ContentRef* out) override;
    ErrorCode CopyInto(ContentRef source, ChangeMode mode, const String* newName, Progress progress, uint32_t more) override;

    void StampDate(const FileDate& date);

private:
    enum class Kind { Other = 0, Computer = 1, Presets = 2, Catalogs = 3, Network = 4 };

    static Kind KindOf(const String& url);
    bool IsFavourites() const;
    ErrorCode AddLink(ContentRef source, const String* newName, Progress progress);

    const String name;
    const String urlText;
    const Kind kind;
    HostBitmap image;
    Icon iconId; // without an image
    HostLock dateLock;
    FileDate changeDate CB_GUARDED_BY(dateLock) = {};
};

// Once in the life of the module: the volumes and the places of the network.
void ForgetCategoryListings();

} // namespace browser

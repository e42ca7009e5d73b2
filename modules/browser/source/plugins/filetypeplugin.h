// A content type that is described by data: what it is called, how its files are told,
// and its icon. A new type is a table in filetypes.h and a row in registryorder.cpp; a
// class of its own is only for a type that behaves differently.
#pragma once

#include "model/browserinterface.h"

namespace browser {

struct FileExtension {
    const char* extension; // in lower case, at most 15 characters
    int32_t textNumber;    // the name of the specific kind
};

struct FileType {
    int32_t typeId; // stored in libraries, never changed
    int32_t nameText;
    int32_t generalText; // for the type column
    Icon icon;
    std::span<const FileExtension> extensions = {};   // in the order of lookup; empty: never told by a file
    uint32_t classBit = 0;                            // VX3_CLASS of the bytes
    uint32_t classifyFlags = 0;                       // VX3_CLASSIFY
    std::span<const char* const> refusedByBytes = {}; // extensions whose files are not of this type, whatever their bytes say
};

// Holds nothing but its description, so any thread may call.
class FileTypePlugin : public BrowserPluginInterface
{
public:
    explicit FileTypePlugin(const FileType& description) // must outlive the plugin
        : type(description)
    {
    }

    int32_t GetTypeId(String* name) override;
    bool Identify(BrowserURL& url, IdentifyHeader header) override;
    void GetTypeName(String& out, ContentRef node, BrowserURL* url, TypeDetail detail) override;
    Preview* GetTypeIcon(BrowserURL& url, int32_t size) override;
    bool GetTypeNames(TypeDetail detail, Array<String>& names) override;

private:
    const FileExtension* FindRow(BrowserURL& url) const;
    bool IdentifyBytes(BrowserURL& url, IdentifyHeader header) const;

    const FileType& type;
};

} // namespace browser

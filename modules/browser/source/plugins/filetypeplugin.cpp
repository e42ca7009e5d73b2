#include "plugins/filetypeplugin.h"

#include "model/upcalls.h"
#include "plugins/fileextension.h"
#include "services/resources.h"

namespace browser {

int32_t FileTypePlugin::GetTypeId(String* name)
{
    if (name)
        *name = ResourceText(type.nameText);
    return type.typeId;
}

const FileExtension* FileTypePlugin::FindRow(BrowserURL& url) const
{
    if (type.extensions.empty())
        return nullptr;
    const LowerExtension extension(url);
    for (const FileExtension& row : type.extensions)
        if (extension == row.extension)
            return &row;
    return nullptr;
}

bool FileTypePlugin::Identify(BrowserURL& url, IdentifyHeader header)
{
    return header.bytes ? IdentifyBytes(url, header) : FindRow(url) != nullptr;
}

bool FileTypePlugin::IdentifyBytes(BrowserURL& url, IdentifyHeader header) const
{
    if (!type.classBit)
        return false;
    const LowerExtension extension(url);
    for (const char* refused : type.refusedByBytes)
        if (extension == refused)
            return false;
    FilePath path; // None for an item of a library: then the bytes are all there is.
    const bool hasFile = url.GetFile(path);
    return (host->classify->classify(hasFile ? path.Value() : nullptr, header.bytes, header.length, type.classifyFlags) & type.classBit)
        != 0;
}

void FileTypePlugin::GetTypeName(String& out, ContentRef node, BrowserURL* url, TypeDetail detail)
{
    const FileExtension* row = nullptr;
    BrowserURL nodeUrl;
    if (detail == TypeDetail::Specific) {
        if (node && node->GetUrl(nodeUrl, URL_LINK_TARGET)) // A link is named after what it leads to.
            row = FindRow(nodeUrl);
        else if (!node && url)
            row = FindRow(*url);
    }
    out = ResourceText(row ? row->textNumber : type.generalText);
}

Preview* FileTypePlugin::GetTypeIcon(BrowserURL&, int32_t size)
{
    return MakeIcon(type.icon, size);
}

bool FileTypePlugin::GetTypeNames(TypeDetail detail, Array<String>& names)
{
    if (detail != TypeDetail::Specific || type.extensions.empty())
        return names.Append(ResourceText(type.generalText));
    for (const FileExtension& row : type.extensions)
        if (!names.Append(ResourceText(row.textNumber)))
            return false;
    return true;
}

} // namespace browser

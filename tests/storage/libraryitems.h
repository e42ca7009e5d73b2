// What a library holds, read through handles of its own records, whatever else has their paths.
#pragma once

#include <map>
#include <string>

#include "storage/browserdatabaseitem.h"
#include "support/modulefixture.h"

namespace vx3::tests {

inline std::string BytesOfBlock(const browser::Block& block)
{
    return std::string(reinterpret_cast<const char*>(block.Bytes()), static_cast<size_t>(block.Size()));
}

// "data/preview", and so on with further previews that can be read: a rewrite leaves out the others.
inline std::string ContentOf(browser::BrowserDatabaseItem& item)
{
    browser::Block bytes;
    std::string content = item.GetData(bytes) ? BytesOfBlock(bytes) : "(broken)";
    browser::PreviewInfo info;
    for (int32_t place = 0; item.PreviewAt(place, info); place++)
        if (item.GetPreviewBytes(info.number, bytes))
            content += "/" + BytesOfBlock(bytes);
    return content;
}

// Calls `visit` with a handle of each item that is alive, in their order.
template <class Visit>
void ForEachItem(browser::BrowserDatabase& library, Visit visit)
{
    browser::ItemList& items = library.State().items;
    for (size_t place = 0; place < items.PlaceCount(); place++) {
        browser::ItemRecord* record = items.At(place);
        browser::BrowserHashNode* node = record && record->state == browser::ItemState::Live ? record->node.load() : nullptr;
        if (!node)
            continue;
        node->AddUses(*record, 1);
        browser::BrowserDatabaseItem item(library, *record);
        visit(item);
    }
}

} // namespace vx3::tests

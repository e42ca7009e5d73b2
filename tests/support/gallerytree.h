// The tree of the gallery: shelves with boxes, kept as the module's own rows.
#pragma once

#include <memory>
#include <vector>

#include "support/galleryvalues.h"

namespace vx3::tests {

class GalleryTree
{
public:
    GalleryTree(const VX3Host& ownHost, GalleryLog& ownLog);

    void Attach(VX3Dialog dialog, int32_t gadget); // of an open dialog
    std::string Describe() const;                  // a row a line, indented; what is closed is left out

private:
    struct Row {
        std::string name;
        int64_t id = 0;
        Row* parent = nullptr;
        std::vector<std::unique_ptr<Row>> children;
        bool isOpen = false;
        bool isSelected = false;
    };

    static Row& RowOf(void* row) { return *static_cast<Row*>(row); }
    static GalleryTree& Of(void* object) { return *static_cast<GalleryTree*>(object); }
    static const VX3TreeTable& Table();

    Row* Add(Row& parent, const std::string& name);
    void* Neighbour(const Row& row, int step) const;
    void Select(Row& row, int32_t mode);
    void SelectNone(Row& row);
    VX3Bool DeleteSelected(Row& row);
    void DrawCell(const Row& row, VX3Canvas canvas, const VX3Rectangle& cell) const;
    void Describe(const Row& row, size_t depth, std::string& text) const;
    void Log(const std::string& line) { log.Add("tree: " + line); }

    const VX3Host& host;
    GalleryLog& log;
    Row root;
    int64_t lastId = 0;
    VX3Dialog dialog = 0;
    int32_t gadget = 0;
};

} // namespace vx3::tests

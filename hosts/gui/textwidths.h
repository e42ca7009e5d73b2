// The widths of texts in the user's font, remembered: lists measure every name whenever they
// are laid out, and a toolkit takes some microseconds for each. Main thread only.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "gui/toolkit.h"

namespace vx3::gui {

class TextWidths
{
public:
    int Of(Toolkit& toolkit, std::u16string_view text);
    void Forget() // the font has changed
    {
        widths.clear();
        units = 0;
    }
    size_t Units() const { return units; } // that are kept

private:
    struct Hash {
        using is_transparent = void;
        size_t operator()(std::u16string_view text) const { return std::hash<std::u16string_view>()(text); }
    };

    std::unordered_map<std::u16string, int, Hash, std::equal_to<>> widths;
    size_t units = 0;
};

} // namespace vx3::gui

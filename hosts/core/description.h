// The elements of a page in a host's preference window, as its module describes them.
//
// A description is the file res/descriptions/NAME.txt beside the module's binary, NAME being
// RegisteredPage::description. A line of it that does not begin with `#` is an element, in
// shown order: ID TYPE TEXT and what the type wants, whole numbers in decimal, parted by
// blanks. TEXT and the texts of choices are numbers of the resource section, so that the
// page speaks the language of the user.
//
//     1002 switch 11000                      0 or 1
//     1005 number 11003 1 3600 1             from the first to the second number, by the third
//     1007 choice 11007 11010 11011 11012    0, 1, 2 …, a text for each
//     1000 url 11009                         a line of text that names a place
//
// A value travels between the window and the page in a container under the element's id, a
// text for `url` and an int32 for all others. A host shows a page as far as it can be read
// and writes the problems to its console. Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vx3::core {

enum class ElementKind : uint8_t { Switch, Number, Choice, Url };

struct DescribedElement {
    int32_t id = 0;
    ElementKind kind = ElementKind::Switch;
    int32_t text = 0;
    int32_t minimum = 0; // of the value; of a choice and a switch as well
    int32_t maximum = 0;
    int32_t step = 1;
    std::vector<int32_t> choices;
};

struct Description {
    std::vector<DescribedElement> elements;
    std::vector<std::string> problems; // a sentence for each line that was left out
};

Description ReadDescription(std::string_view text);

// That of the module whose binary lies at `binary`.
Description LoadDescription(const std::string& binary, const std::string& name);

} // namespace vx3::core

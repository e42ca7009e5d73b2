// Names as they stand in folders of artists, for what is sorted without a disk.
#pragma once

#include <string>
#include <vector>

#include "measure.h"

namespace vx3::bench {

// No two are equal as long as there are not more than 100,003.
inline std::vector<std::u16string> MakeNames(size_t count)
{
    static const char16_t* const words[] = { u"wood", u"oak", u"Metal",   u"brushed", u"scene", u"Final", u"car",  u"Body",
                                             u"IMG",  u"DSC", u"texture", u"Büro",    u"木材",  u"über",  u"room", u"Lamp" };
    static const char16_t* const suffixes[] = { u"jpg", u"png", u"tif", u"obj", u"psd", u"txt", u"mp4", u"exr" };
    constexpr size_t prime = 100003, stride = 7919;
    uint64_t random = 11;
    std::vector<std::u16string> names;
    for (size_t i = 0; i < count; i++) {
        std::u16string name = words[NextRandom(&random) % std::size(words)];
        name += u'_';
        name += words[NextRandom(&random) % std::size(words)];
        for (char digit : std::to_string(i * stride % prime))
            name += static_cast<char16_t>(digit);
        name += u'.';
        name += suffixes[NextRandom(&random) % std::size(suffixes)];
        names.push_back(std::move(name));
    }
    return names;
}

} // namespace vx3::bench

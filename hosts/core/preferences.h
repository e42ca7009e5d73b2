// The preferences of all modules, one container for each id, kept in one file.
//
// The file is read once and written only when something in it has changed. What
// cannot be read is never lost: a damaged file is set aside under a name of its own,
// and one that may not be read is not written either. Main thread only.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vx3/container.h"

namespace vx3::core {

class PreferenceStore
{
public:
    PreferenceStore() = default;
    ~PreferenceStore();
    PreferenceStore(const PreferenceStore&) = delete;
    PreferenceStore& operator=(const PreferenceStore&) = delete;

    void Load(const std::string& configFolder); // empty: nothing is kept
    bool Store();
    VX3Container* Find(int32_t id); // made if absent; none if nothing is kept or without memory

    // Keeps the containers as bytes until the next Find, so that a host without
    // modules holds no values. Ends all that Find has lent.
    void Park();

private:
    using Image = std::vector<uint8_t>;

    void TakeFile();
    void SetAside();
    bool Open();
    bool WriteFile(const Image& image) const;

    std::string folder;
    bool isWritable = false;
    bool isOpen = false;   // `all` is ahead of `current`
    VX3Container all = {}; // under each id a container with that id
    Image current;
    Image stored; // what the file holds; empty: no file
};

} // namespace vx3::core

// A record of what is changed below one folder, call by call, which can be played again
// up to any cut.
//
// Sees the file and folder sections of the table that it wraps; a copy counts as one
// step, since it appears by a rename. Replaying needs any other table: that of a
// MemoryFileSystem or of the core host on a fresh folder, which must stand as the
// recorded folder stood at Begin.
//
// One lives at a time. Begin, End and Replay are for the main thread while nobody else
// calls; calls of the table may come from any thread and are recorded in their order.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "vx3/host.h"

namespace vx3::testing {

struct JournalStep {
    enum class Kind : uint8_t { Create, Write, Rename, CreateFolder, Remove };
    Kind kind = Kind::Write;
    std::string path;    // below the folder, without a slash in front; native bytes
    std::string newPath; // of a rename; outside the folder: empty, which is a removal
    int64_t offset = 0;
    std::string bytes;
    int32_t group = 0; // steps of one call, such as a copy, share it: never cut in between

    // What a cut can divide: the bytes of a write, else 1.
    int64_t Units() const;
};

class WriteJournal
{
public:
    explicit WriteJournal(const VX3Host* base);
    ~WriteJournal(); // as End
    WriteJournal(const WriteJournal&) = delete;
    WriteJournal& operator=(const WriteJournal&) = delete;

    const VX3Host* Table() const;

    // Forgets the old record. Files that are open already are not followed.
    void Begin(std::string_view folder);
    void End();

    std::vector<JournalStep> Steps() const;
    int64_t Units() const;             // of all steps
    int64_t StepAt(int64_t cut) const; // how many steps are whole after so many units

    // Plays the first `units` units into `folder` through `table`; a write may be cut in
    // its middle. False if a step is refused.
    bool Replay(int64_t units, const VX3Host* table, std::string_view folder) const;
};

} // namespace vx3::testing

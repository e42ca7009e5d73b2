// What is known of one function of the host's table: who may call it, whether it may
// wait, how it fails, what it makes, and what its arguments must be.
//
// tablerows.h holds one such rule for each function. The wrappers read the rules and
// know nothing else of a function.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vx3::testing {

enum class Threads : uint8_t { AnyThread, OwnerThread, GuiThread, StartEnd };

enum class Waits : uint8_t {
    Quick,
    MayBlock,   // not while a 64-bit lock is held
    ForSeconds, // not while any lock is held
    ForLock     // the locks themselves, which have their ranks instead
};

// Classes of calls that FaultPlan counts and fails.
enum class FailClass : uint8_t {
    Nothing,
    Memory, // allocation, and every operation on a value that may fail for memory
    Open,
    Read,
    Write, // with close and sync
    Seek,
    Inspect,
    Rename, // with move
    CreateFolder,
    Copy,
    Remove,
    StartWalk,
    NextEntry,
    Watch,
    LoadResource,
    LoadBitmap,
    ThreadStart,
    Semaphore,
    Register,
    Publish,
    Count
};

// Kinds of objects that the table makes and frees.
enum class Object : uint8_t {
    None,
    Block,
    BinaryFile,
    DataFile,
    Compressor,
    FolderWalk,
    VolumeWalk,
    FolderWatch,
    Bitmap,
    Thread,
    Semaphore,
    Resources,
    Count
};

enum class Choice : uint8_t {
    Encoding,
    OpenMode,
    ByteOrder,
    SeekOrigin,
    DateKind,
    DataMode,
    WalkBits,
    Priority,
    Question,
    FolderNumber,
    PlaceNumber,
    ImageFormat,
    PackLevel,
    Depth,
    ClassifyBits
};

enum class LockForm : uint8_t { Word32, Word64, Shared, Exclusive };

enum class ArgKind : uint8_t {
    End, // behind the last argument
    Unchecked,
    NeverNone,
    NoneIfEmpty, // a pointer that may be none if the next count is 0
    Count,       // 0 or more
    CountOrAll,  // -1 or more
    Rank,        // 1 or more
    Choice,      // a value of an enumeration: the detail
    // Objects: the detail is the kind.
    Live,       // alive; several threads at once
    LiveOrNone, //
    Shares,     // alive; nobody changes it meanwhile
    Owns,       // alive; nobody else uses it meanwhile
    Frees,
    FreesOrNone,
    MakesBlock, // where a new block is written
    // Locks: the detail is the form.
    Locks,
    Tries,
    Unlocks,
    // Never none, and emptied by a call that fails.
    EmptiedText,
    EmptiedPath,
    EmptiedDate,
    // Where the module's source speaks.
    SourceFile,
    SourceLine,
    StopFile, // a stop that the module reports: a violation of its own
    StopText
};

struct Arg {
    ArgKind kind = ArgKind::End;
    uint8_t detail = 0;
};

constexpr std::size_t maximalArguments = 10;

struct Rule {
    const char* name;
    Threads threads;
    Waits waits;
    FailClass fails;
    Object makes; // by its result
    std::array<Arg, maximalArguments> args;
    int32_t failure = 0;      // the result of a call that failed
    bool stillCalled = false; // goes through even if it is to fail: it closes what must not stay open
};

constexpr std::size_t CountArguments(const Rule& rule)
{
    std::size_t count = 0;
    while (count < maximalArguments && rule.args[count].kind != ArgKind::End)
        ++count;
    return count;
}

const char* NameOf(Object kind);
const char* NameOf(FailClass kind);

} // namespace vx3::testing

// A library file that a verb has open through the browser module, with the module's life
// around it.
//
// Main thread only. What the verb changes is on the disk when Close has succeeded; without
// it the destructor writes what there is and tells nobody.
#pragma once

#include <string>

#include "core/values.h"
#include "session.h"
#include "vx3/librarytools.h"

namespace vx3::console {

enum class LibraryUse { Read, Change };

class LibrarySession
{
public:
    explicit LibrarySession(const Command& newCommand);
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    Failure Open(LibraryUse use);
    Failure Create(const std::string& name);
    Failure Close();

    const std::string& File() const { return file; } // as the user named it
    std::string AbsoluteFile() const { return AbsolutePath(file); }
    const VX3LibraryToolFunctions& Tools() const { return *tools; }
    VX3Library* Get() const { return library; }
    const Session& Module() const { return session; }

    // Whether there is room for the file to grow by so much.
    Failure CheckRoom(uint64_t bytes) const;
    // What an outcome means: of the file alone, or of an item or a source too.
    Failure FailureOf(int32_t outcome) const;
    Failure FailureOf(int32_t outcome, const std::string& subject) const;

private:
    Failure Start();

    const Command& command;
    std::string file;
    Session session;
    const VX3LibraryToolFunctions* tools = nullptr;
    VX3Library* library = nullptr;
};

// True if it is about the library as a whole, so that nothing else in it will work either.
bool EndsWork(int32_t outcome);

// A block of the module for the length of a scope.
class ModuleBlock
{
public:
    explicit ModuleBlock(const Session& session)
        : memory(session.Host().memory)
    {
    }
    ~ModuleBlock() { memory->free(bytes); }
    ModuleBlock(const ModuleBlock&) = delete;
    ModuleBlock& operator=(const ModuleBlock&) = delete;

    void* bytes = nullptr;
    int64_t length = 0;

private:
    const VX3MemoryServices* memory;
};

// The path of an item as an argument tells it; fails if that is no UTF-8.
Failure ItemPathOf(const std::string& argument, core::Text& path);

} // namespace vx3::console

// A host and the module in one program: what the measured classes need to live in.
//
// The module is linked into the program and walked through its entry function, so that
// what is measured is what a host loads. One Scene at a time, on the main thread.
#pragma once

#include <string>

#include "core/corehost.h"
#include "nodes/directorynode.h"

namespace vx3::bench {

class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path;
};

class Scene
{
public:
    // Ends the program if the module does not start. With a GUI section there are windows.
    explicit Scene(const VX3GuiServices* gui = nullptr);
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    // A folder that nobody has listed yet, below the computer.
    browser::ContentRef AddFolder(const std::string& path);

    // A folder with children that are on no disk, and that has been listed.
    browser::ContentRef AddMadeFolder(size_t childCount);

private:
    const TemporaryFolder profile; // the host writes into it when it ends, so it goes last
    core::CoreHost coreHost;
    VX3Host table; // of the core host, with the GUI section if there is one
};

// The direct children, listed if need be.
browser::NodeRef FirstChildOf(const browser::ContentRef& folder);
size_t CountChildren(const browser::ContentRef& folder);

} // namespace vx3::bench

// The command line of VX3 Studio.
#pragma once

#include <string>
#include <vector>

#include <QSize>

#include "qtlook.h"

namespace vx3::desktop {

// As those of the program vx3.
enum class Exit { Done = 0, SomeFailed = 1, Usage = 2, NotFound = 3, Damaged = 4 };

// Paths are native bytes, as they were given; empty: not given.
struct StudioOptions {
    std::string place; // a URL or a path
    std::string profile;
    std::string language;
    std::string module;
    std::string shot;
    std::string script;
    std::string folder; // of the script
    std::string home;   // of the user; empty: as it is
    QSize size;         // of the window in a shot
    double scale = 0;   // of the screen; 0: as it is
    Brightness brightness = Brightness::Desktop;
    bool untilPainted = false; // leaves then
    bool wantsHelp = false;
    bool wantsVersion = false;
};

// Reads the words behind the program's name. Answers an empty text, or what is wrong. Needs
// no application, since some options must be known before there is one.
std::string ParseOptions(const std::vector<std::string>& words, StudioOptions& options);
std::string HelpText();

// An absolute path of one that may be relative to the current folder.
std::string AbsolutePath(const std::string& path);
bool IsUrl(const std::string& place);

} // namespace vx3::desktop

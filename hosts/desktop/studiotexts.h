// The texts of the program's own windows, in the languages that the modules have.
#pragma once

#include <string>

#include <QString>

namespace vx3::desktop {

enum class Word {
    File,
    Edit,
    Window,
    Help,
    Quit,
    Copy,
    Paste,
    Delete,
    SelectAll,
    SelectNone,
    Invert,
    Preferences,
    Console,
    NewBrowser,
    Commands,
    Docked,
    ShowWindow,
    NextPane,
    About,
    AboutText,
    Shortcuts,
    ShortcutsText,
    Clear,
    CopyAll,
    NothingOpen,
    NoPages,
    Close
};

void SetLanguage(const std::string& code); // such as "us"; those of Qt's own texts as well
QString Say(Word word);

} // namespace vx3::desktop

// The libraries that are mounted at start. One load for all: whoever wants a library
// while it runs waits for its end.
#pragma once

namespace browser {

// Made with the loader's thread and freed after it.
bool CreateLoadSemaphore();
void FreeLoadSemaphore();

// Loads all libraries once; later calls return at once. Any thread.
void LoadLibraries();
void ForgetLibraries(); // at the end of a life

} // namespace browser

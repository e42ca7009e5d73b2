#include "host/presetloader.h"

#include "host/librarymount.h"

namespace browser {

void ThreadedPresetLoading::Main()
{
    LoadLibraries();
}

} // namespace browser

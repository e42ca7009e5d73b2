#include "host/startplugin.h"

#include "host/browsercommands.h"
#include "host/contentmodel.h"
#include "host/librarymount.h"
#include "host/librarystore.h"
#include "host/prefspage.h"
#include "host/presetloader.h"
#include "host/servicetable.h"
#include "model/contentcodes.h"
#include "model/contenttree.h"
#include "model/urlresolver.h"
#include "nodes/directorynode.h"
#include "services/preferences.h"
#include "services/resources.h"
#include "ui/folderposition.h"
#include "ui/iconservice.h"
#include "ui/windowregistry.h"
#include "vx3/entry.h"

namespace browser {

FilePath* modulePath = nullptr;

namespace {

constexpr uint32_t buildNumber = 18250;
constexpr int32_t firstProgressIcon = 1021644;
constexpr int32_t progressIcons = 8;
constexpr uint32_t quickRun = 10000; // milliseconds

// Main thread only; cleared by PluginEnd, so that a module can live twice.
struct RunState {
    bool started = false;
    bool ready = false;
    bool ending = false;
    uint32_t runStart = 0;
    ThreadedPresetLoading* presetLoader = nullptr;
};

RunState run;

bool IsExcluded()
{
    return host->run->edition(VX3_EDITION_EXCLUDED, nullptr);
}

bool HasUserInterface()
{
    const int32_t mode = host->run->runMode();
    return mode != VX3_RUN_COMMAND_LINE && mode != VX3_RUN_SERVER && mode != VX3_RUN_CLIENT;
}

void RegisterProgressIcons()
{
    for (int32_t i = 0; i < progressIcons; i++) {
        const char* file = IconFileName(static_cast<int32_t>(Icon::FirstProgressor) + i);
        HostBitmap picture = LoadBitmap(GetIconPath(file));
        if (!picture || !host->registry->registerIcon(firstProgressIcon + i, picture.Get()))
            WriteConsole("RegisterIcon failed");
    }
}

bool RegisterAll()
{
    (void)InitContentModel(); // Without it later calls answer none.
    SetPreferenceDefaults();
    ReadPreferences();
    PublishServiceTable();
    if (!HasUserInterface())
        return true;
    const bool hasCommands = RegisterCommands();
    return RegisterPrefsPage() && hasCommands;
}

bool LoadTexts(void* data)
{
    if (!modulePath || !LoadResources(*modulePath))
        return false;
    if (data)
        static_cast<VX3ResourceRequest*>(data)->pending = 0;
    return true;
}

void StartLoading()
{
    if (!run.started || run.presetLoader)
        return;
    TellOfDamagedLibraries(true);
    (void)CreateLoadSemaphore();
    run.presetLoader = Make<ThreadedPresetLoading>()();
    bool failed = HasUserInterface() && run.presetLoader && !run.presetLoader->Start(VX3_PRIORITY_BACKGROUND);
    if (failed)
        ReportCriticalStop();
}

// One letter names a drive; anything else is the path of a mount.
BrowserURL UrlOfVolume(const String& volume)
{
    if (volume.Length() != 1 || volume == String("/")) {
        FilePath path;
        (void)path.SetText(volume);
        return BrowserURL(path);
    }
    String text("file://localhost/");
    (void)text.Append(volume);
    (void)text.Append(":");
    return BrowserURL(text);
}

void UpdateVolume(const VX3VolumeChange& change)
{
    ContentRef node;
    BrowserURL url = UrlOfVolume(String::Of(&change.volume));
    FindNodeByUrl(url, FindPlain, ContentRef(), node);
    if (!node || node->GetNodeType() != NodeType::Directory)
        return;
    // A path that is no volume lies in one: its folder shows what is under the mount.
    if (change.removed && node->HasFlags(Attribute::volume)) {
        node->Remove();
    } else {
        node->MarkDirty();
        node->ClearFlags(Attribute::neverProbed);
    }
}

void NoteVolumeChange(const VX3VolumeChange* change)
{
    if (!run.ready || run.ending)
        return;
    if (change && !String::Of(&change->volume).IsEmpty())
        UpdateVolume(*change);
    RefreshVolumes();
}

void FreeLoader()
{
    Destroy(run.presetLoader); // ends it and waits
    run.presetLoader = nullptr;
    FreeLoadSemaphore();
}

void EndRun()
{
    if (!run.started)
        return;
    run.ending = true;
    const uint32_t elapsed = host->run->clock() - run.runStart;
    CloseAllWindows();
    FreeLoader();
    ShutDownContentModel(elapsed < quickRun);
    FreeIconCache();
}

} // namespace

bool PluginStart()
{
    if (run.started)
        return run.ready;
    if (IsExcluded())
        return false;
    run.started = true;
    if (modulePath)
        (void)InitIconCache(*modulePath); // Without memory there are no icons.
    RegisterProgressIcons();
    if (!RegisterAll())
        return false;
    run.ready = true;
    return true;
}

void PluginEnd()
{
    if (!run.started)
        return;
    WithdrawServiceTable();
    CloseAllWindows();
    FreeLoader(); // The message of the host's end need not have come.
    FreeContentModel();
    FreeIconCache();
    ForgetLibraries();
    ForgetFolderPositions();
    ForgetPreferences();
    run = {};
}

bool PluginMessage(intptr_t id, void* data)
{
    if (IsExcluded())
        return false;
    switch (id) {
    case VX3_MESSAGE_RESOURCES: return LoadTexts(data);
    case VX3_MESSAGE_BUILD: *static_cast<uint32_t*>(data) = buildNumber; return true;
    case VX3_MESSAGE_RUN_TIMING:
        if (*static_cast<const uint32_t*>(data) == 0)
            run.runStart = host->run->clock();
        return false;
    case VX3_MESSAGE_ALL_LOADED: StartLoading(); return true;
    case VX3_MESSAGE_VOLUME: NoteVolumeChange(static_cast<const VX3VolumeChange*>(data)); return true;
    case VX3_MESSAGE_ENDING: EndRun(); return true;
    default: return false;
    }
}

} // namespace browser

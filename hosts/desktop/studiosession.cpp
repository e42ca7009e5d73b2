#include "studiosession.h"

#include <cstddef>
#include <span>

#include <unistd.h>

#include <QApplication>
#include <QMetaObject>

#include "core/hoststate.h"
#include "core/registry.h"
#include "core/values.h"
#include "qtboxes.h"
#include "qticons.h"

namespace vx3::desktop {

namespace {

constexpr int32_t runModeWithWindows = 0;
constexpr int32_t windowInFront = -1;
constexpr int pulseTime = 1000; // ms

Failure FindModule(const StudioOptions& options, std::string& file)
{
    const std::string program = QApplication::applicationDirPath().toStdString();
    const QByteArray variable = qgetenv("VX3_BROWSER_MODULE");
    std::vector<std::string> candidates;
    if (!options.module.empty())
        candidates = { AbsolutePath(options.module) };
    else if (!variable.isEmpty())
        candidates = { AbsolutePath(variable.toStdString()) };
    else
        candidates = { AbsolutePath(program + "/../modules/browser/browser.so"),
                       AbsolutePath(program + "/../lib/vx3/modules/browser/browser.so") };
    for (const std::string& candidate : candidates) {
        file = candidate;
        if (access(candidate.c_str(), R_OK) == 0)
            return {};
    }
    return { Exit::NotFound, "the browser module was not found at '" + candidates.front() + "'; give it with --module" };
}

bool IsInTree(const VX3Browser& browser, VX3Url& url)
{
    VX3Node* node = nullptr;
    browser.tree->findNodeByUrl(&url, VX3_FIND_PLAIN | VX3_FIND_POPULATE, nullptr, &node);
    const bool isThere = node != nullptr;
    browser.references->release(node);
    return isThere;
}

} // namespace

// --- The console ---

void ConsoleLines::Add(const std::string& line)
{
    {
        std::lock_guard guard(lock);
        waiting.push_back(line);
        if (waiting.size() > 1)
            return; // somebody is on the way for them
    }
    QMetaObject::invokeMethod(
        &receiver, [this] { HandOut(); }, Qt::QueuedConnection);
}

void ConsoleLines::SetListener(std::function<void(const std::string&)> wanted)
{
    listener = std::move(wanted);
    HandOut();
}

void ConsoleLines::HandOut()
{
    if (!listener)
        return;
    std::vector<std::string> lines;
    {
        std::lock_guard guard(lock);
        lines.swap(waiting);
    }
    for (const std::string& line : lines)
        listener(line);
}

// --- The session ---

StudioSession::StudioSession(const StudioOptions& options)
    : host(std::make_unique<core::CoreHost>(SettingsOf(options)))
    , toolkit(std::make_unique<QtToolkit>())
    , desk(std::make_unique<gui::Desk>(*toolkit))
{
    RegisterHostIcons();
    toolkit->SetDesk(desk.get());
    table = *host->Table();
    table.gui = gui::Desk::Services();
    desk->SetFilesOfDrag([this](int32_t type, const void* data) { return FilesOfDrag(type, data); });
    HearOfFolders();
}

StudioSession::~StudioSession()
{
    Close();
}

core::HostSettings StudioSession::SettingsOf(const StudioOptions& options)
{
    core::HostSettings settings = options.profile.empty() ? core::UserSettings() : core::SettingsBelow(AbsolutePath(options.profile));
    settings.runMode = runModeWithWindows;
    settings.deleteIntoTrash = options.script.empty();
    if (!options.home.empty())
        settings.homeFolder = options.home;
    if (!options.language.empty())
        settings.language = options.language;
    settings.onConsole = [this](const std::string& line) { console.Add(line); };
    settings.onText = [this](const std::string& text) { ShowText(text); };
    return settings;
}

void StudioSession::ShowText(const std::string& utf8)
{
    if (host->Table()->thread->isMainThread())
        toolkit->ShowBox(VX3_BOX_INFORMATION, core::Text(utf8).Units());
    else
        console.Add(utf8);
}

void StudioSession::HearOfFolders()
{
    if (const int descriptor = host->WaitDescriptor(); descriptor >= 0) {
        folderNotifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
        QObject::connect(folderNotifier.get(), &QSocketNotifier::activated, folderNotifier.get(), [this] { desk->Deliver(); });
    }
    QObject::connect(&pulse, &QTimer::timeout, &pulse, [this] { desk->Deliver(); });
    pulse.start(pulseTime);
}

Failure StudioSession::Open(const StudioOptions& options)
{
    if (Failure failure = FindModule(options, moduleFile))
        return failure;
    if (!loader.Load(moduleFile) || !loader.Start(&table))
        return { Exit::Damaged, "the module '" + moduleFile + "' cannot be used: " + loader.Error() };
    const void* published = table.registry->find(VX3_BROWSER_TABLE, VX3_BROWSER_VERSION, sizeof(VX3Browser));
    browser = static_cast<const VX3Browser*>(published);
    if (!browser || !browser->tree || !browser->urls || !browser->tools || !browser->windows)
        return { Exit::Damaged, "the module '" + moduleFile + "' does not publish a table of the browser with windows" };
    return {};
}

Failure StudioSession::OpenPlace(const std::string& place)
{
    if (place.empty()) {
        const core::RegisteredCommand* command = core::FindCommand(VX3_MESSAGE_BROWSER);
        const bool isOpen = command && command->Execute();
        return isOpen ? Failure() : Failure{ Exit::Damaged, "the browser did not open a window" };
    }
    VX3Url url = {};
    Failure failure = UrlOf(place, url);
    if (!failure && !browser->windows->open(&url))
        failure = { Exit::Damaged, "the browser did not open a window" };
    browser->urls->destruct(&url);
    return failure;
}

Failure StudioSession::GoTo(const std::string& place)
{
    constexpr size_t needed = offsetof(VX3ToolFunctions, goTo) + sizeof(VX3ToolFunctions::goTo);
    if (browser->tools->size < static_cast<int64_t>(needed)) // a browser that cannot be told
        return OpenPlace(place);
    VX3Url url = {};
    Failure failure = UrlOf(place, url);
    if (!failure) // what cannot be shown leaves the window where it was
        browser->tools->goTo(windowInFront, browser->urls->getText(&url));
    browser->urls->destruct(&url);
    return failure;
}

std::vector<std::string> StudioSession::FilesOfDrag(int32_t type, const void* data) const
{
    if (!browser || type != VX3_DRAG_BROWSER)
        return {};
    const auto& drag = *static_cast<const VX3BrowserDrag*>(data);
    std::vector<std::string> files;
    for (VX3Node* node : std::span(drag.nodes, static_cast<size_t>(drag.count))) {
        VX3Url url = {};
        core::Path path;
        if (browser->nodes->getUrl(node, &url, 0) && browser->urls->hasFile(&url) && browser->urls->getFile(&url, path.Get()))
            files.push_back(path.Native());
        browser->urls->destruct(&url);
    }
    return files;
}

bool StudioSession::RestoreWindow(int32_t id, int32_t subId)
{
    const core::RegisteredCommand* command = core::FindCommand(id);
    return command && command->Restore(subId);
}

Failure StudioSession::UrlOf(const std::string& place, VX3Url& url)
{
    if (IsUrl(place)) {
        browser->urls->setText(&url, core::Text(place).Get());
        return IsInTree(*browser, url) ? Failure() : Failure{ Exit::NotFound, "'" + place + "' is not there" };
    }
    const std::string path = AbsolutePath(place);
    if (access(path.c_str(), F_OK) != 0)
        return { Exit::NotFound, "'" + path + "' is not there" };
    browser->urls->setFile(&url, core::Path(std::string_view(path)).Get());
    if (!IsInTree(*browser, url))
        console.Add("'" + path + "' is hidden or lies below a hidden folder: the browser does not show it");
    return {};
}

void StudioSession::Close()
{
    if (!host)
        return;
    pulse.stop();
    folderNotifier.reset();
    browser = nullptr;
    loader.End();
    toolkit->SetListener({});
    desk.reset();
    toolkit->SetDesk(nullptr);
    toolkit.reset();
    loader.Unload();
    host.reset();
}

} // namespace vx3::desktop

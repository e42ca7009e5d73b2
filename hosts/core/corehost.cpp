#include "corehost.h"

#include <utility>

#include "folderwatch.h"
#include "hoststate.h"
#include "livecounts.h"
#include "message.h"
#include "registry.h"
#include "services.h"
#include "volumewatch.h"

namespace vx3::core {

namespace {

HostState* currentHost = nullptr;

VX3Host MakeTable()
{
    VX3Host table = {};
    table.version = VX3_HOST_VERSION;
    table.size = sizeof(VX3Host);
    table.memory = MemoryServices();
    table.text = TextServices();
    table.path = PathServices();
    table.container = ContainerServices();
    table.dataFile = DataFileServices();
    table.file = FileServices();
    table.compressor = CompressorServices();
    table.folder = FolderServices();
    table.bitmap = BitmapServices();
    table.classify = ClassifyServices();
    table.lock = LockServices();
    table.thread = ThreadServices();
    table.message = MessageServices();
    table.resource = ResourceServices();
    table.console = ConsoleServices();
    table.registry = RegistryServices();
    table.run = RunServices();
    return table;
}

} // namespace

struct CoreHost::State : HostState {
    VX3Host table = MakeTable();
};

HostState* CurrentHost()
{
    return currentHost;
}

const HostSettings& CurrentSettings()
{
    static const HostSettings defaults;
    return currentHost ? currentHost->settings : defaults;
}

CoreHost::CoreHost(HostSettings settings)
    : state(std::make_unique<State>())
{
    state->settings = std::move(settings);
    state->mainThread = std::this_thread::get_id();
    currentHost = state.get();
    state->preferences.Load(state->settings.configFolder);
}

CoreHost::~CoreHost()
{
    StorePreferences();
    TakeOutEverything();
    DropMessages();
    DropWatches();
    currentHost = nullptr;
}

const VX3Host* CoreHost::Table() const
{
    return &state->table;
}

const HostSettings& CoreHost::Settings() const
{
    return state->settings;
}

LiveObjects CoreHost::CountLiveObjects() const
{
    return ReadLiveObjects();
}

std::string CoreHost::MemoryReport() const
{
    return DescribeLiveMemory();
}

bool CoreHost::StorePreferences()
{
    return state->preferences.Store();
}

void CoreHost::DeliverMessages()
{
    DeliverWaiting();
}

int CoreHost::WaitDescriptor() const
{
    return FolderChangeDescriptor();
}

void DeliverWaiting()
{
    BeginDelivery();
    DeliverQueuedMessages();
    DeliverVolumeChanges();
    DeliverFolderChanges();
}

} // namespace vx3::core

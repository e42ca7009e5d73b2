#include "preferences.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include "hoststate.h"
#include "services.h"
#include "sync.h"
#include "values.h"

namespace vx3::core {

namespace {

constexpr uint32_t preferenceIdent = 0x70726566; // 'pref'
constexpr int64_t longestImage = int64_t(1) << 28;
constexpr const char* fileName = "/preferences.vx3";

namespace files = std::filesystem;
using Image = std::vector<uint8_t>;

// One open file for the length of a scope.
class ScopedFile
{
public:
    ScopedFile(const std::string& native, int32_t mode)
        : file(FileServices()->create())
    {
        isOpen = file && FileServices()->open(file, Path(native).Get(), mode, 0, VX3_ORDER_BIG, VX3_FILE_TYPE, VX3_FILE_CREATOR);
    }
    ScopedFile(const ScopedFile&) = delete;
    ScopedFile& operator=(const ScopedFile&) = delete;
    ~ScopedFile() { FileServices()->free(file); }

    VX3BinaryFile* file;
    bool isOpen;
};

bool ReadWhole(const std::string& native, Image& image)
{
    ScopedFile source(native, VX3_OPEN_READ);
    if (!source.isOpen)
        return false;
    int64_t length = FileServices()->length(source.file);
    if (length < 0 || length > longestImage)
        return false;
    image.resize(static_cast<size_t>(length));
    return FileServices()->read(source.file, image.data(), length) == length;
}

// The old file stays whole until the new one takes its place, which is still open then:
// another program that stores at this moment cannot have it and leaves it alone.
bool WriteWhole(const std::string& native, const Image& image)
{
    const std::string part = native + ".part";
    ScopedFile target(part, VX3_OPEN_CREATE);
    if (!target.isOpen)
        return false;
    std::error_code failure;
    if (FileServices()->write(target.file, image.data(), static_cast<int64_t>(image.size())) && FileServices()->sync(target.file)) {
        files::rename(part, native, failure);
        if (!failure) {
            SyncFoldersOf(part, native);
            return FileServices()->close(target.file);
        }
    }
    files::remove(part, failure);
    return false;
}

bool ParseImage(const Image& image, VX3Container& container)
{
    Path memory;
    if (!PathServices()->setMemoryReading(memory.Get(), image.data(), static_cast<int64_t>(image.size())))
        return false;
    VX3DataFile* file = DataFileServices()->open(memory.Get(), VX3_DATA_READ, preferenceIdent);
    if (!file)
        return false;
    bool isRead = DataFileServices()->read(file, &container);
    DataFileServices()->close(file);
    return isRead;
}

// Empty if there is no memory.
Image MakeImage(const VX3Container& container)
{
    Path memory;
    if (!PathServices()->setMemoryWriting(memory.Get()))
        return {};
    VX3DataFile* file = DataFileServices()->open(memory.Get(), VX3_DATA_WRITE, preferenceIdent);
    if (!file)
        return {};
    bool isWritten = DataFileServices()->write(file, &container);
    void* bytes = nullptr;
    int64_t length = 0;
    if (!DataFileServices()->close(file) || !isWritten || !PathServices()->takeMemory(memory.Get(), &bytes, &length))
        return {};
    auto* first = static_cast<const uint8_t*>(bytes);
    Image image(first, first + length);
    MemoryServices()->free(bytes);
    return image;
}

std::string FreeDamagedName(const std::string& file)
{
    std::error_code ignored;
    std::string name = file + ".damaged";
    for (int i = 2; files::exists(name, ignored); ++i)
        name = file + ".damaged-" + std::to_string(i);
    return name;
}

} // namespace

PreferenceStore::~PreferenceStore()
{
    ContainerServices()->destruct(&all);
}

void PreferenceStore::Load(const std::string& configFolder)
{
    folder = configFolder;
    isWritable = !folder.empty();
    std::error_code failure;
    if (isWritable && files::exists(folder + fileName, failure))
        TakeFile();
}

void PreferenceStore::TakeFile()
{
    if (!ReadWhole(folder + fileName, stored)) {
        isWritable = false;
        WriteConsoleLine("The preferences could not be read and will not be changed: " + folder + fileName);
        return;
    }
    VX3Container trial = {};
    if (ParseImage(stored, trial))
        current = stored;
    else
        SetAside();
    ContainerServices()->destruct(&trial);
}

void PreferenceStore::SetAside()
{
    std::string aside = FreeDamagedName(folder + fileName);
    std::error_code failure;
    files::rename(folder + fileName, aside, failure);
    isWritable = !failure;
    stored.clear();
    WriteConsoleLine("The preferences are damaged; they were " + (failure ? "left as they are" : "set aside as " + aside));
}

bool PreferenceStore::Open()
{
    if (isOpen)
        return true;
    isOpen = current.empty() || ParseImage(current, all);
    return isOpen;
}

VX3Container* PreferenceStore::Find(int32_t id)
{
    if (folder.empty() || !Open())
        return nullptr;
    VX3Container* found = ContainerServices()->getContainer(&all, id);
    if (found)
        return found;
    if (!ContainerServices()->setContainer(&all, id, nullptr))
        return nullptr;
    found = ContainerServices()->getContainer(&all, id);
    return found && ContainerServices()->setId(found, id) ? found : nullptr;
}

void PreferenceStore::Park()
{
    if (!isOpen)
        return;
    Image image = MakeImage(all);
    if (image.empty())
        return;
    current = std::move(image);
    ContainerServices()->destruct(&all);
    isOpen = false;
}

bool PreferenceStore::Store()
{
    if (folder.empty())
        return true;
    Image image = isOpen ? MakeImage(all) : current;
    if (isOpen && image.empty())
        return false;
    if (image == stored)
        return true;
    if (!isWritable || !WriteFile(image)) {
        WriteConsoleLine("The preferences could not be stored: " + folder + fileName);
        return false;
    }
    stored = std::move(image);
    return true;
}

bool PreferenceStore::WriteFile(const Image& image) const
{
    std::error_code failure;
    files::create_directories(folder, failure);
    return WriteWhole(folder + fileName, image);
}

} // namespace vx3::core

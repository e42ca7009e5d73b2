// The host's path value, with the rules of String.
#pragma once

#include "services/string.h"

namespace browser {

class FilePath
{
public:
    FilePath() = default;
    FilePath(const FilePath& other) { (void)Set(other); }
    FilePath(FilePath&& other) noexcept
        : value(std::exchange(other.value, VX3Path{}))
    {
    }
    FilePath& operator=(const FilePath& other)
    {
        (void)Set(other);
        return *this;
    }
    FilePath& operator=(FilePath&& other) noexcept
    {
        std::swap(value, other.value);
        return *this;
    }
    ~FilePath() { host->path->destruct(&value); }

    static FilePath& Of(VX3Path* path) { return *reinterpret_cast<FilePath*>(path); }
    static const FilePath& Of(const VX3Path* path) { return *reinterpret_cast<const FilePath*>(path); }
    VX3Path* Value() { return &value; }
    const VX3Path* Value() const { return &value; }

    bool Set(const FilePath& other) { return host->path->copy(&value, &other.value); }
    bool SetText(const String& text) { return host->path->setText(&value, text.Value()); }
    bool SetUrlTail(const String& tail) { return host->path->setUrlTail(&value, tail.Value()); }
    bool GetUrlTail(String& tail) const { return host->path->getUrlTail(&value, tail.Value()); }
    void Clear() { host->path->destruct(&value); }
    bool IsEmpty() const { return host->path->isEmpty(&value); }
    bool operator==(const FilePath& other) const { return host->path->equals(&value, &other.value); }

    FilePath Directory() const
    {
        FilePath directory;
        (void)host->path->getDirectory(&value, &directory.value);
        return directory;
    }
    String Last() const
    {
        String last;
        (void)host->path->getLast(&value, last.Value());
        return last;
    }
    bool GetLast(String& last) const { return host->path->getLast(&value, last.Value()); }
    bool GetDirectory(FilePath& directory) const { return host->path->getDirectory(&value, &directory.value); }
    bool SetLast(const String& last) { return host->path->setLast(&value, last.Value()); }
    // Sets this path to the entry `name` of `folder`; paths of one folder share its storage.
    bool SetJoined(const FilePath& folder, const String& name) { return host->path->join(&folder.value, name.Value(), &value); }
    bool Append(const String& name) { return host->path->join(&value, name.Value(), &value); }
    bool Append(const char* name)
    {
        String text;
        return text.Set(name) && Append(text);
    }
    bool HasSuffix(const String& suffix) const { return host->path->hasSuffix(&value, suffix.Value()); }

private:
    VX3Path value = {};
};

static_assert(sizeof(FilePath) == sizeof(VX3Path));

inline bool IsNameAllowed(const String& name)
{
    return host->path->isNameAllowed(name.Value());
}

} // namespace browser

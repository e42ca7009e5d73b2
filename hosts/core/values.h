// The host's values seen from C++: owners of VX3String and VX3Path, and the ways
// between them and native bytes. For hosts, tests and tools; modules have their own.
#pragma once

#include <string>
#include <string_view>

#include "vx3/host.h"

namespace vx3::core {

class Text
{
public:
    Text() = default;
    explicit Text(std::string_view utf8);
    explicit Text(std::u16string_view units);
    Text(const Text& other);
    Text(Text&& other) noexcept;
    Text& operator=(Text other) noexcept;
    ~Text();

    VX3String* Get() { return &value; }
    const VX3String* Get() const { return &value; }
    std::string Utf8() const;
    std::u16string Units() const;

private:
    VX3String value = {};
};

class Path
{
public:
    Path() = default;
    explicit Path(std::string_view nativeBytes);
    Path(const Path& other);
    Path(Path&& other) noexcept;
    Path& operator=(Path other) noexcept;
    ~Path();

    VX3Path* Get() { return &value; }
    const VX3Path* Get() const { return &value; }
    std::string Native() const; // bytes for the operating system

private:
    VX3Path value = {};
};

std::string ToUtf8(const VX3String& text);                   // lone surrogates become U+FFFD
std::string NativeBytes(const VX3Path& path);                // bytes for the operating system; empty for a memory path
std::string NativeNameBytes(const VX3String& name);          // the bytes of one name: U+DC00 + b back to b, U+DC5C to a backslash
bool SetNativeName(VX3String& name, std::string_view bytes); // the other way; false without memory
bool SetNativePath(VX3Path& path, std::string_view bytes);

// The block behind a memory path, or none; for files and codecs that read one.
struct MemoryBlock;
MemoryBlock* BlockOf(const VX3Path& path);

} // namespace vx3::core

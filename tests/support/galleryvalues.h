// Values of the boundary for the gallery, which knows nothing of a host but its table.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

#include "vx3/gui.h"
#include "vx3/host.h"

namespace vx3::tests {

class HostText
{
public:
    explicit HostText(const VX3Host& ownHost, std::string_view utf8 = {})
        : host(ownHost)
    {
        host.text->set(&value, utf8.data(), static_cast<int32_t>(utf8.size()), VX3_ENCODING_UTF8);
    }
    ~HostText() { host.text->destruct(&value); }
    HostText(const HostText&) = delete;
    HostText& operator=(const HostText&) = delete;

    VX3String* Get() { return &value; }
    std::string Utf8() const { return Utf8Of(host, &value); }

    static std::string Utf8Of(const VX3Host& host, const VX3String* text)
    {
        std::string bytes(static_cast<size_t>(host.text->toUtf8(text, nullptr, 0)) + 1, '\0');
        host.text->toUtf8(text, bytes.data(), static_cast<int32_t>(bytes.size()));
        bytes.pop_back();
        return bytes;
    }

private:
    const VX3Host& host;
    VX3String value = {};
};

class HostContainer
{
public:
    explicit HostContainer(const VX3Host& ownHost)
        : host(ownHost)
    {
    }
    ~HostContainer() { host.container->destruct(&value); }
    HostContainer(const HostContainer&) = delete;
    HostContainer& operator=(const HostContainer&) = delete;

    VX3Container* Get() { return &value; }
    void SetText(int32_t key, std::string_view utf8) { host.container->setText(&value, key, HostText(host, utf8).Get()); }

private:
    const VX3Host& host;
    VX3Container value = {};
};

// What happened to the gallery, in the order of the callbacks.
class GalleryLog
{
public:
    void Add(const std::string& line) { lines += line + "\n"; }
    std::string Take() { return std::exchange(lines, {}); }

private:
    std::string lines;
};

// A four-character code as its letters.
inline std::string CodeText(int32_t code)
{
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8)
        text += static_cast<char>(code >> shift & 0xFF);
    return text;
}

// A number without zeros behind the point.
inline std::string NumberText(double number)
{
    char text[32];
    std::snprintf(text, sizeof text, "%g", number);
    return text;
}

} // namespace vx3::tests

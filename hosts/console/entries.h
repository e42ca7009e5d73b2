// What is printed of a node, read from it once.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jsonwriter.h"
#include "nodes.h"
#include "session.h"

namespace vx3::console {

enum class TypeTest { ByName, ByBytes };

struct Entry {
    std::string url; // UTF-8, like all texts here that are not called bytes
    std::string urlBytes;
    std::string name;
    std::string nameBytes; // as the operating system has it
    std::string type;
    std::string path; // native bytes; empty if there is none
    int32_t nodeType = 0;
    std::optional<int32_t> plugin;
    std::string pluginName;
    uint32_t attributes = 0;
    int64_t size = 0;
    VX3FileDate created = {};
    VX3FileDate modified = {};
    uint32_t hash = 0;
    std::optional<int32_t> depth; // in a drawn tree
};

Entry ReadEntry(const Session& session, const NodeHandle& node, TypeTest test);

std::string DateText(const VX3FileDate& date); // YYYY-MM-DDThh:mm:ss, empty if there is no date
std::string AttributeLetters(uint32_t attributes);
std::string AttributeWords(uint32_t attributes);
std::string ColouredName(const Entry& entry, bool withColour);
bool WantsColour(); // of stdout

void WriteEntry(JsonWriter& json, const Entry& entry);
void PrintTable(const std::vector<Entry>& entries);
void PrintFields(const Entry& entry);

} // namespace vx3::console

// Writes the one document of `--json`: {"version":1, "entries":[…]}, an entry a line.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace vx3::console {

class JsonWriter
{
public:
    explicit JsonWriter(std::FILE* newFile); // begins the document
    ~JsonWriter();                           // ends it
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    void BeginEntry();
    void EndEntry();
    void Text(const char* name, std::string_view utf8);
    void Texts(const char* name, const std::vector<std::string>& utf8);
    void Number(const char* name, int64_t number);
    void Float(const char* name, double number);
    void Truth(const char* name, bool truth);
    void Null(const char* name);
    // Entries within an entry: under a name, or in a list that stands under one.
    void BeginObject(const char* name);
    void EndObject() { line += '}'; }
    void BeginList(const char* name);
    void BeginItem();
    void EndItem() { line += '}'; }
    void EndList() { line += ']'; }

private:
    void Name(const char* name);

    std::FILE* file;
    std::string line;
    bool isFirst = true;
};

// A text with its quotes and escapes.
std::string JsonText(std::string_view utf8);

} // namespace vx3::console

#include "jsonwriter.h"

#include <charconv>

namespace vx3::console {

std::string JsonText(std::string_view utf8)
{
    std::string text = "\"";
    for (char c : utf8) {
        char escape[8];
        if (c == '"' || c == '\\')
            (text += '\\') += c;
        else if (static_cast<unsigned char>(c) < 0x20) {
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            text += escape;
        } else
            text += c;
    }
    return text + "\"";
}

JsonWriter::JsonWriter(std::FILE* newFile)
    : file(newFile)
{
    std::fputs("{\"version\":1, \"entries\":[", file);
}

JsonWriter::~JsonWriter()
{
    std::fputs(isFirst ? "]}\n" : "\n]}\n", file);
}

void JsonWriter::BeginEntry()
{
    line = isFirst ? "\n{" : ",\n{";
    isFirst = false;
}

void JsonWriter::EndEntry()
{
    line += '}';
    std::fwrite(line.data(), 1, line.size(), file);
}

void JsonWriter::Name(const char* name)
{
    if (line.back() != '{')
        line += ", ";
    line += JsonText(name) + ":";
}

void JsonWriter::BeginObject(const char* name)
{
    Name(name);
    line += '{';
}

void JsonWriter::BeginList(const char* name)
{
    Name(name);
    line += '[';
}

void JsonWriter::BeginItem()
{
    line += line.back() == '[' ? "{" : ", {";
}

void JsonWriter::Text(const char* name, std::string_view utf8)
{
    Name(name);
    line += JsonText(utf8);
}

void JsonWriter::Texts(const char* name, const std::vector<std::string>& utf8)
{
    Name(name);
    line += '[';
    for (size_t index = 0; index < utf8.size(); ++index)
        line += (index ? ", " : "") + JsonText(utf8[index]);
    line += ']';
}

void JsonWriter::Number(const char* name, int64_t number)
{
    Name(name);
    line += std::to_string(number);
}

void JsonWriter::Float(const char* name, double number)
{
    char digits[64];
    std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    Name(name);
    line.append(digits, result.ptr);
}

void JsonWriter::Truth(const char* name, bool truth)
{
    Name(name);
    line += truth ? "true" : "false";
}

void JsonWriter::Null(const char* name)
{
    Name(name);
    line += "null";
}

} // namespace vx3::console

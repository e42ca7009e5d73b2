// The verbs `lib preview`: put, get, ls.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "core/services.h"
#include "entries.h"
#include "librarysession.h"
#include "libraryverbs.h"
#include "verbs.h"
#include "wholefile.h"

namespace vx3::console {

namespace {

constexpr size_t pathArgument = 2;
constexpr size_t numberArgument = 3;
constexpr size_t targetArgument = 4;
constexpr int32_t firstNumber = 1;
constexpr size_t mostDigits = 9;
constexpr uint64_t roomForRecord = 64 * 1024;

std::optional<int32_t> NumberOf(const std::string& word)
{
    bool isNumber =
        !word.empty() && word.size() <= mostDigits && std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!isNumber)
        return {};
    return static_cast<int32_t>(std::strtol(word.c_str(), nullptr, 10));
}

// The item whose previews a command is about; an item without any has none of them.
Failure ListPreviews(const LibrarySession& library, const std::string& argument, core::Text& path, std::vector<VX3LibraryPreview>& previews)
{
    if (Failure failure = ItemPathOf(argument, path))
        return failure;
    VX3LibraryItem item = {};
    int32_t found = library.Tools().findItem(library.Get(), path.Get(), &item);
    core::TextServices()->destruct(&item.path);
    VX3LibraryPreview preview = {};
    for (int32_t index = 0;
         found == VX3_LIBRARY_OK && library.Tools().previewAt(library.Get(), path.Get(), index, &preview) == VX3_LIBRARY_OK; ++index)
        previews.push_back(preview);
    return library.FailureOf(found, argument);
}

void WritePreview(JsonWriter& json, const VX3LibraryPreview& preview)
{
    std::string date = DateText(preview.date);
    json.BeginEntry();
    json.Number("number", preview.number);
    json.Number("width", preview.width);
    json.Number("height", preview.height);
    json.Number("grade", preview.grade);
    if (date.empty())
        json.Null("date");
    else
        json.Text("date", date);
    json.EndEntry();
}

void TellPreviews(const Command& command, const std::vector<VX3LibraryPreview>& previews)
{
    if (command.Has(Option::Json)) {
        JsonWriter json(stdout);
        for (const VX3LibraryPreview& preview : previews)
            WritePreview(json, preview);
        return;
    }
    for (const VX3LibraryPreview& preview : previews) {
        std::string date = DateText(preview.date);
        std::replace(date.begin(), date.end(), 'T', ' ');
        std::printf("%6" PRId32 "  %6" PRId32 "  %6" PRId32 "  %3" PRId32 "  %s\n", preview.number, preview.width, preview.height,
                    preview.grade, date.empty() ? "-" : date.c_str());
    }
}

struct Picture {
    std::string file;
    std::vector<uint8_t> bytes;
};

Failure ReadPictures(const Command& command, size_t first, std::vector<Picture>& pictures, uint64_t& room)
{
    for (size_t index = first; index < command.arguments.size(); ++index) {
        Picture picture = { command.arguments[index], {} };
        if (Failure failure = ReadWholeFile(picture.file, picture.bytes))
            return failure;
        room += picture.bytes.size() + roomForRecord;
        pictures.push_back(std::move(picture));
    }
    return {};
}

int32_t NumberBehind(const std::vector<VX3LibraryPreview>& previews)
{
    int32_t number = firstNumber;
    for (const VX3LibraryPreview& preview : previews)
        number = std::max(number, preview.number + 1);
    return number;
}

// Ends at the first one that cannot be stored. `numbers` become those of the others.
Failure PutPictures(const Command& command, LibrarySession& library, std::optional<int32_t> first, const std::vector<Picture>& pictures,
                    std::vector<int32_t>& numbers)
{
    core::Text path;
    std::vector<VX3LibraryPreview> previews;
    if (Failure failure = ListPreviews(library, command.arguments[pathArgument], path, previews))
        return failure;
    int32_t grade = NumberOf(command.Value(Option::Grade, "1")).value_or(1);
    int32_t number = first ? *first : NumberBehind(previews);
    for (const Picture& picture : pictures) {
        int32_t outcome = library.Tools().putPreview(library.Get(), path.Get(), number, grade, picture.bytes.data(),
                                                     static_cast<int64_t>(picture.bytes.size()));
        if (outcome != VX3_LIBRARY_OK)
            return library.FailureOf(outcome, picture.file);
        numbers.push_back(number++);
    }
    return {};
}

void TellNumbers(const Command& command, const std::vector<Picture>& pictures, const std::vector<int32_t>& numbers)
{
    if (!command.Has(Option::Json))
        return;
    JsonWriter json(stdout);
    for (size_t index = 0; index < numbers.size(); ++index) {
        json.BeginEntry();
        json.Text("file", Shown(pictures[index].file));
        json.Number("number", numbers[index]);
        json.EndEntry();
    }
}

} // namespace

int RunLibPreviewPut(const Command& command)
{
    std::optional<int32_t> first = NumberOf(command.arguments[numberArgument]);
    bool hasNumber = first && command.arguments.size() > targetArgument;
    std::vector<Picture> pictures;
    std::vector<int32_t> numbers;
    uint64_t room = roomForRecord;
    LibrarySession library(command);
    Failure failure = ReadPictures(command, hasNumber ? targetArgument : numberArgument, pictures, room);
    if (!failure)
        failure = library.Open(LibraryUse::Change);
    if (!failure)
        failure = library.CheckRoom(room);
    if (!failure)
        failure = PutPictures(command, library, hasNumber ? first : std::nullopt, pictures, numbers);
    Failure end = library.Get() ? library.Close() : Failure{};
    if (failure || end)
        return FailWith(failure ? failure : end);
    TellNumbers(command, pictures, numbers);
    return static_cast<int>(Exit::Done);
}

int RunLibPreviewGet(const Command& command)
{
    const std::string& argument = command.arguments[pathArgument];
    std::optional<int32_t> number = NumberOf(command.arguments[numberArgument]);
    if (!number)
        return FailWith({ Exit::Usage, Quoted(command.arguments[numberArgument]) + " is no number of a preview" });
    LibrarySession library(command);
    if (Failure failure = library.Open(LibraryUse::Read))
        return FailWith(failure);
    core::Text path;
    ModuleBlock picture(library.Module());
    Failure failure = ItemPathOf(argument, path);
    if (!failure)
        failure = library.FailureOf(library.Tools().getPreview(library.Get(), path.Get(), *number, &picture.bytes, &picture.length),
                                    argument + ", preview " + std::to_string(*number));
    if (!failure)
        failure = WriteNewFile(command.arguments[targetArgument], picture.bytes, static_cast<size_t>(picture.length));
    if (failure)
        return FailWith(failure);
    TellEntry(command, [&](JsonWriter& json) {
        json.Text("target", Shown(command.arguments[targetArgument]));
        json.Number("number", *number);
        json.Number("size", picture.length);
    });
    return static_cast<int>(Exit::Done);
}

int RunLibPreviewLs(const Command& command)
{
    LibrarySession library(command);
    if (Failure failure = library.Open(LibraryUse::Read))
        return FailWith(failure);
    core::Text path;
    std::vector<VX3LibraryPreview> previews;
    if (Failure failure = ListPreviews(library, command.arguments[pathArgument], path, previews))
        return FailWith(failure);
    TellPreviews(command, previews);
    return static_cast<int>(Exit::Done);
}

} // namespace vx3::console

// Boxes and file choosers: shown to the scripted user, who has answered beforehand. What a
// desktop would be asked for, such as its file manager, is told in the same way and
// cannot be done.
#include <filesystem>

#include "core/hoststate.h"
#include "core/registry.h"
#include "core/values.h"
#include "headless/headlesstoolkit.h"

namespace vx3::headless {

namespace {

std::string Utf8(std::u16string_view text)
{
    return core::Text(text).Utf8();
}

bool Exists(const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::exists(path, ignored);
}

std::string DescribeRequest(const gui::ChooseRequest& request)
{
    const char* const kind = request.mode == VX3_CHOOSE_FOLDER ? "folder: " : request.mode == VX3_CHOOSE_SAVE ? "save: " : "file: ";
    const std::string filter = request.filter.empty() ? "" : " (" + Utf8(request.filter) + ")";
    return kind + Utf8(request.title) + filter;
}

} // namespace

// Shows something that wants an answer, and goes on with the main loop for a while.
bool HeadlessToolkit::AskUser(const std::string& shown, std::string& answer)
{
    user.Show(shown);
    const bool isAnswered = user.Take(shown, answer);
    Advance(readingTime);
    return isAnswered;
}

void HeadlessToolkit::ShowBox(int32_t kind, const std::u16string& text)
{
    std::string answer;
    AskUser((kind == VX3_BOX_ERROR ? "error: " : "information: ") + Utf8(text), answer);
}

bool HeadlessToolkit::Ask(const std::u16string& text)
{
    std::string answer;
    if (!AskUser("question: " + Utf8(text), answer))
        return false;
    const bool isYes = answer == "yes" || answer == "1";
    if (!isYes && !answer.empty() && answer != "no" && answer != "0")
        user.Fail("'" + answer + "' is neither yes nor no");
    return isYes;
}

bool HeadlessToolkit::Choose(const gui::ChooseRequest& request, std::string& chosen)
{
    std::string answer;
    if (!AskUser(DescribeRequest(request), answer) || answer.empty() || answer == "0")
        return false;
    const std::string path = (std::filesystem::path(folder) / answer).string(); // an absolute answer stays as it is
    if (request.mode == VX3_CHOOSE_SAVE && Exists(path) && !Ask(u"replace " + core::Text(answer).Units()))
        return false;
    if (request.mode != VX3_CHOOSE_SAVE && !Exists(path)) {
        user.Fail("'" + path + "' cannot be chosen: it does not exist");
        return false;
    }
    chosen = path;
    return true;
}

bool HeadlessToolkit::Reveal(const std::string& path)
{
    user.Show("show in the file manager: " + path);
    return false;
}

bool HeadlessToolkit::OpenWithSystem(const std::string& path)
{
    user.Show("open with the system: " + path);
    return false;
}

bool HeadlessToolkit::OpenPreferences(int32_t page)
{
    for (const core::RegisteredPage& registered : core::RegisteredPages()) {
        if (registered.id != page)
            continue;
        user.Show("preferences: " + registered.name);
        return true;
    }
    return false;
}

} // namespace vx3::headless

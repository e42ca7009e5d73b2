// The verb `lib recover`: the best of a library file and of what a rewrite leaves beside it.
//
// Nothing is ever deleted or overwritten. The best one is copied to a name of its own and
// forced to the disk; the file that was there gets a second name; then the copy takes the
// first one over, in one step. A crash leaves either the old file or the new one there.
#include <cinttypes>
#include <cstdio>
#include <ctime>

#include "jsonwriter.h"
#include "librarycheck.h"
#include "libraryreplace.h"
#include "libraryverbs.h"
#include "progressbar.h"
#include "verbs.h"

namespace vx3::console {

namespace {

constexpr int64_t nanoseconds = 1000000000;

// From bad to good.
enum class Quality {
    Missing,
    Unusable, // no library, or not readable
    Damaged,
    Open, // sound, but not closed, as after a crash while something was added
    Whole
};

struct Candidate {
    std::string path;
    Quality quality = Quality::Missing;
    Failure failure; // why it cannot be used
    int64_t items = 0;
    int64_t soundItems = 0;
    uint64_t bytes = 0;
    int64_t modified = 0;

    bool IsUsable() const { return quality > Quality::Unusable; }
    bool IsSound() const { return quality > Quality::Damaged; }
};

const char* QualityText(Quality quality)
{
    switch (quality) {
    case Quality::Missing: return "missing";
    case Quality::Unusable: return "unusable";
    case Quality::Damaged: return "damaged";
    case Quality::Open: return "not closed";
    default: return "whole";
    }
}

Candidate Examine(const std::string& path)
{
    Candidate candidate;
    ReadLibrary library;
    candidate.path = path;
    candidate.failure = OpenLibrary(path, library);
    candidate.bytes = library.file.Length();
    candidate.modified = library.file.Modified();
    bool isMissing = candidate.failure.exit == Exit::NotFound;
    if (candidate.failure) {
        candidate.quality = isMissing ? Quality::Missing : Quality::Unusable;
        return candidate;
    }
    LibraryCheck check = CheckLibrary(library.file, library.scan);
    candidate.items = static_cast<int64_t>(library.scan.items.size());
    candidate.soundItems = check.soundItems;
    candidate.quality = library.scan.end == WalkEnd::Closed ? Quality::Whole : Quality::Open;
    if (library.scan.IsDamaged() || library.scan.findings.DamageCount() > 0)
        candidate.quality = Quality::Damaged;
    return candidate;
}

// Of two that are whole the newer one holds the later work; otherwise it counts what is left of the items.
bool IsBetter(const Candidate& a, const Candidate& b)
{
    bool areWhole = a.quality == Quality::Whole && b.quality == Quality::Whole;
    if (!areWhole && a.IsUsable() != b.IsUsable())
        return a.IsUsable();
    if (!areWhole && a.soundItems != b.soundItems)
        return a.soundItems > b.soundItems;
    if (a.quality != b.quality)
        return a.quality > b.quality;
    return a.modified > b.modified;
}

// Gives way only to one that keeps more, or that is sound where this is not.
bool IsWorse(const Candidate& file, const Candidate& other)
{
    if (!other.IsUsable() || file.quality == Quality::Whole)
        return false;
    if (!file.IsUsable() || file.soundItems != other.soundItems)
        return !file.IsUsable() || file.soundItems < other.soundItems;
    return !file.IsSound() && other.IsSound();
}

std::string LocalDate(int64_t moment)
{
    std::time_t seconds = static_cast<std::time_t>(moment / nanoseconds);
    std::tm local = {};
    char text[64] = "-";
    if (moment > 0 && localtime_r(&seconds, &local))
        std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
    return text;
}

void PrintCandidate(const Candidate& candidate, bool isBest)
{
    std::printf("%c %-10s  %6" PRId64 " of %6" PRId64 " items  %12" PRIu64 "  %-19s  %s\n", isBest ? '*' : ' ',
                QualityText(candidate.quality), candidate.soundItems, candidate.items, candidate.bytes,
                LocalDate(candidate.modified).c_str(), Shown(candidate.path).c_str());
}

void WriteCandidate(JsonWriter& json, const Candidate& candidate, bool isBest)
{
    json.BeginEntry();
    json.Text("file", Shown(candidate.path));
    json.Text("quality", QualityText(candidate.quality));
    json.Number("items", candidate.items);
    json.Number("soundItems", candidate.soundItems);
    json.Number("size", static_cast<int64_t>(candidate.bytes));
    if (candidate.quality == Quality::Missing)
        json.Null("modified");
    else
        json.Text("modified", LocalDate(candidate.modified));
    json.Truth("best", isBest);
    json.EndEntry();
}

void Tell(const Command& command, const std::vector<Candidate>& candidates, const Candidate* best)
{
    if (!command.Has(Option::Json)) {
        for (const Candidate& candidate : candidates)
            PrintCandidate(candidate, &candidate == best);
        return;
    }
    JsonWriter json(stdout);
    for (const Candidate& candidate : candidates)
        WriteCandidate(json, candidate, &candidate == best);
}

// The file itself if it is as good as any; none if there is nothing that can be used.
const Candidate* FindBest(const std::vector<Candidate>& candidates)
{
    const Candidate* other = nullptr;
    for (size_t index = 1; index < candidates.size(); ++index)
        if (candidates[index].IsUsable() && (!other || IsBetter(candidates[index], *other)))
            other = &candidates[index];
    const Candidate& file = candidates.front();
    if (other && IsWorse(file, *other))
        return other;
    return file.IsUsable() ? &file : nullptr;
}

// A rewrite may have left out only what was deleted, or a new file was begun where the old one
// was missing: the user knows.
void TellOfMore(const std::vector<Candidate>& candidates)
{
    const Candidate& file = candidates.front();
    for (const Candidate& other : candidates)
        if (other.soundItems > file.soundItems)
            Say(Quoted(file.path) + " is whole; " + Quoted(other.path) + " has " + Counted(other.soundItems - file.soundItems, "more item")
                + ", and vx3 lib recover takes it if it is named too");
}

// There is nothing to put in place of the file.
int LeaveAsItIs(const std::vector<Candidate>& candidates, const Candidate* best)
{
    const Candidate& file = candidates.front();
    if (!best && file.quality == Quality::Missing)
        return FailWith({ Exit::NotFound, Quoted(file.path) + ": not found, nor anything to recover it from" });
    if (!best)
        return FailWith({ file.failure.exit, file.failure.sentence + ", and there is nothing to recover it from" });
    if (!file.IsSound())
        return FailWith({ Exit::Damaged, Quoted(file.path) + " is damaged, and nothing beside it is better" });
    TellOfMore(candidates);
    return static_cast<int>(Exit::Done);
}

int PutInPlace(const Command& command, const Candidate& file, const Candidate& best)
{
    if (!command.Has(Option::Yes))
        return FailWith(
            { Exit::Refused, Quoted(best.path) + " can take the place of " + Quoted(file.path) + "; with --yes it is put there" });
    std::string kept;
    if (Failure failure = ReplaceLibrary(best.path, file.path, kept))
        return FailWith(failure);
    Say(Quoted(file.path) + " is recovered from " + Quoted(best.path) + (kept.empty() ? "" : "; what was there is " + Quoted(kept)));
    return static_cast<int>(Exit::Done);
}

} // namespace

int RunLibRecover(const Command& command)
{
    const std::string& path = LibraryPath(command);
    constexpr size_t sourceArgument = 2;
    bool isNamed = command.arguments.size() > sourceArgument;
    std::vector<Candidate> candidates = { Examine(path) };
    if (isNamed)
        candidates.push_back(Examine(command.arguments[sourceArgument]));
    else
        for (const char* suffix : { ".bak", ".new" })
            candidates.push_back(Examine(path + suffix));
    if (IsInterrupted())
        return FailWith({ Exit::Cancelled, "cancelled" });
    const Candidate& file = candidates.front();
    // What is there and is no file, or may not be read, is not put aside.
    if (file.quality == Quality::Unusable && file.failure.exit != Exit::Damaged)
        return FailWith(file.failure);
    if (isNamed && !candidates.back().IsUsable())
        return FailWith(candidates.back().failure);
    const Candidate* best = isNamed ? &candidates.back() : FindBest(candidates);
    Tell(command, candidates, best);
    return !best || best == &file ? LeaveAsItIs(candidates, best) : PutInPlace(command, file, *best);
}

} // namespace vx3::console

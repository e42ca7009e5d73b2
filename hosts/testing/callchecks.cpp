#include "callchecks.h"

#include <algorithm>
#include <initializer_list>

#include "layer.h"
#include "vx3/entry.h"

namespace vx3::testing {

namespace {

constexpr std::size_t maximalViolations = 1000; // a storm need not fill the memory

bool IsOneOf(int64_t value, std::initializer_list<int64_t> allowed)
{
    return std::find(allowed.begin(), allowed.end(), value) != allowed.end();
}

bool IsAllowed(Choice choice, int64_t value)
{
    constexpr int64_t bestPackLevel = 9;
    constexpr int64_t onlyDepth = 24;
    constexpr int64_t walkBits = VX3_WALK_HIDDEN | VX3_WALK_READONLY;
    constexpr int64_t classifyBits = VX3_CLASSIFY_FOREIGN_SCENES | VX3_CLASSIFY_HEADER_ONLY;
    switch (choice) {
    case Choice::Encoding: return IsOneOf(value, { VX3_ENCODING_PLAIN, VX3_ENCODING_UTF8 });
    case Choice::OpenMode: return IsOneOf(value, { VX3_OPEN_UPDATE, VX3_OPEN_READ, VX3_OPEN_CREATE });
    case Choice::ByteOrder: return IsOneOf(value, { VX3_ORDER_BIG, VX3_ORDER_LITTLE });
    case Choice::SeekOrigin: return IsOneOf(value, { VX3_SEEK_ABSOLUTE, VX3_SEEK_RELATIVE });
    case Choice::DateKind: return IsOneOf(value, { VX3_DATE_CREATED, VX3_DATE_MODIFIED });
    case Choice::DataMode: return IsOneOf(value, { VX3_DATA_READ, VX3_DATA_WRITE });
    case Choice::WalkBits: return (value & ~walkBits) == 0;
    case Choice::Priority: return IsOneOf(value, { VX3_PRIORITY_NORMAL, VX3_PRIORITY_BACKGROUND });
    case Choice::Question: return value >= VX3_EDITION_EXCLUDED && value <= VX3_EDITION_LIBRARIES_FIXED;
    case Choice::FolderNumber: return IsOneOf(value, { VX3_FOLDER_PREFERENCES, VX3_FOLDER_APPLICATION_LIBRARY, VX3_FOLDER_USER_LIBRARY });
    case Choice::PlaceNumber: return IsOneOf(value, { VX3_PLACE_STARTUP, VX3_PLACE_TEMPORARY, VX3_PLACE_HOME, VX3_PLACE_DESKTOP });
    case Choice::ImageFormat: return IsOneOf(value, { VX3_FORMAT_LOSSLESS, VX3_FORMAT_JPEG, VX3_FORMAT_PNG });
    case Choice::PackLevel: return value >= 1 && value <= bestPackLevel;
    case Choice::Depth: return value == onlyDepth;
    case Choice::ClassifyBits: return (value & ~classifyBits) == 0;
    }
    return false;
}

// The count that belongs to a buffer is the next one behind it.
bool CountBehindIsZero(const Rule& rule, const int64_t* words, std::size_t place)
{
    for (++place; place < maximalArguments; ++place) {
        const ArgKind kind = rule.args[place].kind;
        if (kind == ArgKind::Count || kind == ArgKind::CountOrAll)
            return words[place] == 0;
    }
    return false;
}

ObjectRegistry::Use UseOf(ArgKind kind)
{
    if (kind == ArgKind::Shares)
        return ObjectRegistry::Use::Share;
    return kind == ArgKind::Owns ? ObjectRegistry::Use::Own : ObjectRegistry::Use::Live;
}

bool IsObject(ArgKind kind)
{
    return kind >= ArgKind::Live && kind <= ArgKind::FreesOrNone;
}

bool IsLock(ArgKind kind)
{
    return kind >= ArgKind::Locks && kind <= ArgKind::Unlocks;
}

bool MayBeNone(ArgKind kind)
{
    return kind == ArgKind::LiveOrNone || kind == ArgKind::FreesOrNone;
}

bool IsPointer(ArgKind kind)
{
    return kind == ArgKind::NeverNone || kind == ArgKind::MakesBlock || kind == ArgKind::EmptiedText || kind == ArgKind::EmptiedPath
        || kind == ArgKind::EmptiedDate || kind == ArgKind::StopText;
}

std::string NumberOf(std::size_t place)
{
    return "argument " + std::to_string(place + 1);
}

std::string WordsOf(ObjectRegistry::Answer answer, Object kind)
{
    if (answer == ObjectRegistry::Answer::InUse)
        return std::string("the ") + NameOf(kind) + " is in another call";
    return std::string("the ") + NameOf(kind) + " was never given or is freed already";
}

// What is wrong with an argument that is neither an object nor a lock; empty if nothing.
std::string CheckPlain(const Rule& rule, const int64_t* words, std::size_t place)
{
    const Arg& arg = rule.args[place];
    const int64_t word = words[place];
    if (IsPointer(arg.kind) && word == 0)
        return NumberOf(place) + " is none";
    if (arg.kind == ArgKind::NoneIfEmpty && word == 0 && !CountBehindIsZero(rule, words, place))
        return NumberOf(place) + " is none";
    if (arg.kind == ArgKind::Count && word < 0)
        return NumberOf(place) + " is below 0";
    if (arg.kind == ArgKind::CountOrAll && word < -1)
        return NumberOf(place) + " is below -1";
    if (arg.kind == ArgKind::Rank && word < 1)
        return NumberOf(place) + " is no rank";
    if (arg.kind == ArgKind::Choice && !IsAllowed(static_cast<Choice>(arg.detail), word))
        return NumberOf(place) + " has the unknown value " + std::to_string(word);
    return {};
}

} // namespace

CallChecks& TheChecks()
{
    static CallChecks checks;
    return checks;
}

HeldLocks& LocksOfThisThread()
{
    static thread_local HeldLocks locks;
    return locks;
}

void CallChecks::Reset(Checks newDepth)
{
    objects.Clear();
    Violations(true);
    SetListener({});
    LocksOfThisThread().Clear();
    depth = newDepth;
    mainThread = std::this_thread::get_id();
    action.store(0);
    calls.store(0);
    window.store(Window::NotOpened);
}

void CallChecks::Violate(const char* function, const std::string& what)
{
    const std::string sentence = std::string(function) + ": " + what;
    std::function<void(const std::string&)> hear;
    {
        std::lock_guard guard(lock);
        if (violations.size() < maximalViolations)
            violations.push_back(sentence);
        hear = listener;
    }
    if (hear)
        hear(sentence);
}

std::vector<std::string> CallChecks::Violations(bool forget)
{
    std::lock_guard guard(lock);
    std::vector<std::string> copy = violations;
    if (forget)
        violations.clear();
    return copy;
}

void CallChecks::SetListener(std::function<void(const std::string&)> newListener)
{
    std::lock_guard guard(lock);
    listener = std::move(newListener);
}

bool CallChecks::CheckWindow(const Rule& rule)
{
    const Window now = window.load(std::memory_order_acquire);
    if (now == Window::Open)
        return true;
    Violate(rule.name, now == Window::NotOpened ? "called before the first entry call" : "called after the end");
    return false;
}

void CallChecks::CheckThread(const Rule& rule)
{
    if (rule.threads != Threads::GuiThread && rule.threads != Threads::StartEnd)
        return;
    if (std::this_thread::get_id() != mainThread)
        return Violate(rule.name, "called by another thread than the main one");
    const int32_t inside = action.load();
    if (rule.threads == Threads::StartEnd && inside != VX3_ACTION_START && inside != VX3_ACTION_END)
        Violate(rule.name, "called outside the actions 2 and 3");
}

std::string CallChecks::CheckHeld(const Rule& rule)
{
    const HeldLocks& held = LocksOfThisThread();
    if (rule.waits == Waits::MayBlock && held.Holds64Bit())
        return "may wait while a 64-bit lock is held";
    if (rule.waits == Waits::ForSeconds && held.Count() > 0)
        return "may take seconds while a lock is held";
    return {};
}

bool CallChecks::Begin(const Rule& rule, const int64_t* words)
{
    if (!CheckWindow(rule))
        return false;
    if (depth == Checks::Full)
        calls.fetch_add(1, std::memory_order_relaxed);
    CheckThread(rule);
    const std::string held = CheckHeld(rule);
    if (!held.empty())
        Violate(rule.name, held);
    const std::size_t arguments = CountArguments(rule);
    for (std::size_t place = 0; place < arguments; ++place) {
        if (CheckArgument(rule, words, place))
            continue;
        Release(rule, words, place);
        return false;
    }
    return true;
}

bool CallChecks::CheckArgument(const Rule& rule, const int64_t* words, std::size_t place)
{
    const Arg& arg = rule.args[place];
    if (IsObject(arg.kind))
        return CheckObject(rule, arg, words[place]);
    if (IsLock(arg.kind))
        return CheckLock(rule, words, arg);
    const std::string wrong = CheckPlain(rule, words, place);
    if (!wrong.empty())
        Violate(rule.name, wrong);
    else if (arg.kind == ArgKind::StopFile || arg.kind == ArgKind::StopText)
        ReportStop(rule, words);
    return wrong.empty();
}

bool CallChecks::CheckObject(const Rule& rule, const Arg& arg, int64_t word)
{
    const auto kind = static_cast<Object>(arg.detail);
    if (word == 0) {
        if (!MayBeNone(arg.kind))
            Violate(rule.name, std::string("the ") + NameOf(kind) + " is none");
        return MayBeNone(arg.kind);
    }
    if (depth == Checks::Light)
        return true;
    const bool frees = arg.kind == ArgKind::Frees || arg.kind == ArgKind::FreesOrNone;
    const void* object = PointerOf<void>(word);
    // A freed object leaves the list before the call: its address may be given anew at once.
    const ObjectRegistry::Answer answer = frees ? objects.Remove(object, kind) : objects.Begin(object, kind, UseOf(arg.kind));
    if (answer != ObjectRegistry::Answer::Fine)
        Violate(rule.name, WordsOf(answer, kind));
    return answer == ObjectRegistry::Answer::Fine;
}

bool CallChecks::CheckLock(const Rule& rule, const int64_t* words, const Arg& arg)
{
    const void* word = PointerOf<void>(words[0]);
    if (!word) {
        Violate(rule.name, NumberOf(0) + " is none");
        return false;
    }
    bool goesThrough = true;
    std::string wrong;
    const auto form = static_cast<LockForm>(arg.detail);
    if (arg.kind == ArgKind::Locks)
        wrong = LocksOfThisThread().BeforeLock(word, form, static_cast<int32_t>(words[1]), goesThrough);
    else if (arg.kind == ArgKind::Unlocks)
        wrong = LocksOfThisThread().BeforeUnlock(word, form, goesThrough);
    if (!wrong.empty())
        Violate(rule.name, wrong);
    return goesThrough;
}

void CallChecks::ReportStop(const Rule& rule, const int64_t* words)
{
    if (rule.args[0].kind == ArgKind::StopText)
        return Violate(rule.name, "the module reports an error inside");
    const char* file = PointerOf<const char>(words[0]);
    Violate(rule.name, std::string("the module stopped at ") + (file ? file : "?") + ":" + std::to_string(words[1]));
}

void CallChecks::End(const Rule& rule, const int64_t* words, int64_t result)
{
    const std::size_t arguments = CountArguments(rule);
    for (std::size_t place = 0; place < arguments; ++place)
        EndArgument(rule, words, place, result);
    Release(rule, words, arguments);
    if (rule.makes == Object::None || result == 0 || depth == Checks::Light)
        return;
    Origin origin{ nullptr, 0, rule.name, 0 };
    if (rule.makes == Object::Block)
        origin = { PointerOf<const char>(words[2]), static_cast<int32_t>(words[1]), rule.name, words[0] };
    objects.Add(PointerOf<void>(result), rule.makes, origin);
}

// What a call that went through has changed: locks taken, blocks given.
void CallChecks::EndArgument(const Rule& rule, const int64_t* words, std::size_t place, int64_t result)
{
    const Arg& arg = rule.args[place];
    const bool taken = arg.kind == ArgKind::Locks || (arg.kind == ArgKind::Tries && result != 0);
    if (taken)
        LocksOfThisThread().Taken(PointerOf<void>(words[0]), static_cast<LockForm>(arg.detail), static_cast<int32_t>(words[1]));
    if (arg.kind != ArgKind::MakesBlock || result == 0 || depth == Checks::Light)
        return;
    const void* block = *PointerOf<void*>(words[place]);
    const int64_t size = *PointerOf<int64_t>(words[place + 1]);
    if (block)
        objects.Add(block, Object::Block, { nullptr, 0, rule.name, size });
}

void CallChecks::Release(const Rule& rule, const int64_t* words, std::size_t arguments)
{
    if (depth == Checks::Light)
        return;
    for (std::size_t place = 0; place < arguments; ++place) {
        const ArgKind kind = rule.args[place].kind;
        if ((kind == ArgKind::Shares || kind == ArgKind::Owns) && words[place] != 0)
            objects.End(PointerOf<void>(words[place]), UseOf(kind));
    }
}

} // namespace vx3::testing

#include "faultplan.h"

#include <atomic>
#include <mutex>
#include <unordered_set>

#include "layer.h"

namespace vx3::testing {

namespace {

struct ClassPlan {
    std::atomic<int64_t> nth{ 0 }; // 0: no plan
    std::atomic<bool> fromThereOn{ false };
    std::atomic<Manner> manner{ Manner::Refused };
    std::atomic<int64_t> calls{ 0 };
    std::atomic<int64_t> failures{ 0 };
};

// Objects that met a failure and so fail later calls too.
class BrokenObjects
{
public:
    void Add(int64_t object)
    {
        std::lock_guard guard(lock);
        objects.insert(object);
        any.store(true);
    }
    bool Has(int64_t object) const
    {
        if (!any.load())
            return false;
        std::lock_guard guard(lock);
        return objects.count(object) > 0;
    }
    bool Remove(int64_t object)
    {
        if (!any.load())
            return false;
        std::lock_guard guard(lock);
        return objects.erase(object) > 0;
    }
    void Clear()
    {
        std::lock_guard guard(lock);
        objects.clear();
        any.store(false);
    }

private:
    std::atomic<bool> any{ false };
    mutable std::mutex lock;
    std::unordered_set<int64_t> objects; // under lock
};

ClassPlan plans[static_cast<std::size_t>(FailClass::Count)];
BrokenObjects broken;

ClassPlan& PlanOf(FailClass kind)
{
    return plans[static_cast<std::size_t>(kind)];
}

bool FailsNow(FailClass kind)
{
    if (kind == FailClass::Nothing)
        return false;
    ClassPlan& plan = PlanOf(kind);
    const int64_t call = plan.calls.fetch_add(1) + 1;
    const int64_t nth = plan.nth.load();
    const bool fails = nth > 0 && (call == nth || (call > nth && plan.fromThereOn.load()));
    if (fails)
        plan.failures.fetch_add(1);
    return fails;
}

constexpr bool CanBreak(const Rule& rule)
{
    const Arg& first = rule.args[0];
    const bool object = first.kind == ArgKind::Owns || first.kind == ArgKind::Frees || first.kind == ArgKind::FreesOrNone;
    const auto kind = static_cast<Object>(first.detail);
    return object && (kind == Object::BinaryFile || kind == Object::DataFile || kind == Object::FolderWalk);
}

constexpr bool Ends(const Rule& rule)
{
    return rule.stillCalled || rule.args[0].kind == ArgKind::Frees || rule.args[0].kind == ArgKind::FreesOrNone;
}

// Out arguments that a failed call leaves empty instead of as they were.
void EmptyArguments(const Rule& rule, const int64_t* words, const VX3Host& below)
{
    for (std::size_t place = 0; place < CountArguments(rule); ++place) {
        switch (rule.args[place].kind) {
        case ArgKind::EmptiedText: below.text->destruct(PointerOf<VX3String>(words[place])); break;
        case ArgKind::EmptiedPath: below.path->destruct(PointerOf<VX3Path>(words[place])); break;
        case ArgKind::EmptiedDate: *PointerOf<VX3FileDate>(words[place]) = {}; break;
        default: break;
        }
    }
}

enum class Outcome { Goes, Refused, Halfway, Done };

Outcome OutcomeOf(FailClass kind)
{
    switch (PlanOf(kind).manner.load()) {
    case Manner::Refused: return Outcome::Refused;
    case Manner::Halfway: return Outcome::Halfway;
    case Manner::Done: return Outcome::Done;
    }
    return Outcome::Refused;
}

int64_t Halve(int64_t (*read)(VX3BinaryFile*, void*, int64_t), VX3BinaryFile* file, void* bytes, int64_t length)
{
    return read(file, bytes, length / 2);
}

VX3Bool Halve(VX3Bool (*write)(VX3BinaryFile*, const void*, int64_t), VX3BinaryFile* file, const void* bytes, int64_t length)
{
    write(file, bytes, length / 2);
    return 0;
}

// What is to become of this call; notes what that breaks.
Outcome Decide(const Rule& rule, const int64_t* words, bool canBeHalved)
{
    const bool wasBroken = CanBreak(rule) && (Ends(rule) ? broken.Remove(words[0]) : broken.Has(words[0]));
    if (wasBroken)
        return Outcome::Refused;
    if (!FailsNow(rule.fails))
        return Outcome::Goes;
    const Outcome outcome = OutcomeOf(rule.fails);
    const bool isShortRead = rule.fails == FailClass::Read && outcome == Outcome::Halfway && canBeHalved;
    const bool breaks = rule.fails == FailClass::Read || rule.fails == FailClass::Write || rule.fails == FailClass::Seek
        || rule.fails == FailClass::NextEntry;
    if (breaks && !isShortRead && CanBreak(rule) && !Ends(rule))
        broken.Add(words[0]);
    return outcome;
}

struct FaultLayer {
    static constexpr bool Wants(const Rule& rule) { return rule.fails != FailClass::Nothing || CanBreak(rule); }

    template <class RowType, class Result, class... Args>
    static Result Pass(const Rule& rule, Result (*original)(Args...), Args... args)
    {
        const int64_t words[] = { WordOf(args)..., 0 };
        constexpr bool canBeHalved = requires
        {
            Halve(original, args...);
        };
        const Outcome outcome = Decide(rule, words, canBeHalved);
        if constexpr (std::is_void_v<Result>) {
            original(args...); // what frees always goes through
        } else {
            if (outcome == Outcome::Goes)
                return original(args...);
            if constexpr (canBeHalved)
                if (outcome == Outcome::Halfway)
                    return Halve(original, args...);
            if (rule.stillCalled || outcome == Outcome::Done)
                original(args...);
            EmptyArguments(rule, words, LayeredTable<FaultLayer>::below);
            return FailureOf<Result>(rule);
        }
    }
};

} // namespace

FaultPlan::FaultPlan(const VX3Host* base)
{
    Clear();
    LayeredTable<FaultLayer>::Wrap(base);
}

FaultPlan::~FaultPlan()
{
    Clear();
}

const VX3Host* FaultPlan::Table() const
{
    return &LayeredTable<FaultLayer>::table;
}

void FaultPlan::Fail(FailClass kind, int64_t nth, Failing failing, Manner manner)
{
    ClassPlan& plan = PlanOf(kind);
    plan.calls.store(0);
    plan.failures.store(0);
    plan.fromThereOn.store(failing == Failing::FromThereOn);
    plan.manner.store(manner);
    plan.nth.store(nth);
}

void FaultPlan::Clear()
{
    for (ClassPlan& plan : plans) {
        plan.nth.store(0);
        plan.calls.store(0);
        plan.failures.store(0);
    }
    broken.Clear();
}

int64_t FaultPlan::CallsOf(FailClass kind) const
{
    return PlanOf(kind).calls.load();
}

int64_t FaultPlan::FailuresOf(FailClass kind) const
{
    return PlanOf(kind).failures.load();
}

} // namespace vx3::testing

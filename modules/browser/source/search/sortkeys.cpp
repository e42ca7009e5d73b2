#include "search/sortkeys.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace browser {

namespace {

constexpr uint64_t signBit = uint64_t(1) << 63;
constexpr int32_t halfWord = 16; // bits of a field of a date
constexpr int32_t folderShift = 3 * halfWord;
constexpr int32_t mostUnits = 1024; // of a name; what stands behind is compared as text
constexpr size_t usualWords = 3;    // of a name
constexpr size_t fewItems = 6;      // are compared at once, rather than word by word

// Packs units into words that compare as the units do. A unit takes one to three bytes,
// so that a word holds eight letters; the last word ends with a zero byte.
class NamePacker
{
public:
    explicit NamePacker(Units units)
    {
        if (!PutAscii(units))
            for (VX3Unit unit : units)
                Put(unit);
        std::memset(bytes + length, 0, sizeof(uint64_t));
    }

    uint16_t WordCount() const { return static_cast<uint16_t>(length / sizeof(uint64_t) + 1); }
    uint64_t WordAt(size_t index) const
    {
        uint64_t word;
        std::memcpy(&word, bytes + index * sizeof word, sizeof word);
        return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
    }

private:
    // Most names. One pass without branches, which is wasted on the others.
    bool PutAscii(Units units)
    {
        uint32_t all = 0;
        for (size_t i = 0; i < units.size(); i++) {
            all |= units[i];
            bytes[i] = static_cast<uint8_t>(units[i]);
        }
        length = all < 0x80 ? units.size() : 0;
        return all < 0x80;
    }

    void Put(VX3Unit unit)
    {
        if (unit < 0x80) {
            bytes[length++] = static_cast<uint8_t>(unit);
            return;
        }
        if (unit < 0x800) {
            bytes[length++] = static_cast<uint8_t>(0xC0 | unit >> 6);
        } else {
            bytes[length++] = static_cast<uint8_t>(0xE0 | unit >> 12);
            bytes[length++] = static_cast<uint8_t>(0x80 | (unit >> 6 & 0x3F));
        }
        bytes[length++] = static_cast<uint8_t>(0x80 | (unit & 0x3F));
    }

    uint8_t bytes[mostUnits * 3 + sizeof(uint64_t)];
    size_t length = 0;
};

// Merges two sorted runs that lie behind each other. A merge sort takes any comparison,
// also one that changes its mind, without leaving the array.
template <class T, class IsBefore>
void MergeRuns(const T* from, size_t start, size_t middle, size_t end, T* to, IsBefore isBefore)
{
    size_t left = start, right = middle;
    for (size_t at = start; at < end; at++) {
        bool takeRight = left == middle || (right < end && isBefore(from[right], from[left]));
        to[at] = takeRight ? from[right++] : from[left++];
    }
}

void TakeDate(const FileDate& date, uint64_t (&lead)[SortKey::leads])
{
    lead[0] |= uint64_t(date.year) << 2 * halfWord | uint64_t(date.month) << halfWord | date.day;
    lead[1] = uint64_t(date.hour) << 2 * halfWord | uint64_t(date.minute) << halfWord | date.second;
}

// No step behind this one can tell two names apart.
bool IsLastWord(int32_t step, uint64_t value)
{
    return step >= SortKey::leads && (value & 0xFF) == 0;
}

} // namespace

SortPlan SortPlan::For(SortMode mode, bool foldersFirst)
{
    SortPlan plan;
    switch (mode) {
    case SortMode::Modified:
    case SortMode::Created:
        plan.foldersFirst = foldersFirst;
        plan.byDate = true;
        plan.dateKind = mode == SortMode::Modified ? DateKind::Modified : DateKind::Created;
        plan.byUrl = true;
        break;
    case SortMode::Size: // Kept: folders stand among the empty files, whatever is preferred.
        plan.bySize = true;
        plan.byUrl = true;
        break;
    case SortMode::Type: // Kept: folders first, whatever is preferred.
        plan.foldersFirst = true;
        plan.byType = true;
        plan.byUrl = true;
        break;
    default: plan.foldersFirst = foldersFirst; plan.byUrl = foldersFirst; // Kept: without folders first equal names stay as they fall.
    }
    return plan;
}

bool SortKeys::Take(NodeRef first)
{
    if (!CollectSiblings(std::move(first), nodes))
        return false;
    const size_t count = nodes.Count();
    if (!keys.Reserve(count) || !order.Reserve(count) || !words.Reserve(count * usualWords))
        return false;
    for (uint32_t at = 0; at < count; at++)
        if (!TakeOne(at))
            return false;
    return RankTypes();
}

bool SortKeys::TakeOne(uint32_t at)
{
    SortKey key;
    int64_t size = 0;
    BrowserContentNode& node = NodeAt(at);
    DoubtUnlessNoted(node);
    uint32_t holds = node.GetAttributes(&size) & Attribute::canHoldChildren;
    key.canHoldChildren = holds != 0;
    if (plan.foldersFirst)
        key.lead[0] = uint64_t(Attribute::canHoldChildren - holds) << folderShift;
    if (plan.bySize)
        key.lead[0] = static_cast<uint64_t>(size) ^ signBit;
    FileDate date = {};
    if (plan.byDate && node.GetDate(plan.dateKind, date))
        TakeDate(date, key.lead);
    if (!TakeName(node, key) || (plan.byType && !holds && !TakeType(node, key)))
        return false;
    return order.Append({ 0, at, key.nameAt }) && keys.Append(key);
}

bool SortKeys::TakeName(BrowserContentNode& node, SortKey& key)
{
    String name;
    VX3Unit units[mostUnits];
    node.GetName(name);
    DoubtIfEmpty(name);
    int32_t count = std::min(host->text->orderKey(name.Value(), units, mostUnits), mostUnits);
    const NamePacker packed({ units, static_cast<size_t>(count) });
    key.nameAt = static_cast<uint32_t>(words.Count());
    key.nameWords = packed.WordCount();
    uint64_t* own = words.Extend(key.nameWords);
    for (size_t i = 0; own && i < key.nameWords; i++)
        own[i] = packed.WordAt(i);
    return own != nullptr;
}

// Few kinds stand in one folder, so their texts are ranked and not the nodes.
bool SortKeys::TakeType(BrowserContentNode& node, SortKey& key)
{
    String type;
    node.GetTypeName(type, TypeDetail::Specific);
    DoubtIfEmpty(type);
    const String* known = std::find(types.begin(), types.end(), type);
    key.lead[1] = static_cast<uint64_t>(known - types.begin());
    return known != types.end() || types.Append(std::move(type));
}

// Puts the place of each type among the others where its number is.
bool SortKeys::RankTypes()
{
    Array<uint64_t> ranks;
    if (types.IsEmpty())
        return true;
    if (!ranks.Extend(types.Count()))
        return false;
    for (size_t i = 0; i < types.Count(); i++)
        for (const String& other : types)
            ranks[i] += other.Order(types[i]) < 0;
    for (SortKey& key : keys)
        if (!key.canHoldChildren)
            key.lead[1] = ranks[key.lead[1]];
    return true;
}

bool SortKeys::Sort()
{
    SortFrom(order.begin(), order.end(), 0);
    return isComplete;
}

// Sorts by one number of each key; what ties there is sorted by the next one.
void SortKeys::SortFrom(Item* from, Item* to, int32_t step)
{
    for (; LoadValues(from, to, step); step++)
        if (to - from < 2 || IsLastWord(step, from->value))
            return SortTies(from, to);
    std::sort(from, to, [](const Item& a, const Item& b) { return a.value < b.value; });
    const bool namesAreNext = step + 1 >= SortKey::leads;
    for (Item* end = from; from != to; from = end) {
        while (end != to && end->value == from->value)
            end++;
        if (IsLastWord(step, from->value) || (namesAreNext && static_cast<size_t>(end - from) <= fewItems))
            SortTies(from, end);
        else
            SortFrom(from, end, step + 1);
    }
}

// True if all are equal.
bool SortKeys::LoadValues(Item* from, Item* to, int32_t step)
{
    bool same = true;
    for (Item* item = from; item != to; item++) {
        item->value = step < SortKey::leads ? keys[item->at].lead[step] : words[item->word++];
        same = same && item->value == from->value;
    }
    return same;
}

// For those that nothing but names and URLs can tell apart.
void SortKeys::SortTies(Item* from, Item* to)
{
    const auto count = static_cast<size_t>(to - from);
    Item few[fewItems];
    if (count > fewItems && count > spare.Count() && !spare.Extend(count - spare.Count())) {
        isComplete = false;
        return;
    }
    auto isBefore = [this](const Item& a, const Item& b) { return Compare(a.at, b.at) < 0; };
    Item* run = from;
    Item* merged = count > fewItems ? spare.begin() : few;
    for (size_t width = 1; width < count; width *= 2) {
        for (size_t start = 0; start < count; start += 2 * width)
            MergeRuns(run, start, std::min(start + width, count), std::min(start + 2 * width, count), merged, isBefore);
        std::swap(run, merged);
    }
    if (run != from)
        std::copy_n(run, count, from);
}

int32_t SortKeys::Compare(uint32_t a, uint32_t b) const
{
    int32_t result = CompareNames(a, b);
    if (!result && plan.byUrl && !(plan.byType && keys[a].canHoldChildren))
        result = CompareUrls(NodeAt(a), NodeAt(b));
    return result;
}

int32_t SortKeys::CompareNames(uint32_t a, uint32_t b) const
{
    const SortKey &own = keys[a], &other = keys[b];
    for (uint32_t i = 0; i < std::min(own.nameWords, other.nameWords); i++) {
        const uint64_t ownWord = words[own.nameAt + i], otherWord = words[other.nameAt + i];
        if (ownWord != otherWord)
            return ownWord < otherWord ? -1 : 1;
    }
    if (own.nameWords != other.nameWords)
        return own.nameWords < other.nameWords ? -1 : 1;
    String ownName, otherName;
    NodeAt(a).GetName(ownName);
    NodeAt(b).GetName(otherName);
    DoubtIfEmpty(ownName);
    DoubtIfEmpty(otherName);
    return ownName.Order(otherName);
}

} // namespace browser

#include "search/sortkeys.h"

#include <algorithm>
#include <cstring>

namespace browser {

namespace {

int32_t CompareSizes(int64_t a, int64_t b)
{
    return a < b ? -1 : a > b;
}

// Up to eight bytes as a number that compares as they do.
uint64_t PieceOf(const uint8_t* bytes, size_t length)
{
    uint64_t piece = 0;
    for (size_t i = 0; i < sizeof piece; i++)
        piece = piece << 8 | (i < length ? bytes[i] : 0);
    return piece;
}

int32_t CompareUrls(BrowserContentNode* a, BrowserContentNode* b)
{
    BrowserURL urlA, urlB;
    a->GetUrl(urlA, 0);
    b->GetUrl(urlB, 0);
    return urlA.GetText().Order(urlB.GetText());
}

// Merges two sorted runs that lie behind each other. A merge sort takes any comparison,
// also one that changes its mind, without leaving the array.
template <class IsBefore>
void MergeRuns(const uint32_t* from, size_t start, size_t middle, size_t end, uint32_t* to, IsBefore isBefore)
{
    size_t left = start, right = middle;
    for (size_t at = start; at < end; at++) {
        bool takeRight = left == middle || (right < end && isBefore(from[right], from[left]));
        to[at] = takeRight ? from[right++] : from[left++];
    }
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
    Array<NodeRef> siblings;
    if (!CollectSiblings(std::move(first), siblings))
        return false;
    for (NodeRef& node : siblings)
        if (!TakeOne(std::move(node)))
            return false;
    RankTypes();
    FindNamePieces();
    return true;
}

bool SortKeys::TakeOne(NodeRef node)
{
    SortKey key;
    BrowserContentNode* content = ContentOf(node);
    uint32_t attributes = content->GetAttributes(&key.size);
    key.folderRank = static_cast<int32_t>(attributes & Attribute::canHoldChildren);
    if (plan.byDate)
        (void)content->GetDate(plan.dateKind, key.date);
    content->GetName(key.name);
    key.node = std::move(node);
    if (!TakeName(key) || (plan.byType && !key.folderRank && !TakeType(key)))
        return false;
    return order.Append(static_cast<uint32_t>(keys.Count())) && keys.Append(std::move(key));
}

bool SortKeys::TakeName(SortKey& key)
{
    constexpr int32_t mostUnits = 1024;
    VX3Unit units[mostUnits];
    int32_t count = std::min(host->text->orderKey(key.name.Value(), units, mostUnits), mostUnits);
    key.nameAt = static_cast<uint32_t>(nameBytes.Count());
    key.nameLength = static_cast<uint32_t>(count) * sizeof(VX3Unit);
    uint8_t* bytes = count ? nameBytes.Extend(key.nameLength) : nullptr;
    if (count && !bytes)
        return false;
    for (int32_t i = 0; i < count; i++) {
        bytes[2 * i] = static_cast<uint8_t>(units[i] >> 8);
        bytes[2 * i + 1] = static_cast<uint8_t>(units[i]);
    }
    return true;
}

// Few kinds stand in one folder, so their texts are ranked and not the nodes.
bool SortKeys::TakeType(SortKey& key)
{
    String type;
    ContentOf(key.node)->GetTypeName(type, TypeDetail::Specific);
    const String* known = std::find(types.begin(), types.end(), type);
    key.typeRank = static_cast<int32_t>(known - types.begin());
    return known != types.end() || types.Append(std::move(type));
}

void SortKeys::RankTypes()
{
    if (!plan.byType)
        return;
    for (SortKey& key : keys) {
        const String* own = key.folderRank ? nullptr : &types[static_cast<size_t>(key.typeRank)];
        key.typeRank = 0;
        for (const String& other : types)
            key.typeRank += own && other.Order(*own) < 0;
    }
}

// Most names of one folder begin alike; what stands behind that decides most comparisons.
void SortKeys::FindNamePieces()
{
    if (keys.IsEmpty())
        return;
    const uint8_t* all = nameBytes.begin();
    size_t shared = keys[0].nameLength;
    for (const SortKey& key : keys) {
        const uint8_t* first = all + keys[0].nameAt;
        const uint8_t* own = all + key.nameAt;
        shared = std::min<size_t>(shared, key.nameLength);
        shared = static_cast<size_t>(std::mismatch(first, first + shared, own).first - first);
    }
    for (SortKey& key : keys)
        key.namePiece = PieceOf(all + key.nameAt + shared, key.nameLength - shared);
}

int32_t SortKeys::CompareNames(const SortKey& a, const SortKey& b) const
{
    if (a.namePiece != b.namePiece)
        return a.namePiece < b.namePiece ? -1 : 1;
    const uint8_t* all = nameBytes.begin();
    int difference = std::memcmp(all + a.nameAt, all + b.nameAt, std::min(a.nameLength, b.nameLength));
    if (difference)
        return difference;
    if (a.nameLength != b.nameLength)
        return a.nameLength < b.nameLength ? -1 : 1;
    return a.name.Order(b.name);
}

int32_t SortKeys::Compare(const SortKey& a, const SortKey& b) const
{
    int32_t result = plan.foldersFirst ? b.folderRank - a.folderRank : 0;
    if (!result && plan.byDate)
        result = CompareDates(a.date, b.date);
    if (!result && plan.bySize)
        result = CompareSizes(a.size, b.size);
    if (!result && plan.byType)
        result = a.typeRank - b.typeRank;
    if (!result)
        result = CompareNames(a, b);
    if (!result && plan.byUrl && !(plan.byType && a.folderRank))
        result = CompareUrls(ContentOf(a.node), ContentOf(b.node));
    return result;
}

bool SortKeys::Sort()
{
    const size_t count = order.Count();
    Array<uint32_t> other;
    if (count && !other.Extend(count))
        return false;
    auto isBefore = [this](uint32_t a, uint32_t b) { return Compare(keys[a], keys[b]) < 0; };
    uint32_t* from = order.begin();
    uint32_t* to = other.begin();
    for (size_t width = 1; width < count; width *= 2) {
        for (size_t start = 0; start < count; start += 2 * width)
            MergeRuns(from, start, std::min(start + width, count), std::min(start + 2 * width, count), to, isBefore);
        std::swap(from, to);
    }
    if (from != order.begin())
        std::copy_n(from, count, order.begin());
    return true;
}

} // namespace browser

#include "core/values.h"
#include "groups.h"
#include "model/crc32.h"

namespace vx3::bench {

namespace {

constexpr int repeats = 9;
constexpr size_t blockBytes = 16 << 20;
constexpr size_t urlUnits = 70;
constexpr size_t urlCount = 1000;
constexpr int batches = 100; // for one sample

uint32_t sink = 0; // what is not used would not be computed

double CrcTime(const std::vector<uint8_t>& block)
{
    Samples times;
    for (int i = 0; i < repeats; i++) {
        double start = NowSeconds();
        sink ^= browser::ContinueCrc(browser::crcStart, block.data(), block.size());
        times.Add((NowSeconds() - start) / static_cast<double>(block.size()));
    }
    return times.Median();
}

std::vector<browser::String> MakeUrls()
{
    std::vector<browser::String> urls;
    for (size_t i = 0; i < urlCount; i++) {
        std::string text = "preset://Studio.libvx/Materials/Wood/Oak Plank " + std::to_string(i);
        text.resize(urlUnits, 'x');
        urls.emplace_back(text.c_str());
    }
    return urls;
}

// Each URL is new, since a URL keeps the hash that it was once asked for.
double HashTime(const std::vector<browser::String>& texts)
{
    Samples times;
    for (int i = 0; i < repeats; i++) {
        double taken = 0;
        for (int batch = 0; batch < batches; batch++) {
            std::vector<browser::BrowserURL> urls(texts.begin(), texts.end());
            double start = NowSeconds();
            for (browser::BrowserURL& url : urls)
                sink ^= url.GetHash();
            taken += NowSeconds() - start;
        }
        times.Add(taken / static_cast<double>(batches * texts.size()));
    }
    return times.Median();
}

} // namespace

void MeasureIndex()
{
    std::vector<uint8_t> block(blockBytes);
    uint64_t random = 7;
    for (uint8_t& byte : block)
        byte = static_cast<uint8_t>(NextRandom(&random));
    PrintCase("crc_ns_per_byte", CrcTime(block) * nanosecond, "ns/B");
    PrintCase("hash_url_ns", HashTime(MakeUrls()) * nanosecond, "ns");
    MeasureHashIndex();
    std::fprintf(stderr, sink ? "" : "the hashes cancel out\n");
}

} // namespace vx3::bench

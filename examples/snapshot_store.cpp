// A key-value store with a snapshot per batch of writes.
//
// The store is a map from text keys to values for lookups and a tree of the
// same pairs for reads in key order. After each batch the store is copied as
// a snapshot (one count per container); readers then read old snapshots
// while writes go on, diffs tell what a batch or a span of batches changed,
// and cow_Footprint tells what all snapshots cost together. The peer keeps
// std::map deep copies (every 10th snapshot, scaled).
//
// snapshot_store [batches [writes per batch]]   (1,000 batches of 100 by default)

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "zorvancow/zorvancow.h"

namespace {
using Clock = std::chrono::steady_clock;
double Seconds(Clock::time_point since) { return std::chrono::duration<double>(Clock::now() - since).count(); }

// Keys are 16-digit hex ids (a hash of a number). The map branches on the
// lowest bit of one byte per level, so keys such as "user:12345", whose
// bytes mostly agree in that bit, would line up on long paths; ids like
// these spread.
constexpr int kKeys = 100000;
std::string KeyText(unsigned k) {
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(k) * 0x9E3779B97F4A7C15ull);
    return text;
}

struct Store {
    cow_Map<cow_String, int> values;  // lookups by key
    cow_Btree<cow_String, int> ordered;  // the same pairs, in key order
};

// A write: most set a key's value, one in eight removes the key.
struct Write {
    unsigned key;
    int value;
    bool remove;
};

std::vector<Write> Writes(int count) {
    std::mt19937 random(7);
    std::vector<Write> writes;
    for (int i = 0; i < count; ++i) {
        // Skewed: a tenth of the keys take half the writes.
        unsigned const key = random() % 2 == 0 ? random() % (kKeys / 10) : random() % kKeys;
        writes.push_back({key, static_cast<int>(random() % 1000), random() % 8 == 0});
    }
    return writes;
}
}  // namespace

int main(int argc, char** argv) {
    int const batches = argc > 1 ? std::atoi(argv[1]) : 1000;
    int const perBatch = argc > 2 ? std::atoi(argv[2]) : 100;
    if (batches < 2 || perBatch < 1) return std::fprintf(stderr, "snapshot_store: give 2 batches or more\n"), 1;
    std::vector<Write> const writes = Writes(batches * perBatch);

    // The store, with a snapshot after each batch.
    Clock::time_point start = Clock::now();
    Store store;
    std::vector<cow_Map<cow_String, int>> mapSnapshots;
    std::vector<cow_Btree<cow_String, int>> treeSnapshots;
    for (int b = 0; b < batches; ++b) {
        for (int w = b * perBatch; w < (b + 1) * perBatch; ++w) {
            cow_String const key(KeyText(writes[static_cast<std::size_t>(w)].key).c_str());
            if (writes[static_cast<std::size_t>(w)].remove) {
                store.values.Remove(key);
                store.ordered.Remove(key);
            } else {
                store.values.insert_or_assign(key, writes[static_cast<std::size_t>(w)].value);
                store.ordered.insert_or_assign(key, writes[static_cast<std::size_t>(w)].value);
            }
        }
        mapSnapshots.push_back(store.values);
        treeSnapshots.push_back(store.ordered);
    }
    double const written = Seconds(start);
    std::printf("snapshot_store: %d batches of %d writes, %d keys at the end\n", batches, perBatch, store.values.GetCount());
    std::printf("cow_Map + cow_Btree: writes with a snapshot per batch %.3f s\n", written);

    // Readers on old snapshots: random keys in random snapshots.
    start = Clock::now();
    std::mt19937 random(9);
    long found = 0;
    int const reads = 100000;
    for (int r = 0; r < reads; ++r) {
        std::size_t const s = random() % mapSnapshots.size();
        cow_String const key(KeyText(random() % kKeys).c_str());
        found += mapSnapshots[s].IsMember(key) && treeSnapshots[s].ConstGet(key) == mapSnapshots[s].ConstGet(key);
    }
    std::printf("  %d reads on old snapshots: %.3f s, %ld keys found (map and tree agree on each)\n", reads, Seconds(start),
                found);

    // What the last batch changed, and what the second half of the run did.
    auto diff = [](auto const& a, auto const& b, long& added, long& removed, long& changed) {
        cow_Diff(a, b, [&added](auto const&, int) { ++added; }, [&removed](auto const&, int) { ++removed; },
                 [&changed](auto const&, int, int) { ++changed; });
    };
    std::size_t const last = mapSnapshots.size() - 1, middle = mapSnapshots.size() / 2;
    for (std::size_t from : {last - 1, middle}) {
        long added = 0, removed = 0, changed = 0;
        start = Clock::now();
        diff(mapSnapshots[from], mapSnapshots[last], added, removed, changed);
        double const mapTime = Seconds(start);
        long treeAdded = 0, treeRemoved = 0, treeChanged = 0;
        start = Clock::now();
        diff(treeSnapshots[from], treeSnapshots[last], treeAdded, treeRemoved, treeChanged);
        double const treeTime = Seconds(start);
        std::printf("  diff of snapshots %zu and %zu: %ld added, %ld removed, %ld changed; map %.1f us, tree %.1f us%s\n",
                    from, last, added, removed, changed, mapTime * 1e6, treeTime * 1e6,
                    added == treeAdded && removed == treeRemoved && changed == treeChanged ? "" : " (MISMATCH)");
    }

    // What all snapshots cost together.
    start = Clock::now();
    cow_FootprintBytes const maps = cow_Footprint(mapSnapshots.begin(), mapSnapshots.end());
    cow_FootprintBytes const trees = cow_Footprint(treeSnapshots.begin(), treeSnapshots.end());
    double const measured = Seconds(start);
    double const perSnapshot = static_cast<double>(maps.bytes + trees.bytes) / static_cast<double>(batches);
    std::printf("  footprint of %d snapshots: map %.1f MB, tree %.1f MB, %.0f bytes per snapshot, measured in %.3f s\n",
                batches, static_cast<double>(maps.bytes) / 1e6, static_cast<double>(trees.bytes) / 1e6, perSnapshot,
                measured);

    // The peer: std::map deep copies, every 10th snapshot kept, scaled.
    start = Clock::now();
    std::map<std::string, int> peer;
    std::vector<std::map<std::string, int>> copies;
    double copying = 0;
    for (int b = 0; b < batches; ++b) {
        for (int w = b * perBatch; w < (b + 1) * perBatch; ++w) {
            Write const& write = writes[static_cast<std::size_t>(w)];
            if (write.remove) peer.erase(KeyText(write.key));
            else peer[KeyText(write.key)] = write.value;
        }
        if (b % 10 == 0) {
            Clock::time_point const copyStart = Clock::now();
            copies.push_back(peer);
            copying += Seconds(copyStart);
        }
    }
    double const peerWrites = Seconds(start) - copying;
    // A node of a std::map: three links and a colour (32 bytes) and the pair,
    // and the key's text where it does not fit in the string itself.
    std::size_t bytes = 0;
    for (auto const& copy : copies) {
        for (auto const& entry : copy) {
            bytes += 32 + sizeof(entry);
            if (entry.first.capacity() > std::string().capacity()) bytes += entry.first.capacity() + 1;
        }
    }
    double const peerPerSnapshot = static_cast<double>(bytes) / static_cast<double>(copies.size());
    std::printf("std::map copies: writes %.3f s + copies %.3f s x 10 = %.3f s for every snapshot\n", peerWrites, copying,
                peerWrites + copying * 10);
    std::printf("  %.0f bytes per snapshot (from %zu kept copies), %.0fx the cow_Map history (one container, not two)\n",
                peerPerSnapshot, copies.size(), peerPerSnapshot / (static_cast<double>(maps.bytes) / batches));
    return 0;
}

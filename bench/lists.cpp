// The lists beside std::vector and std::deque, and beside Qt 5's implicitly
// shared QVector and QList when the bench is built with Qt: copying, the
// first write through a copy, filling, random reads, queue use, sorting and
// search, 1,000,000 ints each. Qt's containers copy by one count increment,
// and the first write through a copy detaches, copying every element.

#include <malloc.h>

#include <algorithm>
#include <cstring>

#include "BenchPeers.h"
#include "zorvanmem/mem_Heap.h"

namespace {

constexpr int kCount = 1000000;

// Every container is filled the way a user fills it, one element at a time
// from empty, so the lists have their default blocks of 16 elements.
template <class C>
C const& Full() {
    return Counting<C, kCount>();
}

std::vector<int> const& RandomIndices() {
    return Once([] {
        std::vector<int> made = MakeRandomInts(7, kCount);
        for (int& i : made) i = static_cast<int>(static_cast<unsigned>(i) % kCount);
        return made;
    });
}

std::vector<int> const& RandomValues() {
    return Once([] { return MakeRandomInts(11, kCount); });
}

// --- what the layout itself costs
//
// A list grown one element at a time holds its million ints in 62,500 blocks
// of 16, each two heap objects (the counted block and its element run), and
// reaches them through a table of 62,500 slots. These cases do only the work
// that layout forces, on blocks made the same way, so that the table can show
// how much of each list case is the layout and how much is the list's code.

constexpr int kBlocks = kCount / 16;
typedef cow_1DArrayBlock<int> Block;

// Fill: making (and finally freeing) every block, and growing the table by
// 16 slots at a time; no element is written.
void FillFloor(benchmark::State& state) {
    for (auto _ : state) {
        Block** table = nullptr;
        int capacity = 0;
        for (int s = 0; s < kBlocks; ++s) {
            if (s == capacity) {
                capacity += 16;
                table = static_cast<Block**>(mem_Realloc(table, sizeof(Block*) * static_cast<std::size_t>(capacity)));
            }
            table[s] = new Block(16);
        }
        benchmark::DoNotOptimize(table);
        for (int s = 0; s < kBlocks; ++s) delete table[s];
        mem_Free(table);
    }
}

struct Blocks {
    std::vector<Block*> table;
    Blocks() : table(kBlocks) {
        for (int s = 0; s < kBlocks; ++s) {
            table[s] = new Block(16);
            for (int o = 0; o < 16; ++o) table[s]->GetData()[o] = s * 16 + o;
        }
    }
    ~Blocks() {
        for (Block* block : table) delete block;
    }
};

// Copy, write one, destroy: the copy of the table's pointers, one pass that
// counts the new table as a holder of every block, one block copy, and one
// pass that lowers every count again when the copy goes.
void CopyWriteDestroyFloor(benchmark::State& state) {
    Blocks blocks;
    std::size_t const bytes = sizeof(Block*) * static_cast<std::size_t>(kBlocks + 16);
    for (auto _ : state) {
        auto** table = static_cast<Block**>(mem_Malloc(bytes));
        std::memcpy(static_cast<void*>(table), blocks.table.data(), sizeof(Block*) * kBlocks);
        for (int s = 0; s < kBlocks; ++s) table[s]->Increment();
        Block* written = table[kBlocks / 2];
        written->Decrement();
        table[kBlocks / 2] = new Block(16, written->GetData());
        table[kBlocks / 2]->GetData()[0] = -1;
        benchmark::DoNotOptimize(table);
        for (int s = 0; s < kBlocks; ++s) {
            if (table[s]->Decrement()) delete table[s];
        }
        mem_Free(table);
    }
}

// Random reads: the slot, then the block, then the element, each a load that
// needs the one before.
void RandomReadFloor(benchmark::State& state) {
    Blocks blocks;
    Block* const* table = blocks.table.data();
    std::vector<int> const& indices = RandomIndices();
    for (auto _ : state) {
        long sum = 0;
        for (int i : indices) sum += table[i >> 4]->GetData()[i & 15];
        benchmark::DoNotOptimize(sum);
    }
}

// --- versions: the default list beside lists made with a block length

// Lists made with blocks of 1,024 and with balanced blocks (about 512 at a
// million elements); everything else is cow_List's own.
struct List1024 : cow_List<int> {
    List1024() : cow_List<int>(cow_BlockLength(1024)) {}
};
struct ListBalanced : cow_List<int> {
    ListBalanced() : cow_List<int>(cow_BlockLength::Balanced()) {}
};

// Heap bytes in use, mapped chunks included.
std::size_t HeapInUse() {
    struct mallinfo2 const info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// What one version costs: `versions` versions of a full container, each
// made from the one before by 10 writes at random indices and all kept;
// heap bytes in use after, less before, per version, as the counter
// bytes_per_version. A deep-copying peer needs only a few versions to show
// its cost.
template <class C>
auto BytesPerVersionCase(int versions) {
    return [versions](benchmark::State& state) {
        std::vector<int> const& where = RandomIndices();
        double perVersion = 0;
        for (auto _ : state) {
            std::vector<C> kept;
            kept.reserve(static_cast<std::size_t>(versions) + 1);
            kept.push_back(Full<C>());
            std::size_t const before = HeapInUse();
            for (int v = 0; v < versions; ++v) {
                kept.push_back(kept.back());
                for (int w = 0; w < 10; ++w) peer::Write(kept.back(), where[static_cast<std::size_t>(v * 10 + w)]) = v;
            }
            perVersion = static_cast<double>(HeapInUse() - before) / versions;
            benchmark::DoNotOptimize(kept.data());
        }
        state.counters["bytes_per_version"] = perVersion;
    };
}

// Fills a new container with n elements, taking a snapshot (a copy, held
// until the next one) every `every` appends: each snapshot makes the next
// append unshare what the copy shares.
template <class C>
auto SnapshotFillCase(int n, int every) {
    return [n, every](benchmark::State& state) {
        for (auto _ : state) {
            C c;
            C snapshot;
            for (int i = 0; i < n; ++i) {
                peer::Append(c, i);
                if ((i + 1) % every == 0) snapshot = c;
            }
            benchmark::DoNotOptimize(c);
            benchmark::DoNotOptimize(snapshot);
        }
    };
}

using List = cow_List<int>;
using ArrayList = cow_1DArrayList<int>;
using Vector = std::vector<int>;
auto const kMs = benchmark::kMillisecond;
auto const kUs = benchmark::kMicrosecond;

int const rows = [] {
    // Copy a 1,000,000-element list and let the copy go.
    Row("BM_CopyDestroy_CowList", CopyCase(Full<List>, -1));
    Row("BM_CopyDestroy_Cow1DArrayList", CopyCase(Full<ArrayList>, -1));
    Row("BM_CopyDestroy_StdVector", CopyCase(Full<Vector>, -1))->Unit(kUs);
    // Copy, write one element in the middle through the copy, let it go; the
    // bare array is grown from empty like the lists' arrays.
    Row("BM_CopyWriteDestroy_CowList", CopyCase(Full<List>, kCount / 2))->Unit(kUs);
    Row("BM_CopyWriteDestroy_Cow1DArrayList", CopyCase(Full<ArrayList>, kCount / 2))->Unit(kUs);
    Row("BM_CopyWriteDestroy_Cow1DArray", CopyCase(Full<cow_1DArray<int>>, kCount / 2))->Unit(kUs);
    Row("BM_CopyWriteDestroy_StdVector", CopyCase(Full<Vector>, kCount / 2))->Unit(kUs);
    // The sink idiom on 1,000,000 elements: hand over by move or by copy,
    // write the middle element, hand back.
    auto const writeMiddle = [](auto& c) { peer::Write(c, kCount / 2) = -1; };
    Row("BM_SinkMoveWrite_CowList", SinkCase<List, false>(Full<List>, writeMiddle));
    Row("BM_SinkCopyWrite_CowList", SinkCase<List, true>(Full<List>, writeMiddle))->Unit(kUs);
    Row("BM_SinkMoveWrite_StdVector", SinkCase<Vector, false>(Full<Vector>, writeMiddle));
    // Fill from empty, one element at a time.
    Row("BM_FillAppend_CowList", FillCase<List>(kCount))->Unit(kMs);
    Row("BM_FillAppend_Cow1DArrayList", FillCase<ArrayList>(kCount))->Unit(kMs);
    Row("BM_FillAppend_StdVectorPushBack", FillCase<Vector>(kCount))->Unit(kMs);
    // 1,000,000 reads at random indices.
    Row("BM_RandomRead_CowList", RandomReadCase<List, RandomIndices>(Full<List>))->Unit(kUs);
    Row("BM_RandomRead_Cow1DArrayList", RandomReadCase<ArrayList, RandomIndices>(Full<ArrayList>))->Unit(kUs);
    Row("BM_RandomRead_StdVector", RandomReadCase<Vector, RandomIndices>(Full<Vector>))->Unit(kUs);
    // A queue: each step appends one element and takes one off the front.
    Row("BM_Queue_CowList", QueueCase<List>(kCount))->Unit(kMs);
    Row("BM_Queue_StdDeque", QueueCase<std::deque<int>>(kCount))->Unit(kMs);
    // Sort and search (for a value that is absent: a walk over all elements).
    Row("BM_Sort_CowList", [](benchmark::State& state) {
        List source;
        for (int v : RandomValues()) source.Append(v);
        for (auto _ : state) {
            List list(source);
            list.Sort();
            benchmark::DoNotOptimize(list);
        }
    })->Unit(kMs);
    Row("BM_Sort_StdSortVector", [](benchmark::State& state) {
        for (auto _ : state) {
            Vector v(RandomValues());
            std::sort(v.begin(), v.end());
            benchmark::DoNotOptimize(v.data());
        }
    })->Unit(kMs);
    // std::sort through the writing iterators of a copy: each block is
    // copied once, when first written, and sorted in place from then on.
    Row("BM_StdSort_CowList", [](benchmark::State& state) {
        List source;
        for (int v : RandomValues()) source.Append(v);
        for (auto _ : state) {
            List list(source);
            std::sort(list.begin(), list.end());
            benchmark::DoNotOptimize(list);
        }
    })->Unit(kMs);
    // A write to every element through range-for, on a list of its own.
    Row("BM_RangeForAdd_CowList", [](benchmark::State& state) {
        List list;
        for (int v : RandomValues()) list.Append(v);
        for (auto _ : state) {
            for (auto& x : list) x += 1;
            benchmark::DoNotOptimize(list);
        }
    })->Unit(kUs);
    Row("BM_RangeForAdd_StdVector", [](benchmark::State& state) {
        Vector v(RandomValues());
        for (auto _ : state) {
            for (auto& x : v) x += 1;
            benchmark::DoNotOptimize(v.data());
            benchmark::ClobberMemory();
        }
    })->Unit(kUs);
    Row("BM_Position_CowList", SumCase(Full<List>, [](List const& l) { return l.Position(-1); }, 0))->Unit(kUs);
    Row("BM_Position_StdFindVector",
        SumCase(Full<Vector>, [](Vector const& v) { return std::find(v.begin(), v.end(), -1) - v.begin(); }, 0))
        ->Unit(kUs);
    Row("BM_FillFloor_BlocksAndTable", FillFloor)->Unit(kMs);
    Row("BM_CopyWriteDestroyFloor_TableAndTwoCountPasses", CopyWriteDestroyFloor)->Unit(kUs);
    Row("BM_RandomReadFloor_ThreeLoads", RandomReadFloor)->Unit(kUs);
    // Standard-interface walks: range-for over a list grown by Append beside
    // the same loop over a std::vector, and std::accumulate over its blocks.
    Row("BM_RangeFor_CowList", SumCase(Full<List>, RangeForSum(), kCount))->Unit(kUs);
    Row("BM_RangeFor_ListVector", SumCase(Full<Vector>, RangeForSum(), kCount))->Unit(kUs);
    Row("BM_BlockAccumulate_CowList", SumCase(Full<List>, BlockSum(), kCount))->Unit(kUs);
    // Versions: the default list, a list of 1,024-element blocks and a
    // balanced one, each grown by Append, beside std::vector.
    Row("BM_BytesPerVersion_CowList", BytesPerVersionCase<List>(1000))->Iterations(1);
    Row("BM_BytesPerVersion_CowList1024", BytesPerVersionCase<List1024>(1000))->Iterations(1);
    Row("BM_BytesPerVersion_CowListBalanced", BytesPerVersionCase<ListBalanced>(1000))->Iterations(1);
    Row("BM_BytesPerVersion_StdVector", BytesPerVersionCase<Vector>(20))->Iterations(1);
    Row("BM_CopyWriteDestroy_CowList1024", CopyCase(Full<List1024>, kCount / 2))->Unit(kUs);
    Row("BM_CopyWriteDestroy_CowListBalanced", CopyCase(Full<ListBalanced>, kCount / 2))->Unit(kUs);
    Row("BM_FillAppend_CowList1024", FillCase<List1024>(kCount))->Unit(kMs);
    Row("BM_FillAppend_CowListBalanced", FillCase<ListBalanced>(kCount))->Unit(kMs);
    Row("BM_RandomRead_CowList1024", RandomReadCase<List1024, RandomIndices>(Full<List1024>))->Unit(kUs);
    Row("BM_RandomRead_CowListBalanced", RandomReadCase<ListBalanced, RandomIndices>(Full<ListBalanced>))->Unit(kUs);
    Row("BM_RangeFor_CowList1024", SumCase(Full<List1024>, RangeForSum(), kCount))->Unit(kUs);
    Row("BM_RangeFor_CowListBalanced", SumCase(Full<ListBalanced>, RangeForSum(), kCount))->Unit(kUs);
    Row("BM_SnapshotFill_CowList", SnapshotFillCase<List>(kCount, 1000))->Unit(kMs);
    Row("BM_SnapshotFill_CowList1024", SnapshotFillCase<List1024>(kCount, 1000))->Unit(kMs);
    Row("BM_SnapshotFill_CowListBalanced", SnapshotFillCase<ListBalanced>(kCount, 1000))->Unit(kMs);
    Row("BM_SnapshotFill_StdVector", SnapshotFillCase<Vector>(kCount, 1000))->Unit(kMs);
#ifdef ZORVANCOW_BENCH_QT
    Row("BM_CopyDestroy_QVector", CopyCase(Full<QVector<int>>, -1));
    Row("BM_CopyDestroy_QList", CopyCase(Full<QList<int>>, -1));
    Row("BM_CopyWriteDestroy_QVector", CopyCase(Full<QVector<int>>, kCount / 2))->Unit(kUs);
    Row("BM_CopyWriteDestroy_QList", CopyCase(Full<QList<int>>, kCount / 2))->Unit(kUs);
    Row("BM_FillAppend_QVector", FillCase<QVector<int>>(kCount))->Unit(kMs);
    Row("BM_FillAppend_QList", FillCase<QList<int>>(kCount))->Unit(kMs);
    Row("BM_RandomRead_QVector", RandomReadCase<QVector<int>, RandomIndices>(Full<QVector<int>>))->Unit(kUs);
    Row("BM_RandomRead_QList", RandomReadCase<QList<int>, RandomIndices>(Full<QList<int>>))->Unit(kUs);
    Row("BM_Queue_QQueue", QueueCase<QQueue<int>>(kCount))->Unit(kMs);
    Row("BM_BytesPerVersion_QVector", BytesPerVersionCase<QVector<int>>(20))->Iterations(1);
    Row("BM_RangeFor_QVector", SumCase(Full<QVector<int>>, RangeForSum(), kCount))->Unit(kUs);
    Row("BM_SnapshotFill_QVector", SnapshotFillCase<QVector<int>>(kCount, 1000))->Unit(kMs);
#endif
    return 0;
}();

}  // namespace

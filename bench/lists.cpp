// The lists beside std::vector and std::deque, and beside Qt 5's implicitly
// shared QVector and QList when the bench is built with Qt: copying, the
// first write through a copy, filling, random reads, queue use, sorting and
// search, 1,000,000 ints each.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <numeric>
#include <random>
#include <vector>

#ifdef ZORVANCOW_BENCH_QT
#include <QList>
#include <QQueue>
#include <QVector>
#endif

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvanmem/mem_Heap.h"

namespace {

constexpr int kCount = 1000000;

// Every container is filled the way a user fills it, one element at a time
// from empty, so the lists have their default blocks of 16 elements.
template <class List>
List Counting() {
    List list;
    for (int i = 0; i < kCount; ++i) list.Append(i);
    return list;
}

std::vector<int> CountingVector() {
    std::vector<int> v;
    for (int i = 0; i < kCount; ++i) v.push_back(i);
    return v;
}

std::vector<int> const& RandomIndices() {
    static std::vector<int> const indices = [] {
        std::mt19937 rng(7);
        std::vector<int> made(kCount);
        for (int& i : made) i = static_cast<int>(rng() % kCount);
        return made;
    }();
    return indices;
}

// --- copy a 1,000,000-element list and let the copy go

template <class List>
void CopyDestroy(benchmark::State& state) {
    List const source = Counting<List>();
    for (auto _ : state) {
        List copy(source);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK_TEMPLATE(CopyDestroy, cow_List<int>)->Name("BM_CopyDestroy_CowList");
BENCHMARK_TEMPLATE(CopyDestroy, cow_1DArrayList<int>)->Name("BM_CopyDestroy_Cow1DArrayList");

void BM_CopyDestroy_StdVector(benchmark::State& state) {
    std::vector<int> const source = CountingVector();
    for (auto _ : state) {
        std::vector<int> copy(source);
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_CopyDestroy_StdVector)->Unit(benchmark::kMicrosecond);

// --- copy, write one element in the middle through the copy, let it go

template <class List>
void CopyWriteDestroy(benchmark::State& state) {
    List const source = Counting<List>();
    for (auto _ : state) {
        List copy(source);
        copy.Get(kCount / 2) = -1;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK_TEMPLATE(CopyWriteDestroy, cow_List<int>)->Name("BM_CopyWriteDestroy_CowList")->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(CopyWriteDestroy, cow_1DArrayList<int>)
    ->Name("BM_CopyWriteDestroy_Cow1DArrayList")
    ->Unit(benchmark::kMicrosecond);

// The bare array, grown from empty like the lists' arrays.
void BM_CopyWriteDestroy_Cow1DArray(benchmark::State& state) {
    cow_1DArray<int> source;
    for (int i = 0; i < kCount; ++i) source.Get(i) = i;
    for (auto _ : state) {
        cow_1DArray<int> copy(source);
        copy.Get(kCount / 2) = -1;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(BM_CopyWriteDestroy_Cow1DArray)->Unit(benchmark::kMicrosecond);

void BM_CopyWriteDestroy_StdVector(benchmark::State& state) {
    std::vector<int> const source = CountingVector();
    for (auto _ : state) {
        std::vector<int> copy(source);
        copy[kCount / 2] = -1;
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(BM_CopyWriteDestroy_StdVector)->Unit(benchmark::kMicrosecond);

// --- fill from empty, one element at a time

template <class List>
void FillAppend(benchmark::State& state) {
    for (auto _ : state) {
        List list;
        for (int i = 0; i < kCount; ++i) list.Append(i);
        benchmark::DoNotOptimize(list);
    }
}
BENCHMARK_TEMPLATE(FillAppend, cow_List<int>)->Name("BM_FillAppend_CowList")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(FillAppend, cow_1DArrayList<int>)
    ->Name("BM_FillAppend_Cow1DArrayList")
    ->Unit(benchmark::kMillisecond);

void BM_FillAppend_StdVectorPushBack(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<int> v;
        for (int i = 0; i < kCount; ++i) v.push_back(i);
        benchmark::DoNotOptimize(v.data());
    }
}
BENCHMARK(BM_FillAppend_StdVectorPushBack)->Unit(benchmark::kMillisecond);

// --- 1,000,000 reads at random indices

template <class List>
void RandomRead(benchmark::State& state) {
    List const list = Counting<List>();
    std::vector<int> const& indices = RandomIndices();
    for (auto _ : state) {
        long sum = 0;
        for (int i : indices) sum += list.ConstGet(i);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK_TEMPLATE(RandomRead, cow_List<int>)->Name("BM_RandomRead_CowList")->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(RandomRead, cow_1DArrayList<int>)
    ->Name("BM_RandomRead_Cow1DArrayList")
    ->Unit(benchmark::kMicrosecond);

void BM_RandomRead_StdVector(benchmark::State& state) {
    std::vector<int> const v = CountingVector();
    std::vector<int> const& indices = RandomIndices();
    for (auto _ : state) {
        long sum = 0;
        for (int i : indices) sum += v[static_cast<std::size_t>(i)];
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_RandomRead_StdVector)->Unit(benchmark::kMicrosecond);

// --- a queue: each step appends one element and takes one off the front

void BM_Queue_CowList(benchmark::State& state) {
    for (auto _ : state) {
        cow_List<int> queue;
        for (int i = 0; i < 16; ++i) queue.Append(i);
        for (int i = 0; i < kCount; ++i) {
            queue.Append(i);
            queue.RemoveFirst();
        }
        benchmark::DoNotOptimize(queue);
    }
}
BENCHMARK(BM_Queue_CowList)->Unit(benchmark::kMillisecond);

void BM_Queue_StdDeque(benchmark::State& state) {
    for (auto _ : state) {
        std::deque<int> queue;
        for (int i = 0; i < 16; ++i) queue.push_back(i);
        for (int i = 0; i < kCount; ++i) {
            queue.push_back(i);
            queue.pop_front();
        }
        benchmark::DoNotOptimize(queue);
    }
}
BENCHMARK(BM_Queue_StdDeque)->Unit(benchmark::kMillisecond);

// --- sort and search

std::vector<int> const& RandomValues() {
    static std::vector<int> const values = [] {
        std::mt19937 rng(11);
        std::vector<int> made(kCount);
        for (int& v : made) v = static_cast<int>(rng());
        return made;
    }();
    return values;
}

void BM_Sort_CowList(benchmark::State& state) {
    cow_List<int> source;
    for (int v : RandomValues()) source.Append(v);
    for (auto _ : state) {
        cow_List<int> list(source);
        list.Sort();
        benchmark::DoNotOptimize(list);
    }
}
BENCHMARK(BM_Sort_CowList)->Unit(benchmark::kMillisecond);

void BM_Sort_StdSortVector(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<int> v(RandomValues());
        std::sort(v.begin(), v.end());
        benchmark::DoNotOptimize(v.data());
    }
}
BENCHMARK(BM_Sort_StdSortVector)->Unit(benchmark::kMillisecond);

// Looks for a value that is absent: a walk over all elements.
void BM_Position_CowList(benchmark::State& state) {
    cow_List<int> const list = Counting<cow_List<int>>();
    for (auto _ : state) benchmark::DoNotOptimize(list.Position(-1));
}
BENCHMARK(BM_Position_CowList)->Unit(benchmark::kMicrosecond);

void BM_Position_StdFindVector(benchmark::State& state) {
    std::vector<int> const v = CountingVector();
    for (auto _ : state) benchmark::DoNotOptimize(std::find(v.begin(), v.end(), -1));
}
BENCHMARK(BM_Position_StdFindVector)->Unit(benchmark::kMicrosecond);

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
void BM_FillFloor_BlocksAndTable(benchmark::State& state) {
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
BENCHMARK(BM_FillFloor_BlocksAndTable)->Unit(benchmark::kMillisecond);

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
void BM_CopyWriteDestroyFloor_TableAndTwoCountPasses(benchmark::State& state) {
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
BENCHMARK(BM_CopyWriteDestroyFloor_TableAndTwoCountPasses)->Unit(benchmark::kMicrosecond);

// Random reads: the slot, then the block, then the element, each a load that
// needs the one before.
void BM_RandomReadFloor_ThreeLoads(benchmark::State& state) {
    Blocks blocks;
    Block* const* table = blocks.table.data();
    std::vector<int> const& indices = RandomIndices();
    for (auto _ : state) {
        long sum = 0;
        for (int i : indices) sum += table[i >> 4]->GetData()[i & 15];
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_RandomReadFloor_ThreeLoads)->Unit(benchmark::kMicrosecond);

#ifdef ZORVANCOW_BENCH_QT
// Qt's containers: a copy is one count increment, and the first write
// through a copy detaches, copying every element.

template <class Q>
Q QCounting() {
    Q q;
    for (int i = 0; i < kCount; ++i) q.append(i);
    return q;
}

template <class Q>
void QCopyDestroy(benchmark::State& state) {
    Q const source = QCounting<Q>();
    for (auto _ : state) {
        Q copy(source);
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK_TEMPLATE(QCopyDestroy, QVector<int>)->Name("BM_CopyDestroy_QVector");
BENCHMARK_TEMPLATE(QCopyDestroy, QList<int>)->Name("BM_CopyDestroy_QList");

template <class Q>
void QCopyWriteDestroy(benchmark::State& state) {
    Q const source = QCounting<Q>();
    for (auto _ : state) {
        Q copy(source);
        copy[kCount / 2] = -1;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK_TEMPLATE(QCopyWriteDestroy, QVector<int>)
    ->Name("BM_CopyWriteDestroy_QVector")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(QCopyWriteDestroy, QList<int>)->Name("BM_CopyWriteDestroy_QList")->Unit(benchmark::kMicrosecond);

template <class Q>
void QFillAppend(benchmark::State& state) {
    for (auto _ : state) {
        Q q;
        for (int i = 0; i < kCount; ++i) q.append(i);
        benchmark::DoNotOptimize(q);
    }
}
BENCHMARK_TEMPLATE(QFillAppend, QVector<int>)->Name("BM_FillAppend_QVector")->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(QFillAppend, QList<int>)->Name("BM_FillAppend_QList")->Unit(benchmark::kMillisecond);

template <class Q>
void QRandomRead(benchmark::State& state) {
    Q const q = QCounting<Q>();
    std::vector<int> const& indices = RandomIndices();
    for (auto _ : state) {
        long sum = 0;
        for (int i : indices) sum += q.at(i);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK_TEMPLATE(QRandomRead, QVector<int>)->Name("BM_RandomRead_QVector")->Unit(benchmark::kMicrosecond);
BENCHMARK_TEMPLATE(QRandomRead, QList<int>)->Name("BM_RandomRead_QList")->Unit(benchmark::kMicrosecond);

void BM_Queue_QQueue(benchmark::State& state) {
    for (auto _ : state) {
        QQueue<int> queue;
        for (int i = 0; i < 16; ++i) queue.enqueue(i);
        for (int i = 0; i < kCount; ++i) {
            queue.enqueue(i);
            queue.dequeue();
        }
        benchmark::DoNotOptimize(queue);
    }
}
BENCHMARK(BM_Queue_QQueue)->Unit(benchmark::kMillisecond);
#endif

}  // namespace

// Standard-interface walk: range-for over a list of 1,000,000 ints grown by
// Append, beside the same loop over a std::vector.
namespace {

void BM_RangeFor_CowList(benchmark::State& state) {
    cow_List<int> list;
    for (int i = 0; i < kCount; ++i) list.Append(i);
    for (auto _ : state) {
        long sum = 0;
        for (int x : list) sum += x;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_RangeFor_CowList)->Unit(benchmark::kMicrosecond);

void BM_RangeFor_ListVector(benchmark::State& state) {
    std::vector<int> v(kCount);
    std::iota(v.begin(), v.end(), 0);
    for (auto _ : state) {
        long sum = 0;
        for (int x : v) sum += x;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_RangeFor_ListVector)->Unit(benchmark::kMicrosecond);

void BM_BlockAccumulate_CowList(benchmark::State& state) {
    cow_List<int> list;
    for (int i = 0; i < kCount; ++i) list.Append(i);
    for (auto _ : state) {
        long sum = 0;
        for (cow_Span<int const> run : cow_Blocks(list)) sum = std::accumulate(run.begin(), run.end(), sum);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kCount);
}
BENCHMARK(BM_BlockAccumulate_CowList)->Unit(benchmark::kMicrosecond);

}  // namespace

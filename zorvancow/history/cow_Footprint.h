#ifndef ZORVANCOW_HISTORY_COW_FOOTPRINT_H
#define ZORVANCOW_HISTORY_COW_FOOTPRINT_H

// What many values cost together.
//
// cow_Footprint(first, last) walks the values of a range (any container of
// the library, strings and handles, nested to any depth) and adds up the
// heap pieces they hold, each piece once however many values share it:
//   bytes         the heap bytes the range holds;
//   sharedBytes   of those, the bytes of pieces that more than one value of
//                 the range holds (directly, or through a shared piece above);
//   outsideBytes  of those, the bytes of pieces that values outside the range
//                 hold too: a piece whose count is above the holds found
//                 inside the range, and everything below such a piece.
// So bytes - outsideBytes is what dropping the whole range would free.
//
// Counted, as requested from the heap: arrays' and lists' tables (slots and
// counter) and blocks (the block and its element run), tree and map nodes
// with their counters and links, the representations of fixed arrays and
// matrices, handles' pointees and counters, and string headers with their
// text. The values themselves (the objects in the range, or a container's
// fields inside a block) are not: they live where the caller put them.
// Element runs of types with a destructor carry the size word that array new
// adds. The radix tables (omi_IntTable) are not covered.
//
// Cost: every piece of the range is visited twice, plus one hash lookup per
// hold on a piece that more than one holder counts; such a piece is entered
// once in the first pass and at most three times in the second (when what is
// known of it grows). Memory: one hash entry per piece held more than once.
// Nothing of the values changes.

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "zorvancow/arrays/cow_1DArray.h"
#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/lists/cow_1DArrayList.h"
#include "zorvancow/lists/cow_List.h"
#include "zorvancow/map/cow_Map.h"
#include "zorvancow/shapes/cow_2DArray.h"
#include "zorvancow/shapes/cow_FixedArray.h"
#include "zorvancow/tree/cow_Btree.h"

// The result of cow_Footprint, in bytes.
struct cow_FootprintBytes {
    std::size_t bytes = 0;
    std::size_t sharedBytes = 0;
    std::size_t outsideBytes = 0;
};

namespace cow_detail {
// The walk behind cow_Footprint: a table of the pieces met, keyed by address.
class FootprintWalk {
public:
    // Notes one hold on a piece: `key` its address, `bytes` its size,
    // `count` how many holders its counter says it has. `inside()` walks
    // what the piece holds, through Hold again.
    template <class Inside>
    void Hold(void const* key, std::size_t bytes, std::int32_t count, Inside&& inside) {
        if (count <= 1) {
            // Held once: no other hold can reach it, so it needs no entry.
            // Its marks are those its holder passes down, each counted once.
            if (!marking) {
                loneBytes += bytes;
            } else {
                if (fresh & kShared) loneShared += bytes;
                if (fresh & kOutside) loneOutside += bytes;
            }
            inside();
            return;
        }
        bool made = false;
        Piece& piece = Find(key, made);
        if (made) piece = Piece{bytes, count, 0, value, false, 0};
        if (!marking) {
            ++piece.holds;
            if (!made) {
                if (piece.firstValue != value) piece.sharedInRange = true;
                return;
            }
            inside();
            return;
        }
        // The second pass: carry "shared" and "outside" down to everything
        // below a piece that has them, entering a piece again only when what
        // is known of it grows.
        unsigned char const known = static_cast<unsigned char>(
            kSeen | context | (piece.sharedInRange ? kShared : 0) | (piece.count > piece.holds ? kOutside : 0));
        if ((piece.marks | known) == piece.marks) return;
        unsigned char const gained = static_cast<unsigned char>(known & ~piece.marks);
        piece.marks = static_cast<unsigned char>(piece.marks | known);
        unsigned char const outer = context, outerFresh = fresh;
        context = static_cast<unsigned char>(piece.marks & (kShared | kOutside));
        fresh = static_cast<unsigned char>(gained & (kShared | kOutside));
        inside();
        context = outer, fresh = outerFresh;
    }

    template <class It, class Walk>
    cow_FootprintBytes Run(It first, It last, Walk const& walk) {
        // The first pass counts the holds; the second marks.
        for (int pass = 0; pass < 2; ++pass) {
            marking = pass == 1;
            value = 0;
            for (It at = first; at != last; ++at, ++value) {
                context = fresh = 0;
                walk(*this, *at);
            }
        }
        cow_FootprintBytes total;
        total.bytes = loneBytes, total.sharedBytes = loneShared, total.outsideBytes = loneOutside;
        for (Piece const& piece : pieces) {
            total.bytes += piece.bytes;
            if (piece.marks & kShared) total.sharedBytes += piece.bytes;
            if (piece.marks & kOutside) total.outsideBytes += piece.bytes;
        }
        return total;
    }

private:
    static constexpr unsigned char kSeen = 1, kShared = 2, kOutside = 4;
    struct Piece {
        std::size_t bytes;
        std::int32_t count;
        std::int32_t holds;  // found inside the range
        long firstValue;     // the first value of the range that reached it
        bool sharedInRange;  // held from a second value
        unsigned char marks;
    };
    // The entry of `key`, made (and `made` set) when absent: open
    // addressing over the addresses, at most half full.
    Piece& Find(void const* key, bool& made) {
        if (2 * (pieces.size() + 1) > keys.size()) Grow();
        std::size_t slot = Slot(key);
        while (keys[slot] != nullptr) {
            if (keys[slot] == key) return pieces[places[slot]];
            slot = (slot + 1) & (keys.size() - 1);
        }
        keys[slot] = key;
        places[slot] = pieces.size();
        pieces.emplace_back();
        made = true;
        return pieces.back();
    }
    std::size_t Slot(void const* key) const {
        auto const bits = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(key));
        return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15ull) >> 20) & (keys.size() - 1);
    }
    void Grow() {
        std::vector<void const*> const old = std::move(keys);
        std::vector<std::size_t> const oldPlaces = std::move(places);
        keys.assign(old.empty() ? 1024 : old.size() * 2, nullptr);
        places.assign(keys.size(), 0);
        for (std::size_t i = 0; i < old.size(); ++i) {
            if (old[i] == nullptr) continue;
            std::size_t slot = Slot(old[i]);
            while (keys[slot] != nullptr) slot = (slot + 1) & (keys.size() - 1);
            keys[slot] = old[i];
            places[slot] = oldPlaces[i];
        }
    }

    std::vector<Piece> pieces;
    std::vector<void const*> keys;
    std::vector<std::size_t> places;
    std::size_t loneBytes = 0, loneShared = 0, loneOutside = 0;
    long value = 0;
    bool marking = false;
    unsigned char fresh = 0;  // the marks a piece held once gets for the first time
    unsigned char context = 0;
};

// The bytes of a run of n elements from cow_Element<T> (array new, which
// puts a size word in front of elements with a destructor).
template <class T>
constexpr std::size_t RunBytes(std::size_t n) {
    return n * sizeof(T) +
           (std::is_trivially_destructible<T>::value ? 0 : (alignof(T) > sizeof(std::size_t) ? alignof(T) : sizeof(std::size_t)));
}

// How one type holds heap pieces: plain types hold none; each family below.
template <class T, class = void>
struct Footprint {
    static_assert(std::is_trivially_copyable<T>::value,
                  "cow_Footprint: this type has no footprint rule (plain types and the library's values have one)");
    static constexpr bool holdsPieces = false;
    static void Walk(FootprintWalk&, T const&) {}
};

template <class T>
struct Footprint<T, std::enable_if_t<std::is_base_of<atr_StringBase, T>::value>> {
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, T const& text) {
        if (atr_StringHeader const* header = text.GetHeader())
            walk.Hold(header, sizeof(atr_StringHeader) + static_cast<std::size_t>(text.GetLength()) + 1, text.GetShareCount(),
                      [] {});
    }
};

template <class T>
void WalkRun(FootprintWalk& walk, T const* run, std::size_t n) {
    if constexpr (Footprint<T>::holdsPieces) {
        for (std::size_t i = 0; i < n; ++i) Footprint<T>::Walk(walk, run[i]);
    } else {
        static_cast<void>(walk), static_cast<void>(run), static_cast<void>(n);
    }
}

// Arrays: the table (its counter and slots), then every block in it.
template <class T>
struct Footprint<cow_1DArray<T>> {
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, cow_1DArray<T> const& array) {
        cow_Counter const* counter = array.GetTableCounter();
        if (counter == nullptr) return;
        int const capacity = array.GetCapacity();
        walk.Hold(counter, sizeof(cow_Counter) + sizeof(void*) * static_cast<std::size_t>(capacity), counter->GetCount(),
                  [&walk, &array, capacity] {
                      std::size_t const length = std::size_t{1} << array.GetShift();
                      for (int slot = 0; slot < capacity; ++slot) {
                          auto const* block = array.GetBlock(slot);
                          if (block == nullptr) continue;
                          walk.Hold(block, sizeof(*block) + RunBytes<T>(length), block->GetCount(),
                                    [&walk, block, length] { WalkRun(walk, block->GetData(), length); });
                      }
                  });
    }
};
template <class T>
struct Footprint<cow_1DArrayList<T>> {
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, cow_1DArrayList<T> const& list) { Footprint<cow_1DArray<T>>::Walk(walk, list.GetArray()); }
};
template <class T>
struct Footprint<cow_List<T>> {
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, cow_List<T> const& list) { Footprint<cow_1DArray<T>>::Walk(walk, list.GetArray()); }
};

// Fixed shapes: the representation with its counter and element run.
template <class T>
struct Footprint<cow_FixedArray<T>> {
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, cow_FixedArray<T> const& array) {
        auto const* rep = array.GetRep();
        if (rep == nullptr) return;
        std::size_t const n = static_cast<std::size_t>(rep->size);
        walk.Hold(rep, sizeof(cow_Counter) + sizeof(*rep) + RunBytes<T>(n), array.GetShareCount(),
                  [&walk, rep, n] { WalkRun(walk, rep->data, n); });
    }
};
template <class T>
struct Footprint<cow_2DArray<T>> {
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, cow_2DArray<T> const& matrix) {
        auto const* rep = matrix.GetRep();
        if (rep == nullptr) return;
        std::size_t const n = rep->data != nullptr ? static_cast<std::size_t>(rep->rows) * static_cast<std::size_t>(rep->columns) : 0;
        walk.Hold(rep, sizeof(cow_Counter) + sizeof(*rep) + (rep->data != nullptr ? RunBytes<T>(n) : 0),
                  matrix.GetShareCount(), [&walk, rep, n] { WalkRun(walk, rep->data, n); });
    }
};

// Handles: the counter and the pointee, and what the pointee holds.
template <class T, class Cp>
struct Footprint<cow_COW<T, Cp>> {
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, cow_COW<T, Cp> const& handle) {
        cow_Counter const* counter = handle.GetCounter();
        if (counter == nullptr) return;
        T const* pointee = handle.ConstGet();
        walk.Hold(counter, sizeof(cow_Counter) + (pointee != nullptr ? sizeof(T) : 0), counter->GetCount(), [&walk, pointee] {
            if (pointee != nullptr) Footprint<T>::Walk(walk, *pointee);
        });
    }
};

// Trees: the tree's own root handle, then per node its counter, the node,
// the handles of its links, and its key and value.
template <class K, class V>
struct Footprint<cow_Btree<K, V>> {
    using Node = cow_BtreeNode<K, V>;
    using Handle = typename Node::Handle;
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, cow_Btree<K, V> const& tree) {
        Footprint<V>::Walk(walk, tree.GetDefaultValue());
        if (Handle const* root = tree.GetRoot()) Link(walk, root);
    }
    static void Link(FootprintWalk& walk, Handle const* link) {
        walk.Hold(link, sizeof(Handle), 1, [&walk, link] {
            Node const* node = link->ConstGet();
            walk.Hold(link->GetCounter(), sizeof(cow_Counter) + sizeof(Node), link->GetShareCount(), [&walk, node] {
                Footprint<K>::Walk(walk, node->GetKey());
                Footprint<V>::Walk(walk, node->GetValue());
                if (Handle const* left = node->GetLeft()) Link(walk, left);
                if (Handle const* right = node->GetRight()) Link(walk, right);
            });
        });
    }
};

// Maps: per link its counter (empty links have one too) and node, and the
// node's key, value and links.
template <class K, class V>
struct Footprint<cow_Map<K, V>> {
    using Node = cow_MapNode<K, V>;
    static constexpr bool holdsPieces = true;
    static void Walk(FootprintWalk& walk, cow_Map<K, V> const& map) { Link(walk, map.GetRoot()); }
    static void Link(FootprintWalk& walk, typename Node::Link const& link) {
        cow_Counter const* counter = link.GetCounter();
        if (counter == nullptr) return;
        Node const* node = link.ConstGet();
        walk.Hold(counter, sizeof(cow_Counter) + (node != nullptr ? sizeof(Node) : 0), counter->GetCount(), [&walk, node] {
            if (node == nullptr) return;
            Footprint<K>::Walk(walk, node->key);
            Footprint<V>::Walk(walk, node->value);
            Link(walk, node->child[0]);
            Link(walk, node->child[1]);
        });
    }
};
}  // namespace cow_detail

// The heap bytes that the values of [first, last) hold, each shared piece
// once, with the part more than one of them holds and the part values
// outside the range hold too (see the top of this file).
template <class It>
cow_FootprintBytes cow_Footprint(It first, It last) {
    cow_detail::FootprintWalk walk;
    return walk.Run(first, last, [](cow_detail::FootprintWalk& w, auto const& value) {
        cow_detail::Footprint<std::decay_t<decltype(value)>>::Walk(w, value);
    });
}

#endif

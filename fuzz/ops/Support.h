#ifndef ZORVANCOW_FUZZ_OPS_SUPPORT_H
#define ZORVANCOW_FUZZ_OPS_SUPPORT_H

// What every operation interpreter shares. An interpreter decodes a byte
// stream into operations on several values of one family that share storage
// through copies and snapshots, runs each on a standard-library model of
// every value as well, and after each step checks every value against its
// model. The libFuzzer targets and the test suite run the same streams:
//
//   Input          turns bytes into small choices; past the end every read is 0
//   FUZZ_CHECK     a failed check: one line naming the step, then abort(), or
//                  whatever handler the caller installed (the tests throw)
//   Element<T>     the element types a stream runs with, made from a number
//   Brittle        the element whose copy throws when the input says so
//   Share          a copy by assignment, by moves or by hand-over
//   CheckDiff      cow_Diff of two values against their models
//   Run<State>     the frame: the stream's first byte picks the element type,
//                  and at the end the stand-ins' live counters must be back

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "zorvancow/core/cow_String.h"
#include "zorvancow/handover/cow_HandOver.h"
#include "zorvancow/history/cow_Diff.h"
#include "zorvancow/history/cow_Footprint.h"
#include "zorvanmem/mem_Heap.h"
#include "zorvanstr/atr_String.h"

namespace fuzz {

// Where a failed check goes. Left null, the line goes to standard error and
// the run aborts, so that libFuzzer records the input and ASan prints the
// stack; the test suite installs a handler that throws instead.
using FailureHandler = void (*)(std::string const& line);
inline FailureHandler& OnFailure() {
    static FailureHandler handler = nullptr;
    return handler;
}
inline int& CurrentStep() {
    static int step = 0;
    return step;
}

[[noreturn]] inline void Fail(char const* file, int line, char const* what) {
    std::string const text = std::string(file) + ":" + std::to_string(line) + ": model mismatch at step " +
                             std::to_string(CurrentStep()) + ": " + what;
    if (OnFailure() != nullptr) OnFailure()(text);
    std::fprintf(stderr, "%s\n", text.c_str());
    std::abort();
}

#define FUZZ_CHECK(condition)                                           \
    do {                                                                \
        if (!(condition)) fuzz::Fail(__FILE__, __LINE__, #condition);   \
    } while (false)

// With FUZZ_TRACE set in the environment, each interpreter names every
// operation it makes on standard error: the way to read a saved input.
inline bool Tracing() {
    static bool const on = std::getenv("FUZZ_TRACE") != nullptr;
    return on;
}
#define FUZZ_TRACE(...)                                         \
    do {                                                        \
        if (fuzz::Tracing()) std::fprintf(stderr, __VA_ARGS__); \
    } while (false)

// Reads the input front to back. Once the bytes run out every read gives 0,
// so a decoder never has to test for the end in the middle of an operation.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : data(data), size(size) {}

    bool Done() const { return used >= size; }
    std::uint8_t Byte() { return used < size ? data[used++] : 0; }
    // A number in [0, n), n at least 1.
    int Below(int n) {
        unsigned int const wide = static_cast<unsigned int>(Byte()) << 8 | Byte();
        return static_cast<int>(wide % static_cast<unsigned int>(n));
    }
    std::uint32_t Word() {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i) word = word << 8 | Byte();
        return word;
    }

private:
    std::uint8_t const* data;
    std::size_t size;
    std::size_t used = 0;
};

// A few short texts whose lowest bits coincide in many ways, so that string
// maps and trees get deep paths and close keys without growing without end.
inline std::string PickText(Input& in) {
    static char const letters[] = {'a', 'b', 'q', '1', '2', 'B'};
    int const length = in.Below(4);
    std::string text;
    for (int i = 0; i < length; ++i) text += letters[in.Below(sizeof letters)];
    return text;
}

// Keys of a sorted model: texts as std::string, numbers as themselves; and
// the held key nearest `key` (the next one up, or the first), so that
// removals and reads often hit, `key` itself when the model is empty.
inline std::string ModelKey(cow_String const& key) { return key.GetCString(); }
inline int ModelKey(int key) { return key; }
template <class Model, class Key>
Key NearKey(Model const& model, Key key) {
    auto at = model.lower_bound(key);
    return model.empty() ? key : at == model.end() ? model.begin()->first : at->first;
}

// An element whose copy constructor and copy assignment throw on the armed
// call (counting down; 0 for none), so that any operation that copies
// elements can be stopped half-way. It has no moves, so every move the
// library makes is a copy that may throw too. It counts its live objects, so
// a leak of elements shows at the end of a stream.
struct Thrown {};
struct Brittle {
    static inline int throwIn = 0;
    static inline long live = 0;
    int n = 0;
    Brittle() { ++live; }
    explicit Brittle(int v) : n(v) { ++live; }
    Brittle(Brittle const& other) : n(other.n) {
        Tick();
        ++live;
    }
    Brittle& operator=(Brittle const& other) {
        Tick();
        n = other.n;
        return *this;
    }
    ~Brittle() { --live; }
    static void Tick() {
        if (throwIn != 0 && --throwIn == 0) throw Thrown();
    }
    friend bool operator==(Brittle const& a, Brittle const& b) { return a.n == b.n; }
    friend bool operator<(Brittle const& a, Brittle const& b) { return a.n < b.n; }
};

// The element types a stream runs with: int, cow_String, std::string and Brittle.
// Each element is made from a number n >= 0 and read back to it, so every
// model holds plain numbers and shares nothing with the values it checks. 0
// makes the zero element (what a slot that was never written holds), and the
// numbers order as their elements do, in every order the library uses (texts
// are of one length, so natural and byte order agree).
inline char const* Text(cow_String const& text) { return text.GetCString(); }
inline char const* Text(std::string const& text) { return text.c_str(); }
template <class T>
T Make(int n) {
    if constexpr (std::is_same<T, int>::value) return n;
    else if constexpr (std::is_same<T, Brittle>::value) return Brittle(n);
    else return n == 0 ? T() : T(("v" + std::to_string(100000 + n)).c_str());
}
template <class T>
int Number(T const& value) {
    if constexpr (std::is_same<T, int>::value) return value;
    else if constexpr (std::is_same<T, Brittle>::value) return value.n;
    else return *Text(value) == 0 ? 0 : std::atoi(Text(value) + 1) - 100000;
}

// A walk from First shows exactly the model's entries, in order, each
// checked by `same(it, entry)`.
template <class Iterator, class Model, class SameEntry>
void InOrder(Iterator&& it, Model const& model, SameEntry same) {
    auto at = std::begin(model);
    for (it.First(); !it.IsDone(); it.Next(), ++at) FUZZ_CHECK(at != std::end(model) && same(it, *at));
    FUZZ_CHECK(at == std::end(model));
}

// Slot a takes slot b's value and model, by one of three routes that must
// all leave every slot as a plain copy would: a plain copy, sharing b's
// storage; a move (a copy moved into the slot, then the emptied copy copied,
// moved into again and destroyed); or a hand-over, whose copy holds nothing
// that a value outside it holds too, b included. True for a hand-over.
template <class Value, class Model, std::size_t N>
bool Share(Value (&values)[N], Model (&models)[N], int a, int b) {
    int const route = (a + b) % 3;
    if (route == 0) {
        values[a] = values[b];
    } else if (route == 1) {
        Value moved = values[b];
        values[a] = std::move(moved);
        Value emptied = moved;
        moved = std::move(emptied);
    } else {
        values[a] = cow_HandOver(values[b]);
        FUZZ_CHECK(cow_Footprint(&values[a], &values[a] + 1).outsideBytes == 0);
    }
    models[a] = models[b];
    return route == 2;
}

// A list of elements made from its model, and, half of the time when
// `from` has elements, one of them instead, shared with it.
template <class List, class T = std::decay_t<decltype(std::declval<List&>().Get(0))>>
List MakeList(std::vector<int> const& model) {
    List list;
    for (int v : model) list.Append(Make<T>(v));
    return list;
}
template <class Value, class Model, class From, class FromModel>
void MaybeTake(Input& in, Value& value, Model& model, From const& from, FromModel const& fromModel) {
    if (fromModel.empty() || in.Below(2) != 0) return;
    int const j = in.Below(static_cast<int>(fromModel.size()));
    value = from.ConstGet(j);
    model = fromModel[static_cast<std::size_t>(j)];
}

// A write inside an array list, beside its model: remove, pop or insert.
template <class List>
void EditList(List& list, std::vector<int>& model, Input& in, int value) {
    using T = std::decay_t<decltype(list.Get(0))>;
    int const n = static_cast<int>(model.size());
    if (n > 0 && in.Below(3) == 0) {
        int const at = in.Below(n);
        list.Remove(at);
        model.erase(model.begin() + at);
    } else if (n > 0 && in.Below(2) == 0) {
        FUZZ_CHECK(Number(list.Pop()) == model.back());
        model.pop_back();
    } else if (n < 200) {
        int const at = in.Below(n + 1);
        list.Insert(at, Make<T>(value));
        model.insert(model.begin() + at, value);
    }
}

// Iterators held across steps, each beside the model of its value when it
// was taken: walked after every step, it must still show that value. With
// `most` held, taking one more drops one the input picks.
template <class Iterator, class Model, int most = 4>
struct Snapshots {
    std::vector<std::pair<std::unique_ptr<Iterator>, Model>> held;

    template <class... Args>
    void Take(Input& in, Model const& model, Args const&... args) {
        if (static_cast<int>(held.size()) >= most) held.erase(held.begin() + in.Below(most));
        held.emplace_back(std::make_unique<Iterator>(args...), model);
    }
};

// Walks `it` from the first or the last entry, turning where the input
// says, beside the same walk over the model; `same(it, entry)` checks one
// entry. Tree iterators step back with Previous, table iterators with Prev.
template <class Iterator>
auto Back(Iterator& it) -> decltype(it.Previous(), void()) {
    it.Previous();
}
template <class Iterator>
auto Back(Iterator& it) -> decltype(it.Prev(), void()) {
    it.Prev();
}
template <class Iterator, class Model, class Same>
void Wander(Iterator&& it, Model const& model, Input& in, Same same) {
    auto at = model.begin();
    if (in.Below(2) == 0) {
        it.First();
    } else {
        it.Last();
        at = model.empty() ? model.end() : std::prev(model.end());
    }
    for (int steps = in.Below(40); steps > 0; --steps) {
        FUZZ_CHECK(it.IsDone() == (at == model.end()));
        if (it.IsDone()) break;
        FUZZ_CHECK(same(it, *at));
        if (in.Below(2) == 0) {
            it.Next();
            ++at;
        } else {
            Back(it);
            at = at == model.begin() ? model.end() : std::prev(at);
        }
    }
}

// A value read back into a model: a number per element, a list of them per
// sequence (anything with GetCount or GetSize and ConstGet), a std::map per
// tree or map (through its standard iterator), nested ones too.
template <class Value>
auto CountOf(Value const& value, int) -> decltype(value.GetCount()) {
    return value.GetCount();
}
template <class Value>
int CountOf(Value const& value, long) {
    return value.GetSize();
}
template <class Model, class = void>
struct IsKeyed : std::false_type {};
template <class Model>
struct IsKeyed<Model, std::void_t<typename Model::key_type>> : std::true_type {};
template <class Model, class Value>
Model ReadBack(Value const& value) {
    if constexpr (std::is_same<Model, int>::value) {
        return Number(value);
    } else if constexpr (IsKeyed<Model>::value) {
        Model model;
        for (auto const& [key, mapped] : value) model.emplace(ModelKey(key), ReadBack<typename Model::mapped_type>(mapped));
        return model;
    } else {
        Model model;
        for (int i = 0, n = CountOf(value, 0); i < n; ++i)
            model.push_back(ReadBack<typename Model::value_type>(value.ConstGet(i)));
        return model;
    }
}

// A value against its model: an element against its number, a sequence,
// tree or map (nested ones too) against the model it reads back into.
template <class Value, class Model>
bool Same(Value const& value, Model const& model) {
    return ReadBack<Model>(value) == model;
}

// cow_Diff of two values against their models. A sequence reports each
// index where the models differ or only one has an element, in order; a tree
// or map each key that only one holds or both hold with different values, a
// tree in key order (a map in its walk's order: `anyOrder`).
template <class Value, class Model>
void CheckDiff(Value const& a, Value const& b, Model const& x, Model const& y, bool anyOrder = false) {
    if constexpr (IsKeyed<Model>::value) {
        using Mapped = typename Model::mapped_type;
        std::vector<std::tuple<typename Model::key_type, int, Mapped, Mapped>> reported, expected;
        auto note = [&reported](int kind, auto const& key, Mapped old, Mapped now) {
            reported.emplace_back(ModelKey(key), kind, std::move(old), std::move(now));
        };
        cow_Diff(
            a, b, [&](auto const& key, auto const& value) { note(1, key, Mapped(), ReadBack<Mapped>(value)); },
            [&](auto const& key, auto const& value) { note(-1, key, ReadBack<Mapped>(value), Mapped()); },
            [&](auto const& key, auto const& old, auto const& now) {
                note(0, key, ReadBack<Mapped>(old), ReadBack<Mapped>(now));
            });
        for (auto const& [key, value] : x) {
            auto const at = y.find(key);
            if (at == y.end()) expected.emplace_back(key, -1, value, Mapped());
            else if (!(at->second == value)) expected.emplace_back(key, 0, value, at->second);
        }
        for (auto const& [key, value] : y)
            if (x.count(key) == 0) expected.emplace_back(key, 1, Mapped(), value);
        std::sort(expected.begin(), expected.end());
        if (anyOrder) std::sort(reported.begin(), reported.end());
        FUZZ_CHECK(reported == expected);
    } else {
        std::vector<int> reported, expected;
        cow_Diff(a, b, [&reported](int i) { reported.push_back(i); });
        for (std::size_t i = 0; i < std::max(x.size(), y.size()); ++i)
            if (i >= x.size() || i >= y.size() || !(x[i] == y[i])) expected.push_back(static_cast<int>(i));
        FUZZ_CHECK(reported == expected);
    }
}

// The two slots whose diff a step checks: neighbours, another pair each step.
inline std::pair<int, int> DiffPair(int slots) {
    int const s = CurrentStep() % slots;
    return {s, (s + 1) % slots};
}

// After an element copy threw half-way through a step: every value must read
// whole, and at most one of them (the one the step was writing) may differ
// from its model, which may or may not have taken the step yet. Each model
// is then set to what its value holds. State::EachValue(f) calls f(now,
// model) for every value of the state, `now` being the value read back into
// a model of the type of `model`.
template <class State>
void AfterThrow(State& state) {
    int differing = 0;
    state.EachValue([&](auto now, auto& model) {
        if (!(now == model)) ++differing;
        model = std::move(now);
    });
    FUZZ_CHECK(differing <= 1);
}

// Does nothing after a step: the default of Run's hook.
struct NoHook {
    template <class State>
    void operator()(State&) const {}
};

// One stream through the family `State`: its first byte picks the element
// type, the rest is operations, up to State's step limit. After each step
// every value is checked against its model, then `after(state)` runs (a
// later check can hook in there). Once every value is gone, the stand-ins'
// live counters must be where they were.
template <template <class> class State, class After = NoHook>
void Run(std::uint8_t const* data, std::size_t size, After after = {}) {
    Input in(data, size);
    long const blocks = mem_GetLiveBlocks(), texts = atr_GetLiveTexts();
    long const brittles = Brittle::live;
    auto run = [&](auto element) {
        using T = decltype(element);
        State<T> state;
        for (CurrentStep() = 0; CurrentStep() < state.kSteps && !in.Done(); ++CurrentStep()) {
            if constexpr (std::is_same<T, Brittle>::value) {
                // One step in four has one of its element copies throw: one
                // of the first 16 most often, as late as the 1024th at times.
                Brittle::throwIn = in.Below(4) == 0 ? 1 + in.Below(16 << in.Below(7)) : 0;
                try {
                    state.Step(in);
                } catch (Thrown const&) {
                    Brittle::throwIn = 0;
                    FUZZ_TRACE("step %d: an element copy threw\n", CurrentStep());
                    AfterThrow(state);
                }
                Brittle::throwIn = 0;
            } else {
                state.Step(in);
            }
            state.CheckAll();
            after(state);
        }
    };
    switch (in.Byte() % 4) {
        case 0: run(int()); break;
        case 1: run(cow_String()); break;
        case 2: run(std::string()); break;
        default: run(Brittle()); break;
    }
    FUZZ_CHECK(mem_GetLiveBlocks() == blocks);
    FUZZ_CHECK(atr_GetLiveTexts() == texts);
    FUZZ_CHECK(Brittle::live == brittles);
}

// The element types that are not the library's are handed over by their own
// copy (which for Brittle may throw as any other) and hold no piece of the
// library's: a footprint of their values counts the library's pieces only.
template <class T>
struct ForeignElement {
    static T Copy(T const& value) { return value; }
    static constexpr bool holdsPieces = false;
    static void Walk(cow_detail::FootprintWalk&, T const&) {}
};

}  // namespace fuzz

template <>
struct cow_HandOverTraits<std::string> : fuzz::ForeignElement<std::string> {};
template <>
struct cow_HandOverTraits<fuzz::Brittle> : fuzz::ForeignElement<fuzz::Brittle> {};
template <>
struct cow_detail::Footprint<std::string> : fuzz::ForeignElement<std::string> {};
template <>
struct cow_detail::Footprint<fuzz::Brittle> : fuzz::ForeignElement<fuzz::Brittle> {};

#endif

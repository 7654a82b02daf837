#ifndef ZORVANCOW_CORE_COW_COW_H
#define ZORVANCOW_CORE_COW_COW_H

// Counted handles and the write gate: the frame of every shared container.
//
// A handle is two words, a counter and a pointee. Copying a handle raises the
// count; the last handle to go destroys the pointee. cow_COW adds Get(), the
// write access, which first gives the calling handle a private copy when the
// pointee is shared. Reads go straight through the pointee and change nothing.
//
// Every write in the library, whatever holds the count (a handle, an array's
// table, a block, a node), passes one gate first: cow_IsSole says whether the
// writer is the only holder and may write in place, and cow_Unshare is the
// step it takes when it is not.
//
// Counts are plain integers: handles that share a pointee belong to one
// thread at a time.
//
// Moves take both words and leave the source with neither: a handle without
// a counter is an empty handle that shares with nobody. It reads as empty,
// counts as its own sole holder, copies into another such handle, and takes a
// counter of its own at its first write (operator=(T*) or Get). So a move
// allocates nothing, changes no count and cannot throw.

#include <cstdint>
#include <cstddef>
#include <utility>

#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Export.h"

// g++ 12 and later, optimising at -O3, follow a handle's counter through an
// assignment to itself or to a handle of the same counter (raise, then
// lower: never 0 there) into the branch that frees it, and then warn that
// the freed counter is used. That branch cannot run on that path; ASan and
// the model tests check the counts for real. The warning is silenced for the
// counting code of this header only.
#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuse-after-free"
#endif

// A reference count. A new counter starts at 1. Its storage comes from the
// global operator new, also for derived classes (the blocks of cow_1DArray).
class ZORVANCOW_API cow_Counter {
public:
    cow_Counter() : count(1) {}

    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    void Increment() { ++count; }
    // Lowers the count; true when it reached 0.
    bool Decrement() { return --count == 0; }
    std::int32_t GetCount() const { return count; }

private:
    std::int32_t count;
};

// The write gate: true when the holder of `counter` is its only holder, and
// so may write in place what the counter counts. One load and one compare.
inline bool cow_IsSole(cow_Counter const* counter) { return counter->GetCount() == 1; }

// The unshare step, for a holder that the gate turned away: it gives up its
// hold on `shared` (the other holders keep it, so nothing is freed) and
// returns its own replacement at count 1, a C made from `args`: a new
// counter for a handle or a table, a copy of the block for a block. The
// replacement is complete before the hold is given up, so when making it
// throws (an element's copy), the holder still holds `shared` and nothing
// has changed.
template <class C, class... Args>
C* cow_Unshare(C* shared, Args&&... args) {
    C* own = new C(std::forward<Args>(args)...);
    shared->Decrement();
    return own;
}

// A handle that shares one pointee with its copies. The pointee may be null
// (an empty handle is still live: it has a counter and copies like any
// other; a moved-from handle has none, see above). A pointee handed over as
// T* must come from the global operator new.
template <class T>
class ZORVANCOW_TYPE cow_CountedHld {
public:
    // Adopts `object` (which may be null) with a new counter at 1.
    explicit cow_CountedHld(T* object) : counter(new cow_Counter), pointee(object) {}
    // Shares: copies both words and raises the count. Allocates nothing.
    cow_CountedHld(cow_CountedHld const& other) noexcept : counter(other.counter), pointee(other.pointee) {
        if (counter != nullptr) counter->Increment();
    }
    // Takes both words; `other` is left empty without a counter.
    cow_CountedHld(cow_CountedHld&& other) noexcept : counter(other.counter), pointee(other.pointee) {
        other.counter = nullptr;
        other.pointee = nullptr;
    }
    // Lowers the count; the last handle destroys pointee and counter.
    ~cow_CountedHld();

    // Shares the other handle's pointee. The other count is raised before
    // this one is lowered, so assigning a handle to itself, or to another
    // handle on the same pointee, destroys nothing.
    cow_CountedHld& operator=(cow_CountedHld const& other);
    // Releases this handle's hold, then takes both words of `other`, which is
    // left empty without a counter. Moving a handle into itself changes nothing.
    cow_CountedHld& operator=(cow_CountedHld&& other) noexcept {
        cow_CountedHld taken(std::move(other));
        swap(taken);
        return *this;
    }
    // Exchanges the two handles' words; no count moves.
    void swap(cow_CountedHld& other) noexcept {
        std::swap(counter, other.counter);
        std::swap(pointee, other.pointee);
    }
    // Makes this handle the only holder of `object` (null empties it). A sole
    // handle destroys its old pointee and keeps its counter; a shared one
    // leaves the others their pointee and takes a new counter at 1.
    // `object` must not be the current, non-null pointee.
    cow_CountedHld& operator=(T* object);

    // Inspection: the read pointer (null for an empty handle), how many handles
    // share it, and the counter itself, to tell whether two handles share.
    T const* ConstGet() const { return pointee; }
    std::int32_t GetShareCount() const { return counter != nullptr ? counter->GetCount() : 1; }
    cow_Counter const* GetCounter() const { return counter; }

    // Takes the pointee out of a handle that holds it alone: the caller gets
    // it to destroy, and the handle is left empty with its counter (which its
    // own release frees). A shared or empty handle gives null and is left as
    // it was. Lets a node free a chain of sole children without recursion.
    T* TakeIfSole() {
        if (pointee == nullptr || !cow_IsSole(counter)) return nullptr;
        T* taken = pointee;
        pointee = nullptr;
        return taken;
    }

protected:
    // Destroys the pointee (when there is one) and the counter; both words
    // are null afterwards.
    void Delete();

    cow_Counter* counter;
    T* pointee;
};

// The library's one copy policy: a full copy through T's copy constructor.
template <class T>
struct ZORVANCOW_TYPE cow_Direct {
    // A new T copied from `source`, from the global operator new.
    static T* Copy(T const& source);
};

// A counted handle with a write access. A write to a shared pointee copies it
// once, on the writer's side only; the other handles keep the old object.
// How deep the copy goes is the pointee's matter: tree and map nodes copy
// one node and share their children.
template <class T, class Cp = cow_Direct<T>>
class ZORVANCOW_TYPE cow_COW : public cow_CountedHld<T> {
public:
    // Starts from a private copy of `source`.
    explicit cow_COW(T const& source);
    // Adopts `object` (null gives a live, empty handle).
    explicit cow_COW(T* object);
    cow_COW(cow_COW const& other) = default;
    cow_COW(cow_COW&& other) noexcept = default;
    ~cow_COW();

    cow_COW& operator=(cow_COW const& other) = default;
    cow_COW& operator=(cow_COW&& other) noexcept = default;
    using cow_CountedHld<T>::operator=;

    // The write access: returns an object that no other handle sees, copying
    // it first when the count is not 1. Costs a load and a compare when the
    // handle is already the sole holder. Needs a non-null pointee when shared.
    T& Get();
};

// A base for user objects that keep a counter of their own. The library
// derives nothing from it; a new object has no counter set.
class ZORVANCOW_API cow_IntrusiveCountedBase {
public:
    cow_IntrusiveCountedBase() : counter(nullptr) {}

    // Stores `newCounter`. When another, non-null counter was already set, a
    // line goes to standard error; the old counter is not released.
    void SetCounter(cow_Counter* newCounter);
    cow_Counter* GetCounter() const { return counter; }

private:
    cow_Counter* counter;
};

template <class T>
cow_CountedHld<T>::~cow_CountedHld() {
    if (counter != nullptr && counter->Decrement()) Delete();
}

template <class T>
cow_CountedHld<T>& cow_CountedHld<T>::operator=(cow_CountedHld const& other) {
    if (other.counter != nullptr) other.counter->Increment();
    cow_Counter* newCounter = other.counter;
    T* newPointee = other.pointee;
    if (counter != nullptr && counter->Decrement()) Delete();
    counter = newCounter;
    pointee = newPointee;
    return *this;
}

template <class T>
cow_CountedHld<T>& cow_CountedHld<T>::operator=(T* object) {
    if (counter == nullptr) {
        counter = new cow_Counter;
    } else if (cow_IsSole(counter)) {
        delete pointee;
    } else {
        counter = cow_Unshare(counter);
    }
    pointee = object;
    return *this;
}

template <class T>
void cow_CountedHld<T>::Delete() {
    delete pointee;
    pointee = nullptr;
    delete counter;
    counter = nullptr;
}

template <class T>
T* cow_Direct<T>::Copy(T const& source) {
    return cow_Allocate([&source] { return new T(source); });
}

template <class T, class Cp>
cow_COW<T, Cp>::cow_COW(T const& source) : cow_CountedHld<T>(Cp::Copy(source)) {}

template <class T, class Cp>
cow_COW<T, Cp>::cow_COW(T* object) : cow_CountedHld<T>(object) {}

// The release itself is the base destructor's, which runs right after:
// one count given up per handle.
template <class T, class Cp>
cow_COW<T, Cp>::~cow_COW() {}

template <class T, class Cp>
T& cow_COW<T, Cp>::Get() {
    T* current = this->pointee;
    if (this->counter == nullptr) {
        this->counter = new cow_Counter;
    } else if (!cow_IsSole(this->counter)) {
        *this = Cp::Copy(*current);
    }
    return *this->pointee;
}

#if defined(__GNUC__) && !defined(__clang__) && __GNUC__ >= 12
#pragma GCC diagnostic pop
#endif

#endif

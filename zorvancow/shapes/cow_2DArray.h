#ifndef ZORVANCOW_SHAPES_COW_2DARRAY_H
#define ZORVANCOW_SHAPES_COW_2DARRAY_H

// A matrix whose shape is fixed when it is made, stored row by row in one
// contiguous run behind a counted handle and shared or copied as a whole.
//
// Copying a cow_2DArray costs one count increment. The first write through a
// copy whose representation is shared copies every element; later writes
// through the same value copy nothing. String elements share their texts
// with the elements they were copied from.
//
// Element (r, c) lies at data[r * columns + c], worked out in int: the
// elements of a row are adjacent, and rows * columns must fit an int.
// 0 <= r < GetRows() and 0 <= c < GetColumns() are the caller's duty;
// checked mode (core/cow_Check.h) stops on an index outside them in ConstGet
// and Get, and on a row outside them in Row(r). A shape whose element
// count does not fit an int is refused in every build.

#include <algorithm>
#include <climits>
#include <cstddef>

#include "zorvancow/core/cow_COW.h"
#include "zorvancow/core/cow_Check.h"
#include "zorvancow/core/cow_Element.h"
#include "zorvancow/core/cow_Export.h"
#include "zorvancow/core/cow_String.h"
#include "zorvancow/shapes/detail/cow_2DArrayStd.h"

// The representation a cow_2DArray points at: two extents and the elements in
// row-major order. A plain owner with deep copies; the sharing lives in the
// handle of cow_2DArray.
//
// New elements are the element type's zero value: 0 for numbers, empty
// values without a text for strings.
template <class T>
class cow_2DArrayRows;

template <class T>
struct ZORVANCOW_TYPE cow_2DArrayRep {
    // A rows x columns matrix of zero elements. A negative extent counts as
    // 0. When either extent is 0 nothing is allocated and `data` is null;
    // both extents are kept all the same.
    cow_2DArrayRep(int rows, int columns);
    // A deep copy: the same extents, a new allocation by the same rule, the
    // elements copied row by row (strings share their texts).
    cow_2DArrayRep(cow_2DArrayRep const& source);
    // Frees the elements, if any; string elements give up their texts.
    ~cow_2DArrayRep();

    // Takes a deep copy of `source`, extents included, then frees its own
    // elements, so a representation can change shape here and only here.
    // Assigning a representation to itself changes nothing.
    cow_2DArrayRep& operator=(cow_2DArrayRep const& source) {
        if (&source == this) return *this;
        T* copy = Copy(source);
        cow_Element<T>::DeleteRun(data);
        data = copy;
        rows = source.rows;
        columns = source.columns;
        return *this;
    }

    int rows;     // first extent
    int columns;  // second extent, and the stride between rows
    T* data;      // a run of rows * columns elements (cow_Element<T>); null when either extent is 0

private:
    // The element count of a shape, or 0 when either extent is 0. Refuses,
    // in every build, a shape whose element count does not fit an int: the
    // indexing would wrap and write outside the elements.
    static std::size_t Count(int rows, int columns) {
        if (rows == 0 || columns == 0) return 0;
        ZORVANCOW_REQUIRE(static_cast<long long>(rows) * columns <= INT_MAX, "cow_2DArray::cow_2DArray", "rows x columns overflows int",
                          "%d x %d", rows, columns);
        return static_cast<std::size_t>(rows * columns);
    }
    // Zero elements for a shape, or null when it has none.
    static T* Allocate(int rows, int columns) {
        std::size_t const n = Count(rows, columns);
        return n != 0 ? cow_Element<T>::NewRun(n) : nullptr;
    }
    // A copy of the source's elements, row by row and each row from column 0
    // up: one pass along memory, and for numbers one block move. Null when
    // the source has none.
    static T* Copy(cow_2DArrayRep const& source) {
        return source.data != nullptr
                   ? cow_Element<T>::NewRunCopy(source.data, Count(source.rows, source.columns))
                   : nullptr;
    }
};

// A value matrix of fixed shape with copy-on-write sharing of the whole.
//
// Copy construction and assignment share the representation (one increment,
// nothing allocated, no element touched); the last matrix on a
// representation frees it.
template <class T>
class ZORVANCOW_TYPE cow_2DArray {
public:
    // A rows x columns matrix with every element assigned `value`, row by
    // row (strings share its text, one count per element). A negative extent
    // counts as 0; with a 0 extent no element is allocated or written. Costs
    // one representation, one counter and, unless empty, one element
    // allocation.
    cow_2DArray(int rows, int columns, T const& value);
    // Shares the other's representation: one increment, nothing allocated.
    cow_2DArray(cow_2DArray const& other) noexcept = default;
    // Takes the other's representation without a count moving, and leaves
    // `other` a 0 x 0 matrix that holds no representation: it reads, copies
    // and is assigned like any matrix. Allocates nothing, cannot throw.
    cow_2DArray(cow_2DArray&& other) noexcept = default;
    cow_2DArray& operator=(cow_2DArray const& other) = default;
    cow_2DArray& operator=(cow_2DArray&& other) noexcept = default;
    // Exchanges the two matrices' representations; no count moves.
    void swap(cow_2DArray& other) noexcept { rep.swap(other.rep); }

    int GetRows() const { return rep.ConstGet() != nullptr ? rep.ConstGet()->rows : 0; }
    int GetColumns() const { return rep.ConstGet() != nullptr ? rep.ConstGet()->columns : 0; }
    // Reads element (r, c). Touches no count.
    T const& ConstGet(int r, int c) const {
        ZORVANCOW_CHECK(r >= 0 && r < GetRows() && c >= 0 && c < GetColumns(), "cow_2DArray::ConstGet",
                        "index out of range", "row %d, column %d, shape %d x %d", r, c, GetRows(), GetColumns());
        cow_2DArrayRep<T> const* shared = rep.ConstGet();
        return shared->data[r * shared->columns + c];
    }
    // Write access to element (r, c). When the representation is shared this
    // first copies all elements for this matrix alone; the reference stays
    // valid until this matrix is assigned or destroyed.
    T& Get(int r, int c) {
        ZORVANCOW_CHECK(r >= 0 && r < GetRows() && c >= 0 && c < GetColumns(), "cow_2DArray::Get", "index out of range",
                        "row %d, column %d, shape %d x %d", r, c, GetRows(), GetColumns());
        cow_2DArrayRep<T>& own = rep.Get();
        return own.data[r * own.columns + c];
    }

    // Inspection: the representation (to tell whether two matrices share it)
    // and how many matrices share it.
    cow_2DArrayRep<T> const* GetRep() const { return rep.ConstGet(); }
    std::int32_t GetShareCount() const { return rep.GetShareCount(); }

    // Standard interface (shapes/detail/cow_2DArrayStd.h). Iterators are
    // pointers into the representation, valid while this matrix holds it;
    // those of a non-const matrix write, and unshare the whole first.
    using value_type = T;
    using size_type = std::size_t;
    using const_iterator = T const*;
    using iterator = T*;
    // All elements, row by row.
    T const* begin() const { return rep.ConstGet() != nullptr ? rep.ConstGet()->data : nullptr; }
    T const* end() const { return begin() + size(); }
    // Number of elements, rows times columns.
    std::size_t size() const {
        return static_cast<std::size_t>(GetRows()) * static_cast<std::size_t>(GetColumns());
    }
    bool empty() const { return size() == 0; }
    // Row r as a contiguous span, and all rows as a random-access range of spans.
    cow_Span<T const> Row(int r) const {
        ZORVANCOW_CHECK(r >= 0 && r < GetRows(), "cow_2DArray::Row", "row out of range", "row %d, shape %d x %d", r,
                        GetRows(), GetColumns());
        return cow_Span<T const>(begin() + static_cast<std::ptrdiff_t>(r) * GetColumns(), static_cast<std::size_t>(GetColumns()));
    }
    cow_2DArrayRows<T> Rows() const;
    // The same on a non-const matrix, for writing: all elements and row r.
    // Each makes the representation private first, as Get does (copying
    // every element when it is shared, even if the caller only reads).
    T* begin() { return rep.Get().data; }
    T* end() { return begin() + size(); }
    cow_Span<T> Row(int r) {
        static_cast<void>(static_cast<cow_2DArray const&>(*this).Row(r));  // its checks
        T* all = begin();
        return cow_Span<T>(all + static_cast<std::ptrdiff_t>(r) * GetColumns(), static_cast<std::size_t>(GetColumns()));
    }

private:
    cow_COW<cow_2DArrayRep<T>, cow_Direct<cow_2DArrayRep<T>>> rep;
};

template <class T>
cow_2DArrayRep<T>::cow_2DArrayRep(int rowCount, int columnCount)
    : rows(rowCount < 0 ? 0 : rowCount), columns(columnCount < 0 ? 0 : columnCount), data(Allocate(this->rows, this->columns)) {}

template <class T>
cow_2DArrayRep<T>::cow_2DArrayRep(cow_2DArrayRep const& source)
    : rows(source.rows), columns(source.columns), data(Copy(source)) {}

template <class T>
cow_2DArrayRep<T>::~cow_2DArrayRep() {
    cow_Element<T>::DeleteRun(data);
}

template <class T>
cow_2DArray<T>::cow_2DArray(int rows, int columns, T const& value)
    : rep(cow_Allocate([rows, columns] { return new cow_2DArrayRep<T>(rows, columns); })) {
    // The handle is new and private, so Get copies nothing here.
    // Row by row, in memory order.
    cow_2DArrayRep<T>& fresh = rep.Get();
    if (fresh.data != nullptr) {
        cow_Element<T>::FillRun(fresh.data, static_cast<std::size_t>(fresh.rows) * static_cast<std::size_t>(fresh.columns), value);
    }
}

template <class T>
inline cow_2DArrayRows<T> cow_2DArray<T>::Rows() const {
    return cow_2DArrayRows<T>(begin(), GetColumns() != 0 ? GetRows() : 0, GetColumns());
}

template <class T>
inline void swap(cow_2DArray<T>& a, cow_2DArray<T>& b) noexcept {
    a.swap(b);
}

#include "zorvancow/shapes/detail/cow_2DArrayExports.h"

#endif

#ifndef ZORVANCOW_SHAPES_DETAIL_COW_2DARRAYSTD_H
#define ZORVANCOW_SHAPES_DETAIL_COW_2DARRAYSTD_H

// The matrix's rows as a range. Rows are contiguous: Row(r) is a cow_Span of its elements, and begin()/end()
// walk all elements row by row. Both are plain pointers to const elements of
// the representation this matrix holds, valid while it lives (see
// cow_FixedArray: assignment, destruction and a Get on a shared matrix end
// their guarantee).

#include <cstddef>

#include "zorvancow/core/cow_Std.h"

// Rows as a range of cow_Span, for `for (auto row : matrix.Rows())`.
template <class T>
class cow_2DArrayRows {
public:
    class iterator : public cow_ValueIteratorTypes<std::random_access_iterator_tag, cow_Span<T const>>,
                     public cow_detail::PostfixSteps<iterator> {
    public:
        iterator() = default;
        iterator(T const* row_, int columns_) : row(row_), columns(columns_) {}
        cow_Span<T const> operator*() const { return cow_Span<T const>(row, static_cast<std::size_t>(columns)); }
        cow_Span<T const> operator[](std::ptrdiff_t n) const { return *(*this + n); }
        iterator& operator++() { return *this += 1; }
        iterator& operator--() { return *this -= 1; }
        iterator& operator+=(std::ptrdiff_t n) {
            row += n * columns;
            return *this;
        }
        iterator& operator-=(std::ptrdiff_t n) { return *this += -n; }
        friend iterator operator+(iterator it, std::ptrdiff_t n) { return it += n; }
        friend iterator operator+(std::ptrdiff_t n, iterator it) { return it += n; }
        friend iterator operator-(iterator it, std::ptrdiff_t n) { return it -= n; }
        friend std::ptrdiff_t operator-(iterator const& a, iterator const& b) {
            return a.columns != 0 ? (a.row - b.row) / a.columns : 0;
        }
        friend bool operator==(iterator const& a, iterator const& b) { return a.row == b.row; }
        friend bool operator!=(iterator const& a, iterator const& b) { return a.row != b.row; }
        friend bool operator<(iterator const& a, iterator const& b) { return a.row < b.row; }
        friend bool operator>(iterator const& a, iterator const& b) { return b.row < a.row; }
        friend bool operator<=(iterator const& a, iterator const& b) { return !(b.row < a.row); }
        friend bool operator>=(iterator const& a, iterator const& b) { return !(a.row < b.row); }

    private:
        T const* row = nullptr;
        int columns = 0;
    };

    cow_2DArrayRows(T const* data_, int rows_, int columns_) : data(data_), rows(rows_), columns(columns_) {}
    // With no columns every row is empty and the walk is empty too.
    iterator begin() const { return iterator(data, columns); }
    iterator end() const { return iterator(data + static_cast<std::ptrdiff_t>(rows) * columns, columns); }
    std::size_t size() const { return columns != 0 ? static_cast<std::size_t>(rows) : 0; }

private:
    T const* data;
    int rows;
    int columns;
};

#endif

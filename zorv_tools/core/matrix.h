#pragma once

/// @file
/// Small dense matrices. Indices count from zero, first the row, then the column. No index is tested. A matrix
/// is either empty, with both dimensions 0, or has at least one row and one column.
///
/// A reference to an element and a pointer to a row, whose elements stand one behind the other, are valid until the
/// matrix is given a size, assigned another matrix, multiplied in place, cleared or destroyed.

#include <algorithm>
#include <vector>

#include "zorv_tools/core/export.h"

namespace zorv {

/// Dense matrix. There is one of doubles, which computes, and one of ints, which only stores.
template <class T>
class matrix;

/// Storage that both kinds of matrix are made of: a row pointer for each row, and the elements behind them in one
/// block. Not for hosts.
template <class T>
class matrix_rows {
public:
    /// No storage.
    matrix_rows() = default;
    matrix_rows(const matrix_rows&) = delete;
    matrix_rows& operator=(const matrix_rows&) = delete;
    ~matrix_rows() { release(); }

    /// Number of rows.
    unsigned int get_dim1() const { return dim1; }
    /// Number of columns.
    unsigned int get_dim2() const { return dim2; }
    /// @{
    /// The first element of a row, which is not tested.
    T* operator[](unsigned int row) { return data[row]; }
    const T* operator[](unsigned int row) const { return data[row]; }
    /// @}

    /// Frees the storage; both dimensions are 0 then.
    void release();
    /// Zeroed storage of `rows` by `cols`, in place of what was there. Either being 0 leaves nothing. Throws
    /// `std::bad_alloc`, with nothing left, where there is no memory.
    void allocate(unsigned int rows, unsigned int cols);
    /// Exchanges the storage of the two; no element moves.
    void swap(matrix_rows& other) noexcept {
        std::swap(dim1, other.dim1);
        std::swap(dim2, other.dim2);
        std::swap(data, other.data);
    }

private:
    unsigned int dim1 = 0;
    unsigned int dim2 = 0;
    T** data = nullptr;
};

/// Matrix of doubles: storage, products, transpose, determinant and pseudo-inverse. It has no move operations: a
/// temporary is copied.
template <>
class ZORV_TOOLS_EXPORT matrix<double> {
public:
    /// An empty matrix.
    matrix();
    /// A matrix of zeros; sizes are refused as by `set_size`.
    matrix(int rows, int cols);
    /// A copy with elements of its own.
    matrix(const matrix& other);
    virtual ~matrix();

    /// Takes the other's shape and elements. There is no test for self-assignment: `m = m` keeps the shape and
    /// leaves zeros, since the old elements go first.
    matrix& operator=(const matrix& other);
    /// Fills the present shape from a flat row-major vector. A vector that is too short raises
    /// `std::out_of_range` after as many elements as it has have been set; surplus entries are ignored.
    matrix& operator=(const std::vector<double>& values);

    /// Matrix product. The inner dimensions must agree and are not compared. Each element is the sum over the inner
    /// index from 0 upward, started at 0.0: the order in which it is rounded is fixed.
    matrix operator*(const matrix& rhs) const;
    /// Puts the product `*this * rhs` in place of this matrix, whose shape may change. `rhs` may be this matrix.
    matrix& operator*=(const matrix& rhs);
    /// Matrix times column vector: one entry for each row, summed as in the product of matrices. A vector shorter
    /// than the row raises `std::out_of_range`; a longer one has its surplus ignored.
    std::vector<double> operator*(const std::vector<double>& rhs) const;

    /// Gives the matrix a new shape, all zeros, even if the shape is the one it had. A 0 leaves it empty, with both
    /// dimensions 0; a negative number throws `exception_l`, and the old elements are gone by then.
    void set_size(int rows, int cols);
    /// Makes the matrix empty.
    void clear();

    /// Number of rows; 0 for an empty matrix.
    unsigned int get_dim1() const { return rows_.get_dim1(); }
    /// Number of columns; 0 for an empty matrix.
    unsigned int get_dim2() const { return rows_.get_dim2(); }

    /// @{
    /// One element, or with one index the first element of a row.
    double& get(unsigned int row, unsigned int col) { return rows_[row][col]; }
    const double& get(unsigned int row, unsigned int col) const { return rows_[row][col]; }
    void set(unsigned int row, unsigned int col, double value) { rows_[row][col] = value; }
    double* operator[](unsigned int row) { return rows_[row]; }
    const double* operator[](unsigned int row) const { return rows_[row]; }
    /// @}

    /// Copies as many entries as the matrix has columns from the front of `values`, which must have that many;
    /// neither the row nor the vector's size is tested.
    void set_row(const unsigned int& row, const std::vector<double>& values);

    /// A new matrix with rows and columns exchanged.
    const matrix transpose() const;
    /// Determinant by cofactor expansion along the first column; 1 for an empty matrix. The caller sees to it
    /// that the matrix is square. The cost grows with the factorial of the size: it is meant for 3 by 3.
    double det() const;
    /// The Moore-Penrose inverse (by singular values), with the dimensions exchanged: singular and non-square
    /// matrices have one too, and nothing tells of them. That of zeros is zeros. Failures inside OpenCV surface as
    /// `cv::Exception`, as for an empty matrix.
    const matrix invert() const;

private:
    matrix_rows<double> rows_;
};

/// Matrix of ints: storage alone, which cannot be copied.
template <>
class ZORV_TOOLS_EXPORT matrix<int> {
public:
    /// A matrix of zeros; sizes are refused as by `set_size`.
    matrix(int rows, int cols);
    matrix(const matrix&) = delete;
    matrix& operator=(const matrix&) = delete;
    virtual ~matrix();

    /// Gives the matrix a new shape, all zeros, with the errors and the report of `matrix<double>::set_size`.
    void set_size(int rows, int cols);
    /// Makes the matrix empty.
    void clear();

    /// Number of rows; 0 for an empty matrix.
    unsigned int get_dim1() const { return rows_.get_dim1(); }
    /// Number of columns; 0 for an empty matrix.
    unsigned int get_dim2() const { return rows_.get_dim2(); }
    /// @{
    /// The first element of a row.
    int* operator[](unsigned int row) { return rows_[row]; }
    const int* operator[](unsigned int row) const { return rows_[row]; }
    /// @}

private:
    matrix_rows<int> rows_;
};

}  // namespace zorv

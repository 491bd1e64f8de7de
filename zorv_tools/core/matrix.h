#pragma once

/// @file
/// Small dense matrices. Indices count from zero, first the row, then the column. No index is tested. A matrix
/// is either empty, with both dimensions 0, or has at least one row and one column.

#include <algorithm>
#include <vector>

#include "zorv_tools/core/export.h"

namespace zorv {

template <class T>
class matrix;

/// Storage shared by the two matrices: a row pointer for each row, and the elements behind them in one block.
/// Not for hosts.
template <class T>
class matrix_rows {
public:
    matrix_rows() = default;
    matrix_rows(const matrix_rows&) = delete;
    matrix_rows& operator=(const matrix_rows&) = delete;
    ~matrix_rows() { release(); }

    /// Number of rows.
    unsigned int get_dim1() const { return dim1; }
    /// Number of columns.
    unsigned int get_dim2() const { return dim2; }
    /// The elements of a row, one behind the other.
    T* operator[](unsigned int row) { return data[row]; }
    /// The elements of a row, one behind the other.
    const T* operator[](unsigned int row) const { return data[row]; }

    /// Frees the storage; both dimensions are 0 then.
    void release();
    /// Zeroed storage of `rows` by `cols`, in place of what was there. Either being 0 leaves nothing.
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

/// Matrix of doubles: storage, products, transpose, determinant and pseudo-inverse.
template <>
class ZORV_TOOLS_EXPORT matrix<double> {
public:
    /// An empty matrix.
    matrix();
    /// A matrix of zeros; see `set_size`.
    matrix(int rows, int cols);
    /// A full copy.
    matrix(const matrix& other);
    virtual ~matrix();

    /// Takes the other's shape and elements. There is no test for self-assignment: `m = m` keeps the shape and
    /// leaves zeros, since the old elements go first.
    matrix& operator=(const matrix& other);
    /// Fills the present shape from a flat row-major vector. A vector that is too short raises
    /// `std::out_of_range` after the elements before it have been set; surplus entries are ignored.
    matrix& operator=(const std::vector<double>& values);

    /// Matrix product. The inner dimensions must agree and are not compared.
    matrix operator*(const matrix& rhs) const;
    /// Puts the product `*this * rhs` in place of this matrix, whose shape may change.
    matrix& operator*=(const matrix& rhs);
    /// Matrix times column vector. A vector shorter than the row raises `std::out_of_range`; a longer one has
    /// its surplus ignored.
    std::vector<double> operator*(const std::vector<double>& rhs) const;

    /// Gives the matrix a new shape, all zeros, even if the shape is the one it had. A 0 leaves it empty; a
    /// negative number throws `exception_l`, and the old elements are gone by then.
    void set_size(int rows, int cols);
    /// Makes the matrix empty.
    void clear();

    /// Number of rows.
    unsigned int get_dim1() const { return rows_.get_dim1(); }
    /// Number of columns.
    unsigned int get_dim2() const { return rows_.get_dim2(); }

    /// The element at (row, col). The indices are not tested.
    double& get(unsigned int row, unsigned int col) { return rows_[row][col]; }
    /// The element at (row, col). The indices are not tested.
    const double& get(unsigned int row, unsigned int col) const { return rows_[row][col]; }
    /// Sets the element at (row, col). The indices are not tested.
    void set(unsigned int row, unsigned int col, double value) { rows_[row][col] = value; }
    /// The elements of a row, one behind the other. The index is not tested.
    double* operator[](unsigned int row) { return rows_[row]; }
    /// The elements of a row, one behind the other. The index is not tested.
    const double* operator[](unsigned int row) const { return rows_[row]; }

    /// Copies as many entries as the matrix has columns; neither the row nor the vector's size is tested.
    void set_row(const unsigned int& row, const std::vector<double>& values);

    /// A matrix with rows and columns exchanged.
    const matrix transpose() const;
    /// Determinant by cofactor expansion along the first column; 1 for an empty matrix. The caller sees to it
    /// that the matrix is square. The cost grows with the factorial of the size.
    double det() const;
    /// The Moore-Penrose inverse (by singular values), with the dimensions exchanged: singular and non-square
    /// matrices have one too. Failures inside OpenCV surface as `cv::Exception`.
    const matrix invert() const;

private:
    matrix_rows<double> rows_;
};

/// Matrix of ints: storage alone.
template <>
class ZORV_TOOLS_EXPORT matrix<int> {
public:
    /// A matrix of zeros; see `set_size`.
    matrix(int rows, int cols);
    matrix(const matrix&) = delete;
    matrix& operator=(const matrix&) = delete;
    virtual ~matrix();

    /// As that of `matrix<double>`.
    void set_size(int rows, int cols);
    /// Makes the matrix empty.
    void clear();

    /// Number of rows.
    unsigned int get_dim1() const { return rows_.get_dim1(); }
    /// Number of columns.
    unsigned int get_dim2() const { return rows_.get_dim2(); }
    /// The elements of a row, one behind the other. The index is not tested.
    int* operator[](unsigned int row) { return rows_[row]; }
    /// The elements of a row, one behind the other. The index is not tested.
    const int* operator[](unsigned int row) const { return rows_[row]; }

private:
    matrix_rows<int> rows_;
};

}  // namespace zorv

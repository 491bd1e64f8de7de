#include "zorv_tools/core/matrix.h"

#include <cstddef>
#include <new>
#include <opencv2/core.hpp>

#include "zorv_tools/core/exception_l.h"

namespace zorv {

namespace internal {

template <class T>
void matrix_rows<T>::release() {
    ::operator delete(data);
    data = nullptr;
    dim1 = 0;
    dim2 = 0;
}

template <class T>
void matrix_rows<T>::allocate(unsigned int rows, unsigned int cols) {
    static_assert(alignof(T) <= alignof(T*), "the elements follow the row pointers in one block");
    release();
    if (rows == 0 || cols == 0) {
        return;
    }
    const std::size_t count = std::size_t(rows) * cols;
    data = static_cast<T**>(::operator new(rows * sizeof(T*) + count * sizeof(T)));
    T* const elements = reinterpret_cast<T*>(data + rows);
    std::fill_n(elements, count, T());
    for (unsigned int row = 0; row < rows; ++row) {
        data[row] = elements + std::size_t(row) * cols;
    }
    dim1 = rows;
    dim2 = cols;
}

template class matrix_rows<double>;
template class matrix_rows<int>;

}  // namespace internal

namespace {

template <class T>
void resize(internal::matrix_rows<T>& storage, int rows, int cols, const code_location& caller) {
    // The old elements go first, whatever follows.
    storage.release();
    if (rows < 0 || cols < 0) {
        std::ostringstream sentence;
        sentence << "matrix::set_size() : tried to set size to " << rows << "," << cols;
        throw_exception_l(caller, sentence.str());
    }
    storage.allocate(static_cast<unsigned int>(rows), static_cast<unsigned int>(cols));
}

/// left times right into zeroed storage of its own. Each sum runs over k from 0 upward, starting at 0.0.
void multiply(const internal::matrix_rows<double>& left, const internal::matrix_rows<double>& right,
              internal::matrix_rows<double>& product) {
    const unsigned int rows = left.get_dim1();
    const unsigned int cols = right.get_dim2();
    // The two are equal in a correct call; the smaller keeps a wrong one inside both matrices.
    const unsigned int inner = std::min(left.get_dim2(), right.get_dim1());
    product.allocate(rows, cols);
    for (unsigned int i = 0; product.get_dim1() != 0 && i < rows; ++i) {
        double* const sums = product[i];
        for (unsigned int k = 0; k < inner; ++k) {
            const double factor = left[i][k];
            const double* const row = right[k];
            for (unsigned int j = 0; j < cols; ++j) {
                sums[j] += factor * row[j];
            }
        }
    }
}

}  // namespace

matrix<double>::matrix() = default;

matrix<double>::matrix(int rows, int cols) {
    set_size(rows, cols);
}

matrix<double>::matrix(const matrix& other) {
    *this = other;
}

matrix<double>::~matrix() = default;

matrix<double>& matrix<double>::operator=(const matrix& other) {
    // The dimensions are taken by value: in a self-assignment they would vanish under the resize.
    const unsigned int rows = other.get_dim1();
    const unsigned int cols = other.get_dim2();
    rows_.allocate(rows, cols);
    for (unsigned int i = 0; i < rows; ++i) {
        std::copy_n(other[i], cols, rows_[i]);
    }
    return *this;
}

matrix<double>& matrix<double>::operator=(const std::vector<double>& values) {
    std::size_t next = 0;
    for (unsigned int i = 0; i < get_dim1(); ++i) {
        for (unsigned int j = 0; j < get_dim2(); ++j) {
            rows_[i][j] = values.at(next++);
        }
    }
    return *this;
}

matrix<double> matrix<double>::operator*(const matrix& rhs) const {
    matrix product;
    multiply(rows_, rhs.rows_, product.rows_);
    return product;
}

matrix<double>& matrix<double>::operator*=(const matrix& rhs) {
    internal::matrix_rows<double> product;
    multiply(rows_, rhs.rows_, product);
    rows_.swap(product);
    return *this;
}

std::vector<double> matrix<double>::operator*(const std::vector<double>& rhs) const {
    std::vector<double> product(get_dim1());
    for (unsigned int i = 0; i < get_dim1(); ++i) {
        double sum = 0.0;
        for (unsigned int j = 0; j < get_dim2(); ++j) {
            sum += rows_[i][j] * rhs.at(j);
        }
        product[i] = sum;
    }
    return product;
}

void matrix<double>::set_size(int rows, int cols) {
    resize(rows_, rows, cols, ZORV_HERE);
}

void matrix<double>::clear() {
    rows_.release();
}

void matrix<double>::set_row(const unsigned int& row, const std::vector<double>& values) {
    try {
        std::copy_n(values.begin(), get_dim2(), rows_[row]);
    }
    ZORV_ADD_FRAME("")
}

const matrix<double> matrix<double>::transpose() const {
    matrix result;
    result.rows_.allocate(get_dim2(), get_dim1());
    for (unsigned int i = 0; i < get_dim1(); ++i) {
        for (unsigned int j = 0; j < get_dim2(); ++j) {
            result[j][i] = rows_[i][j];
        }
    }
    return result;
}

double matrix<double>::det() const {
    const unsigned int size = get_dim1();
    switch (size) {
        case 0:
            return 1.0;
        case 1:
            return rows_[0][0];
        case 2:
            return rows_[1][1] * rows_[0][0] - rows_[0][1] * rows_[1][0];
        default:
            break;
    }
    double sum = 0.0;
    matrix minor;
    minor.rows_.allocate(size - 1, size - 1);
    for (unsigned int i = 0; i < get_dim2(); ++i) {
        for (unsigned int row = 0, from = 0; row < size - 1; ++row, ++from) {
            from += (from == i);
            std::copy_n(rows_[from] + 1, size - 1, minor[row]);
        }
        const double term = minor.det() * rows_[i][0];
        sum = (i % 2 == 0) ? sum + term : sum - term;
    }
    return sum;
}

const matrix<double> matrix<double>::invert() const {
    cv::Mat source(static_cast<int>(get_dim1()), static_cast<int>(get_dim2()), CV_64F);
    for (unsigned int i = 0; i < get_dim1(); ++i) {
        std::copy_n(rows_[i], get_dim2(), source.ptr<double>(static_cast<int>(i)));
    }
    cv::Mat inverse;
    cv::invert(source, inverse, cv::DECOMP_SVD);
    matrix result;
    result.rows_.allocate(get_dim2(), get_dim1());
    for (unsigned int i = 0; i < result.get_dim1(); ++i) {
        std::copy_n(inverse.ptr<double>(static_cast<int>(i)), result.get_dim2(), result[i]);
    }
    return result;
}

matrix<int>::matrix(int rows, int cols) {
    set_size(rows, cols);
}

matrix<int>::~matrix() = default;

void matrix<int>::set_size(int rows, int cols) {
    resize(rows_, rows, cols, ZORV_HERE);
}

void matrix<int>::clear() {
    rows_.release();
}

}  // namespace zorv

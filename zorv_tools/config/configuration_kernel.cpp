#include <limits>

#include "zorv_tools/config/internal/configuration_fields.h"
#include "zorv_tools/config/internal/configuration_structured.h"
#include "zorv_tools/core/opencv_c.h"

namespace zorv::internal {

namespace {

enum kernel_field : std::size_t { cols, rows, anchor_x, anchor_y, shape, iterations, first_value };

bool accept_geometry(const std::vector<int>& numbers) {
    const int kind = numbers[shape];
    return accept(numbers[cols] >= 1, "WARNING: ncols less than 1: ", numbers[cols]) &&
           accept(numbers[rows] >= 1, "WARNING: nrows less than 1: ", numbers[rows]) &&
           // Counted from 1, unlike OpenCV's: an anchor equal to the size passes here and is OpenCV's to refuse.
           accept(numbers[anchor_x] >= 1 && numbers[anchor_x] <= numbers[cols],
                  "WARNING: Anchorx parameter less than 1 or more than ncols: ", numbers[anchor_x]) &&
           accept(numbers[anchor_y] >= 1 && numbers[anchor_y] <= numbers[rows],
                  "WARNING: Anchory parameter less than 1 or more than nrows: ", numbers[anchor_y]) &&
           accept(
               kind == 0 || kind == 1 || kind == 2 || kind == 100,
               "WARNING: Shape parameter must be 0 (rect), 1 (cross), 2 (ellipse) or 100 (custom). Entered value was: ",
               kind);
}

/// The test is the inverse of its sentence, and the last value is not tested: both are meant.
bool accept_values(const std::vector<int>& numbers) {
    for (std::size_t i = first_value; i + 1 < numbers.size(); ++i) {
        if (!accept(numbers[i] < 0 || numbers[i] > 254, "WARNING: value not from 0 to 255: ", numbers[i])) {
            return false;
        }
    }
    return true;
}

IplConvKernel* make_kernel(const std::vector<int>& numbers) {
    // OpenCV computes the size of a kernel with all its values in 32 bits, unchecked.
    const double bytes = static_cast<double>(sizeof(IplConvKernel)) + 64.0 +
                         static_cast<double>(sizeof(int)) * numbers[cols] * numbers[rows];
    if (bytes > std::numeric_limits<int>::max()) {
        CV_Error(cv::Error::StsOutOfRange, "the structuring element is too large");
    }
    // As many values as the kernel has elements, since OpenCV reads that many; it keeps none of them.
    std::vector<int> values;
    if (numbers.size() > first_value) {
        values.assign(numbers.begin() + first_value, numbers.end());
        values.resize(static_cast<std::size_t>(numbers[cols]) * static_cast<std::size_t>(numbers[rows]));
    }
    return cvCreateStructuringElementEx(numbers[cols], numbers[rows], numbers[anchor_x], numbers[anchor_y],
                                        numbers[shape], values.empty() ? nullptr : values.data());
}

}  // namespace

void set_closing_kernel(const key_row& row, const setting& line) {
    if (!first_object(row, line)) {
        return;
    }
    std::vector<int> numbers;
    for (const std::string& field : split_fields(line.value)) {
        numbers.push_back(to_int(field));
    }
    if (numbers.size() < first_value) {
        warn_format(
            "WARNING: Format incorrect, kernel should be entered as \"cols|rows|anchorx|anchory|shape|iterations|value1...\"",
            line);
        return;
    }
    // Only an exact 0 is refused: negative counts pass on purpose.
    if (!accept_geometry(numbers) || !accept_values(numbers) ||
        !accept(numbers[iterations] != 0,
                "WARNING: number of iterations must be greater than 0, entered value was: ",
                numbers[iterations])) {
        return;
    }
    parameter& closing_iterations = line.record_at(line.find_other("closing_iterations"));
    *static_cast<int*>(closing_iterations.value) = numbers[iterations];
    line.object_cell() = make_kernel(numbers);
}

void release_kernel(void* object) {
    auto* kernel = static_cast<IplConvKernel*>(object);
    cvReleaseStructuringElement(&kernel);
}

}  // namespace zorv::internal

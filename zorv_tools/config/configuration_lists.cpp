#include <iostream>
#include <memory>
#include <opencv2/core/types.hpp>
#include <utility>

#include "zorv_tools/config/internal/configuration_fields.h"
#include "zorv_tools/config/internal/configuration_structured.h"
#include "zorv_tools/core/IO_helpers.h"

namespace zorv::internal {

namespace {

float to_float(const std::string& text) {
    return static_cast<float>(to_double(text));
}

template <class T>
void append_fields(const std::string& text, T (*convert)(const std::string&), std::vector<T>& list) {
    for (const std::string& field : split_fields(text)) {
        list.push_back(convert(field));
    }
}

/// Fills the new list of a key that keeps its first one. Null, with a warning, for a repeated line.
template <class T>
std::vector<T>* fill_first(const key_row& row, const setting& line, T (*convert)(const std::string&)) {
    if (!first_object(row, line)) {
        return nullptr;
    }
    std::vector<T>& list = line.object_or_new<std::vector<T>>();
    append_fields(line.value, convert, list);
    return &list;
}

/// The key then counts as never seen.
void remove_doubles(const setting& line) {
    release<std::vector<double>>(std::exchange(line.object_cell(), nullptr));
}

/// Of the checks of a list of `double`, the first that fails gives the warning and removes the list.
void refuse_doubles(const char* warning, const setting& line) {
    std::cerr << warning << std::endl;
    remove_doubles(line);
}

/// The only maker of lists for "svm_multi_kernel_lengths". A list that a later line replaces stays readable for
/// those who hold it and is never released; the leak checker knows this function by its name.
std::vector<int>* make_svm_multi_kernel_lengths(const std::string& text) {
    auto list = std::make_unique<std::vector<int>>();
    append_fields(text, to_int, *list);
    return list.release();
}

const char* model_size_refusal(const std::vector<double>& list) {
    if (list.size() < 8) {
        return "WARNING: Input format for model size is \"x_size|x_step|y_size|y_step|z_size|z_step|channels|scale1...\"";
    }
    for (const std::size_t i : {0u, 2u, 4u, 6u}) {
        if (!(list[i] >= 1)) {
            return "WARNING: The x,y,z sizes and number of channels for the model must all be greater than or equal to 1";
        }
    }
    for (const std::size_t i : {1u, 3u, 5u}) {
        if (!(list[i] > 0)) {
            return "WARNING: The voxel steps in x,y,z must be positive nonzero numbers";
        }
    }
    for (std::size_t i = 7; i < list.size(); ++i) {
        if (!(list[i] > 0)) {
            return "WARNING: An incorrect scale was entered for model_size, all scales must be greater than 0";
        }
    }
    return nullptr;
}

const char* pose_limits_refusal(const std::vector<double>& list) {
    if (list.size() % 3 != 0) {
        // "size" is meant, although these are limits.
        return "WARNING: Input format for model size is \"min_limit1|max_limit1|step1|...\"";
    }
    for (std::size_t i = 0; i < list.size(); i += 3) {
        if (!(list[i] < list[i + 1])) {
            return "WARNING: One of the min limits for model_pose_limits was >= the max limit";
        }
    }
    return nullptr;
}

}  // namespace

bool first_object(const key_row& row, const setting& line) {
    return !line.object_cell() || allow_repetition(row);
}

void warn_format(const char* sentence, const setting& line) {
    std::cerr << sentence << ", entered value was: \"" << line.value << "\"" << std::endl;
}

void set_doubles(const key_row& row, const setting& line) {
    fill_first(row, line, to_double);
}

void set_floats(const key_row& row, const setting& line) {
    fill_first(row, line, to_float);
}

void set_kernel_vals(const key_row& row, const setting& line) {
    if (first_object(row, line)) {
        std::cout << "setting kernel vals" << std::endl;
        append_fields(line.value, to_float, line.object_or_new<std::vector<float>>());
    }
}

void set_svm_multi_kernel_lengths(const key_row& row, const setting& line) {
    if (first_object(row, line)) {
        line.object_cell() = make_svm_multi_kernel_lengths(line.value);
    }
}

void set_mahalanobis_covariance(const key_row& row, const setting& line) {
    if (!first_object(row, line)) {
        return;
    }
    std::vector<double>& list = line.object_or_new<std::vector<double>>();
    list.clear();
    // A field that is no number throws and leaves the fields before it.
    for (const std::string& field : split_fields(line.value)) {
        double number = 0;
        i_helper(field, number);
        list.push_back(number);
    }
}

void set_scale_noise(const key_row& row, const setting& line) {
    const std::vector<double>* const list = fill_first(row, line, to_double);
    if (!list) {
        return;
    }
    // The first four are not tested, whatever the warning says: they may be negative.
    for (std::size_t i = 4; i < list->size(); ++i) {
        if ((*list)[i] < 0) {
            return refuse_doubles(
                "WARNING: An incorrect value was entered in scale_noise, all values must be greater than or equal to 0",
                line);
        }
    }
}

void set_model_size(const key_row& row, const setting& line) {
    const std::vector<double>* const list = fill_first(row, line, to_double);
    if (const char* const refusal = list ? model_size_refusal(*list) : nullptr) {
        refuse_doubles(refusal, line);
    }
}

void set_model_pose_limits(const key_row& row, const setting& line) {
    const std::vector<double>* const list = fill_first(row, line, to_double);
    if (const char* const refusal = list ? pose_limits_refusal(*list) : nullptr) {
        refuse_doubles(refusal, line);
    }
}

void set_classifier_detector_neighbours(const key_row& row, const setting& line) {
    std::vector<int>* const list = fill_first(row, line, to_int);
    if (!list) {
        return;
    }
    for (int& number : *list) {
        if (number < 0) {
            std::cerr << "WARNING: Negative number found in parameter classifier_detector_neighbours."
                      << std::endl;
            number = 0;
        }
    }
    if (list->size() != 3) {
        std::cerr
            << "WARNING: classifier_detector_neighbours should specify the number of neighbours in 3 dimensions, but there were "
            << list->size() << " entries." << std::endl;
    }
}

void set_classifier_detector_roi(const key_row& row, const setting& line) {
    if (!first_object(row, line)) {
        return;
    }
    // A refused line leaves the rectangle all zero, and the key counts as seen.
    cv::Rect& rectangle = line.object_or_new<cv::Rect>();
    std::vector<int> numbers;
    append_fields(line.value, to_int, numbers);
    if (numbers.size() != 4) {
        std::cerr
            << "WARNING: classifier_detector_roi requires 4 parameters of the form x|y|width|height, but there were "
            << numbers.size() << " values." << std::endl;
    } else if (numbers[0] < 0) {
        std::cerr << "WARNING: classifier_detector_roi had a negative x value specified " << numbers[0] << "."
                  << std::endl;
    } else if (numbers[1] < 0) {
        std::cerr << "WARNING: classifier_detector_roi had a negative y value specified " << numbers[1] << "."
                  << std::endl;
    } else {
        rectangle = cv::Rect(numbers[0], numbers[1], numbers[2], numbers[3]);
    }
}

void release_rectangle(void* object) {
    release<cv::Rect>(object);
}

void append_text(const key_row&, const setting& line) {
    line.object_or_new<std::vector<std::string>>().push_back(line.value);
}

void append_model_loc(const key_row& row, const setting& line) {
    if (!ends_in_txt.accepts(line.value)) {
        std::cerr << "WARNING: model_loc does not have a .txt extension: " << line.value << std::endl;
        return;
    }
    append_text(row, line);
}

void append_sequence_length(const key_row&, const setting& line) {
    std::vector<int>& list = line.object_or_new<std::vector<int>>();
    int length = 0;
    i_helper(line.value, length);
    if (length < 1) {
        std::cerr << "WARNING: sequence_lengths specified was less than 1" << std::endl;
        return;
    }
    list.push_back(length);
}

void append_pixel_size(const key_row&, const setting& line) {
    const std::vector<std::string> fields = split_fields(line.value, 2);
    if (fields.size() < 2) {
        // The sentence shows a comma and speaks of cameras; both are meant to stay.
        warn_format(
            "WARNING: Format incorrect, pixel_sizes should be entered as \"pixel_width, pixel_height\" (where clockwise camera rotations are positive)",
            line);
        return;
    }
    const double width = to_double(fields[0]);
    const double height = to_double(fields[1]);
    if (width <= 0 || height <= 0) {
        std::cerr << "WARNING: Either pixel width or height was not greater than 0 (" << width << ","
                  << height << ")" << std::endl;
        return;
    }
    line.object_or_new<std::vector<std::pair<double, double>>>().emplace_back(width, height);
}

}  // namespace zorv::internal

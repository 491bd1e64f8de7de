#include "examples/config_check/values.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <opencv2/core/types.hpp>
#include <sstream>
#include <utility>

#include "zorv_tools/core/opencv_c.h"

namespace {

using texts = std::vector<std::string>;

/// With six digits, as streams have it, or as many more as tell the number from its neighbours.
template <class T>
std::string number(T value) {
    std::ostringstream out;
    for (int digits = 6; digits <= std::numeric_limits<T>::max_digits10; ++digits) {
        out.str("");
        out.precision(digits);
        out << value;
        if (static_cast<T>(std::strtod(out.str().c_str(), nullptr)) == value) {
            break;
        }
    }
    return out.str();
}

std::string text(const std::string& value) {
    return value;
}
std::string text(bool value) {
    return value ? "true" : "false";
}
std::string text(int value) {
    return std::to_string(value);
}
std::string text(float value) {
    return number(value);
}
std::string text(double value) {
    return number(value);
}

template <class List>
std::string joined(const List& list) {
    std::string result;
    const char* separator = "";
    for (const auto& entry : list) {
        result += separator + text(entry);
        separator = "|";
    }
    return result;
}

template <class... Fields>
std::string fields(const Fields&... values) {
    return joined(texts{text(values)...});
}

std::string text(const std::vector<double>* camera) {
    return joined(*camera);
}
std::string text(const std::pair<double, double>& size) {
    return fields(size.first, size.second);
}
std::string text(const zorv::scale& s) {
    return "(" + text(s.samples) + "," + text(s.radius) + "," + text(s.scale_factor) + ")";
}
std::string text(const zorv::stereo_setting& s) {
    return fields(s.stereo_mask_size, s.edge_correlation_on, s.edge_mask_size, s.back_and_forth_on, s.width,
                  s.height, s.max_disp, s.min_disp);
}
std::string text(const zorv::haar_setting& h) {
    return fields(h.cascade_loc, h.scale_rate, h.detections, h.base_width, h.base_height, h.extra_settings);
}
/// Its values are in "class_vector".
std::string text(const zorv::sample& s) {
    return fields(s.location, s.frame, s.x1, s.x2, s.y1, s.y2);
}
std::string text(const cv::Rect& r) {
    return fields(r.x, r.y, r.width, r.height);
}

/// Without the iterations, which are a key of their own. An ellipse is 100 here, since OpenCV does not keep that
/// it was one.
std::string text(const IplConvKernel& kernel) {
    constexpr int most = 49;
    const int count = kernel.nCols * kernel.nRows;
    const std::vector<int> values(kernel.values, kernel.values + std::min(count, most));
    return fields(kernel.nCols, kernel.nRows, kernel.anchorX, kernel.anchorY, kernel.nShiftR) + "|" +
           joined(values) + (count > most ? "|... (" + text(count) + " values)" : "");
}

template <class T>
texts plain(const zorv::configuration& store, const std::string& key) {
    T value{};
    store.get_param(key, value);
    return {text(value)};
}

template <class T>
texts object(const zorv::configuration& store, const std::string& key) {
    const T* held = nullptr;
    store.get_param(key, held);
    return held ? texts{text(*held)} : texts();
}

template <class T>
texts one_line(const zorv::configuration& store, const std::string& key) {
    const std::vector<T>* list = nullptr;
    store.get_param(key, list);
    return list && !list->empty() ? texts{joined(*list)} : texts();
}

template <class T>
texts line_by_line(const zorv::configuration& store, const std::string& key) {
    const std::vector<T>* list = nullptr;
    store.get_param(key, list);
    texts result;
    for (std::size_t i = 0; list && i < list->size(); ++i) {
        result.push_back(text((*list)[i]));
    }
    return result;
}

/// The special keys that lend something else than a vector of doubles.
const struct {
    const char* key;
    texts (*lines)(const zorv::configuration& store, const std::string& key);
} other_objects[] = {
    {"closing_kernel", object<IplConvKernel>},
    {"ip_step", line_by_line<std::string>},
    {"model_loc", line_by_line<std::string>},
    {"sf_gt_disp_loc", line_by_line<std::string>},
    {"colour_model_locs", line_by_line<std::string>},
    {"precomputed_of_paths", line_by_line<std::string>},
    {"surface_normal_imgs", line_by_line<std::string>},
    {"haar_setting", line_by_line<zorv::haar_setting>},
    {"scale", line_by_line<zorv::scale>},
    {"stereo_setting", line_by_line<zorv::stereo_setting>},
    {"sample", line_by_line<zorv::sample>},
    {"bumblebee_params", line_by_line<std::vector<double>*>},
    {"extrinsic_camera_params", line_by_line<std::vector<double>*>},
    {"extrinsic_camera_params_q", line_by_line<std::vector<double>*>},
    {"camera_proj_mats", line_by_line<std::vector<double>*>},
    {"camera_space_transform", line_by_line<std::vector<double>*>},
    {"projection_offsets", line_by_line<std::vector<double>*>},
    {"pixel_sizes", line_by_line<std::pair<double, double>>},
    {"sequence_lengths", line_by_line<int>},
    {"classifier_detector_roi", object<cv::Rect>},
    {"classifier_detector_neighbours", one_line<int>},
    {"svm_multi_kernel_lengths", one_line<int>},
    {"kernel_vals", one_line<float>},
    {"kmeans_hierarchy_ratios", one_line<float>},
};

}  // namespace

std::vector<std::string> value_lines(const zorv::configuration& store, const zorv::parameter& record) {
    switch (record.kind) {
        case zorv::configuration::param_int:
            return plain<int>(store, record.name);
        case zorv::configuration::param_double:
            return plain<double>(store, record.name);
        case zorv::configuration::param_bool:
            return plain<bool>(store, record.name);
        case zorv::configuration::param_string:
            return plain<std::string>(store, record.name);
        default:
            break;
    }
    for (const auto& row : other_objects) {
        if (record.name == row.key) {
            return row.lines(store, record.name);
        }
    }
    return one_line<double>(store, record.name);
}

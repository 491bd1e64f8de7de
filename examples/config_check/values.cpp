#include "examples/config_check/values.h"

#include <opencv2/core.hpp>
#include <sstream>
#include <utility>
#include <vector>

#include "zorv_tools/core/sample.h"

namespace {

template <class T>
void print(std::ostream& out, const T& value) {
    out << value;
}

void print(std::ostream& out, const std::pair<double, double>& sizes) {
    out << sizes.first << "|" << sizes.second;
}

template <class T>
void print(std::ostream& out, const std::vector<T>& list) {
    const char* separator = "";
    for (const T& entry : list) {
        out << separator;
        print(out, entry);
        separator = "|";
    }
}

void print(std::ostream& out, const std::vector<std::vector<double>*>& cameras) {
    const char* separator = "";
    for (const std::vector<double>* camera : cameras) {
        out << separator;
        print(out, *camera);
        separator = "  ";
    }
}

template <class T>
std::string plain(const zorv::configuration& store, const std::string& key) {
    T value{};
    store.get_param(key, value);
    std::ostringstream out;
    out << std::boolalpha << value;
    return out.str();
}

template <class T>
std::string lent(const zorv::configuration& store, const std::string& key) {
    const T* object = nullptr;
    store.get_param(key, object);
    std::ostringstream out;
    if (object) {
        print(out, *object);
    }
    return out.str();
}

/// Records have too many fields for one line.
template <class T>
std::string counted(const zorv::configuration& store, const std::string& key) {
    const std::vector<T>* records = nullptr;
    store.get_param(key, records);
    return records ? std::to_string(records->size()) + (records->size() == 1 ? " entry" : " entries") : "";
}

std::string kernel(const zorv::configuration& store, const std::string& key) {
    const void* object = nullptr;
    store.get_param(key, object);
    return object ? "given" : "";
}

/// The special keys that lend something else than a vector of doubles.
const struct {
    const char* key;
    std::string (*text)(const zorv::configuration& store, const std::string& key);
} other_objects[] = {
    {"closing_kernel", kernel},
    {"ip_step", lent<std::vector<std::string>>},
    {"model_loc", lent<std::vector<std::string>>},
    {"sf_gt_disp_loc", lent<std::vector<std::string>>},
    {"colour_model_locs", lent<std::vector<std::string>>},
    {"precomputed_of_paths", lent<std::vector<std::string>>},
    {"surface_normal_imgs", lent<std::vector<std::string>>},
    {"haar_setting", counted<zorv::haar_setting>},
    {"scale", counted<zorv::scale>},
    {"stereo_setting", counted<zorv::stereo_setting>},
    {"sample", counted<zorv::sample>},
    {"bumblebee_params", lent<std::vector<std::vector<double>*>>},
    {"extrinsic_camera_params", lent<std::vector<std::vector<double>*>>},
    {"extrinsic_camera_params_q", lent<std::vector<std::vector<double>*>>},
    {"camera_proj_mats", lent<std::vector<std::vector<double>*>>},
    {"camera_space_transform", lent<std::vector<std::vector<double>*>>},
    {"projection_offsets", lent<std::vector<std::vector<double>*>>},
    {"classifier_detector_roi", lent<cv::Rect>},
    {"classifier_detector_neighbours", lent<std::vector<int>>},
    {"sequence_lengths", lent<std::vector<int>>},
    {"svm_multi_kernel_lengths", lent<std::vector<int>>},
    {"pixel_sizes", lent<std::vector<std::pair<double, double>>>},
    {"kernel_vals", lent<std::vector<float>>},
    {"kmeans_hierarchy_ratios", lent<std::vector<float>>},
};

}  // namespace

std::string value_text(const zorv::configuration& store, const zorv::parameter& record) {
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
            return row.text(store, record.name);
        }
    }
    return lent<std::vector<double>>(store, record.name);
}

#include <iostream>
#include <sstream>
#include <string>

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/geometry/Camera.h"

namespace zorv {

namespace {

/// A camera key in the store: one entry for each camera, owned by the store.
using camera_list = std::vector<std::vector<double>*>;

/// The list of a key; null where the configuration never set it.
camera_list* list_of(configuration& settings, const std::string& key) {
    camera_list* list = nullptr;
    settings.get_param(key, list);
    return list;
}

/// The entry of a key at `index`. No list and a list that is too short are the same: null.
const std::vector<double>* entry_of(const camera_list* list, unsigned int index) {
    return list && index < list->size() ? (*list)[index] : nullptr;
}

}  // namespace

void Camera::init(configuration& settings, unsigned int index) {
    const std::vector<double>* const intrinsics = entry_of(list_of(settings, "bumblebee_params"), index);
    if (intrinsics) {
        // The last value comes first: an entry that is too short throws before any field has changed.
        disp_to_dist = intrinsics->at(6);
        x_centre = intrinsics->at(0);
        y_centre = intrinsics->at(1);
        x_focus_pixels = intrinsics->at(2);
        y_focus_pixels = intrinsics->at(3);
        set_resolution(intrinsics->at(4), intrinsics->at(5));
    }

    const std::vector<double>* const projection = entry_of(list_of(settings, "camera_proj_mats"), index);
    if (projection) {
        init_projection(settings, index, *projection, ZORV_HERE);
    } else if (!intrinsics) {
        std::cerr << "Camera::init() : camera initialised with index " << index
                  << " but no cal file or set of params is specified at that index." << std::endl;
    }

    // The two lists of extrinsics make one sequence. The index into the second is reduced only where the first
    // has run out, so that an entry at the same index in both is applied from both, and the quaternion stays.
    const camera_list* const euler = list_of(settings, "extrinsic_camera_params");
    unsigned int quaternion_index = index;
    if (const std::vector<double>* const entry = entry_of(euler, index)) {
        set_extrinsics(*entry);
    } else if (euler) {
        quaternion_index -= static_cast<unsigned int>(euler->size());
    }
    if (const std::vector<double>* const entry =
            entry_of(list_of(settings, "extrinsic_camera_params_q"), quaternion_index)) {
        set_extrinsics_quaternion(*entry);
    }
}

void Camera::copy_columns() {
    for (unsigned int j = 0; j < 4; ++j) {
        for (unsigned int i = 0; i < proj_mat.get_dim1(); ++i) {
            proj_mat_columns[j][i] = proj_mat[i][j];
        }
        for (unsigned int i = 0; i < camera_space_transform.get_dim1(); ++i) {
            camera_space_transform_columns[j][i] = camera_space_transform[i][j];
        }
    }
}

void Camera::init_projection(configuration& settings, unsigned int index, const std::vector<double>& entry,
                             const code_location& caller) {
    const auto fail = [&caller](const auto&... pieces) {
        std::ostringstream sentence;
        (sentence << ... << pieces);
        throw_exception_l(caller, sentence.str());
    };

    // Also where an entry fails part-way: what has been filled by then is in force.
    struct columns_kept_in_step {
        Camera& camera;
        ~columns_kept_in_step() { camera.copy_columns(); }
    } const keeper{*this};

    proj_mat.set_size(3, 4);
    proj_mat = entry;
    uses_proj_mats = true;

    camera_space_transform.set_size(4, 4);
    const std::vector<double>* const transform = entry_of(list_of(settings, "camera_space_transform"), index);
    if (!transform) {
        fail("Camera::init() : No camera_space_transform specified in config file for camera ", index);
    }
    camera_space_transform = *transform;

    const std::vector<double>* const offsets = entry_of(list_of(settings, "projection_offsets"), index);
    if (!offsets) {
        fail("Camera::init() : camera ", index,
             " was specified as using a projection matrix, but projection_offsets was not specified");
    }
    if (offsets->size() != 2) {
        // No blank between the number and the word; that is meant.
        fail("Camera::init() : projection offset for camera ", index, " has ", offsets->size(),
             "entries rather than 2");
    }
    x_offset = truncate_to<int>((*offsets)[0]);
    y_offset = truncate_to<int>((*offsets)[1]);
}

void create_camera_vector(std::vector<Camera>& cameras, configuration& settings) {
    const camera_list* const pinholes = list_of(settings, "bumblebee_params");
    const camera_list* const matrices = list_of(settings, "camera_proj_mats");
    if (pinholes && matrices) {
        ZORV_THROW(
            "Config file contains both bumblebee_params and camera_proj_mats. Don't know how to order these "
            "so not handled (yet).");
    }
    const camera_list* const list = pinholes ? pinholes : matrices;
    cameras.resize(list ? list->size() : 0);
    for (std::size_t i = 0; i < cameras.size(); ++i) {
        cameras[i].init(settings, static_cast<unsigned int>(i));
    }
}

}  // namespace zorv

#include "examples/config_check/checked_store.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>

#include "examples/config_check/values.h"
#include "zorv_tools/geometry/Camera.h"

namespace {

/// Takes what the library writes to both standard streams for as long as it lives.
class quiet_streams {
public:
    quiet_streams() : err_(std::cerr.rdbuf(warnings_.rdbuf())), out_(std::cout.rdbuf(notes_.rdbuf())) {}
    ~quiet_streams() {
        std::cerr.rdbuf(err_);
        std::cout.rdbuf(out_);
    }
    quiet_streams(const quiet_streams&) = delete;
    quiet_streams& operator=(const quiet_streams&) = delete;

    std::string warnings() const { return warnings_.str(); }

private:
    std::ostringstream warnings_, notes_;
    std::streambuf* err_;
    std::streambuf* out_;
};

/// The innermost sentence of the library's report, or any other text.
std::string innermost(const std::string& report) {
    const std::string mark = "Details: ";
    const std::size_t found = report.rfind(mark);
    const std::size_t start = found == std::string::npos ? 0 : found + mark.size();
    return report.substr(start, report.find('\n', start) - start);
}

void print_lines(const std::string& place, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::cout << place << ": " << line << std::endl;
    }
}

}  // namespace

void checked_store::refuse(const std::string& place, const std::string& sentence) {
    refused_ = true;
    print_lines(place, sentence);
}

void checked_store::check(const std::string& path) {
    std::error_code ignored;
    const std::string file = std::filesystem::weakly_canonical(path, ignored).string();
    if (std::find(open_.begin(), open_.end(), file) != open_.end()) {
        refuse(path, "this file imports itself; a program would read it without end");
        return;
    }
    // Some systems open a folder as a stream whose every read fails.
    std::ifstream in;
    if (!std::filesystem::is_directory(path, ignored)) {
        in.open(path);
    }
    if (!in.is_open()) {
        refuse(path, "cannot read the file");
        return;
    }
    open_.push_back(file);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        check_line(path + ":" + std::to_string(number), line);
    }
    open_.pop_back();
}

void checked_store::check_line(const std::string& place, const std::string& line) {
    // Not `>>`, which would go by the global locale.
    const char* const blanks = " \t\n\v\f\r";
    const std::size_t begin = line.find_first_not_of(blanks);
    if (begin == std::string::npos) {
        return;
    }
    const std::string word = line.substr(begin, line.find_first_of(blanks, begin) - begin);
    const std::size_t equals = word.find('=');
    if (equals == std::string::npos) {
        if (word.compare(0, 2, "//") != 0) {
            refuse(place, "no equals sign; a program stops here: \"" + word + "\"");
        }
    } else if (word.find('=', equals + 1) != std::string::npos) {
        refuse(place, "more than one equals sign; a program stops here: \"" + word + "\"");
    } else if (word.compare(0, 2, "//") != 0) {
        const std::string name = word.substr(0, equals);
        const std::string value = word.substr(equals + 1);
        if (name == "import") {
            check(value);
        } else {
            set(place, name, value);
        }
    }
}

void checked_store::set(const std::string& place, const std::string& name, const std::string& value) {
    const std::string before = current(name);
    std::string warnings, error;
    {
        const quiet_streams quiet;
        try {
            set_param(name, value);
        } catch (const std::exception& e) {
            error = innermost(e.what());
        }
        warnings = quiet.warnings();
    }
    print_lines(place, warnings);
    if (!error.empty()) {
        refuse(place, error + "; a program stops here");
    } else if (!warnings.empty() && !took(name, value, before)) {
        refused_ = true;
    }
}

std::string checked_store::current(const std::string& name) const {
    for (const parameter& record : parameters) {
        if (record.name == name) {
            return value_text(*this, record);
        }
    }
    return "";
}

/// Whether a line that was warned of is in force all the same.
bool checked_store::took(const std::string& name, const std::string& value, const std::string& before) const {
    for (const parameter& record : parameters) {
        if (record.name != name) {
            continue;
        }
        if (record.kind == param_special) {
            // A warning about these tells of a value that replaces another or looks unusual. The other special
            // keys may keep part of what they refuse, so that a change tells nothing.
            static const std::set<std::string> accepting = {"mahalanobis_covariance", "scale",
                                                            "svm_multi_kernel_lengths"};
            return accepting.count(name) != 0;
        }
        const std::string now = value_text(*this, record);
        if (now != before) {
            return true;
        }
        // A repetition of the value that is there already.
        const quiet_streams quiet;
        zorv::configuration fresh;
        fresh.set_param(name, value);
        return quiet.warnings().empty() && value_text(fresh, record) == now;
    }
    return false;
}

void checked_store::print_changes() const {
    const zorv::configuration defaults;
    for (const parameter& record : parameters) {
        const bool is_free = record.name.compare(0, 2, "__") == 0;
        const std::string value = value_text(*this, record);
        if (is_free || value != value_text(defaults, record)) {
            std::cout << "  " << record.name << " = " << value << std::endl;
        }
    }
}

void checked_store::print_cameras() {
    std::vector<zorv::Camera> cameras;
    std::string warnings, error;
    {
        const quiet_streams quiet;
        try {
            zorv::create_camera_vector(cameras, *this);
        } catch (const std::exception& e) {
            error = innermost(e.what());
        }
        warnings = quiet.warnings();
    }
    print_lines("cameras", warnings);
    if (!error.empty()) {
        refuse("cameras", error);
        return;
    }
    std::cout << "cameras: " << cameras.size() << std::endl;
    for (std::size_t i = 0; i < cameras.size(); ++i) {
        const zorv::Camera& camera = cameras[i];
        std::cout << "  " << i << ": ";
        if (camera.get_image_width() > 0) {
            std::cout << "pinhole, " << camera.get_image_width() << " by " << camera.get_image_height()
                      << " pixels, baseline " << camera.get_baseline();
        } else {
            std::cout << "projection matrix";
        }
        std::cout << (camera.get_extrinsics().empty() ? ", not placed" : ", placed") << std::endl;
    }
}

#include "examples/config_check/checked_store.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

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

/// Files may hold anything, but a terminal shall not be told to do it.
std::string printable(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
    return text;
}

void print_lines(const std::string& place, const std::string& text) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::cout << printable(place) << ": " << printable(line) << std::endl;
    }
}

/// What came of an action of the library.
struct outcome {
    std::string warnings;
    /// Why it did not come to its end.
    std::string error;
};

template <class Action>
outcome attempt(Action action) {
    outcome result;
    const quiet_streams quiet;
    try {
        action();
    } catch (const std::exception& e) {
        result.error = innermost(e.what());
    }
    result.warnings = quiet.warnings();
    return result;
}

const std::string repetition = " parameter encountered multiple times in config file";

/// Whether one line of the library's warnings about the key `name` tells of a value that is stored all the same,
/// or of an entry whose like is there already.
bool is_note(const std::string& warning, const std::string& name) {
    if (warning == "WARNING: " + name + repetition + " (using new one anyway)") {
        return true;
    }
    for (const char* start :
         {"WARNING: output_parameters encountered multiple times",
          "WARNING: mahalanobis_covariance already encountered", "WARNING: Classifier file does not have a ",
          "WARNING: classifier_detector_neighbours should specify", "WARNING: Radius not greater than",
          "WARNING: Samples parameter not between", "WARNING: scale_factor parameter not greater than",
          "WARNING: Repeated occurence of "}) {
        if (warning.rfind(start, 0) == 0) {
            return true;
        }
    }
    // About samples, with a number in front.
    return warning.rfind("WARNING: ", 0) != 0;
}

}  // namespace

void checked_store::refuse(const std::string& place, const std::string& sentence) {
    ++refused_;
    print_lines(place, sentence);
}

void checked_store::check(const std::string& path) {
    read_file(path, path, false);
}

/// `place` is where the file is asked for.
void checked_store::read_file(const std::string& path, const std::string& place, bool imported) {
    std::error_code ignored;
    const std::string file = std::filesystem::weakly_canonical(path, ignored).string();
    if (std::find(open_.begin(), open_.end(), file) != open_.end()) {
        refuse(place, "this file imports itself; a program would read it without end");
        return;
    }
    // Some systems open a folder as a stream whose every read fails.
    std::ifstream in;
    if (!std::filesystem::is_directory(path, ignored)) {
        in.open(path);
    }
    if (!in.is_open()) {
        const bool is_relative = std::filesystem::path(path).is_relative();
        refuse(place, imported && is_relative
                          ? "cannot read the file; it is looked for from the folder that the program runs in"
                          : "cannot read the file");
        return;
    }
    open_.push_back(file);
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        read_line(path + ":" + std::to_string(number), line);
    }
    open_.pop_back();
}

void checked_store::read_line(const std::string& place, const std::string& line) {
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
            read_file(value, place + ": import of \"" + value + "\"", true);
        } else {
            set(place, name, value);
        }
    }
}

void checked_store::set(const std::string& place, const std::string& name, const std::string& value) {
    const outcome done = attempt([&] { set_param(name, value); });
    print_lines(place, done.warnings);
    if (!done.error.empty()) {
        refuse(place, done.error + "; a program stops here: \"" + name + "=" + value + "\"");
        return;
    }
    const std::string repeated = "WARNING: " + name + repetition;
    std::istringstream warnings(done.warnings);
    for (std::string warning; std::getline(warnings, warning);) {
        const bool is_repetition = warning == repeated;
        if (!(is_repetition ? holds(name, value) : is_note(warning, name))) {
            ++refused_;
            return;
        }
    }
}

/// Whether the key has the value that `value` alone would have given it.
bool checked_store::holds(const std::string& name, const std::string& value) const {
    zorv::configuration fresh;
    const outcome done = attempt([&] { fresh.set_param(name, value); });
    const auto record = std::find_if(parameters.begin(), parameters.end(),
                                     [&](const parameter& candidate) { return candidate.name == name; });
    return done.error.empty() && done.warnings.empty() && record != parameters.end() &&
           value_lines(fresh, *record) == value_lines(*this, *record);
}

void checked_store::print_changes() const {
    const zorv::configuration defaults;
    std::cout << "keys that differ from their defaults:" << std::endl;
    for (const parameter& record : parameters) {
        const bool is_free = record.name.compare(0, 2, "__") == 0;
        const std::vector<std::string> lines = value_lines(*this, record);
        if (is_free || lines != value_lines(defaults, record)) {
            for (const std::string& line : lines) {
                std::cout << printable("  " + record.name + " = " + line) << std::endl;
            }
        }
    }
}

void checked_store::print_cameras() {
    std::vector<zorv::Camera> cameras;
    const outcome done = attempt([&] {
        try {
            zorv::create_camera_vector(cameras, *this);
        } catch (const std::out_of_range&) {
            throw std::runtime_error("an entry has fewer values than a camera needs");
        }
    });
    print_lines("cameras", done.warnings);
    if (!done.error.empty()) {
        refuse("cameras", done.error);
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

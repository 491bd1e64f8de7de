#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <set>
#include <sstream>

#include "tests/docs/page.h"
#include "tests/net/sockets.h"
#include "tests/support/stream_capture.h"
#include "tests/support/temporary_directory.h"
#include "zorv_tools/zorv_tools.h"

using std::string;

namespace {

/// A store that shows its values as text, of special keys only whether there is an object.
class shown_store : public zorv::configuration {
public:
    using configuration::configure;
    using configuration::parameters;

    static string text_of(const parameter& record) {
        std::ostringstream out;
        switch (record.kind) {
            case param_int:
                out << *static_cast<int*>(record.value);
                break;
            case param_double:
                out << *static_cast<double*>(record.value);
                break;
            case param_bool:
                out << *static_cast<bool*>(record.value);
                break;
            case param_string:
                out << *static_cast<string*>(record.value);
                break;
            default:
                out << (*static_cast<void**>(record.value) ? "object" : "null");
        }
        return out.str();
    }

    string text_of(const string& key) const {
        const auto place = std::find_if(parameters.begin(), parameters.end(),
                                        [&](const parameter& record) { return record.name == key; });
        return place == parameters.end() ? "no such key" : text_of(*place);
    }
};

using conversion = std::function<string(const string&)>;

string replaced(string text, const string& find, const string& replacement) {
    zorv::find_and_replace_all(text, find, replacement);
    return text;
}

string escaped(const string& text) {
    return replaced(replaced(text, "\n", "\\n"), "\r", "\\r");
}

string unescaped(const string& text) {
    return replaced(replaced(replaced(text, "\\n", "\n"), "\\r", "\r"), "\\0", string(1, '\0'));
}

template <class T>
string written(const T& value) {
    using zorv::operator<<;
    std::ostringstream out;
    out << value;
    return out.str();
}

template <class T>
string read_and_written(const string& text) {
    std::istringstream in(text);
    T value;
    in >> value;
    return escaped(written(value));
}

/// Reads with all fields at 9, and shows them.
template <class T>
string fields_read(const string& text, const std::vector<int T::*>& fields) {
    using zorv::operator>>;
    T value;
    std::memset(static_cast<void*>(&value), 0, sizeof value);
    for (int T::*const field : fields) {
        value.*field = 9;
    }
    std::istringstream in(text);
    in >> value;
    string shown;
    for (int T::*const field : fields) {
        shown += (shown.empty() ? "" : " ") + std::to_string(value.*field);
    }
    return shown;
}

string matrix_read(const string& text) {
    using zorv::operator>>;
    std::istringstream in(text);
    cv::Mat matrix(1, 1, CV_64FC1);
    in >> matrix;
    std::ostringstream out;
    out << cv::format(matrix, cv::Formatter::FMT_DEFAULT);
    return replaced(out.str(), "\n", "");
}

/// Reads a file of one line. The right side of such an example begins with the key that it tells of.
string line_read(const string& line) {
    const temporary_directory folder;
    const stream_capture errors(std::cerr);
    const stream_capture output(std::cout);
    const shown_store fresh;
    shown_store store;
    std::ifstream in(folder.write("line.txt", line));
    store.configure(in);
    if (!errors.text().empty()) {
        return "warning: " + errors.text();
    }
    for (const auto& record : fresh.parameters) {
        if (store.text_of(record.name) != fresh.text_of(record)) {
            return record.name + " " + store.text_of(record.name);
        }
    }
    return "trees " + store.text_of("trees");
}

string lines_received(const string& bytes) {
    connection joined;
    joined.client.SendBytes(bytes);
    joined.client.Close();
    string shown;
    for (string line = "-"; !line.empty();) {
        line = joined.peer->ReceiveLine();
        shown += (shown.empty() ? "\"" : " \"") + escaped(line) + "\"";
    }
    return shown;
}

string announced(const string& name) {
    const fresh_server server;
    zorv::write_string_to_socket(name, localhost, server.port);
    return server.receive_next();
}

string file_sent(const string& bytes) {
    const temporary_directory folder;
    const fresh_server server;
    std::ifstream file(folder.write("file", bytes), std::ios::binary);
    zorv::write_file_to_socket(file, localhost, server.port);
    return escaped(server.receive_next());
}

IplImage header(int depth, int channels) {
    IplImage image;
    cvInitImageHeader(&image, cvSize(30, 40), depth, channels);
    return image;
}

string object_written(const string& expression) {
    const std::map<string, string> objects = {
        {"CvRect{1, 2, 30, 40}", written(CvRect(cvRect(1, 2, 30, 40)))},
        {"cv::Rect(1, 2, 30, 40)", written(cv::Rect(1, 2, 30, 40))},
        {"cv::Rect(-1, 2, 30, 40)", written(cv::Rect(-1, 2, 30, 40))},
        {"cv::Size(30, 40)", written(cv::Size(30, 40))},
        {"IplImage of 30 by 40, 8 bits, 3 channels", written(header(IPL_DEPTH_8U, 3))},
        {"IplImage of 30 by 40, 16 bits signed, 1 channel",
         written(header(static_cast<int>(IPL_DEPTH_16S), 1))},
        {"Three_d_point(1, 2.5, 3, 0, 0, 0)", written(zorv::Three_d_point(1, 2.5, 3, 0, 0, 0))},
        {"Three_d_point(1, 2.5, 3, 4, 5, 6)", written(zorv::Three_d_point(1, 2.5, 3, 4, 5, 6))},
        {"sample{\"a.avi\", 7, 0, 10, 0, 20}", written(zorv::sample{"a.avi", 7, 0, 10, 0, 20})}};
    return "\"" + objects.at(expression) + "\"";
}

const std::map<string, conversion> conversions = {
    {"assignment", line_read},
    {"time", read_and_written<zorv::Timestamp>},
    {"subtitle", read_and_written<zorv::Subtitle>},
    {"cv::Rect",
     [](const string& text) {
         return fields_read<cv::Rect>(text,
                                      {&cv::Rect::x, &cv::Rect::y, &cv::Rect::width, &cv::Rect::height});
     }},
    {"CvRect",
     [](const string& text) {
         return fields_read<CvRect>(text, {&CvRect::x, &CvRect::y, &CvRect::width, &CvRect::height});
     }},
    {"cv::Size",
     [](const string& text) {
         return fields_read<cv::Size>(text, {&cv::Size::width, &cv::Size::height});
     }},
    {"IplImage",
     [](const string& text) {
         return fields_read<IplImage>(
             text, {&IplImage::width, &IplImage::height, &IplImage::depth, &IplImage::nChannels});
     }},
    {"cv::Mat", matrix_read},
    {"written", object_written},
    {"lines", lines_received},
    {"announcement", announced},
    {"file", file_sent}};

/// Examples of one line each. What is thrown or written as a warning needs to be shown in part only.
void check_arrows(const page_block& block, const conversion& convert) {
    for (const string& line : block.lines) {
        const string arrow = " -> ";
        const std::size_t middle = line.rfind(arrow);
        ASSERT_NE(middle, string::npos) << line;
        const string expected = line.substr(middle + arrow.size());
        string actual;
        try {
            actual = convert(unescaped(line.substr(0, middle)));
        } catch (const std::exception& e) {
            actual = string("error: ") + e.what();
        }
        const std::size_t colon = expected.find(": ");
        const string kind = expected.substr(0, colon == string::npos ? 0 : colon + 2);
        if (kind == "error: " || kind == "warning: ") {
            EXPECT_EQ(actual.substr(0, kind.size()), kind) << line << "\n" << actual;
            EXPECT_NE(actual.find(expected.substr(kind.size())), string::npos) << line << "\n" << actual;
        } else {
            EXPECT_EQ(actual, expected) << line;
        }
    }
}

/// The examples of several lines, which build on those before them.
class stories {
public:
    stories() : home_(std::filesystem::current_path()) {
        // A relative import starts from the working directory.
        std::filesystem::current_path(folder_.path());
    }
    ~stories() { std::filesystem::current_path(home_); }
    stories(const stories&) = delete;
    stories& operator=(const stories&) = delete;

    /// False for a label that is none of these.
    bool check(const page_block& block) {
        const string& label = block.label;
        if (label == "configuration") {
            // The first line is a remark with the name of the file.
            file_ = block.lines.at(0).substr(3);
            folder_.write(file_, block.text());
        } else if (label == "settings") {
            read_file();
            for (const string& line : block.lines) {
                const std::size_t blank = line.find(' ');
                const string value = blank == string::npos ? "" : line.substr(blank + 1);
                EXPECT_EQ(store_.text_of(line.substr(0, blank)), value) << line;
            }
        } else if (label == "warnings") {
            EXPECT_EQ(block.text(), warnings_);
        } else if (label == "track") {
            rewrite(block.text());
        } else if (label == "track-written") {
            EXPECT_EQ(block.text(), track_);
        } else if (label == "Camera") {
            std::vector<zorv::Camera> cameras;
            zorv::create_camera_vector(cameras, store_);
            EXPECT_EQ(block.text(), written(cameras.at(0)));
        } else if (label == "report") {
            check_report(block.text());
        } else {
            return false;
        }
        return true;
    }

private:
    void read_file() {
        const stream_capture errors(std::cerr);
        const stream_capture output(std::cout);
        std::ifstream in(file_);
        store_.configure(in);
        warnings_ = errors.text();
        EXPECT_EQ(output.text(), "Importing additional config file: \"more_settings.txt\"\n");
    }

    void rewrite(const string& text) {
        std::istringstream in(text);
        std::ostringstream out;
        while (!(in >> std::ws).eof()) {
            zorv::Subtitle subtitle;
            in >> subtitle;
            out << subtitle;
        }
        track_ = out.str();
    }

    void check_report(const string& expected) {
        string actual = "nothing was thrown";
        try {
            if (++reports_ == 1) {
                line_read("trees");
            } else {
                zorv::matrix<double> rotation;
                std::vector<double> position;
                zorv::upnp(zorv::matrix<double>(3, 3), zorv::matrix<double>(3, 3), zorv::matrix<double>(3, 3),
                           rotation, position);
            }
        } catch (const zorv::exception_l& e) {
            actual = e.what();
        }
        EXPECT_TRUE(matches(expected, actual)) << actual;
    }

    std::filesystem::path home_;
    temporary_directory folder_;
    string file_;
    shown_store store_;
    string warnings_;
    string track_;
    int reports_ = 0;
};

TEST(TextFormats, TheExamplesOfThePageHold) {
    stories told;
    std::set<string> labels;
    for (const page_block& block : read_blocks("docs/text_formats.md")) {
        SCOPED_TRACE("text_formats.md:" + std::to_string(block.line_number));
        labels.insert(block.label);
        const auto convert = conversions.find(block.label);
        if (convert != conversions.end()) {
            check_arrows(block, convert->second);
        } else if (block.label != "grammar") {
            EXPECT_TRUE(told.check(block)) << "no test knows blocks of " << block.label;
        }
    }
    // One of each form at least, so that none of them goes unchecked.
    for (const auto& [label, convert] : conversions) {
        EXPECT_EQ(labels.count(label), 1u) << label;
    }
    for (const char* const label :
         {"configuration", "settings", "warnings", "track", "track-written", "Camera", "report"}) {
        EXPECT_EQ(labels.count(label), 1u) << label;
    }
}

}  // namespace

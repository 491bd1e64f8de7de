#include "tests/support/report.h"

#include <cctype>

#include "zorv_tools/core/exception_l.h"

namespace {

/// True for "some/folders/STEM...(12)".
bool names_file_and_line(const std::string& line, const std::string& stem) {
    const std::size_t open = line.rfind('(');
    if (open == std::string::npos || line.back() != ')' || open + 2 >= line.size()) {
        return false;
    }
    for (std::size_t i = open + 1; i + 1 < line.size(); ++i) {
        if (!std::isdigit(static_cast<unsigned char>(line[i]))) {
            return false;
        }
    }
    const std::string path = line.substr(0, open);
    const std::size_t slash = path.find_last_of("/\\");
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    return name.compare(0, stem.size(), stem) == 0;
}

}  // namespace

testing::AssertionResult is_report(const std::string& text, const std::string& file_stem,
                                   const std::string& function, const std::string& sentence) {
    const std::size_t first = text.find('\n');
    const std::size_t second = first == std::string::npos ? first : text.find('\n', first + 1);
    if (second == std::string::npos) {
        return testing::AssertionFailure() << "not a report: " << text;
    }
    if (!names_file_and_line(text.substr(0, first), file_stem)) {
        return testing::AssertionFailure() << "wrong file in: " << text;
    }
    if (text.substr(first + 1, second - first - 1).find(function) == std::string::npos) {
        return testing::AssertionFailure() << "wrong function in: " << text;
    }
    const std::string expected = "Details: " + sentence + "\n";
    const std::string rest = text.substr(second + 1);
    if (rest != expected) {
        return testing::AssertionFailure() << "expected\n" << expected << "but the sentence was\n" << rest;
    }
    return testing::AssertionSuccess();
}

testing::AssertionResult throws_report(const std::function<void()>& action, const std::string& file_stem,
                                       const std::string& function, const std::string& sentence) {
    try {
        action();
    } catch (const zorv::exception_l& e) {
        if (e.depth() != 0) {
            return testing::AssertionFailure() << "depth is " << e.depth() << " in: " << e.what();
        }
        return is_report(e.what(), file_stem, function, sentence);
    } catch (const std::exception& e) {
        return testing::AssertionFailure() << "another exception: " << e.what();
    }
    return testing::AssertionFailure() << "nothing was thrown";
}

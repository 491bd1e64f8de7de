#pragma once

/// @file
/// The library's own exception and the macros that write its report.
///
/// A report is a small stack trace in text. A fresh one has three lines: file and line, the full signature of
/// the function that threw, and "Details: " with a sentence; it ends in a line end. A function that adds its
/// own frame puts three further lines in front, indented by one tab for each time the report has been caught; the
/// older text stays as it is. So the outermost function comes first, and the place of the fault last.

#include <exception>
#include <memory>
#include <sstream>
#include <string>

#include "zorv_tools/core/export.h"

namespace zorv {

/// Hard failure of the library. `what()` is the report, `depth()` counts how often a function of the library
/// has caught the exception and thrown it again with a frame of its own (0 for a fresh one). The few places that
/// throw something else tell so.
///
/// The type can be copied but not assigned, and has no move operations: a moved-from exception would have no
/// message, and a message is always there.
class ZORV_TOOLS_EXPORT exception_l : public std::exception {
public:
    /// The message is "No message", the depth 0.
    exception_l();
    /// The message and the depth are stored as they come. Hosts that throw better leave both to `ZORV_THROW`.
    exception_l(const std::string& message, int depth);
    /// The copy has a string of its own, which ends at the first NUL of the other's text.
    exception_l(const exception_l& other);
    ~exception_l() override;

    /// The text of the report; valid as long as this object.
    const char* what() const noexcept override;
    /// How often the report has been caught and thrown again with a frame.
    int depth() const noexcept;

private:
    exception_l& operator=(const exception_l& other);

    std::unique_ptr<std::string> message_;
    int depth_;
};

/// A place in the source, as the first two lines of a report show it.
struct code_location {
    const char* file;      ///< as the build gave it to the compiler; shown in full, and not copied
    int line;              ///< counted from 1
    const char* function;  ///< the full signature; not copied
};

/// Throws a fresh report for `location`, of depth 0. For helpers that fail on behalf of the function that called
/// them. `sentence` stands behind "Details: ".
[[noreturn]] ZORV_TOOLS_EXPORT void throw_exception_l(const code_location& location,
                                                      const std::string& sentence);

/// Throws `cause` again with a frame for `location` in front of its report, one level deeper. The sentence of a
/// frame may be empty.
[[noreturn]] ZORV_TOOLS_EXPORT void rethrow_with_frame(const code_location& location,
                                                       const std::string& sentence, const exception_l& cause);

/// Turns an exception of another library into a report of depth 0, whose frame for `location` has no tabs and whose
/// last lines are what the other said: it had no depth, so the count starts afresh.
[[noreturn]] ZORV_TOOLS_EXPORT void rethrow_with_frame(const code_location& location,
                                                       const std::string& sentence,
                                                       const std::exception& cause);

}  // namespace zorv

/// The full signature of the function that it stands in, in the compiler's words.
#if defined(_MSC_VER)
#define ZORV_FUNCTION __FUNCSIG__
#else
#define ZORV_FUNCTION __PRETTY_FUNCTION__
#endif

/// A `zorv::code_location` for the place where it stands.
#define ZORV_HERE                                                   \
    ::zorv::code_location {                                         \
        __FILE__, __LINE__, static_cast<const char*>(ZORV_FUNCTION) \
    }

/// Throws an `exception_l` of depth 0 whose sentence is streamed: `ZORV_THROW("size was " << size);`
#define ZORV_THROW(sentence)                                                \
    do {                                                                    \
        std::ostringstream zorv_sentence;                                   \
        zorv_sentence << sentence; /* NOLINT(bugprone-macro-parentheses) */ \
        ::zorv::throw_exception_l(ZORV_HERE, zorv_sentence.str());          \
    } while (false)

/// Stands behind a `try` block and adds the enclosing function's frame to whatever report leaves it, through
/// `zorv::rethrow_with_frame`. What is no `std::exception` passes through as it is.
#define ZORV_ADD_FRAME(sentence)                                     \
    catch (const ::zorv::exception_l& zorv_cause) {                  \
        ::zorv::rethrow_with_frame(ZORV_HERE, sentence, zorv_cause); \
    }                                                                \
    catch (const std::exception& zorv_cause) {                       \
        ::zorv::rethrow_with_frame(ZORV_HERE, sentence, zorv_cause); \
    }

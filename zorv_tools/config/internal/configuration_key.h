#pragma once

/// @file
/// The rows of the catalogue, and what a key's branch gets to work on.

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "zorv_tools/config/configuration.h"
#include "zorv_tools/config/internal/configuration_checks.h"
#include "zorv_tools/core/exception_l.h"

namespace zorv::internal {

/// One line on its way into the store.
struct setting {
    const configuration& store;
    std::vector<parameter>& parameters;
    const std::string& name;
    const std::string& value;
    /// Where the record of `name` stands; it may be out of range, the caller of a derived class being free to
    /// pass what it likes.
    int index;
    /// The public function that works on the line, for reports.
    code_location caller;

    parameter& record() const { return record_at(static_cast<std::size_t>(index)); }

    /// Throws `std::out_of_range` for a position behind the last record.
    parameter& record_at(std::size_t position) const;

    /// Where the record of another key stands, for lines that fill two. The record count, with a warning, if
    /// there is none.
    std::size_t find_other(const char* key) const;

    /// The cell of a plain key.
    template <class T>
    T& cell() const {
        return *static_cast<T*>(record().value);
    }

    /// The object of a special key, null before the first value.
    void*& object_cell() const { return cell<void*>(); }

    template <class T>
    T* object() const {
        return static_cast<T*>(object_cell());
    }

    /// The object of a special key, made now if there is none yet.
    template <class T>
    T& object_or_new() const {
        return object_or_new_at<T>(static_cast<std::size_t>(index));
    }

    template <class T>
    T& object_or_new_at(std::size_t position) const {
        void*& held = *static_cast<void**>(record_at(position).value);
        if (!held) {
            held = new T();
        }
        return *static_cast<T*>(held);
    }
};

/// The chain of keys has two halves: a derived class that calls `set_param2` reaches the second one alone. Keys
/// without a branch are filled by the lines of other keys.
enum class half { none, first, second };

/// What happens to a line whose key has a value already. Of the first two a warning tells; with the other two there
/// is no test, and the line replaces the value or adds an entry to it.
enum class repetition { keep_first, replace, untested, append };

/// What stands behind the sentence of a refused number: the text of the line or the number made of it.
enum class echo { text, number };

struct number_check {
    number_range range = {};
    /// Null where there is no check.
    const char* refusal = nullptr;
    echo shown = echo::text;
};

struct text_check {
    text_rule rule = {};
    const char* refusal = nullptr;
    /// Stands behind the refused text.
    const char* closing = "";
    bool stores_refused = false;
};

/// A boolean's words of refusal where they are not the usual ones.
struct flag_wording {
    const char* refusal = nullptr;
    const char* closing = "";
};

/// What the documentation tells of a special key, whose fields its setter checks.
struct line_format {
    /// The type of the object that `get_param` lends a pointer to.
    const char* lends = nullptr;
    /// The fields of a line's value.
    const char* form = nullptr;
    /// Which values the fields may have, and what becomes of others.
    const char* accepted = nullptr;
    /// A value that is stored without a warning.
    const char* example = nullptr;
};

/// All there is to know about one key.
struct key_row {
    std::string_view name;
    configuration::parameter_kind kind = configuration::param_special;
    half chain = half::none;
    /// Defaults of booleans, integers and doubles, and of strings.
    double number = 0;
    std::string_view text = {};

    repetition repeated = repetition::keep_first;
    /// The whole warning about a repetition, where it is not the usual one.
    const char* repeat_warning = nullptr;
    std::array<number_check, 2> numbers = {};
    text_check texts = {};
    flag_wording flags = {};
    line_format format = {};
    /// The key whose lines fill a key that has no branch.
    std::string_view filled_by = {};

    void (*set)(const key_row& row, const setting& line) = nullptr;
    /// Releases the object of a special key.
    void (*release)(void* object) = nullptr;
};

constexpr std::size_t catalogue_size = 181;

/// The declared keys in the order of declaration, which is the order of the records in the store.
extern const std::array<key_row, catalogue_size> catalogue;

/// Position of `name` in the catalogue, or `catalogue_size`.
std::size_t catalogue_position(std::string_view name);

/// The row of `name`, or null. The empty name has a row although it is not declared.
const key_row* find_key(std::string_view name);

/// Setters of the plain keys.
void set_flag(const key_row& row, const setting& line);
void set_integer(const key_row& row, const setting& line);
void set_real(const key_row& row, const setting& line);
void set_text(const key_row& row, const setting& line);

/// Writes the warning about a repetition and tells whether the line is still to be worked on.
bool allow_repetition(const key_row& row);

/// The test for repetition of special keys: true when the key has no object yet or takes another line.
bool first_object(const key_row& row, const setting& line);

}  // namespace zorv::internal

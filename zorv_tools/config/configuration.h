#pragma once

/// @file
/// The keyed parameter store that a host reads its settings from.
///
/// Every key is declared in code, with a kind and a default, before any file is read; a file sets keys, and only
/// keys that begin with "__" need no declaration (they hold free text). A file is made of `key=value` words, one
/// a line: what follows the first white space of a line is ignored, a word that begins with "//" is a comment,
/// and "import=path" reads a further file in that place. Problems with a value are warnings on `std::cerr`, and
/// the old value stays; only a line that is no assignment throws.
///
///     zorv::configuration config(std::string("rig.txt"));
///     int trees = 0;
///     std::vector<std::vector<double>*>* cameras = nullptr;
///     config.get_param("trees", trees);
///     config.get_param("bumblebee_params", cameras);  // lent; null when no line gave a camera

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "zorv_tools/config/parameter_records.h"
#include "zorv_tools/core/export.h"

namespace zorv {

/// One named value of the store.
struct parameter {
    std::string name;       ///< the key
    void* value = nullptr;  ///< a heap cell of the type that `kind` tells; it is the store's to release
    std::int32_t kind = 0;  ///< one of `configuration::parameter_kind`
};

/// The store. It is meant to be derived from: a derived constructor uses `configuration()`, declares keys of its
/// own with `add_param` and then reads its own file with `configure`. An override of `initialise` is not reached
/// from the constructors of this class.
///
/// One thread fills the store; several may read it after that.
class ZORV_TOOLS_EXPORT configuration {
public:
    /// What the cell of a parameter holds. The numbers are fixed.
    enum parameter_kind : std::int32_t {
        param_special = -1,  ///< a `void*`, null before the first value, to an object of the key's type
        param_int = 0,       ///< an `int`
        param_double = 1,    ///< a `double`
        param_bool = 2,      ///< a `bool`
        param_string = 3     ///< a `std::string`
    };

    /// All keys at their defaults.
    configuration();
    /// @{
    /// All keys at their defaults, then the file at `path`. A null or empty path and a file that does not open
    /// are warnings, and leave the defaults. What `configure` throws leaves the constructor, and there is no store
    /// then.
    configuration(char* path);
    configuration(std::string path);
    /// @}
    /// Releases all values, and with them what `get_param` has lent. A special key that a derived class has declared
    /// is reported on `std::cerr` and not released; see `add_param`.
    virtual ~configuration();

    /// Sets one key from text, as a line `name=value` of a file does; "import" reads the file `value`, whose path
    /// starts from the folder of the process, and names that begin with "//" are ignored. An unknown key, a bad value
    /// and a repetition are warnings on `std::cerr`.
    ///
    /// What a second value does is up to the key: the first one stays, or the new one takes its place, or both are
    /// kept in a list. There is no record of which keys were set: a plain value that differs from its default counts
    /// as set, whoever set it.
    ///
    /// Throws `std::out_of_range` for an empty name, and where the ending of a path is looked at that has fewer than
    /// four characters; `exception_l` for a number that is none in "mahalanobis_covariance" and "sequence_lengths" and
    /// for "projection_offsets" without a "|"; what OpenCV throws for a "closing_kernel" that it refuses; and what
    /// `configure` throws for an imported file. Files that import one another in a ring exhaust the stack.
    void set_param(const std::string& name, const std::string& value);

    /// Copies the value of the key `name` to `out`. `T` must be the key's type, which is not compared. False, with a
    /// line on `std::cerr` and `out` untouched, when there is no such key. For a special key `T` is the type of the
    /// pointer: `out` is null when the key never got a value, with true for a result all the same, and the object
    /// stays the store's and lives no longer.
    template <class T>
    bool get_param(const std::string& name, T& out) const;

protected:
    /// The record, under a name that derived classes need not qualify.
    using parameter = zorv::parameter;

    /// Declares every key of the catalogue. On a store that holds them already it only reports the duplicates.
    virtual void initialise();

    /// Reads the stream to its end as a configuration file, and closes it. Throws `exception_l` for a line
    /// without "=" that is no comment and for one with several, a comment of the form "//a=b=c" included; lines are
    /// counted from 0 on purpose, in each file anew. What `set_param` throws passes through. The lines before the one
    /// at fault have had their effect.
    void configure(std::ifstream& in);

    /// The second half of the keys, and what no key claims: sets the key `name`, the record at `index`, from
    /// text. Keys of the first half, which `set_param` looks at itself, are unknown here. An `index` outside
    /// `parameters` throws `std::out_of_range` where the key has a record, and one of another key is not noticed.
    void set_param2(std::string name, std::string value, int index);

    /// Declares one key, whose cell is of the type that `kind` tells: one of `parameter_kind`, any other number
    /// standing for a special key. A default that does not convert to that type, as `nullptr` for a special key, gives
    /// a cell of zero, or an empty one. A name that is there already is reported on `std::cerr`, and the first
    /// declaration stays; that text has the letter i in place of a position, which is meant.
    ///
    /// A derived class that declares special keys must release their objects and cells (each cell is a
    /// `new void*`) in its own destructor, and take their records out of `parameters` if the warning of the base
    /// destructor is not wanted.
    template <class T>
    void add_param(const std::string& name, T default_value, int kind);

    /// All records in the order of declaration. Names are unique.
    std::vector<parameter> parameters;

private:
    struct undeclared {};
    explicit configuration(undeclared);
    /// Copying is closed to hosts; a copy would be an empty store.
    configuration(const configuration&);
    configuration& operator=(const configuration&);

    template <class Cell, class T>
    static std::unique_ptr<Cell> make_cell(T& value);
    template <class Cell>
    void append(std::string name, std::unique_ptr<Cell> cell, int kind);

    const void* find_value(const std::string& name) const;
    bool reject_duplicate(const std::string& name) const;
    std::size_t position_of(const std::string& name) const;
    void read_file(const std::string& path);
    void import_file(const std::string& path);
    void set_second_half(const std::string& name, const std::string& value, int index);
    void clear_param(parameter& record);
};

template <class T>
bool configuration::get_param(const std::string& name, T& out) const {
    const void* value = find_value(name);
    if (!value) {
        return false;
    }
    if constexpr (std::is_pointer_v<T>) {
        out = static_cast<T>(*static_cast<void* const*>(value));
    } else {
        out = *static_cast<const T*>(value);
    }
    return true;
}

template <class T>
void configuration::add_param(const std::string& name, T default_value, int kind) {
    if (reject_duplicate(name)) {
        return;
    }
    switch (kind) {
        case param_int:
            return append(name, make_cell<int>(default_value), kind);
        case param_double:
            return append(name, make_cell<double>(default_value), kind);
        case param_bool:
            return append(name, make_cell<bool>(default_value), kind);
        case param_string:
            return append(name, make_cell<std::string>(default_value), kind);
        default:
            return append(name, make_cell<void*>(default_value), param_special);
    }
}

/// The kind decides about the cell's type, since the destructor goes by it; a default that does not convert to
/// that type, as a null constant for a pointer, leaves the cell empty.
template <class Cell, class T>
std::unique_ptr<Cell> configuration::make_cell(T& value) {
    if constexpr (std::is_convertible_v<T, Cell> && !std::is_null_pointer_v<T>) {
        return std::make_unique<Cell>(static_cast<Cell>(std::move(value)));
    } else {
        return std::make_unique<Cell>();
    }
}

template <class Cell>
void configuration::append(std::string name, std::unique_ptr<Cell> cell, int kind) {
    parameters.push_back({std::move(name), cell.get(), kind});
    static_cast<void>(cell.release());  // the record owns it now
}

}  // namespace zorv

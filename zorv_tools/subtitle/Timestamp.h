#pragma once

/// @file
/// Clock times of a video and their text form, hh:mm:ss,mmm.
///
/// Nothing normalises a time: fields may be negative, and minutes of 75 stay 75. The reader takes more than the
/// writer makes; only the writer has limits, and none on negative fields.

#include <istream>
#include <ostream>

#include "zorv_tools/core/export.h"

namespace zorv {

/// A position in a video as a clock shows it.
class ZORV_TOOLS_EXPORT Timestamp {
public:
    /// 00:00:00,000.
    Timestamp() = default;
    /// A full copy.
    Timestamp(const Timestamp& other) = default;
    /// Takes all fields.
    Timestamp& operator=(const Timestamp& other) = default;
    virtual ~Timestamp() = default;

    /// The whole time in seconds.
    double total_seconds() const;

    /// Sets all fields from a time in seconds. Milliseconds are truncated on purpose, so that 2.3, of which a double
    /// leaves a little less than 0.3, is 00:00:02,299. A negative time has negative hours, and no other negative field:
    /// -1.5 is -1 hours, 59 minutes, 58 seconds and 500 milliseconds.
    void input_seconds(double total);

    /// The frame that is shown at this time at `fps` frames a second, truncated toward zero.
    int get_frame(double fps) const;

    /// Compares the two times in seconds, not field by field: 00:01:00,000 and 00:00:60,000 are equivalent.
    bool operator<(const Timestamp& other) const;

    int hours = 0;         ///< above 99 it cannot be written
    int minutes = 0;       ///< above 99 it cannot be written, above 59 it can
    int seconds = 0;       ///< above 99 it cannot be written, above 59 it can
    int milliseconds = 0;  ///< above 999 it cannot be written
};

/// Reads one word and the white space around it. The word needs two colons and a comma behind them, and between
/// them four pieces that begin with a whole number; digits are not aligned, so that 00:00:01,5 has 5 milliseconds.
/// A word at the very end of the stream leaves it at its end but not failed.
///
/// Throws `exception_l` where the stream is not good, a stream at its end included, and where the word is no time; the
/// word is then consumed, and the fields that stand before the bad piece are set.
ZORV_TOOLS_EXPORT std::istream& operator>>(std::istream& in, Timestamp& time);

/// Writes hh:mm:ss,mmm, without a line end. Throws `exception_l` where the stream is not good or a field has more
/// digits than its place; nothing has been written then. A negative field does not throw and is written as
/// `int_to_str` with two arguments has it, which the reader does not read back: -5 hours are "0-5".
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const Timestamp& time);

}  // namespace zorv

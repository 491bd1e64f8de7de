#include "zorv_tools/core/edit_distance.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zorv {

namespace {

using word = std::uint64_t;
constexpr std::size_t word_bits = 64;

/// 64 rows of the current column of the table: the bits of `up` and `down` tell where a cell is one more or one
/// less than the cell above it.
struct block {
    word up = ~word(0);
    word down = 0;
};

}  // namespace

// The table is not filled cell by cell: neighbouring cells differ by at most one, so that a column is held as two
// bits a row and advances by whole words (G. Myers, A fast bit-vector algorithm for approximate string matching,
// 1999; H. Hyyro, Explaining and extending the bit-parallel algorithm of Myers, 2001).
int levenshtein(const std::string& first, const std::string& second) {
    const std::string& rows = first.size() < second.size() ? first : second;
    const std::string& columns = first.size() < second.size() ? second : first;
    if (rows.empty()) {
        return static_cast<int>(columns.size());
    }

    const std::size_t block_count = (rows.size() + word_bits - 1) / word_bits;
    // For each byte, the rows that hold it.
    std::vector<word> matches(256 * block_count);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto byte = static_cast<unsigned char>(rows[i]);
        matches[byte * block_count + i / word_bits] |= word(1) << (i % word_bits);
    }

    std::vector<block> column(block_count);
    const std::size_t last_bit = (rows.size() - 1) % word_bits;
    std::size_t distance = rows.size();
    for (const char c : columns) {
        const word* const equal_rows = &matches[static_cast<unsigned char>(c) * block_count];
        // What enters a block from the row above: one more than in the column before, or one less. The first row
        // counts 0, 1, 2 and so on.
        word more = 1;
        word less = 0;
        word grown = 0;
        word shrunk = 0;
        for (std::size_t b = 0; b < block_count; ++b) {
            block& rows_here = column[b];
            const word equal = equal_rows[b] | less;
            const word diagonal = (((equal & rows_here.up) + rows_here.up) ^ rows_here.up) | equal;
            const word vertical = equal_rows[b] | rows_here.down;
            grown = rows_here.down | ~(diagonal | rows_here.up);
            shrunk = rows_here.up & diagonal;
            const word grown_below = (grown << 1) | more;
            const word shrunk_below = (shrunk << 1) | less;
            rows_here.up = shrunk_below | ~(vertical | grown_below);
            rows_here.down = grown_below & vertical;
            more = grown >> (word_bits - 1);
            less = shrunk >> (word_bits - 1);
        }
        distance += (grown >> last_bit) & 1;
        distance -= (shrunk >> last_bit) & 1;
    }
    return static_cast<int>(distance);
}

}  // namespace zorv

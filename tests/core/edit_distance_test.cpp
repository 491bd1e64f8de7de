#include "zorv_tools/core/edit_distance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

/// The table, filled cell by cell.
int by_table(const std::string& a, const std::string& b) {
    std::vector<std::vector<int>> cell(a.size() + 1, std::vector<int>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cell[i][j] = static_cast<int>(i + j);
            } else {
                cell[i][j] = std::min(
                    {cell[i - 1][j - 1] + (a[i - 1] != b[j - 1]), cell[i - 1][j] + 1, cell[i][j - 1] + 1});
            }
        }
    }
    return cell[a.size()][b.size()];
}

}  // namespace

TEST(Levenshtein, KnownWords) {
    const struct {
        const char *first, *second;
        int distance;
    } cases[] = {{"", "", 0},       {"", "abc", 3},      {"flaw", "lawn", 2},
                 {"abc", "ABC", 3}, {"\xff", "\x7f", 1}, {"intention", "execution", 5}};
    for (const auto& c : cases) {
        EXPECT_EQ(zorv::levenshtein(c.first, c.second), c.distance) << c.first << ", " << c.second;
        EXPECT_EQ(zorv::levenshtein(c.second, c.first), c.distance) << c.second << ", " << c.first;
    }
    EXPECT_EQ(zorv::levenshtein(std::string("a\0b", 3), std::string("a\0c", 3)), 1);
}

TEST(Levenshtein, AgreesWithTheTableAtAllLengths) {
    std::mt19937 random(1);
    const auto letters = [&](std::size_t length) {
        std::string text(length, ' ');
        std::generate(text.begin(), text.end(), [&] { return "abc"[random() % 3]; });
        return text;
    };
    // Lengths about the multiples of 64 matter, and few letters make many equal ones.
    for (const std::size_t length : std::vector<std::size_t>{1, 63, 64, 65, 127, 128, 129, 200}) {
        for (int repeat = 0; repeat < 20; ++repeat) {
            const std::string a = letters(length);
            const std::string b = letters(1 + random() % 200);
            ASSERT_EQ(zorv::levenshtein(a, b), by_table(a, b)) << a << ", " << b;
        }
    }
}

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/compare.h"
#include "zorv_tools/core/text.h"

void register_comparisons() {
    constexpr std::size_t size = 1000000;
    std::mt19937 random(1);
    std::uniform_int_distribution<std::size_t> word_length(1, 10);
    std::uniform_int_distribution<std::size_t> gap_length(1, 2);
    const std::string white_space = " \n\t";
    std::string text;
    while (text.size() < size) {
        text.append(word_length(random), static_cast<char>('a' + random() % 26));
        text.append(gap_length(random), white_space[random() % white_space.size()]);
    }
    // The peer takes white space at the end for a separator in front of one more, empty word.
    text.resize(text.find_last_not_of(white_space) + 1);

    const auto split = [text] {
        std::vector<std::string> words;
        boost::split(words, text, boost::is_space(), boost::token_compress_on);
        return words;
    };
    if (zorv::tokenise(text) != split()) {
        throw std::runtime_error("the two do not do the same work");
    }
    const auto ours = [text] { benchmark::DoNotOptimize(zorv::tokenise(text)); };
    const auto peer = [split] { benchmark::DoNotOptimize(split()); };
    ZORV_COMPARE("tokenise, 1 MB (boost::split, compressed)", 1.5, ours, peer);
}

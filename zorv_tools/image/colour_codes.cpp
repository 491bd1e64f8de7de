#include "zorv_tools/image/colour_codes.h"

#include <cstddef>

#include "zorv_tools/core/exception_l.h"

namespace zorv {

namespace {

struct bgr {
    unsigned char blue, green, red;
};

constexpr bgr max_contrast[] = {
    {0, 179, 255},  {117, 62, 128},  {0, 104, 255}, {215, 189, 166}, {32, 0, 193},
    {98, 162, 206}, {102, 112, 129}, {52, 125, 0},  {142, 118, 246}, {138, 83, 0},
    {92, 122, 255}, {122, 55, 83},   {0, 142, 255}, {81, 40, 179},   {0, 200, 244},
    {13, 24, 127},  {0, 170, 147},   {21, 51, 89},  {19, 58, 241},   {22, 44, 35},
};

constexpr bgr optimised[] = {
    {0, 0, 255},     {255, 0, 0},     {0, 255, 0}, {255, 255, 0}, {255, 0, 255},
    {255, 128, 128}, {128, 128, 128}, {128, 0, 0}, {255, 128, 0},
};

template <std::size_t Count>
cv::Scalar_<double> colour_of(const bgr (&set)[Count], int index, const code_location& caller) {
    if (index < 0 || static_cast<std::size_t>(index) >= Count) {
        std::ostringstream sentence;
        sentence << "Requested colour " << index << " but this map only holds up to " << Count - 1
                 << std::endl;
        throw_exception_l(caller, sentence.str());
    }
    const bgr& colour = set[index];
    return {static_cast<double>(colour.blue), static_cast<double>(colour.green),
            static_cast<double>(colour.red), 0.0};
}

}  // namespace

cv::Scalar_<double> UIntToColor(unsigned int colour) {
    const auto byte = [colour](int place) { return static_cast<double>((colour >> (8 * place)) & 0xFFU); };
    return {byte(0), byte(1), byte(2), 0.0};
}

cv::Scalar_<double> colour_set(int index) {
    return colour_set_max_contrast(index);
}

cv::Scalar_<double> colour_set_max_contrast(int index) {
    return colour_of(max_contrast, index, ZORV_HERE);
}

cv::Scalar_<double> colour_set_optimised(int index) {
    return colour_of(optimised, index, ZORV_HERE);
}

}  // namespace zorv

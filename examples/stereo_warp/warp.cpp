#include "examples/stereo_warp/warp.h"

#include "zorv_tools/image/IplImage_overloads.h"

namespace {

/// Where a pixel of the first camera is seen by the second; false where its disparity is unknown or the second
/// camera does not see it.
bool find_in_second(const zorv::Camera& first, const zorv::Camera& second, int column, int row,
                    double disparity, double& u, double& v) {
    double x = 0;
    double y = 0;
    double z = 0;
    first.unproject(column, row, disparity, x, y, z);
    double seen = 0;
    second.project(x, y, z, u, v, seen);
    return seen > 0;
}

}  // namespace

painted_view paint_view(const cv::Mat& source, const cv::Mat& disparities, double disparity_offset,
                        const zorv::Camera& first, const zorv::Camera& second, sampler sample,
                        const std::function<void(int)>& progress) {
    painted_view view;
    view.picture = cv::Mat(disparities.size(), source.type(), cv::Scalar::all(0));
    view.landed = cv::Mat(disparities.size(), CV_8U, cv::Scalar(0));
    for (int row = 0; row < disparities.rows; ++row) {
        for (int column = 0; column < disparities.cols; ++column) {
            const double stored = zorv::get_pix(disparities, column, row, 0);
            double u = 0;
            double v = 0;
            if (stored == 0 || !find_in_second(first, second, column, row, stored + disparity_offset, u, v)) {
                continue;
            }
            cv::Scalar colour;
            for (int channel = 0; channel < source.channels(); ++channel) {
                // set_pix would let a value that overshoots 0 or 255 wrap around.
                colour[channel] = cv::saturate_cast<unsigned char>(sample(source, u, v, channel));
            }
            zorv::set_pix(view.picture, column, row, colour);
            zorv::get_pix<unsigned char>(view.landed, column, row, 0) = 255;
        }
        progress(row + 1);
    }
    return view;
}

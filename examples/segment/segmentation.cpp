#include "examples/segment/segmentation.h"

#include "zorv_tools/image/image_utils.h"

namespace {

struct image_release {
    void operator()(IplImage* image) const { cvReleaseImage(&image); }
};

/// An image that functions of the library may replace.
class owned_image {
public:
    explicit owned_image(const cv::Mat& picture)
        : image_(cvCreateImage(cvSize(picture.cols, picture.rows), IPL_DEPTH_8U, picture.channels())) {
        picture.copyTo(cv::cvarrToMat(image_));
    }
    ~owned_image() { cvReleaseImage(&image_); }
    owned_image(const owned_image&) = delete;
    owned_image& operator=(const owned_image&) = delete;

    IplImage*& get() { return image_; }
    IplImage* operator->() { return image_; }

    /// The whole picture, whatever the region of interest.
    cv::Mat copy() const {
        const std::unique_ptr<IplImage, image_release> whole(cvCloneImage(image_));
        cvResetImageROI(whole.get());
        return cv::cvarrToMat(whole.get(), true);
    }

private:
    IplImage* image_;
};

}  // namespace

segmentation segment_object(const cv::Mat& appearance, const cv::Mat& depth, const settings& given) {
    segmentation result;
    owned_image app_image(appearance);
    owned_image depth_image(depth);
    cvSetImageROI(depth_image.get(),
                  cvRect(given.region.x, given.region.y, given.region.width, given.region.height));
    result.object_depth =
        given.object_depth > 0 ? given.object_depth : zorv::image_median(depth_image.get(), true);

    {
        // The first step on its own, for the picture that it leaves.
        owned_image cut_app(appearance);
        owned_image cut_depth(depth);
        zorv::threshold_image_pair(static_cast<int>((1.0 + given.depth_tolerance) * result.object_depth),
                                   static_cast<int>((1.0 - given.depth_tolerance) * result.object_depth),
                                   cut_app.get(), cut_depth.get(), given.kernel, given.iterations);
        result.thresholded_appearance = cut_app.copy();
        result.thresholded_depth = cut_depth.copy();
    }

    zorv::segment_and_recentre(app_image.get(), depth_image.get(), given.depth_tolerance, given.width_factor,
                               given.height_factor, given.kernel, given.iterations, result.object_depth);
    const CvRect region = cvGetImageROI(depth_image.get());
    result.region = cv::Rect(region.x, region.y, region.width, region.height);
    zorv::find_object_center(result.centre.x, result.centre.y, depth_image.get(), given.kernel,
                             given.iterations);
    const double aspect_ratio = static_cast<double>(given.region.height) / given.region.width;
    zorv::centre_surround_check(depth_image.get(), aspect_ratio, result.box.width, result.box.x, result.box.y,
                                given.minimum_width, given.width_step);
    result.box.height = static_cast<int>(result.box.width * aspect_ratio);
    result.recentred_appearance = app_image.copy();
    result.recentred_depth = depth_image.copy();
    return result;
}

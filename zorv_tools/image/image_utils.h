#pragma once

/// @file
/// Operations on whole images: values and thresholds, scale space, integral image, regions, composition for
/// display, two functions that show an image, and the segmentation of an object by its depth.
///
/// A pixel is (x, y), column first, and a size is width first. Functions on `IplImage` work in place on the
/// caller's image unless told otherwise, and touch all of it whatever its region of interest, unless told
/// otherwise; an `IplImage*&` may come back pointing at a new image only where that is said. Display images
/// are `CV_8UC3`. OpenCV's exceptions pass through, save for the functions that join images, which turn them
/// into reports (`exception_l`).

#include <string>
#include <vector>

#include "zorv_tools/core/export.h"
#include "zorv_tools/core/matrix.h"
#include "zorv_tools/core/opencv_c.h"

namespace zorv {

/// @name Values
/// @{

/// Every element of every channel becomes 0 if it is below `threshold`, else 255. Only unsigned 8-bit images:
/// any other is left as it is, with a line on the standard error stream. The pointer is never replaced.
ZORV_TOOLS_EXPORT void binary_image_convert(IplImage*& image, int threshold);

/// Fills the holes of `depth_map` from `second_map`. Both hold 8-bit depth codes in their first channel, and a
/// code above 240 is a hole: it is replaced by the other map's code, or by 255 where that is a hole as well.
/// Maps that differ in size, depth or channels are left as they are, with a line on the standard error stream.
ZORV_TOOLS_EXPORT void combine_depth_maps(IplImage* depth_map, IplImage* second_map);

/// Smallest and largest value over all channels. An image without pixels leaves both as they were. Values that
/// are not a number are passed over, save for the first of the image, which then stays in both.
/// Fails as `get_pix` does where an image has more than four channels or a depth that is not known.
ZORV_TOOLS_EXPORT void image_range(const cv::Mat& image, double& minimum, double& maximum);

/// The image as `CV_64F`, each channel divided by its own range (largest less smallest value). The values are
/// scaled and not shifted, which is meant: 100 to 200 becomes 1 to 2. A channel of one value only gives infinite
/// elements or such that are not a number. The argument is not changed.
ZORV_TOOLS_EXPORT cv::Mat image_normalise(cv::Mat& image);

/// @}
/// @name Scale space, sums and order
/// @{

/// Appends to `pyramid` a set of clones of `images`, then one set for each level, all in full size: level k
/// (from 0) is smoothed from the originals by a Gaussian with a standard deviation of sqrt(scale^k) pixels. The caller
/// owns the vectors, to be deleted, and the images, to be released by `cvReleaseImage`. `pyramid` is expected to be
/// empty; the clones go into its first vector whatever that is.
ZORV_TOOLS_EXPORT void create_image_pyramid(std::vector<IplImage*>* images,
                                            std::vector<std::vector<IplImage*>*>* pyramid,
                                            const unsigned int& levels, const double& scale);

/// Integral image I[column][row], the transpose of the image's layout: the sum over all pixels up to and
/// including that column and row (F. Crow, Summed-area tables for texture mapping, 1984). The pixels are read as
/// unsigned bytes, whatever the image's depth. The caller deletes the result. An image of several channels gives null
/// and a line on the standard error stream; one without pixels an empty matrix.
ZORV_TOOLS_EXPORT matrix<double>* create_integral_image(IplImage* image);

/// Median of the first channel over the region of interest, in unsigned bytes, without the values 0 and 255 if
/// `ignore_extremes`; of an even count the upper of the two middle values, and 0 with fewer than 3 values.
/// An image without a region of interest gets one of the whole image, which stays set for those who read it next.
ZORV_TOOLS_EXPORT int image_median(IplImage* image, bool ignore_extremes);

/// @}
/// @name Regions
/// @{

/// Letterboxes `image` with black to the ratio 4:3 and scales that to `width` by `height`. Only a `CV_8UC3`
/// image is seen in the result; any other type gives a black one. As with `cv::resize`, a
/// result of the size and type that `image` has already goes into its buffer.
ZORV_TOOLS_EXPORT void convert_res(cv::Mat& image, int width, int height);

/// Clears `dest` and copies `source_region` of `source` to `dest_region` of it, both clipped to their images.
/// The regions come back clipped, and both stay set as regions of interest. What is clipped off one region at the left
/// or top is left out of the other at the same side, with one exception that is meant: where `dest_region` begins left
/// of `dest`, the source region loses its right end instead, and its y falls by that of `dest_region`.
///
/// Throws `std::logic_error`, with `dest` cleared, where the source region begins behind the right or the lower edge
/// of `source`; what clipping has left empty, and regions that differ in size, are OpenCV's to refuse or to copy.
ZORV_TOOLS_EXPORT void image_region_copy(IplImage* source, IplImage* dest, CvRect& source_region,
                                         CvRect& dest_region);

/// @}
/// @name Composition
/// Each returns a new `CV_8UC3` picture, black where no image lies. An input of another type is given its place,
/// which stays black. `centre` puts each image in the middle of the free space across, else at the top or
/// left; `fit_4_3` pads the picture with black bars to the ratio 4:3. Failures leave these functions as an
/// `exception_l` with a frame for each joining function.
/// @{

/// Side by side or on top of each other, whichever wastes less of a 4:3 frame; on top if that is equal.
ZORV_TOOLS_EXPORT const cv::Mat join_images(const cv::Mat& first, const cv::Mat& second, bool centre,
                                            bool fit_4_3);
/// The first above the second; as wide as the wider, as high as both.
ZORV_TOOLS_EXPORT const cv::Mat join_images_on_top(const cv::Mat& first, const cv::Mat& second, bool centre,
                                                   bool fit_4_3);
/// The first left of the second; as high as the higher, as wide as both.
ZORV_TOOLS_EXPORT const cv::Mat join_images_side_by_side(const cv::Mat& first, const cv::Mat& second,
                                                         bool centre, bool fit_4_3);

/// A grid in the list's order, row by row, with the number of columns (fewer than there are images) that comes
/// closest to 4:3, the smaller of two that come equally close. Places behind the last image stay black. Fewer than two
/// images give an empty picture, also a single one, and an empty picture cannot be fitted: `fit_4_3` then throws.
ZORV_TOOLS_EXPORT const cv::Mat join_images_ordered(const std::vector<cv::Mat>& images, bool centre,
                                                    bool fit_4_3);

/// Joins neighbours by `join_images`, then the pairs, and so on; the images are always centred and the `bool`
/// without a name is not read. The last join alone is fitted: a single image comes back as it is, in the caller's
/// buffer. An empty list throws.
ZORV_TOOLS_EXPORT const cv::Mat join_images_unordered(const std::vector<cv::Mat>& images, bool, bool fit_4_3);

/// Writes a title of one line at the middle of `image` across, 10 pixels below its upper edge. A title that is as wide
/// or as high as the image is drawn all the same, with a line on the standard error stream. `font_face` is one of
/// OpenCV's, and a `font_scale` of 1 its natural size.
ZORV_TOOLS_EXPORT void image_title(cv::Mat& image, const std::string& title, int font_face, double font_scale,
                                   cv::Scalar_<double> colour);

/// @}
/// @name Display
/// @{

/// Shows the image, scaled by `image_normalise`, in the window of that name, which OpenCV makes if there is none. Does
/// not wait: the picture appears when the host lets OpenCV handle events, as by `cv::waitKey`.
ZORV_TOOLS_EXPORT void imagesc(const std::string& window_name, cv::Mat& image);

/// Shows the image, as `imagesc` does, in a window "Image check" until a key is pressed. For debugging: the caller's
/// thread is held up.
ZORV_TOOLS_EXPORT void check_image(cv::Mat& image);
/// The same for an `IplImage`, whose region of interest is shown alone.
ZORV_TOOLS_EXPORT void check_image(IplImage* image);

/// @}
/// @name Segmentation
/// An appearance image and an 8-bit depth image of the same size show the same scene. Closings are
/// made with the caller's `kernel` and `iterations`; a null kernel stands for none.
/// @{

/// Sets to 0 what lies outside the band of depth above `low` and up to `high`: the bytes of the depth image, and
/// in the appearance image all channels of the pixels outside the band. A negative `low` counts as 0. With a kernel
/// the appearance image is cut by the closed band, so that small holes in the depth leave none in it. A depth image of
/// several channels leaves both as they are, with two lines on the standard error stream. No pointer is replaced.
ZORV_TOOLS_EXPORT void threshold_image_pair(int high, int low, IplImage*& app_image, IplImage*& depth_image,
                                            IplConvKernel* kernel, int iterations);

/// Centroid, truncated, of the pixels of the region of interest whose first channel is not 0 (after a closing
/// with a kernel); the region's middle if there are none. Coordinates are those of the whole image. An image
/// without a region of interest gets one of the whole image, which stays set.
ZORV_TOOLS_EXPORT void find_object_center(int& x, int& y, IplImage* image, IplConvKernel* kernel,
                                          int iterations);

/// Pads the image with 0 so that (x, y), counted in the whole image, becomes its middle: pixel (width / 2,
/// height / 2) of the result. The old image is released and `image` points at a new one, the caller's to release,
/// without a region of interest.
ZORV_TOOLS_EXPORT void recenter_image(int x, int y, IplImage*& image);

/// Cuts both images to the depth of an object and recentres them on it. Both are replaced, and get a region of
/// interest around the object of about the size that the depth image's had.
///
/// The band of depth is `object_depth` times 1 - `depth_tolerance` to 1 + `depth_tolerance`; an `object_depth`
/// of 0 or less stands for the median of the depth image's region of interest, without 0 and 255. Where that is 0,
/// nothing is cut. The object's centre is looked for in that region, widened about its middle by the two factors.
ZORV_TOOLS_EXPORT void segment_and_recentre(IplImage*& app_image, IplImage*& depth_image,
                                            double depth_tolerance, double width_factor, double height_factor,
                                            IplConvKernel* kernel, int iterations, int object_depth);

/// Looks for the box whose share of non-zero pixels stands out most from that of the ring around it. The box is
/// `best_width` wide and `best_width` times `aspect_ratio` high, with its corner at the other two outputs; all
/// are 0 if there is none. Widths run from `minimum_width`, which must be at least 1, in steps of the factor
/// `width_step`, which must be above 1. The ring is about as large as the box. Of equal boxes the smallest
/// wins, then the topmost, then the leftmost. An image of several channels has none. `image` is not changed.
ZORV_TOOLS_EXPORT void centre_surround_check(IplImage*& image, double aspect_ratio, int& best_width,
                                             int& best_x, int& best_y, int minimum_width, double width_step);

/// @}

}  // namespace zorv

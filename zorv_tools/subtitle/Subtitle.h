#pragma once

/// @file
/// Timed texts with a confidence, and the text form of a track of them.
///
/// A track is a stream of blocks of three lines, one behind the other:
///
///     12
///     00:01:02,500 --> 00:01:04,000
///     [0.9] the words of the text
///
/// The reader takes any white space between the number, the times and the arrow, and in front of the confidence.
/// There is no quiet end of a track: a host skips white space and tests for the end of the stream before it reads a
/// block.

#include <istream>
#include <ostream>
#include <string>

#include "zorv_tools/core/export.h"
#include "zorv_tools/subtitle/Timestamp.h"

namespace zorv {

/// One block of a track.
class ZORV_TOOLS_EXPORT Subtitle {
public:
    /// No text, from 00:00:00,000 to the same, at 23.976 frames a second.
    Subtitle() = default;
    /// The same at another frame rate.
    /// @param frames_per_second not checked
    explicit Subtitle(double frames_per_second);
    /// A full copy.
    Subtitle(const Subtitle& other) = default;
    /// Takes all fields, the frame rate too.
    Subtitle& operator=(const Subtitle& other) = default;
    virtual ~Subtitle() = default;

    /// @{
    /// The frame that is shown when the text comes up, or goes, truncated toward zero.
    int start_frame() const;
    int end_frame() const;
    /// @}

    /// Place in the sequence, by the producer's count; blocks are neither numbered nor sorted here.
    int number = 0;
    /// Frames a second of the video; not part of the text form.
    double frame_rate = 23.976;
    /// How sure the producer of the text was; any number. Written with one decimal.
    float confidence = 0;
    /// A single line. Of a text with several, the reader gives back the first and takes the next for a new block.
    std::string text;
    /// When the text comes up.
    Timestamp start;
    /// When the text goes; not compared with the start.
    Timestamp end;
};

/// Reads one block into all fields but the frame rate. The text is all that follows the confidence on its line, with
/// the blank that the writer put there: each cycle of writing and reading adds one, on purpose.
///
/// Throws `exception_l` where something else stands than should, and where there is nothing more; what has been read is
/// then consumed, and the fields before it are set. A block that ends with its confidence at the very end of the stream
/// leaves the text as it was and the stream failed, without an exception.
ZORV_TOOLS_EXPORT std::istream& operator>>(std::istream& in, Subtitle& subtitle);

/// Writes one block and flushes the stream after each of its lines. The stream stays set to fixed notation with one
/// decimal, which is meant. Throws `exception_l` where the stream is not good, before anything is written, or where a
/// time cannot be written, after what stands in front of it.
ZORV_TOOLS_EXPORT std::ostream& operator<<(std::ostream& out, const Subtitle& subtitle);

}  // namespace zorv

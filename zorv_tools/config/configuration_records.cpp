#include <algorithm>
#include <cstddef>
#include <iostream>
#include <sstream>
#include <tuple>
#include <utility>

#include "zorv_tools/config/internal/configuration_fields.h"
#include "zorv_tools/config/internal/configuration_structured.h"

namespace zorv::internal {

namespace {

bool in_range(int number, int smallest, int largest) {
    return number >= smallest && number <= largest;
}

bool is_true_or_false(const std::string& text) {
    return text == "true" || text == "false";
}

auto fields_of(const scale& s) {
    return std::tie(s.samples, s.radius, s.scale_factor);
}

auto fields_of(const stereo_setting& s) {
    return std::tie(s.width, s.height, s.stereo_mask_size, s.edge_mask_size, s.max_disp, s.min_disp,
                    s.edge_correlation_on, s.back_and_forth_on);
}

auto fields_of(const haar_setting& h) {
    return std::tie(h.cascade_loc, h.scale_rate, h.detections, h.base_width, h.base_height, h.extra_settings);
}

template <class Record>
bool equal(const Record& a, const Record& b) {
    return fields_of(a) == fields_of(b);
}

/// Appends a record unless the list has its like.
template <class Record>
void append_new(const Record& record, const char* repetition_sentence, const setting& line) {
    auto& list = line.object_or_new<std::vector<Record>>();
    if (std::any_of(list.begin(), list.end(), [&](const Record& other) { return equal(record, other); })) {
        std::cerr << repetition_sentence << line.value << "\" found" << std::endl;
        return;
    }
    list.push_back(record);
}

/// The text from `begin` up to `end`, empty where these are out of order or beyond the text.
std::string between(const std::string& text, std::size_t begin, std::size_t end) {
    return begin < end && begin < text.size() ? text.substr(begin, end - begin) : std::string();
}

/// `values` are the fields behind y2 of a sample.
void append_classes(const std::vector<std::string>& values, std::vector<double>& class_vector,
                    const setting& line) {
    int classes = -1;
    int output_parameters = 1;
    line.store.get_param("classes", classes);
    line.store.get_param("output_parameters", output_parameters);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double value = to_double(values[i]);
        const bool is_last = i + 1 == values.size();
        const bool refused = classes > 1 && !(value < classes);
        if (is_last && !refused && static_cast<std::ptrdiff_t>(values.size()) != output_parameters) {
            std::cerr << values.size() << " parameters in sample but output dimensions specified as "
                      << output_parameters << std::endl;
        }
        // Of the refused values, all but the last are in the list all the same.
        if (!is_last || !refused) {
            class_vector.push_back(value);
        }
        if (refused) {
            std::cerr << "WARNING: class parameter not below number of classes (" << classes << "): " << value
                      << std::endl;
            return;
        }
    }
}

}  // namespace

void append_scale(const key_row&, const setting& line) {
    const std::string& text = line.value;
    const std::size_t first_comma = text.find(',');
    const std::size_t second_comma =
        first_comma == std::string::npos ? first_comma : text.find(',', first_comma + 1);
    const bool two_commas = second_comma != std::string::npos;
    if (!two_commas || text.front() != '(' || text.back() != ')') {
        warn_format(
            "WARNING: Format incorrect, scales should be entered as \"(samples,radius,scale_factor)\"", line);
    }
    // Nothing is refused here: each test only warns, and the entry is stored with what the positions gave.
    scale entry;
    if (first_comma != std::string::npos) {
        entry.samples = to_int(between(text, 1, first_comma));
    }
    if (two_commas) {
        entry.radius = static_cast<float>(to_double(between(text, first_comma + 1, second_comma)));
        entry.scale_factor = static_cast<float>(to_double(between(text, second_comma + 1, text.size() - 1)));
    }
    if (entry.radius <= 0) {
        std::cerr << "WARNING: Radius not greater than 0: " << entry.radius << std::endl;
    }
    const double most_samples = 8.0 * static_cast<double>(entry.radius);
    if (entry.samples < 1 || entry.samples > most_samples) {
        std::cerr << "WARNING: Samples parameter not between 1 and 8*radius (" << most_samples
                  << "): " << entry.samples << std::endl;
    }
    if (entry.scale_factor <= 0) {
        std::cerr << "WARNING: scale_factor parameter not greater than 0: " << entry.scale_factor
                  << std::endl;
    }
    auto& list = line.object_or_new<std::vector<scale>>();
    for (const scale& other : list) {
        if (equal(entry, other)) {
            std::cerr << "WARNING: Repeated occurence of scale \"" << text << "\" found" << std::endl;
        }
    }
    list.push_back(entry);
}

void append_stereo_setting(const key_row&, const setting& line) {
    const std::vector<std::string> fields = split_fields(line.value, 8);
    if (fields.size() < 8) {
        warn_format(
            "WARNING: Format incorrect, stereo settings should be entered as \"stereo_mask_size|edge_correlation_on|edge_mask_size|back_and_forth_on|width|height|max_disp|min_disp\"",
            line);
        return;
    }
    stereo_setting s;
    s.stereo_mask_size = to_int(fields[0]);
    s.edge_correlation_on = fields[1] == "true";
    s.edge_mask_size = to_int(fields[2]);
    s.back_and_forth_on = fields[3] == "true";
    s.width = to_int(fields[4]);
    s.height = to_int(fields[5]);
    s.max_disp = to_int(fields[6]);
    s.min_disp = to_int(fields[7]);
    const bool in_order =
        accept(in_range(s.stereo_mask_size, 1, 23),
               "WARNING: sms parameter less than 1, or more than 23: ", s.stereo_mask_size) &&
        accept(is_true_or_false(fields[1]),
               "WARNING: ec parameter must be true or false, passed value was: ", fields[1]) &&
        accept(in_range(s.edge_mask_size, 3, 11),
               "WARNING: ems parameter less than 3, or more than 11: ", s.edge_mask_size) &&
        accept(is_true_or_false(fields[3]),
               "WARNING: back_and_forth parameter must be true or false, passed value was: ", fields[3]) &&
        accept(in_range(s.width, 1, 1024),
               "WARNING: width parameter less than 1, or more than 1024: ", s.width) &&
        accept(in_range(s.height, 1, 768),
               "WARNING: height parameter less than 1, or more than 768: ", s.height) &&
        accept(in_range(s.max_disp, 0, s.width),
               "WARNING: max_disp must be positive, and less than the image width: ", s.max_disp) &&
        // The last two show max_disp too: this is meant.
        accept(
            s.min_disp >= 0 && s.min_disp <= s.width - 11 && s.min_disp <= s.max_disp,
            "WARNING: min_disp must be positive, and less than the image width minus 11, and less than the max disparity: ",
            s.max_disp) &&
        accept(s.max_disp - s.min_disp <= 240,
               "WARNING: The distance between min and max disparity must be less than 240: ", s.max_disp);
    if (in_order) {
        append_new(s, "WARNING: Repeated occurence of stereo settings \"", line);
    }
}

void append_haar_setting(const key_row&, const setting& line) {
    const std::vector<std::string> fields = split_fields(line.value, 6);
    if (fields.size() < 6) {
        // "samples" is meant to stay.
        warn_format(
            "WARNING: Format incorrect, samples should be entered as \"cascade_loc|scale_rate|detections|base_width|base_height|extra_settings\"",
            line);
        return;
    }
    haar_setting h;
    h.cascade_loc = fields[0];
    h.scale_rate = to_double(fields[1]);
    h.detections = to_int(fields[2]);
    h.base_width = to_int(fields[3]);
    h.base_height = to_int(fields[4]);
    h.extra_settings = to_int(fields[5]);
    const bool in_order =
        accept(!(h.scale_rate < 0), "WARNING: scale_rate parameter less than 0: ", h.scale_rate) &&
        accept(h.detections >= 1, "WARNING: detections parameter less than 1: ", h.detections) &&
        accept(h.base_width >= 1, "WARNING: base_width parameter less than 1: ", h.base_width) &&
        accept(h.base_height >= 1, "WARNING: base_height less than 1: ", h.base_height) &&
        accept(in_range(h.extra_settings, 0, 15),
               "WARNING: extra_settings less than 0 or greater than 15: ", h.extra_settings);
    if (in_order) {
        append_new(h, "WARNING: Repeated occurence of scale \"", line);
    }
}

void append_sample(const key_row&, const setting& line) {
    std::vector<std::string> fields = split_fields(line.value);
    if (fields.size() < 7) {
        warn_format(
            "WARNING: Format incorrect, samples should be entered as \"location|frame|x1|x2|y1|y2|value1...\"",
            line);
        return;
    }
    sample s;
    s.location = fields[0];
    std::istringstream frame(fields[1]);
    if (!accept(static_cast<bool>(frame >> s.frame),
                "WARNING: Frame parameter was non numeric (old style sample list?): ", fields[1])) {
        return;
    }
    s.x1 = to_int(fields[2]);
    s.x2 = to_int(fields[3]);
    s.y1 = to_int(fields[4]);
    s.y2 = to_int(fields[5]);
    if (!accept(s.frame >= -1, "WARNING: Frame parameter less than -1: ", s.frame) ||
        !accept(s.x1 >= 0, "WARNING: x1 less than 0: ", s.x1)) {
        return;
    }
    if (s.x2 < s.x1) {
        std::cerr << "WARNING: x2 (" << s.x2 << ")  less than x1 (" << s.x1 << ")" << std::endl;
        return;
    }
    if (!accept(s.y1 >= 0, "WARNING: y1 less than 0: ", s.y1)) {
        return;
    }
    if (s.y2 < s.y1) {
        std::cerr << "WARNING: y2 (" << s.y2 << ")  less than y1 (" << s.y1 << ")" << std::endl;
        return;
    }
    // The sample stays even if one of its values is refused below.
    line.object_or_new<std::vector<sample>>().push_back(s);
    const std::size_t class_vector = line.find_other("class_vector");
    if (class_vector == line.parameters.size()) {
        return;
    }
    fields.erase(fields.begin(), fields.begin() + 6);
    append_classes(fields, line.object_or_new_at<std::vector<double>>(class_vector), line);
}

}  // namespace zorv::internal

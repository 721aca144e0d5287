#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace skyhaul::flytec {

inline constexpr size_t kNameWidth = 17;  // of every name and remark that is sent

// A UTF-8 text as one field of a sentence: plain ASCII, cut or padded with blanks to exactly the
// width. What would end the field or the sentence (',', '*', '$') becomes '-', a control character
// a blank.
std::string FieldText(std::string_view utf8, size_t width = kNameWidth);

// Texts as fields of kNameWidth, none of them blank and no two alike: the instrument overwrites
// what it has under the same name. A clash gets a number at its end. changed is how many were cut
// or numbered.
std::vector<std::string> NameFields(std::span<const std::string> utf8, uint32_t& changed);

// A received field without the blanks at its end, at most so many bytes of it.
std::string TextOfField(std::string_view field, size_t longest);

}  // namespace skyhaul::flytec

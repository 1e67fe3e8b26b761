#include "reader/input/Utf8Bytes.h"

#include <algorithm>
#include <iterator>

namespace sentiq {
namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view littleEndianMark = "\xFF\xFE";
constexpr std::string_view bigEndianMark = "\xFE\xFF";
constexpr std::uint32_t replacement = 0xFFFD;

bool mayBeginWithMark(std::string_view bytes) {
  constexpr std::string_view marks[] = {utf8Mark, littleEndianMark, bigEndianMark};
  return std::any_of(std::begin(marks), std::end(marks),
                     [bytes](std::string_view mark) { return bytes.starts_with(mark) || mark.starts_with(bytes); });
}

}  // namespace

std::string_view Utf8Bytes::take(std::string_view bytes) {
  if (form_ == Form::Open && held_.empty() && !mayBeginWithMark(bytes)) {
    form_ = Form::AsItIs;
  }
  if (form_ == Form::AsItIs) {
    return bytes;
  }
  held_ += bytes;
  if (form_ == Form::Open) {
    for (const std::string_view mark : {utf8Mark, littleEndianMark, bigEndianMark}) {
      if (held_.size() < mark.size() && mark.starts_with(held_)) {
        return {};
      }
    }
    return begin();
  }
  text_.clear();
  std::size_t at = 0;
  for (; at + 2 <= held_.size(); at += 2) {
    const auto first = static_cast<unsigned char>(held_[at]);
    const auto second = static_cast<unsigned char>(held_[at + 1]);
    takeUnit(static_cast<std::uint16_t>(form_ == Form::LittleEndian ? second << 8 | first : first << 8 | second));
  }
  held_.erase(0, at);
  return text_;
}

// All bytes of the mark are there, if there is one.
std::string_view Utf8Bytes::begin() {
  if (held_.starts_with(littleEndianMark) || held_.starts_with(bigEndianMark)) {
    form_ = held_.starts_with(littleEndianMark) ? Form::LittleEndian : Form::BigEndian;
    held_.erase(0, littleEndianMark.size());
    return take({});
  }
  form_ = Form::AsItIs;
  text_.swap(held_);
  return std::string_view(text_).substr(text_.starts_with(utf8Mark) ? utf8Mark.size() : 0);
}

std::string_view Utf8Bytes::finish() {
  text_.clear();
  if (form_ == Form::Open) {
    text_.swap(held_);
  } else if (!held_.empty() || highHalf_ != 0) {
    append(replacement);
  }
  return text_;
}

void Utf8Bytes::takeUnit(std::uint16_t unit) {
  const bool high = (unit & 0xFC00U) == 0xD800;
  const bool low = (unit & 0xFC00U) == 0xDC00;
  if (highHalf_ != 0 && low) {
    append(0x10000 + ((highHalf_ & 0x3FFU) << 10U) + (unit & 0x3FFU));
  } else {
    if (highHalf_ != 0) {
      append(replacement);
    }
    if (!high) {
      append(low ? replacement : unit);
    }
  }
  highHalf_ = high ? unit : 0;
}

void Utf8Bytes::append(std::uint32_t code) {
  const auto rest = [&](unsigned shift) { text_ += static_cast<char>(0x80 | (code >> shift & 0x3FU)); };
  if (code < 0x80) {
    text_ += static_cast<char>(code);
  } else if (code < 0x800) {
    text_ += static_cast<char>(0xC0 | code >> 6U);
    rest(0);
  } else if (code < 0x10000) {
    text_ += static_cast<char>(0xE0 | code >> 12U);
    rest(6);
    rest(0);
  } else {
    text_ += static_cast<char>(0xF0 | code >> 18U);
    rest(12);
    rest(6);
    rest(0);
  }
}

}  // namespace sentiq

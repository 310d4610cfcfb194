#include "app/plist_guard.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

namespace tavelle {
namespace {

constexpr std::size_t longestList = std::size_t{1} << 30;
constexpr std::size_t deepestNesting = 512;
/// Bytes of memory, roughly, that a list may take when every reference is unfolded.
constexpr std::uint64_t mostMemory = 256 << 20;
/// What a node costs besides its text.
constexpr std::uint64_t nodeMemory = 64;

/// An XML list's depth is counted by its tags, wherever they stand.
bool isShallowXml(std::string_view bytes) {
  std::size_t depth = 0;
  for (std::size_t i = bytes.find('<'); i != std::string_view::npos; i = bytes.find('<', i + 1)) {
    const std::string_view tag = bytes.substr(i + 1, 6);
    if (tag.starts_with("array") || tag.starts_with("dict")) {
      if (++depth > deepestNesting) return false;
    } else if (depth > 0 && (tag.starts_with("/array") || tag.starts_with("/dict"))) {
      --depth;
    }
  }
  return true;
}

/// The object table of a binary list: "bplist00", objects, their offsets, and a trailer of 32 bytes that says where
/// they are. All numbers have their highest byte first.
class BinaryList {
 public:
  explicit BinaryList(std::string_view bytes) : bytes_(bytes) {}

  bool isReasonable() {
    if (bytes_.size() < trailerSize) return true;
    const std::size_t trailer = bytes_.size() - trailerSize;
    offsetSize_ = *number(trailer + 6, 1);
    referenceSize_ = *number(trailer + 7, 1);
    const std::uint64_t count = *number(trailer + 8, 8);
    table_ = *number(trailer + 24, 8);
    if (count > bytes_.size()) return false;
    sizes_.assign(count, {});
    return measure(*number(trailer + 16, 8), 0).has_value();
  }

 private:
  static constexpr std::size_t trailerSize = 32;

  struct Size {
    enum class State { unknown, underway, known };
    State state = State::unknown;
    std::uint64_t memory = 0;
    std::size_t height = 0;
  };

  std::optional<std::uint64_t> number(std::uint64_t at, std::uint64_t size) const {
    if (size > 8 || at > bytes_.size() || size > bytes_.size() - at) return std::nullopt;
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < size; ++i) value = value << 8 | static_cast<std::uint8_t>(bytes_[at + i]);
    return value;
  }

  /// Where an object begins.
  std::optional<std::uint64_t> placeOf(std::uint64_t object) const {
    if (object >= sizes_.size() || table_ > bytes_.size()) return std::nullopt;
    return number(table_ + object * offsetSize_, offsetSize_);
  }

  /// The memory and height of an unfolded object; none when there is something wrong with it.
  std::optional<Size> measure(std::uint64_t object, std::size_t depth) {
    if (object >= sizes_.size() || depth > deepestNesting) return std::nullopt;
    if (sizes_[object].state == Size::State::underway) return std::nullopt;
    if (sizes_[object].state == Size::State::unknown) {
      sizes_[object].state = Size::State::underway;
      const auto size = unfold(object, depth);
      if (!size) return std::nullopt;
      sizes_[object] = *size;
    }
    return depth + sizes_[object].height > deepestNesting ? std::nullopt : std::optional(sizes_[object]);
  }

  std::optional<Size> unfold(std::uint64_t object, std::size_t depth) {
    const auto place = placeOf(object);
    const auto marker = place ? number(*place, 1) : std::nullopt;
    if (!marker) return std::nullopt;
    Size size{Size::State::known, nodeMemory, 1};
    const std::uint64_t kind = *marker >> 4;
    if (kind < 4) return size;
    std::uint64_t count = *marker & 15;
    std::uint64_t content = *place + 1;
    if (count == 15) {
      // The count follows as a number of its own.
      const auto countMarker = number(content, 1);
      const std::uint64_t countSize = std::uint64_t{1} << (countMarker.value_or(0) & 15);
      const auto longCount = countMarker ? number(content + 1, countSize) : std::nullopt;
      if (!longCount || *longCount > bytes_.size()) return std::nullopt;
      count = *longCount;
      content += 1 + countSize;
    }
    size.memory += 2 * count;
    const bool dictionary = kind == 0xD;
    if (!dictionary && kind != 0xA && kind != 0xC) return size;
    for (std::uint64_t i = 0; i < count * (dictionary ? 2 : 1); ++i) {
      const auto reference = number(content + i * referenceSize_, referenceSize_);
      const auto element = reference ? measure(*reference, depth + 1) : std::nullopt;
      if (!element) return std::nullopt;
      size.memory += element->memory;
      size.height = std::max(size.height, element->height + 1);
      if (size.memory > mostMemory) return std::nullopt;
    }
    return size;
  }

  std::string_view bytes_;
  std::uint64_t offsetSize_ = 0;
  std::uint64_t referenceSize_ = 0;
  std::uint64_t table_ = 0;
  std::vector<Size> sizes_;
};

}  // namespace

bool isReasonablePlist(std::string_view bytes) {
  if (bytes.size() > longestList) return false;
  return bytes.starts_with("bplist") ? BinaryList(bytes).isReasonable() : isShallowXml(bytes);
}

}  // namespace tavelle

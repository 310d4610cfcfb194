#include "base/plist_guard.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/text.h"

namespace tavelle {
namespace {

constexpr std::size_t longestList = std::size_t{1} << 30;
constexpr std::size_t deepestNesting = 512;
/// Bytes of memory, roughly, that a list may take when every reference is unfolded.
constexpr std::uint64_t mostMemory = 256 << 20;
/// What a node costs besides its text.
constexpr std::uint64_t nodeMemory = 64;
/// Nodes that a binary list may unfold to for each of its bytes. Programs share texts among what refers to them, but
/// hardly ever whole dictionaries.
constexpr std::uint64_t mostNodesPerByte = 32;

/// Bytes that may be moved to put characters in the place of their names; each name moves what follows it.
constexpr std::uint64_t mostMoved = std::uint64_t{1} << 36;

/// What begins with the "<" in front: a comment, marked-up text or a tag; all that is left when it has no end.
std::string_view markupIn(std::string_view bytes) {
  const auto upTo = [bytes](std::string_view end, std::size_t from) {
    const std::size_t found = bytes.find(end, from);
    return found == std::string_view::npos ? bytes : bytes.substr(0, found + end.size());
  };
  constexpr std::string_view comment = "<!--";
  constexpr std::string_view literal = "<![CDATA[";
  if (bytes.starts_with(comment)) return upTo("-->", comment.size());
  if (bytes.starts_with(literal)) return upTo("]]>", literal.size());
  return upTo(">", 0);
}

/// Whether a tag ends where it seems to, and not later: the library reads on over what is in quotes, in an instruction
/// or in declarations of the list's own, and could be shown other tags than are counted here.
bool isPlainTag(std::string_view tag) {
  return tag.find('<', 1) == std::string_view::npos && std::count(tag.begin(), tag.end(), '"') % 2 == 0 &&
         (!tag.starts_with("<?") || tag.ends_with("?>")) &&
         (!tag.starts_with("<!") || tag.find('[') == std::string_view::npos);
}

bool isReasonableXml(std::string_view bytes) {
  if (!isUtf8(bytes) || bytes.find('\0') != std::string_view::npos) return false;
  std::size_t depth = 0;
  std::uint64_t moved = 0;
  while (!bytes.empty()) {
    const std::string_view text = bytes.substr(0, bytes.find('<'));
    moved += text.size() * static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '&'));
    if (moved > mostMoved) return false;
    bytes.remove_prefix(text.size());
    const std::string_view markup = markupIn(bytes);
    bytes.remove_prefix(markup.size());
    if (markup.starts_with("<!--") || markup.starts_with("<![")) continue;
    if (!isPlainTag(markup)) return false;
    if (markup.starts_with("<array") || markup.starts_with("<dict")) {
      if (!markup.ends_with("/>") && ++depth > deepestNesting) return false;
    } else if (depth > 0 && (markup.starts_with("</array") || markup.starts_with("</dict"))) {
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
    sizes_.assign(count, std::nullopt);
    return measure(*number(trailer + 16, 8), 0).has_value();
  }

 private:
  static constexpr std::size_t trailerSize = 32;

  struct Size {
    std::uint64_t memory = 0;
    std::uint64_t nodes = 0;
    std::size_t height = 0;
  };

  std::optional<std::uint64_t> number(std::uint64_t at, std::uint64_t size) const {
    if (size > 8 || at > bytes_.size() || size > bytes_.size() - at) return std::nullopt;
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < size; ++i) value = value << 8 | static_cast<std::uint8_t>(bytes_[at + i]);
    return value;
  }

  bool isAscii(std::uint64_t at, std::uint64_t count) const {
    const std::string_view text = bytes_.substr(std::min<std::uint64_t>(at, bytes_.size()), count);
    return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<signed char>(byte) > 0; });
  }

  /// Whether every first half of a pair is before a second half, and every second half behind a first one; and no
  /// character is 0, behind which the library forgets how little it has copied.
  bool isUtf16(std::uint64_t at, std::uint64_t count) const {
    bool within = false;
    for (std::uint64_t i = 0; i < count; ++i) {
      const std::uint64_t character = number(at + 2 * i, 2).value_or(0);
      const std::uint64_t kind = character >> 10;
      if (character == 0 || (kind == 0xDC00 >> 10) != within) return false;
      within = kind == 0xD800 >> 10;
    }
    return !within;
  }

  /// Where an object begins.
  std::optional<std::uint64_t> placeOf(std::uint64_t object) const {
    if (object >= sizes_.size() || table_ > bytes_.size()) return std::nullopt;
    return number(table_ + object * offsetSize_, offsetSize_);
  }

  /// What an object unfolds to; none when there is something wrong with it. One that holds itself nests too deeply, and
  /// the first thing that is wrong ends all measuring.
  std::optional<Size> measure(std::uint64_t object, std::size_t depth) {
    if (object >= sizes_.size() || depth > deepestNesting) return std::nullopt;
    if (!sizes_[object]) sizes_[object] = unfold(object, depth);
    if (sizes_[object] && depth + sizes_[object]->height > deepestNesting) return std::nullopt;
    return sizes_[object];
  }

  std::optional<Size> unfold(std::uint64_t object, std::size_t depth) {
    const auto place = placeOf(object);
    const auto marker = place ? number(*place, 1) : std::nullopt;
    if (!marker) return std::nullopt;
    Size size{nodeMemory, 1, 1};
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
    if ((kind == 5 && !isAscii(content, count)) || (kind == 6 && !isUtf16(content, count))) return std::nullopt;
    const bool dictionary = kind == 0xD;
    if (!dictionary && kind != 0xA && kind != 0xC) return size;
    for (std::uint64_t i = 0; i < count * (dictionary ? 2 : 1); ++i) {
      const auto reference = number(content + i * referenceSize_, referenceSize_);
      const auto element = reference ? measure(*reference, depth + 1) : std::nullopt;
      if (!element) return std::nullopt;
      size.memory += element->memory;
      size.nodes += element->nodes;
      size.height = std::max(size.height, element->height + 1);
      if (size.memory > mostMemory || size.nodes > mostNodesPerByte * bytes_.size()) return std::nullopt;
    }
    return size;
  }

  std::string_view bytes_;
  std::uint64_t offsetSize_ = 0;
  std::uint64_t referenceSize_ = 0;
  std::uint64_t table_ = 0;
  /// By object; none for one that has not been measured.
  std::vector<std::optional<Size>> sizes_;
};

}  // namespace

bool isReasonablePlist(std::string_view bytes) {
  if (bytes.size() > longestList) return false;
  return bytes.starts_with("bplist") ? BinaryList(bytes).isReasonable() : isReasonableXml(bytes);
}

}  // namespace tavelle

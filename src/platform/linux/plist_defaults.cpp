#include "platform/linux/plist_defaults.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "base/text.h"
#include "platform/linux/file_operations.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

/// How many damaged files are kept beside the good one before the program refuses to add another.
constexpr int mostDamagedFiles = 100;

std::optional<std::vector<std::string>> textArray(plist_t node) {
  std::vector<std::string> texts;
  for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
    auto text = plistText(plist_array_get_item(node, i));
    if (!text) return std::nullopt;
    texts.push_back(*std::move(text));
  }
  return texts;
}

struct NodeMaker {
  plist_t operator()(std::monostate) const { return plist_new_string(""); }
  plist_t operator()(const std::string& value) const { return plist_new_string(value.c_str()); }
  // The library keeps integers as 64 bits whose sign the reader decides on.
  plist_t operator()(std::int64_t value) const { return plist_new_uint(static_cast<std::uint64_t>(value)); }
  plist_t operator()(double value) const { return plist_new_real(value); }
  plist_t operator()(bool value) const { return plist_new_bool(value ? 1 : 0); }
  plist_t operator()(const std::vector<std::string>& values) const {
    plist_t array = plist_new_array();
    for (const std::string& value : values) plist_array_append_item(array, plist_new_string(value.c_str()));
    return array;
  }
};

/// What a node of a property list means as a setting.
DefaultsValue defaultsValue(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_STRING:
      return *plistText(node);
    case PLIST_UINT: {
      std::uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return static_cast<std::int64_t>(value);
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return value;
    }
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return value != 0;
    }
    case PLIST_ARRAY:
      if (auto texts = textArray(node)) return *std::move(texts);
      return std::monostate{};
    default:
      return std::monostate{};
  }
}

/// A setting as a node of a property list. `monostate` becomes an empty text.
PlistPtr plistNode(const DefaultsValue& value) { return PlistPtr(std::visit(NodeMaker{}, value)); }

}  // namespace

std::optional<DefaultsValue> PlistDefaults::value(std::string_view key) const {
  if (const auto unsaved = unsaved_.find(key); unsaved != unsaved_.end()) return unsaved->second;
  refresh();
  plist_t node = stored_ ? plist_dict_get_item(stored_.get(), std::string(key).c_str()) : nullptr;
  return node ? std::optional(defaultsValue(node)) : std::nullopt;
}

void PlistDefaults::set(std::string_view key, DefaultsValue newValue) {
  if (value(key) == newValue && unsaved_.empty()) return;
  unsaved_.insert_or_assign(std::string(key), std::move(newValue));
  save();
}

void PlistDefaults::remove(std::string_view key) {
  if (!value(key) && unsaved_.empty()) return;
  unsaved_.insert_or_assign(std::string(key), std::nullopt);
  save();
}

Registration PlistDefaults::onTrouble(std::function<void(const std::string&)> tell) {
  tell_ = std::move(tell);
  if (!lastTrouble_.empty()) tell_(lastTrouble_);
  return Registration([this] { tell_ = nullptr; });
}

PlistDefaults::Version PlistDefaults::currentVersion() const {
  struct stat info {};
  if (stat(file_.c_str(), &info) != 0) return {};
  return {info.st_ino, info.st_size, info.st_ctim.tv_sec, info.st_ctim.tv_nsec};
}

void PlistDefaults::refresh() const {
  const Version version = currentVersion();
  if (version == version_) return;
  version_ = version;
  stored_.reset();
  content_ = Content::good;
  if (version == Version{}) return;

  const auto bytes = readFile(file_);
  if (!bytes) {
    content_ = Content::unreadable;
    report("couldn't read " + bytes.error().description);
    return;
  }
  stored_ = parsedDictionary(*bytes);
  if (stored_ || bytes->empty()) return;
  content_ = Content::damaged;
  report(escapedUtf8(file_.native()) + " is damaged; starting without it");
}

void PlistDefaults::save() {
  if (const auto saved = trySave(); saved) {
    lastTrouble_.clear();
  } else {
    report("couldn't save to " + escapedUtf8(file_.native()) + ": " + saved.error().description);
  }
}

Result<void> PlistDefaults::trySave() {
  const fs::path file = behindLinks(file_);
  std::error_code code;
  fs::create_directories(file.parent_path(), code);
  if (code) return systemError(file.parent_path().native(), code.value());
  // Held while the file is read, changed and replaced, so that two processes do not undo each other's changes.
  const FileDescriptor folder(open(file.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!folder || flock(folder.get(), LOCK_EX) != 0) return systemError(file.parent_path().native(), errno);

  refresh();
  if (content_ == Content::unreadable) return Error{"what it holds can't be read"};
  if (content_ == Content::damaged) {
    if (auto aside = keepDamagedAside(); !aside) return aside;
  }
  const PlistPtr changed(stored_ ? plist_copy(stored_.get()) : plist_new_dict());
  for (const auto& [key, newValue] : unsaved_) {
    if (newValue) {
      setPlistItem(changed.get(), key.c_str(), plistNode(*newValue));
    } else {
      plist_dict_remove_item(changed.get(), key.c_str());
    }
  }
  const auto bytes = xmlPlist(changed.get());
  if (!bytes) return bytes.error();
  if (auto written = writeAtomically(file, *bytes, 0600); !written) return written;
  unsaved_.clear();
  return {};
}

Result<void> PlistDefaults::keepDamagedAside() {
  const fs::path file = behindLinks(file_);
  for (int number = 1; number <= mostDamagedFiles; ++number) {
    const fs::path aside = file.native() + ".damaged-" + std::to_string(number);
    if (isTaken(aside)) continue;
    auto moved = renameToNew(file, aside);
    if (moved) content_ = Content::good;
    return moved;
  }
  return Error{"too many damaged files beside it"};
}

void PlistDefaults::report(const std::string& trouble) const {
  if (std::exchange(lastTrouble_, trouble) != trouble && tell_) tell_(trouble);
}

}  // namespace tavelle

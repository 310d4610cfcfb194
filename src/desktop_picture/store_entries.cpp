#include "desktop_picture/store_entries.h"

#include <cstdint>
#include <utility>

#include "base/allocated.h"
#include "base/property_list.h"

namespace tavelle {
namespace {

/// What all the records put into one store may take, as XML; a big store takes some megabytes.
constexpr std::size_t mostCopied = 64 << 20;

namespace key {
constexpr auto systemDefault = "SystemDefault";
constexpr auto forAll = "AllSpacesAndDisplays";
constexpr auto displays = "Displays";
constexpr auto spaces = "Spaces";
constexpr auto spaceDefault = "Default";

constexpr auto type = "Type";
constexpr auto desktop = "Desktop";
constexpr auto idle = "Idle";
constexpr auto linked = "Linked";

constexpr auto content = "Content";
constexpr auto lastSet = "LastSet";
constexpr auto lastUse = "LastUse";
constexpr auto choices = "Choices";
constexpr auto shuffle = "Shuffle";
constexpr auto configuration = "Configuration";
constexpr auto files = "Files";
constexpr auto provider = "Provider";

constexpr auto kind = "type";
constexpr auto url = "url";
constexpr auto relative = "relative";
}  // namespace key

constexpr auto individualType = "individual";
constexpr auto linkedType = "linked";
/// A text: a store that has never been written otherwise holds this word where nothing is.
constexpr auto noShuffle = "$null";
constexpr auto imageProvider = "com.apple.wallpaper.choice.image";
constexpr auto imageKind = "imageFile";

PlistPtr plistString(const std::string& text) { return PlistPtr(plist_new_string(text.c_str())); }

PlistPtr copyOf(plist_t node) { return PlistPtr(plist_copy(node)); }

plist_t dictionaryIn(plist_t node, const char* key) { return plistItem(node, key, PLIST_DICT); }

std::optional<std::string> textIn(plist_t node, const char* key) {
  return plistText(plistItem(node, key, PLIST_STRING));
}

/// The dictionary under a key, made when there is nothing; null when there is something else.
plist_t dictionaryMadeIn(plist_t parent, const std::string& key) {
  if (!parent) return nullptr;
  if (!plist_dict_get_item(parent, key.c_str())) setPlistItem(parent, key.c_str(), PlistPtr(plist_new_dict()));
  return dictionaryIn(parent, key.c_str());
}

void removeAllItems(plist_t dictionary) {
  while (plist_dict_get_size(dictionary) > 0) {
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(dictionary, &iterator);
    const AllocatedPtr<void> ownedIterator(iterator);
    char* key = nullptr;
    plist_dict_next_item(dictionary, iterator, &key, nullptr);
    const AllocatedPtr<char> ownedKey(key);
    if (!key) return;
    plist_dict_remove_item(dictionary, key);
  }
}

plist_t contentOf(plist_t entry) { return dictionaryIn(dictionaryIn(entry, key::desktop), key::content); }

/// The choice of a content that counts, the first; null when not all of them are dictionaries.
plist_t choiceOf(plist_t content) {
  plist_t choices = plistItem(content, key::choices, PLIST_ARRAY);
  const std::uint32_t count = choices ? plist_array_get_size(choices) : 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (!ofType(plist_array_get_item(choices, i), PLIST_DICT)) return nullptr;
  }
  return count > 0 ? plist_array_get_item(choices, 0) : nullptr;
}

std::optional<std::string> addressIn(plist_t entry) {
  plist_t data = plistItem(choiceOf(contentOf(entry)), key::configuration, PLIST_DATA);
  if (!data) return std::nullopt;
  std::uint64_t length = 0;
  const char* const bytes = plist_get_data_ptr(data, &length);
  if (!bytes) return std::nullopt;
  const PlistPtr configuration = parsedDictionary({bytes, length});
  return textIn(dictionaryIn(configuration.get(), key::url), key::relative);
}

double timeIn(plist_t entry) {
  plist_t date = plistItem(dictionaryIn(entry, key::desktop), key::lastSet, PLIST_DATE);
  if (!date) return 0;
  std::int32_t seconds = 0;
  std::int32_t microseconds = 0;
  plist_get_date_val(date, &seconds, &microseconds);
  return seconds + microseconds / 1e6;
}

Result<PlistPtr> choiceShowing(const std::string& imageAddress) {
  PlistPtr url(plist_new_dict());
  setPlistItem(url.get(), key::relative, plistString(imageAddress));
  const PlistPtr configuration(plist_new_dict());
  setPlistItem(configuration.get(), key::kind, plistString(imageKind));
  setPlistItem(configuration.get(), key::url, std::move(url));
  const auto bytes = binaryPlist(configuration.get());
  if (!bytes) return bytes.error();

  PlistPtr choice(plist_new_dict());
  setPlistItem(choice.get(), key::configuration, PlistPtr(plist_new_data(bytes->data(), bytes->size())));
  setPlistItem(choice.get(), key::files, PlistPtr(plist_new_array()));
  setPlistItem(choice.get(), key::provider, plistString(imageProvider));
  return choice;
}

/// A record of this content, with this as its only choice; null for none.
PlistPtr newRecord(PlistPtr content, PlistPtr choice, WallTime now) {
  PlistPtr choices(plist_new_array());
  if (choice) plist_array_append_item(choices.get(), choice.release());
  setPlistItem(content.get(), key::choices, std::move(choices));
  PlistPtr record(plist_new_dict());
  setPlistItem(record.get(), key::content, std::move(content));
  setPlistItem(record.get(), key::lastSet, plistDate(now));
  setPlistItem(record.get(), key::lastUse, plistDate(now));
  return record;
}

PlistPtr newContent() {
  PlistPtr content(plist_new_dict());
  setPlistItem(content.get(), key::shuffle, plistString(noShuffle));
  return content;
}

/// A record that shows an image and keeps what else the content of another one has; `content` may be null.
Result<PlistPtr> recordShowing(const std::string& imageAddress, plist_t content, WallTime now) {
  auto choice = choiceShowing(imageAddress);
  if (!choice) return choice.error();
  return newRecord(content ? copyOf(content) : newContent(), std::move(choice).value(), now);
}

void setRecord(plist_t entry, PlistPtr record) {
  setPlistItem(entry, key::type, plistString(individualType));
  setPlistItem(entry, key::desktop, std::move(record));
}

PlistPtr emptyEntry(WallTime now) {
  PlistPtr entry(plist_new_dict());
  setRecord(entry.get(), newRecord(newContent(), nullptr, now));
  return entry;
}

/// Any content of a record, however deep in the dictionaries of the store.
plist_t firstContent(plist_t value) {
  if (plist_t content = contentOf(value)) return content;
  for (plist_t each : plistValues(value)) {
    if (plist_t found = firstContent(each)) return found;
  }
  return nullptr;
}

/// Goes through a store and makes its entries show one image.
class Rewriter {
 public:
  Rewriter(const std::string& imageAddress, plist_t record, std::size_t mostEntries)
      : imageAddress_(imageAddress), record_(record), mostEntries_(mostEntries) {}

  void rewrite(plist_t root) {
    fill(dictionaryIn(root, key::systemDefault));
    fill(dictionaryIn(root, key::forAll));
    fillDisplays(root);
    for (plist_t space : plistValues(dictionaryIn(root, key::spaces))) {
      fill(dictionaryIn(space, key::spaceDefault));
      fillDisplays(space);
    }
  }

  bool changed() const { return entries_ > 0; }
  /// Whether there were more entries to change than may be.
  bool gaveUp() const { return entries_ > mostEntries_; }

 private:
  void fillDisplays(plist_t holder) {
    for (plist_t entry : plistValues(dictionaryIn(holder, key::displays))) fill(entry);
  }

  void fill(plist_t entry) {
    if (!ofType(entry, PLIST_DICT) || isDone(entry)) return;
    if (++entries_ > mostEntries_) return;
    if (textIn(entry, key::type) == linkedType) unlink(entry);
    setRecord(entry, copyOf(record_));
  }

  bool isDone(plist_t entry) const {
    return textIn(entry, key::type) == individualType && addressIn(entry) == imageAddress_;
  }

  /// A linked entry shows one picture on the desktop and when idle; only the idle one is kept.
  static void unlink(plist_t entry) {
    plist_t linked = plist_dict_get_item(entry, key::linked);
    PlistPtr idle = linked ? copyOf(linked) : nullptr;
    removeAllItems(entry);
    if (idle) setPlistItem(entry, key::idle, std::move(idle));
  }

  const std::string& imageAddress_;
  plist_t record_;
  std::size_t mostEntries_;
  std::size_t entries_ = 0;
};

/// Puts copies of one entry where entries are missing.
class Completer {
 public:
  explicit Completer(PlistPtr model) : model_(std::move(model)) {}

  void add(plist_t parent, const std::string& key) {
    if (!parent || plist_dict_get_item(parent, key.c_str())) return;
    setPlistItem(parent, key.c_str(), copyOf(model_.get()));
    added_ = true;
  }

  void addDisplays(plist_t holder, const std::vector<std::string>& displays) {
    plist_t entries = dictionaryMadeIn(holder, key::displays);
    for (const std::string& display : displays) add(entries, display);
  }

  bool added() const { return added_; }

 private:
  const PlistPtr model_;
  bool added_ = false;
};

}  // namespace

std::optional<ShownImage> imageOfDisplay(plist_t root, const std::string& display) {
  for (plist_t entry : {dictionaryIn(dictionaryIn(root, key::displays), display.c_str()),
                        dictionaryIn(root, key::forAll), dictionaryIn(root, key::systemDefault)}) {
    if (auto address = addressIn(entry)) return ShownImage{*std::move(address), timeIn(entry)};
  }
  return std::nullopt;
}

bool setImageOfDisplay(plist_t root, const std::string& display, const std::string& imageAddress, WallTime now) {
  plist_t entry = dictionaryMadeIn(dictionaryMadeIn(root, key::displays), display);
  auto record = recordShowing(imageAddress, contentOf(entry), now);
  if (!entry || !record) return false;
  setRecord(entry, std::move(record).value());
  return true;
}

Result<bool> setImageEverywhere(plist_t root, const std::string& imageAddress, WallTime now) {
  const auto record = recordShowing(imageAddress, firstContent(root), now);
  if (!record) return record.error();
  const auto text = xmlPlist(record->get());
  if (!text) return text.error();
  Rewriter rewriter(imageAddress, record->get(), mostCopied / text->size());
  rewriter.rewrite(root);
  if (rewriter.gaveUp()) return Error{"the store would become too big"};
  return rewriter.changed();
}

bool completeStore(plist_t root, const std::vector<std::string>& displays, const std::vector<std::string>& spaces,
                   WallTime now) {
  plist_t forAll = dictionaryIn(root, key::forAll);
  Completer completer(forAll ? copyOf(forAll) : emptyEntry(now));
  completer.add(root, key::forAll);
  completer.addDisplays(root, displays);
  plist_t allSpaces = dictionaryMadeIn(root, key::spaces);
  for (const std::string& space : spaces) {
    plist_t own = dictionaryMadeIn(allSpaces, space);
    completer.add(own, key::spaceDefault);
    completer.addDisplays(own, displays);
  }
  return completer.added();
}

}  // namespace tavelle

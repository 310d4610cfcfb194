#include "desktop_picture/wallpaper_store.h"

#include <cstdint>

#include "base/allocated.h"
#include "base/file_uri.h"
#include "base/text.h"
#include "platform/files.h"
#include "platform/processes.h"

namespace tavelle {
namespace {

constexpr auto imageProvider = "com.apple.wallpaper.choice.image";
/// What all the records put into one store may take, as XML; a big store takes some megabytes.
constexpr std::size_t mostCopied = 64 << 20;
constexpr auto unreadable = "desktops: couldn't read the wallpaper store";

PlistPtr plistString(const std::string& text) { return PlistPtr(plist_new_string(text.c_str())); }

PlistPtr copyOf(plist_t node) { return PlistPtr(plist_copy(node)); }

PlistPtr onlyElement(PlistPtr element) {
  PlistPtr array(plist_new_array());
  plist_array_append_item(array.get(), element.release());
  return array;
}

/// The part of an entry that says which image it shows, as a property list within the property list.
Result<PlistPtr> choiceConfiguration(const std::string& imageAddress) {
  const PlistPtr configuration(plist_new_dict());
  PlistPtr url(plist_new_dict());
  setPlistItem(url.get(), "relative", plistString(imageAddress));
  setPlistItem(configuration.get(), "type", plistString("imageFile"));
  setPlistItem(configuration.get(), "url", std::move(url));
  const auto bytes = binaryPlist(configuration.get());
  if (!bytes) return bytes.error();
  return PlistPtr(plist_new_data(bytes->data(), bytes->size()));
}

/// Any desktop record with a content, however deep in the dictionaries of the store.
plist_t firstDesktop(plist_t value) {
  plist_t desktop = plistItem(value, "Desktop", PLIST_DICT);
  if (plistItem(desktop, "Content", PLIST_DICT)) return desktop;
  for (plist_t each : plistValues(value)) {
    if (plist_t found = firstDesktop(each)) return found;
  }
  return nullptr;
}

bool showsImage(plist_t entry, const std::string& imageAddress) {
  return plistText(plistItem(entry, "Type", PLIST_STRING)) == "individual" && shownImage(entry) == imageAddress;
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

/// Goes through a store and makes its entries show one image.
class Rewriter {
 public:
  Rewriter(const std::string& imageAddress, plist_t record, std::size_t mostEntries)
      : imageAddress_(imageAddress), record_(record), mostEntries_(mostEntries) {}

  void rewrite(plist_t root) {
    fill(plistItem(root, "SystemDefault", PLIST_DICT));
    fill(plistItem(root, "AllSpacesAndDisplays", PLIST_DICT));
    fillDisplays(root);
    for (plist_t space : plistValues(plistItem(root, "Spaces", PLIST_DICT))) {
      fill(plistItem(space, "Default", PLIST_DICT));
      fillDisplays(space);
    }
  }

  bool changed() const { return entries_ > 0; }
  /// Whether there were more entries to change than may be.
  bool gaveUp() const { return entries_ > mostEntries_; }

 private:
  void fillDisplays(plist_t holder) {
    for (plist_t entry : plistValues(plistItem(holder, "Displays", PLIST_DICT))) fill(entry);
  }

  void fill(plist_t entry) {
    if (!ofType(entry, PLIST_DICT) || showsImage(entry, imageAddress_)) return;
    if (++entries_ > mostEntries_) return;
    if (plistText(plistItem(entry, "Type", PLIST_STRING)) == "linked") unlink(entry);
    setPlistItem(entry, "Type", plistString("individual"));
    setPlistItem(entry, "Desktop", copyOf(record_));
  }

  /// A linked entry shows one picture on the desktop and when idle; only the idle one is kept.
  static void unlink(plist_t entry) {
    plist_t linked = plist_dict_get_item(entry, "Linked");
    PlistPtr idle = linked ? copyOf(linked) : nullptr;
    removeAllItems(entry);
    if (idle) setPlistItem(entry, "Idle", std::move(idle));
  }

  const std::string& imageAddress_;
  plist_t record_;
  std::size_t mostEntries_;
  std::size_t entries_ = 0;
};

/// Makes every entry of the store show the image at this address, and touches nothing else. Whether any did not yet.
/// After an error the list is of no use: the address has no form in a property list, or so many entries would get
/// copies of so big a content that there might be no memory for them.
Result<bool> rewriteStore(plist_t root, const std::string& imageAddress, WallTime now) {
  plist_t content = plistItem(firstDesktop(root), "Content", PLIST_DICT);
  const auto record = desktopRecord(imageAddress, content, now);
  if (!record) return record.error();
  const auto text = xmlPlist(record->get());
  if (!text) return text.error();
  Rewriter rewriter(imageAddress, record->get(), mostCopied / text->size());
  rewriter.rewrite(root);
  if (rewriter.gaveUp()) return Error{"the store would become too big"};
  return rewriter.changed();
}

Result<void> replaceStore(const StoreServices& services, plist_t root) {
  const auto backup = services.store.parent_path() / "Index.before-tavelle.plist";
  // The store as it was before this program ever changed it; it is worth keeping, but nothing to fail for.
  if (!services.files.exists(backup)) static_cast<void>(services.files.copy(services.store, backup));
  const auto bytes = binaryPlist(root);
  if (!bytes) return bytes.error();
  // A content that is copied to a deeper place may nest too deeply there, and the library can write what it could not
  // read. A store that nobody can read is worse than one that shows another picture.
  if (!parsedDictionary(*bytes)) return Error{"the store has something in it that can't be written"};
  return services.files.write(services.store, *bytes);
}

}  // namespace

std::optional<std::string> shownImage(plist_t entry) {
  plist_t content = plistItem(plistItem(entry, "Desktop", PLIST_DICT), "Content", PLIST_DICT);
  plist_t choices = plistItem(content, "Choices", PLIST_ARRAY);
  const std::uint32_t count = choices ? plist_array_get_size(choices) : 0;
  if (count == 0) return std::nullopt;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (!ofType(plist_array_get_item(choices, i), PLIST_DICT)) return std::nullopt;
  }
  plist_t data = plistItem(plist_array_get_item(choices, 0), "Configuration", PLIST_DATA);
  if (!data) return std::nullopt;
  std::uint64_t length = 0;
  const char* const bytes = plist_get_data_ptr(data, &length);
  if (!bytes) return std::nullopt;
  const PlistPtr configuration = parsedDictionary({bytes, length});
  return plistText(plistItem(plistItem(configuration.get(), "url", PLIST_DICT), "relative", PLIST_STRING));
}

Result<PlistPtr> desktopRecord(const std::string& imageAddress, plist_t content, WallTime now) {
  auto configuration = choiceConfiguration(imageAddress);
  if (!configuration) return configuration.error();
  PlistPtr choice(plist_new_dict());
  setPlistItem(choice.get(), "Configuration", std::move(configuration).value());
  setPlistItem(choice.get(), "Files", PlistPtr(plist_new_array()));
  setPlistItem(choice.get(), "Provider", plistString(imageProvider));

  PlistPtr newContent(content ? plist_copy(content) : plist_new_dict());
  // A text: a store that has never been written otherwise holds this word where nothing is.
  if (!content) setPlistItem(newContent.get(), "Shuffle", plistString("$null"));
  setPlistItem(newContent.get(), "Choices", onlyElement(std::move(choice)));

  PlistPtr record(plist_new_dict());
  setPlistItem(record.get(), "Content", std::move(newContent));
  setPlistItem(record.get(), "LastSet", plistDate(now));
  setPlistItem(record.get(), "LastUse", plistDate(now));
  return record;
}

std::filesystem::path wallpaperStore(const std::filesystem::path& home) {
  return home / "Library/Application Support/com.apple.wallpaper/Store/Index.plist";
}

bool syncAllSpaces(const std::filesystem::path& still, const StoreServices& services,
                   const std::function<void(const std::string&)>& log) {
  const auto bytes = services.files.read(services.store);
  const PlistPtr root = bytes ? parsedDictionary(*bytes) : nullptr;
  const auto changed = root ? rewriteStore(root.get(), fileUri(still), services.clock.now()) : Error{"no store"};
  if (!changed) {
    log(unreadable);
    return false;
  }
  if (!*changed) return false;
  if (const auto replaced = replaceStore(services, root.get()); !replaced) {
    log("desktops: couldn't update the wallpaper store: " + replaced.error().description);
    return false;
  }
  // Without an agent there is nothing to restart, and no harm.
  static_cast<void>(services.processes.run("/usr/bin/killall", {"WallpaperAgent"}));
  log("desktops: every Space now shows " + escapedUtf8(still.filename().native()));
  return true;
}

}  // namespace tavelle

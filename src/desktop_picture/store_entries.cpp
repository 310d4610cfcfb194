#include "desktop_picture/store_entries.h"

#include <cstdint>
#include <utility>

#include "desktop_picture/wallpaper_store.h"

namespace tavelle {
namespace {

/// The dictionary under a key, made when there is nothing; null when there is something else.
plist_t dictionaryAt(plist_t parent, const std::string& key) {
  if (!parent) return nullptr;
  if (!plist_dict_get_item(parent, key.c_str())) setPlistItem(parent, key.c_str(), PlistPtr(plist_new_dict()));
  return plistItem(parent, key.c_str(), PLIST_DICT);
}

PlistPtr emptyEntry(WallTime now) {
  PlistPtr content(plist_new_dict());
  setPlistItem(content.get(), "Choices", PlistPtr(plist_new_array()));
  setPlistItem(content.get(), "Shuffle", PlistPtr(plist_new_string("$null")));
  PlistPtr desktop(plist_new_dict());
  setPlistItem(desktop.get(), "Content", std::move(content));
  setPlistItem(desktop.get(), "LastSet", plistDate(now));
  setPlistItem(desktop.get(), "LastUse", plistDate(now));
  PlistPtr entry(plist_new_dict());
  setPlistItem(entry.get(), "Type", PlistPtr(plist_new_string("individual")));
  setPlistItem(entry.get(), "Desktop", std::move(desktop));
  return entry;
}

/// Puts copies of one entry where entries are missing.
class Completer {
 public:
  explicit Completer(PlistPtr model) : model_(std::move(model)) {}

  void add(plist_t parent, const std::string& key) {
    if (!parent || plist_dict_get_item(parent, key.c_str())) return;
    setPlistItem(parent, key.c_str(), PlistPtr(plist_copy(model_.get())));
    added_ = true;
  }

  void addDisplays(plist_t holder, const std::vector<std::string>& displays) {
    plist_t entries = dictionaryAt(holder, "Displays");
    for (const std::string& display : displays) add(entries, display);
  }

  bool added() const { return added_; }

 private:
  const PlistPtr model_;
  bool added_ = false;
};

}  // namespace

bool completeStore(plist_t root, const std::vector<std::string>& displays, const std::vector<std::string>& spaces,
                   WallTime now) {
  plist_t forAll = plistItem(root, "AllSpacesAndDisplays", PLIST_DICT);
  Completer completer(forAll ? PlistPtr(plist_copy(forAll)) : emptyEntry(now));
  completer.add(root, "AllSpacesAndDisplays");
  completer.addDisplays(root, displays);
  plist_t allSpaces = dictionaryAt(root, "Spaces");
  for (const std::string& space : spaces) {
    plist_t own = dictionaryAt(allSpaces, space);
    completer.add(own, "Default");
    completer.addDisplays(own, displays);
  }
  return completer.added();
}

plist_t entryOfDisplay(plist_t root, const std::string& display) {
  for (plist_t entry :
       {plistItem(plistItem(root, "Displays", PLIST_DICT), display.c_str(), PLIST_DICT),
        plistItem(root, "AllSpacesAndDisplays", PLIST_DICT), plistItem(root, "SystemDefault", PLIST_DICT)}) {
    if (shownImage(entry)) return entry;
  }
  return nullptr;
}

plist_t setEntryOfDisplay(plist_t root, const std::string& display, const std::string& imageAddress, WallTime now) {
  plist_t entry = dictionaryAt(dictionaryAt(root, "Displays"), display);
  plist_t content = plistItem(plistItem(entry, "Desktop", PLIST_DICT), "Content", PLIST_DICT);
  auto record = desktopRecord(imageAddress, content, now);
  if (!entry || !record) return nullptr;
  setPlistItem(entry, "Type", PlistPtr(plist_new_string("individual")));
  setPlistItem(entry, "Desktop", std::move(record).value());
  return entry;
}

double timeOfEntry(plist_t entry) {
  plist_t date = plistItem(plistItem(entry, "Desktop", PLIST_DICT), "LastSet", PLIST_DATE);
  if (!date) return 0;
  std::int32_t seconds = 0;
  std::int32_t microseconds = 0;
  plist_get_date_val(date, &seconds, &microseconds);
  return seconds + microseconds / 1e6;
}

}  // namespace tavelle

#include "store_fuzz.h"

#include <algorithm>
#include <array>

#include "desktop_picture/store_values.h"
#include "desktop_picture/wallpaper_store.h"
#include "fakes/fake_desktop.h"
#include "fakes/fake_files.h"

namespace tavelle {

std::string DamagedStores::entry() {
  static const std::array<std::string, 6> entries{
      entryShowing("file:///still.jpg"),
      entryShowing("file:///grün.jpg",
                   "<key>größe</key><array><date>2001-01-01T00:00:00Z</date><real>0.5</real></array>"),
      "<dict><key>Type</key><string>linked</string><key>Linked</key><dict><key>a</key><true/></dict></dict>",
      "<dict><key>Desktop</key><dict><key>Content</key><data>AAEC</data></dict></dict>",
      "<dict><key>Displays</key><dict/></dict>",
      "<integer>18446744073709551615</integer>"};
  return entries[below(entries.size())];
}

std::string DamagedStores::sound() {
  std::string items = "<key>SystemDefault</key>" + entry() + "<key>AllSpacesAndDisplays</key>" + entry() +
                      "<key>Displays</key><dict><key>main</key>" + entry() + "</dict><key>Spaces</key><dict>";
  for (std::size_t i = below(3); i > 0; --i) {
    items += "<key>é" + std::to_string(i) + "</key><dict><key>Default</key>" + entry() + "</dict>";
  }
  const std::string store = dict(items + "</dict>");
  return below(3) == 0 ? store : binaryPlist(parsedPlist(store).get()).value();
}

void DamagedStores::damage(std::string& bytes) {
  if (bytes.empty()) return;
  const std::size_t at = below(bytes.size());
  const std::size_t length = below(40);
  switch (below(5)) {
    case 0:
      bytes[at] = static_cast<char>(bytes[at] ^ 1 << below(8));
      break;
    case 1:
      bytes.resize(at);
      break;
    case 2:
      bytes.erase(at, length);
      break;
    case 3:
      bytes.insert(at, bytes.substr(below(bytes.size()), length));
      break;
    default:
      // The trailer of a binary list, and the table in front of it, are small and decide most.
      bytes[bytes.size() - 1 - at % std::min<std::size_t>(bytes.size(), 48)] = static_cast<char>(below(256));
  }
}

std::string DamagedStores::next() {
  std::string bytes = sound();
  for (std::size_t i = below(3); i > 0; --i) damage(bytes);
  return bytes;
}

Outcome syncTwice(const std::string& bytes) {
  FakeClock clock;
  FakeFiles files;
  FakeProcesses processes;
  const std::filesystem::path store = "/store/Index.plist";
  files.put(store, bytes);
  std::string lines;
  const auto sync = [&] {
    lines.clear();
    return syncAllSpaces("/still.jpg", {clock, files, processes, store}, [&](const auto& line) { lines += line; });
  };
  const bool changed = sync();
  const std::string after = files.content(store).value_or("");
  if (!changed) {
    const auto synced = lines.empty()                      ? Synced::asBefore
                        : lines.find("read") != lines.npos ? Synced::unreadable
                                                           : Synced::unwritable;
    return {synced, after == bytes ? "" : "a store that was not to change has"};
  }
  if (!after.starts_with("bplist00") || !parsedDictionary(after)) return {Synced::rewritten, "no store came out"};
  if (sync() || !lines.empty()) return {Synced::rewritten, "a second sync found something to do: " + lines};
  return {Synced::rewritten, files.content(store) == after ? "" : "a second sync has changed the store"};
}

}  // namespace tavelle

#include "desktop_picture/store_fuzz.h"

#include <algorithm>

#include "desktop_picture/wallpaper_store.h"
#include "fakes/fake_desktop.h"
#include "fakes/fake_files.h"

namespace tavelle {

std::string bigEndian(std::uint64_t value, int bytes) {
  std::string result;
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) result += static_cast<char>(value >> shift);
  return result;
}

std::string binaryTable(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string offsets;
  for (const auto& object : objects) {
    offsets += bigEndian(bytes.size(), 4);
    bytes += object;
  }
  return bytes + offsets + std::string(6, '\0') + "\4\2" + bigEndian(objects.size(), 8) + bigEndian(0, 8) +
         bigEndian(bytes.size(), 8);
}

std::string DamagedStores::sound() { return maker_.bytes(maker_.store()); }

std::string DamagedStores::noise(int length) {
  std::string bytes;
  while (length-- > 0) bytes += static_cast<char>(maker_.below(256));
  return bytes;
}

std::string DamagedStores::table() {
  static const std::vector<std::string> keys{"Spaces",  "Displays", "Default", "Desktop",
                                             "Content", "Choices",  "Type",    "linked"};
  const int count = 2 + maker_.below(30);
  // Mostly to objects that come later, so that not every table runs in circles; sometimes to none at all.
  const auto reference = [&](int from) {
    const int later = from + 1 + maker_.below(std::max(1, count - from - 1));
    return bigEndian(static_cast<std::uint64_t>(maker_.chance(98) ? later : maker_.below(count + 2)), 2);
  };
  std::vector<std::string> objects;
  for (int i = 0; i < count; ++i) {
    const int size = maker_.below(6);
    std::string object;
    const int kind = i == 0 ? 0xD : maker_.below(i < 8 ? 16 : 24);
    if (kind == 0xA || kind == 0xC || kind == 0xD) {
      object = static_cast<char>(kind << 4 | size);
      const auto key = [&] { return bigEndian(static_cast<std::uint64_t>(count + maker_.below(8)), 2); };
      for (int k = 0; kind == 0xD && k < size; ++k) object += maker_.chance(98) ? key() : reference(i);
      for (int k = 0; k < size; ++k) object += reference(i);
    } else if (kind < 16) {
      object = static_cast<char>(kind << 4 | maker_.below(16)) + noise(maker_.below(20));
    } else {
      object = static_cast<char>(0x50 | size) + std::string("individual").substr(0, static_cast<std::size_t>(size));
    }
    objects.push_back(std::move(object));
  }
  for (const auto& key : keys) objects.push_back(static_cast<char>(0x50 | key.size()) + key);
  return binaryTable(objects);
}

void DamagedStores::damage(std::string& bytes) {
  const auto place = [&] { return static_cast<std::size_t>(maker_.below(static_cast<int>(bytes.size()))); };
  if (bytes.empty()) return;
  const std::size_t at = place();
  const std::size_t length = static_cast<std::size_t>(maker_.below(40));
  switch (maker_.below(8)) {
    case 0:
      bytes[at] = static_cast<char>(bytes[at] ^ 1 << maker_.below(8));
      break;
    case 1:
      bytes[at] = static_cast<char>(maker_.below(256));
      break;
    case 2:
      bytes.resize(at);
      break;
    case 3:
      bytes.erase(at, length);
      break;
    case 4:
      bytes.insert(at, bytes.substr(place(), length));
      break;
    case 5: {
      const auto& donor = seen_[static_cast<std::size_t>(maker_.below(static_cast<int>(seen_.size())))];
      bytes.replace(at, length, donor, at % donor.size(), length);
      break;
    }
    case 6:
      bytes.insert(at, noise(static_cast<int>(length)));
      break;
    default:
      // The trailer of a binary list, and the table in front of it, are small and decide most.
      bytes[bytes.size() - 1 - at % std::min<std::size_t>(bytes.size(), 48)] = static_cast<char>(maker_.below(256));
  }
}

std::string DamagedStores::next() {
  std::string bytes = maker_.chance(30) ? table() : maker_.chance(3) ? noise(maker_.below(200)) : sound();
  if (!bytes.empty()) {
    seen_.resize(std::min<std::size_t>(seen_.size() + 1, 64));
    seen_[static_cast<std::size_t>(maker_.below(static_cast<int>(seen_.size())))] = bytes;
    std::erase(seen_, "");
  }
  for (int i = maker_.below(3); i > 0; --i) damage(bytes);
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

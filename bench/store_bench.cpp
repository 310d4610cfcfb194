// Syncing a big wallpaper store on the disk, beside the least that this can take: the library's decoding and encoding
// of the same store, and the kernel's writing of the same bytes.

#include <benchmark/benchmark.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "desktop_picture/store_entries.h"
#include "desktop_picture/wallpaper_store.h"
#include "fakes/fake_desktop.h"
#include "fakes/temporary_folder.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/system_clock.h"

namespace tavelle {
namespace {

constexpr int spaceCount = 300;
constexpr int displayCount = 3;

std::vector<std::string> names(const std::string& prefix, int count) {
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) names.push_back(prefix + std::to_string(i));
  return names;
}

/// A store with every entry showing this image, and another one when idle.
const std::string& storeShowing(const char* address) {
  static std::map<std::string, std::string> stores;
  std::string& bytes = stores[address];
  if (!bytes.empty()) return bytes;
  const PlistPtr root(plist_new_dict());
  completeStore(root.get(), {}, {}, WallTime{});
  static_cast<void>(setImageEverywhere(root.get(), "file:///idle.jpg", WallTime{}));
  plist_t entry = plistItem(root.get(), "AllSpacesAndDisplays", PLIST_DICT);
  setPlistItem(entry, "Idle", PlistPtr(plist_copy(plistItem(entry, "Desktop", PLIST_DICT))));
  completeStore(root.get(), names("0F2C-display-", displayCount), names("7B31-space-", spaceCount), WallTime{});
  static_cast<void>(setImageEverywhere(root.get(), address, WallTime{}));
  return bytes = binaryPlist(root.get()).value();
}

struct StoreFolder {
  explicit StoreFolder(const std::string& bytes) { put(bytes); }
  void put(const std::string& bytes) const { std::ofstream(file, std::ios::binary) << bytes; }
  TemporaryFolder folder;
  std::filesystem::path file = folder.path() / "Index.plist";
};

/// Syncs a store to an image that none of its entries shows yet, or all do.
void sync(benchmark::State& state, bool done) {
  const std::string& bytes = storeShowing(done ? "file:///still.jpg" : "file:///other.jpg");
  const StoreFolder store(bytes);
  LinuxFiles files;
  SystemClock clock;
  FakeProcesses processes;
  for (auto _ : state) {
    const bool changed = syncAllSpaces("/still.jpg", {clock, files, processes, store.file}, [](const auto&) {});
    if (changed == done) state.SkipWithError("the store was not what it should have been");
    state.PauseTiming();
    if (changed) store.put(bytes);
    state.ResumeTiming();
  }
  state.counters["bytes"] = static_cast<double>(bytes.size());
}

void syncAFreshStore(benchmark::State& state) { sync(state, false); }
void syncASyncedStore(benchmark::State& state) { sync(state, true); }

void mereDecodingAndEncoding(benchmark::State& state) {
  const std::string& bytes = storeShowing("file:///other.jpg");
  for (auto _ : state) {
    plist_t root = nullptr;
    static_cast<void>(plist_from_bin(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root));
    const PlistPtr owned(root);
    benchmark::DoNotOptimize(binaryPlist(root));
  }
}

void mereWriting(benchmark::State& state) {
  const std::string& bytes = storeShowing("file:///other.jpg");
  const StoreFolder store(bytes);
  LinuxFiles files;
  for (auto _ : state) benchmark::DoNotOptimize(files.write(store.file, bytes, Files::Readers::owner));
}

BENCHMARK(syncAFreshStore)->Unit(benchmark::kMillisecond);
BENCHMARK(syncASyncedStore)->Unit(benchmark::kMillisecond);
BENCHMARK(mereDecodingAndEncoding)->Unit(benchmark::kMillisecond);
BENCHMARK(mereWriting)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavelle

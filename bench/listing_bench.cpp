// Listing and sorting a library, beside the least that the file system asks for the same: reading the folder and
// looking for each page.

#include <benchmark/benchmark.h>
#include <dirent.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "fakes/temporary_folder.h"
#include "library/listing.h"
#include "platform/linux/icu_text_order.h"
#include "platform/linux/linux_files.h"

namespace tavelle {
namespace {

/// A library of so many wallpapers with names as people give them.
const std::filesystem::path& libraryOf(std::int64_t count) {
  static std::map<std::int64_t, std::unique_ptr<TemporaryFolder>> libraries;
  auto& folder = libraries[count];
  if (!folder) {
    folder = std::make_unique<TemporaryFolder>();
    for (std::int64_t i = 0; i < count; ++i) {
      const auto wallpaper = folder->path() / ((i % 3 == 0 ? "Évening in the hills " : "waves ") + std::to_string(i));
      std::filesystem::create_directory(wallpaper);
      std::ofstream(wallpaper / "index.html") << "page";
    }
  }
  return folder->path();
}

void listAndSort(benchmark::State& state) {
  const auto& library = libraryOf(state.range(0));
  const LinuxFiles files;
  const IcuTextOrder order;
  for (auto _ : state) benchmark::DoNotOptimize(listWallpapers(library, files, order));
}

void bareSystemCalls(benchmark::State& state) {
  const auto& library = libraryOf(state.range(0));
  for (auto _ : state) {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(library.c_str()), closedir);
    while (const dirent* entry = readdir(folder.get())) {
      benchmark::DoNotOptimize(access((library / entry->d_name / "index.html").c_str(), F_OK));
    }
  }
}

BENCHMARK(listAndSort)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(bareSystemCalls)->Arg(2000)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavelle

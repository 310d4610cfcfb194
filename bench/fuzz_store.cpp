// Syncs damaged wallpaper stores by the thousand: fuzz_store [seed [count]]. Ends with 1 at the first one that comes
// out wrong, which it leaves in "trouble.plist" for a look. Worth most in the sanitizer build.

#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>

#include "store_fuzz.h"

int main(int argumentCount, char** arguments) {
  using namespace tavelle;
  using Clock = std::chrono::steady_clock;
  const auto seconds = [](Clock::duration time) { return std::chrono::duration<double>(time).count(); };
  const unsigned seed = argumentCount > 1 ? static_cast<unsigned>(std::strtoul(arguments[1], nullptr, 10)) : 1;
  const long count = argumentCount > 2 ? std::strtol(arguments[2], nullptr, 10) : 200'000;

  DamagedStores stores(seed);
  long counts[4]{};
  double slowest = 0;
  const auto begin = Clock::now();
  for (long i = 0; i < count; ++i) {
    const std::string bytes = stores.next();
    // Kept while it is tried, so that it is still there after a crash.
    std::ofstream("trouble.plist", std::ios::binary) << bytes;
    const auto before = Clock::now();
    const Outcome outcome = syncTwice(bytes);
    slowest = std::max(slowest, seconds(Clock::now() - before));
    if (!outcome.trouble.empty()) {
      std::cout << "input " << i << " of seed " << seed << ": " << outcome.trouble << '\n';
      return 1;
    }
    ++counts[static_cast<int>(outcome.synced)];
  }
  std::remove("trouble.plist");
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::cout << count << " inputs of seed " << seed << ": " << counts[static_cast<int>(Synced::unreadable)]
            << " unreadable, " << counts[static_cast<int>(Synced::unwritable)] << " unwritable, "
            << counts[static_cast<int>(Synced::asBefore)] << " as before, "
            << counts[static_cast<int>(Synced::rewritten)] << " rewritten; " << seconds(Clock::now() - begin)
            << " s in all, the slowest " << slowest * 1000 << " ms, " << usage.ru_maxrss / 1024 << " MB at most\n";
}

#pragma once

#include <random>
#include <string>

namespace tavelle {

/// Makes up stores, as XML and binary, and damages most: bytes flipped, cut out or doubled, the end cut off.
class DamagedStores {
 public:
  explicit DamagedStores(unsigned seed) : random_(seed) {}

  std::string next();

 private:
  std::size_t below(std::size_t end) { return random_() % end; }
  std::string entry();
  std::string sound();
  void damage(std::string& bytes);

  std::mt19937 random_;
};

/// What came of a sync.
enum class Synced { unreadable, unwritable, asBefore, rewritten };

struct Outcome {
  Synced synced;
  /// What must not be, in words; empty when all is well.
  std::string trouble;
};

/// Syncs a store of these bytes, and what became of it once more. It must stay as it was or become a list that needs no
/// further change.
Outcome syncTwice(const std::string& bytes);

}  // namespace tavelle

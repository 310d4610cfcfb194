#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "desktop_picture/store_values.h"

namespace tavelle {

/// A number as binary lists hold it, its highest byte first.
std::string bigEndian(std::uint64_t value, int bytes);

/// A binary list of these objects, the first of which is its root. References take two bytes.
std::string binaryTable(const std::vector<std::string>& objects);

/// Makes up damaged stores: sound ones with bytes flipped, cut out, doubled or taken from another, tables of objects
/// thrown together, and plain noise.
class DamagedStores {
 public:
  explicit DamagedStores(unsigned seed) : maker_(seed, "file:///still.jpg") {}

  std::string next();

 private:
  std::string sound();
  std::string noise(int length);
  std::string table();
  void damage(std::string& bytes);

  StoreMaker maker_;
  std::vector<std::string> seen_;
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

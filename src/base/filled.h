#pragma once

namespace tavelle {

/// A struct of a library's in which `fill` has set the members that it names, and the others are zero: the library may
/// have it in another order, and with more members, than the version at hand.
template <typename Struct, typename Fill>
constexpr Struct filled(Fill fill) {
  Struct all{};
  fill(all);
  return all;
}

}  // namespace tavelle

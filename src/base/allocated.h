#pragma once

#include <cstdlib>
#include <memory>

namespace tavelle {

struct FreeAllocated {
  void operator()(void* allocated) const {
    std::free(allocated);  // NOLINT(cppcoreguidelines-no-malloc, cppcoreguidelines-owning-memory): what it is for
  }
};

/// What a C library has allocated with `malloc` for its caller.
template <typename T>
using AllocatedPtr = std::unique_ptr<T, FreeAllocated>;

}  // namespace tavelle

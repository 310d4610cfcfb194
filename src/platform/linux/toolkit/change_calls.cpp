#include "platform/linux/toolkit/change_calls.h"

#include <glib.h>

#include <vector>

namespace tavelle {

ChangeCalls::~ChangeCalls() {
  if (idle_ != 0) g_source_remove(idle_);
}

Registration ChangeCalls::add(std::function<void()> changed) {
  const unsigned number = next_++;
  functions_.emplace(number, std::move(changed));
  return Registration([this, number] { functions_.erase(number); });
}

void ChangeCalls::soon() {
  if (idle_ == 0 && !functions_.empty()) idle_ = g_idle_add(call, this);
}

int ChangeCalls::call(void* data) {
  auto* const self = static_cast<ChangeCalls*>(data);
  self->idle_ = 0;
  std::vector<unsigned> numbers;
  for (const auto& [number, function] : self->functions_) numbers.push_back(number);
  for (const unsigned number : numbers) {
    const auto found = self->functions_.find(number);
    if (found == self->functions_.end()) continue;
    const auto function = found->second;
    function();
  }
  return G_SOURCE_REMOVE;
}

}  // namespace tavelle

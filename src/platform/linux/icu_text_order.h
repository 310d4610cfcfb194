#pragma once

#include <unicode/coll.h>

#include <memory>

#include "platform/text_order.h"

namespace tavelle {

/// ICU's collation, which costs some milliseconds to set up and is therefore set up at the first use.
class IcuTextOrder final : public TextOrder {
 public:
  IcuTextOrder();
  IcuTextOrder(const IcuTextOrder&) = delete;
  IcuTextOrder& operator=(const IcuTextOrder&) = delete;
  ~IcuTextOrder() override;

  std::string fileBrowserKey(std::string_view name) const override;
  std::string canonical(std::string_view text) const override;
  std::string lowercase(std::string_view text) const override;

 private:
  mutable std::unique_ptr<icu::Collator> collator_;
};

}  // namespace tavelle

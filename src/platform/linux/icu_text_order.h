#pragma once

#include <unicode/coll.h>

#include <memory>
#include <mutex>

#include "platform/text_order.h"

namespace tavelle {

/// ICU's collation, which costs some milliseconds to set up and is therefore set up at the first use.
class IcuTextOrder final : public TextOrder {
 public:
  std::string fileBrowserKey(std::string_view name) const override;
  std::string canonical(std::string_view text) const override;
  std::string lowercase(std::string_view text) const override;

 private:
  mutable std::once_flag firstUse_;
  /// None when ICU lacks its data.
  mutable std::unique_ptr<const icu::Collator> collator_;
};

}  // namespace tavelle

#pragma once

#include <vector>

#include "platform/file_types.h"

namespace tavelle {

/// What the shared MIME database says, with the user's own additions to it.
class MimeFileTypes final : public FileTypes {
 public:
  FileType ofExtension(std::string_view extension) const override;
};

/// The MIME types that make up a type, with "*" for a whole class of them. None for `other`.
std::vector<const char*> mimeTypesOf(FileType type);

}  // namespace tavelle

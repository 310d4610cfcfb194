#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "base/result.h"

namespace tavelle {

/// An open file of the kernel's; closed when this dies.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

  /// Writes all of `bytes`, however many calls of the kernel's that takes.
  Result<void> writeAll(std::string_view bytes) const;

 private:
  int descriptor_ = -1;
};

/// The whole content of a regular file; anything else in its place is an error, never a wait.
Result<std::string> readFile(const std::filesystem::path& path);

/// What `errno` says about `subject`: "subject: No space left on device".
Error systemError(std::string_view subject, int number);

}  // namespace tavelle

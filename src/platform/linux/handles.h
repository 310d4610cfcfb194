#pragma once

#include <glib-object.h>

#include <memory>

namespace tavelle {

/// Frees with a plain C function.
template <auto Free>
struct FreeWith {
  template <typename T>
  void operator()(T* object) const {
    Free(object);
  }
};

template <typename T>
using GObjectPtr = std::unique_ptr<T, FreeWith<g_object_unref>>;
using GErrorPtr = std::unique_ptr<GError, FreeWith<g_error_free>>;
using GCharPtr = std::unique_ptr<char, FreeWith<g_free>>;
using GBytesPtr = std::unique_ptr<GBytes, FreeWith<g_bytes_unref>>;
using GVariantPtr = std::unique_ptr<GVariant, FreeWith<g_variant_unref>>;

/// Takes over a reference that the caller was given.
template <typename T>
GObjectPtr<T> adopt(T* object) {
  return GObjectPtr<T>(object);
}

/// Adds a reference to an object that somebody else owns.
template <typename T>
GObjectPtr<T> retain(T* object) {
  if (object) g_object_ref(object);
  return GObjectPtr<T>(object);
}

/// Makes a new object's floating reference ours.
template <typename T>
GObjectPtr<T> sink(T* object) {
  g_object_ref_sink(object);
  return GObjectPtr<T>(object);
}

/// Collects the error of one GLib call: `ErrorSlot error; call(..., error.out());`
class ErrorSlot {
 public:
  ~ErrorSlot() { g_clear_error(&error_); }
  ErrorSlot() = default;
  ErrorSlot(const ErrorSlot&) = delete;
  ErrorSlot& operator=(const ErrorSlot&) = delete;

  GError** out() { return &error_; }
  const GError* get() const { return error_; }
  /// Why the call failed; only after it did.
  const char* message() const { return error_ ? error_->message : "unknown error"; }

 private:
  GError* error_ = nullptr;
};

}  // namespace tavelle

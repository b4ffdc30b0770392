// Ownership of CoreFoundation objects: what a Create or Copy function returned lives in a CFRef and is
// released with it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

// Holds one reference, or none. Results of Get functions are not owned and never go in here.
template <typename Ref>
class CFRef {
 public:
  CFRef() = default;
  // Takes over the reference that a Create or Copy function returned; null is allowed.
  explicit CFRef(Ref object) : object_(object) {}
  CFRef(CFRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  CFRef& operator=(CFRef&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~CFRef() {
    if (object_) CFRelease(object_);
  }
  CFRef(const CFRef&) = delete;
  CFRef& operator=(const CFRef&) = delete;

  Ref get() const { return object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Ref object_ = nullptr;
};

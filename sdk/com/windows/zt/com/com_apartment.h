#pragma once

#include <windows.h>

namespace zt::com {

/// COM on the calling thread for as long as this object lives: joined as the thread has it, initialised
/// (multithreaded) where it is not, and left as found. Outlives every COM pointer that is used under it, and goes on
/// the thread that made it.
class ComApartment {
 public:
  ComApartment();
  ~ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

  /// S_OK when COM can be used.
  HRESULT Status() const;

 private:
  HRESULT initialisation_;
};

}  // namespace zt::com

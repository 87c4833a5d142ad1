#pragma once

#include <objbase.h>
#include <windows.h>

namespace zt::base {

/// COM on the calling thread for as long as this object lives: joined as the thread has it, initialised
/// (multithreaded) where it is not, and left as found. Outlives everything that is used under it, and goes on the
/// thread that made it.
class ComApartment {
 public:
  /// What takes one initialisation back.
  using Leave = void STDAPICALLTYPE();

  ComApartment();

  /// Under an initialisation that was made by other means: its HRESULT, and what takes it back.
  ComApartment(HRESULT initialisation, Leave* leave);

  ~ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

  /// The HRESULT of the initialisation; a failure also on a thread that chose a single-threaded apartment.
  HRESULT Status() const { return initialisation_; }

  /// S_OK when COM can be used, as it can in a single-threaded apartment; else the status.
  HRESULT UseStatus() const;

 private:
  HRESULT initialisation_;
  Leave* leave_;
};

}  // namespace zt::base

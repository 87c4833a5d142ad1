#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "simulation/calls.h"
#include "simulation/vendor_record.h"

namespace zt::simulation {

/// What is asked of an interface after its last release, or after the library was stopped, is a fault and gets no
/// answer.
class CountedObject {
 public:
  virtual ~CountedObject() = default;
};

/// All interfaces that the library handed out. They stay in memory until it is unloaded, so that one that is released
/// twice, or used after its release, is told and not undefined.
std::vector<std::unique_ptr<CountedObject>>& HandedOutObjects();

/// Whether the library was started and not stopped since.
bool IsLibraryStarted();

/// Counts the references of `Interface`, whose methods a class derived from this one has. Born with one reference.
template <typename Interface>
class CountedInterface : public CountedObject, public Interface {
 public:
  explicit CountedInterface(std::string name) : name_(std::move(name)) {}

  std::int32_t Acquire() override {
    if (!Called("Acquire")) return 0;
    ++CurrentVendorRecord().live_references;
    return ++references_;
  }

  std::int32_t Release() override {
    if (!Called("Release")) return 0;
    --CurrentVendorRecord().live_references;
    if (--references_ == 0) SpoilTexts();
    return references_;
  }

  /// Whether this interface may be handed to `method`. False for a fault.
  bool CanBeGivenTo(const std::string& method) const { return IsAlive(name_ + " given to " + method); }

 protected:
  /// Notes the call of a method. False for a fault.
  bool Called(const char* method) const {
    const std::string call = name_ + "::" + method;
    CurrentVendorRecord().Note(call);
    return IsAlive(call);
  }

  /// Makes the texts that were handed out unreadable, as they are once the last reference is gone.
  virtual void SpoilTexts() {}

 private:
  bool IsAlive(const std::string& use) const {
    if (references_ > 0 && IsLibraryStarted()) return true;
    const char* const why = references_ > 0 ? " of a stopped library" : " of a released interface";
    CurrentVendorRecord().faults.push_back(use + why);
    return false;
  }

  std::string name_;
  std::int32_t references_ = 1;
};

/// What asking for an interface comes to before the machine is asked: a failure, a null in the place of the interface,
/// or nothing yet.
template <typename Interface>
Disturbance AnnounceInterface(const std::string& call, Interface** target) {
  const Disturbance met = Announce(call, {Disturbance::kFails, Disturbance::kNull});
  if (met == Disturbance::kNull) *target = nullptr;
  return met;
}

/// Makes an interface and hands it out.
template <typename Object, typename Interface, typename... Arguments>
void HandOut(Interface** target, Arguments&&... arguments) {
  auto object = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
  *target = object.get();
  HandedOutObjects().push_back(std::move(object));
  ++CurrentVendorRecord().interfaces_handed_out;
  ++CurrentVendorRecord().live_references;
}

}  // namespace zt::simulation

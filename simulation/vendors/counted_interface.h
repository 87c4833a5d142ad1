#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "simulation/vendor_record.h"

namespace zt::simulation {

/// What is asked of an interface after its last release is a fault and gets no answer.
class CountedObject {
 public:
  virtual ~CountedObject() = default;
};

/// All interfaces that the library handed out. They stay in memory until it starts anew, so that one that is released
/// twice, or used after its release, is told and not undefined.
std::vector<std::unique_ptr<CountedObject>>& HandedOutObjects();

/// Counts the references of `Interface`, whose methods a class derived from this one has. Born with one reference.
template <typename Interface>
class CountedInterface : public CountedObject, public Interface {
 public:
  explicit CountedInterface(std::string name) : name_(std::move(name)) {}

  std::int32_t Acquire() override {
    Called("Acquire");
    ++CurrentVendorRecord().live_references;
    return ++references_;
  }

  std::int32_t Release() override {
    if (!Called("Release")) return 0;
    --CurrentVendorRecord().live_references;
    return --references_;
  }

 protected:
  /// Notes the call of a method. False for a fault: the interface was released before.
  bool Called(const char* method) {
    ++CurrentVendorRecord().calls[name_ + "::" + method];
    if (references_ > 0) return true;
    CurrentVendorRecord().faults.push_back(name_ + "::" + method + " of a released interface");
    return false;
  }

 private:
  std::string name_;
  std::int32_t references_ = 1;
};

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

#pragma once

#include <wrl/client.h>

#include <atomic>
#include <chrono>
#include <optional>

#include "platform/windows/sensor_interfaces.h"

namespace zt::tests {

namespace abi = telemetry::collector::performancesamples::platform::abi;
using Microsoft::WRL::ComPtr;

/// How many fakes there are: none may be left when a reading is over.
inline std::atomic<int> living_fakes = 0;

// The interfaces of the Windows Runtime have no virtual destructor.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

/// A Windows Runtime object of this process with one interface. It starts with one reference, its maker's.
template <typename Interface>
class FakeInspectable : public Interface {
 public:
  FakeInspectable() { ++living_fakes; }
  FakeInspectable(const FakeInspectable&) = delete;
  FakeInspectable& operator=(const FakeInspectable&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetIids(ULONG*, IID**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetRuntimeClassName(HSTRING*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTrustLevel(TrustLevel*) override { return E_NOTIMPL; }

 protected:
  virtual ~FakeInspectable() { --living_fakes; }

 private:
  std::atomic<ULONG> references_ = 1;
};

/// What an asynchronous operation is to do, and what was done with it.
struct OperationScript {
  std::chrono::milliseconds duration{0};  // starting when its state is first asked for
  abi::AsyncState ends_as = abi::AsyncState::kCompleted;
  HRESULT error = S_OK;
  HRESULT start = S_OK;
  bool starts_with_null = false;
  HRESULT info = S_OK;
  HRESULT state = S_OK;
  HRESULT results = S_OK;

  int cancelled = 0;
};

class FakeInfo : public FakeInspectable<abi::IAsyncInfo> {
 public:
  explicit FakeInfo(OperationScript& script) : script_(script) {}

  HRESULT STDMETHODCALLTYPE get_Status(abi::AsyncState* state) override {
    const auto now = std::chrono::steady_clock::now();
    if (!begin_) begin_ = now;
    *state = now - *begin_ < script_.duration ? abi::AsyncState::kStarted : script_.ends_as;
    return script_.state;
  }
  HRESULT STDMETHODCALLTYPE get_ErrorCode(HRESULT* error) override {
    *error = script_.error;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Cancel() override {
    ++script_.cancelled;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_Id(UINT32*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Close() override { return E_NOTIMPL; }

 private:
  OperationScript& script_;
  std::optional<std::chrono::steady_clock::time_point> begin_;
};

template <typename Result, typename FakeResult>
class FakeOperation : public FakeInspectable<abi::IAsyncOperation<Result>> {
 public:
  FakeOperation(OperationScript& script, FakeResult* result) : script_(script) {
    *result_.ReleaseAndGetAddressOf() = result;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (FAILED(script_.info)) return script_.info;
    if (id != abi::kAsyncInfoId) return E_NOINTERFACE;
    *object = static_cast<abi::IAsyncInfo*>(new FakeInfo(script_));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetResults(Result** result) override {
    if (SUCCEEDED(script_.results)) *result = result_.Detach();
    return script_.results;
  }
  HRESULT STDMETHODCALLTYPE put_Completed(IUnknown*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Completed(IUnknown**) override { return E_NOTIMPL; }

  /// Hands out a new operation as its script says. Takes over `result`.
  static HRESULT Start(OperationScript& script, FakeResult* result, abi::IAsyncOperation<Result>** operation) {
    ComPtr<FakeResult> owned;
    *owned.ReleaseAndGetAddressOf() = result;
    *operation = nullptr;
    if (FAILED(script.start) || script.starts_with_null) return script.start;
    *operation = new FakeOperation(script, owned.Detach());
    return S_OK;
  }

 private:
  OperationScript& script_;
  ComPtr<FakeResult> result_;
};

/// A device with a hinge, and what becomes of each call.
struct HingeScript {
  OperationScript sensor;
  OperationScript reading;
  bool has_sensor = true;
  bool has_reading = true;
  double angle = 0;
  HRESULT get_angle = S_OK;
};

class FakeHingeReading : public FakeInspectable<abi::IHingeAngleReading> {
 public:
  explicit FakeHingeReading(const HingeScript& script) : script_(script) {}
  HRESULT STDMETHODCALLTYPE get_Timestamp(INT64*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_AngleInDegrees(double* angle) override {
    *angle = script_.angle;
    return script_.get_angle;
  }

 private:
  const HingeScript& script_;
};

class FakeHingeSensor : public FakeInspectable<abi::IHingeAngleSensor> {
 public:
  explicit FakeHingeSensor(HingeScript& script) : script_(script) {}
  HRESULT STDMETHODCALLTYPE GetCurrentReadingAsync(abi::IAsyncOperation<abi::IHingeAngleReading>** operation) override {
    return FakeOperation<abi::IHingeAngleReading, FakeHingeReading>::Start(
        script_.reading, script_.has_reading ? new FakeHingeReading(script_) : nullptr, operation);
  }

 private:
  HingeScript& script_;
};

class FakeHingeStatics : public FakeInspectable<abi::IHingeAngleSensorStatics> {
 public:
  explicit FakeHingeStatics(HingeScript& script) : script_(script) {}
  HRESULT STDMETHODCALLTYPE GetDeviceSelector(HSTRING*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetDefaultAsync(abi::IAsyncOperation<abi::IHingeAngleSensor>** operation) override {
    return FakeOperation<abi::IHingeAngleSensor, FakeHingeSensor>::Start(
        script_.sensor, script_.has_sensor ? new FakeHingeSensor(script_) : nullptr, operation);
  }

 private:
  HingeScript& script_;
};

struct OrientationScript {
  HRESULT get_default = S_OK;
  bool has_sensor = true;
  INT32 orientation = 0;
  HRESULT get_orientation = S_OK;
};

class FakeOrientationSensor : public FakeInspectable<abi::ISimpleOrientationSensor> {
 public:
  explicit FakeOrientationSensor(const OrientationScript& script) : script_(script) {}
  HRESULT STDMETHODCALLTYPE GetCurrentOrientation(INT32* orientation) override {
    *orientation = script_.orientation;
    return script_.get_orientation;
  }

 private:
  const OrientationScript& script_;
};

class FakeOrientationStatics : public FakeInspectable<abi::ISimpleOrientationSensorStatics> {
 public:
  explicit FakeOrientationStatics(const OrientationScript& script) : script_(script) {}
  HRESULT STDMETHODCALLTYPE GetDefault(abi::ISimpleOrientationSensor** sensor) override {
    const bool given = SUCCEEDED(script_.get_default) && script_.has_sensor;
    *sensor = given ? new FakeOrientationSensor(script_) : nullptr;
    return script_.get_default;
  }

 private:
  const OrientationScript& script_;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zt::tests

#pragma once

#include <windows.h>
#include <inspectable.h>

/// The Windows Runtime's interfaces to the posture sensors, declared here down to the operation last used: not every
/// compiler's headers have them. The order of the operations is the system's binary interface.
namespace zt::telemetry::collector::performancesamples::platform::abi {

inline constexpr wchar_t kHingeAngleSensor[] = L"Windows.Devices.Sensors.HingeAngleSensor";
inline constexpr wchar_t kSimpleOrientationSensor[] = L"Windows.Devices.Sensors.SimpleOrientationSensor";

inline constexpr IID kAsyncInfoId = {0x00000036, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID kHingeAngleSensorStaticsId = {
    0xB7B63910, 0xFBB1, 0x4123, {0x89, 0xCE, 0x4E, 0xA3, 0x4E, 0xB0, 0xDF, 0xCA}};
inline constexpr IID kSimpleOrientationSensorStaticsId = {
    0x72ED066F, 0x70AA, 0x40C6, {0x9B, 0x1B, 0x34, 0x33, 0xF7, 0x45, 0x9B, 0x4E}};

// The interfaces of the Windows Runtime have no virtual destructor.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

enum class AsyncState : INT32 { kStarted = 0, kCompleted = 1, kCanceled = 2, kError = 3 };

/// How an asynchronous operation stands. Asked for through QueryInterface of the operation.
struct IAsyncInfo : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Id(UINT32* id) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Status(AsyncState* state) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ErrorCode(HRESULT* error) = 0;
  virtual HRESULT STDMETHODCALLTYPE Cancel() = 0;
  virtual HRESULT STDMETHODCALLTYPE Close() = 0;
};

template <typename Result>
struct IAsyncOperation : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE put_Completed(IUnknown* handler) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Completed(IUnknown** handler) = 0;
  /// Once completed; null where there is no such thing.
  virtual HRESULT STDMETHODCALLTYPE GetResults(Result** result) = 0;
};

struct IHingeAngleReading : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE get_Timestamp(INT64* universal_time) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_AngleInDegrees(double* angle) = 0;
};

struct IHingeAngleSensor : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE GetCurrentReadingAsync(IAsyncOperation<IHingeAngleReading>** operation) = 0;
};

struct IHingeAngleSensorStatics : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE GetDeviceSelector(HSTRING* selector) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDefaultAsync(IAsyncOperation<IHingeAngleSensor>** operation) = 0;
};

struct ISimpleOrientationSensor : IInspectable {
  virtual HRESULT STDMETHODCALLTYPE GetCurrentOrientation(INT32* orientation) = 0;
};

struct ISimpleOrientationSensorStatics : IInspectable {
  /// Null where there is no such sensor.
  virtual HRESULT STDMETHODCALLTYPE GetDefault(ISimpleOrientationSensor** sensor) = 0;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace zt::telemetry::collector::performancesamples::platform::abi

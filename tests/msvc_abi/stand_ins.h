#pragma once

// What the public headers name of the standard library, of protobuf, of plog and of the generated code, as far as the
// compiler must know it to lay out the tables of virtual operations. Nothing here is ever linked or run, so that
// declarations are enough; the order and the number of the operations that plog declares are plog's.

#define ZT_BATTERY_INFO_EXPORT __declspec(dllexport)
#define ZT_COLLECTOR_EXPORT __declspec(dllexport)
#define ZT_COMMONS_EXPORT __declspec(dllexport)
#define ZT_PRIVATE_BIOS_WMI_EXPORT __declspec(dllexport)
#define ZT_STORAGE_EXPORT __declspec(dllexport)
#define ZT_WMI_CLIENT_EXPORT __declspec(dllexport)

namespace std {

using size_t = decltype(sizeof(0));
using int32_t = int;
using int64_t = long long;
using uint8_t = unsigned char;
using uint16_t = unsigned short;
using uint32_t = unsigned int;
using uint64_t = unsigned long long;

template <class T>
class allocator;
template <class T>
struct char_traits;
template <class T>
struct default_delete;
template <class T>
struct less;

template <class Char, class Traits = char_traits<Char>, class Allocator = allocator<Char>>
class basic_string {
 public:
  basic_string();
  basic_string(const basic_string&);
  ~basic_string();
  basic_string& operator=(const basic_string&);
  bool operator==(const basic_string&) const;
};
using string = basic_string<char>;
using wstring = basic_string<wchar_t>;

template <class T, class Allocator = allocator<T>>
class vector {
 public:
  ~vector();
};

template <class Key, class Value, class Compare = less<Key>, class Allocator = allocator<Value>>
class map;

template <class T>
class shared_ptr {
 public:
  shared_ptr();
  shared_ptr(const shared_ptr&);
  ~shared_ptr();
};

template <class T, class Delete = default_delete<T>>
class unique_ptr {
 public:
  ~unique_ptr();
};

template <class Signature>
class function;
template <class... Alternatives>
class variant;
struct monostate;

}  // namespace std

namespace google::protobuf {
class Message;
}

namespace plog {

class Record;

class IAppender {
 public:
  virtual ~IAppender();
  virtual void write(const Record& record) = 0;
};

}  // namespace plog

namespace zt::telemetry::contract {
namespace storage::device_performance {
class AmdPmfSamples;
class EnergyEMISamples;
class ThermalZTBiosSamples;
}  // namespace storage::device_performance
namespace upload::log {
class PcLogPerformanceSamplesAsCDM;
}
}  // namespace zt::telemetry::contract

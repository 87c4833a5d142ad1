#pragma once

#include <sqlite3.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zt::telemetry::collector::performancesamples {

/// Leaves out rows that say what a recent row of the same hour said, to the bit: of the first
/// row of each stretch of rows of one hour, and of rows whose hour cannot be read off, none is left out. It remembers a
/// few rows only: what it lets through may repeat as well.
class RepetitionFilter {
 public:
  /// Makes the filter known to a connection, which must not run it after this object's end, as the function
  /// `zt_is_news(date_time, ...)`.
  bool AddTo(sqlite3* database);

  /// Forgets everything, for another table.
  void Reset() { *this = RepetitionFilter(); }

  /// Rows that were asked about so far.
  std::int64_t Rows() const { return rows_; }

 private:
  static constexpr std::size_t kRemembered = 64;
  static constexpr std::size_t kLongestText = 240;

  // The bytes of a row's values, each behind its kind and length. Empty when they are too many.
  class Text {
   public:
    void Add(sqlite3_value* value);
    void Clear() { size_ = 0; }
    bool IsEmpty() const { return size_ == 0; }
    std::size_t Hash() const;
    bool operator==(const Text& other) const;

   private:
    void Add(const void* bytes, std::size_t size);

    std::array<unsigned char, kLongestText> bytes_{};
    std::size_t size_ = 0;
    bool too_long_ = false;
  };

  bool IsNews(int count, sqlite3_value** values);

  bool BeginsAnHour(sqlite3_value* date_time);

  std::int64_t rows_ = 0;
  std::string hour_;
  std::array<Text, kRemembered> remembered_;
};

}  // namespace zt::telemetry::collector::performancesamples

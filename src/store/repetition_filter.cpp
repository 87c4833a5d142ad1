#include "store/repetition_filter.h"

#include <cstring>

#include "store/hour_function.h"

namespace zt::telemetry::collector::performancesamples {

bool RepetitionFilter::AddTo(sqlite3* database) {
  constexpr int kAnyNumber = -1;
  const auto call = [](sqlite3_context* context, int count, sqlite3_value** values) {
    auto* filter = static_cast<RepetitionFilter*>(sqlite3_user_data(context));
    sqlite3_result_int(context, filter->IsNews(count, values) ? 1 : 0);
  };
  return sqlite3_create_function_v2(database, "zt_is_news", kAnyNumber, SQLITE_UTF8, this, call, nullptr, nullptr,
                                    nullptr) == SQLITE_OK;
}

namespace {

// Empty for what is no text, as for a text from which no hour can be read off.
std::string_view HourOf(sqlite3_value* date_time) {
  if (sqlite3_value_type(date_time) != SQLITE_TEXT) return {};
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(date_time));
  return text == nullptr ? std::string_view()
                         : HourPart({text, static_cast<std::size_t>(sqlite3_value_bytes(date_time))});
}

}  // namespace

bool RepetitionFilter::BeginsAnHour(sqlite3_value* date_time) {
  const std::string_view hour = HourOf(date_time);
  if (!hour.empty() && hour == hour_) return false;
  hour_ = hour;
  return true;
}

bool RepetitionFilter::IsNews(int count, sqlite3_value** values) {
  ++rows_;
  const bool begins_an_hour = BeginsAnHour(values[0]);
  if (begins_an_hour) {
    for (Text& text : remembered_) text.Clear();
  } else if (count == 1) {
    return false;
  }
  Text row;
  for (int i = 1; i < count; ++i) row.Add(values[i]);
  Text& place = remembered_[row.Hash() % kRemembered];
  if (!row.IsEmpty() && row == place) return false;
  place = row;
  return true;
}

void RepetitionFilter::Text::Add(sqlite3_value* value) {
  const int kind = sqlite3_value_type(value);
  Add(&kind, sizeof kind);
  if (kind == SQLITE_INTEGER) {
    const sqlite3_int64 number = sqlite3_value_int64(value);
    Add(&number, sizeof number);
  } else if (kind == SQLITE_FLOAT) {
    const double number = sqlite3_value_double(value);
    Add(&number, sizeof number);
  } else if (kind != SQLITE_NULL) {
    const void* bytes = sqlite3_value_blob(value);
    const int size = sqlite3_value_bytes(value);
    Add(&size, sizeof size);
    Add(bytes, static_cast<std::size_t>(size));
  }
}

void RepetitionFilter::Text::Add(const void* bytes, std::size_t size) {
  too_long_ = too_long_ || size > bytes_.size() - size_;
  if (too_long_) {
    size_ = 0;
  } else if (size > 0) {
    std::memcpy(bytes_.data() + size_, bytes, size);
    size_ += size;
  }
}

std::size_t RepetitionFilter::Text::Hash() const {
  constexpr std::size_t kFactor = 31;
  std::size_t hash = 0;
  for (std::size_t i = 0; i < size_; ++i) hash = hash * kFactor + bytes_[i];
  return hash;
}

bool RepetitionFilter::Text::operator==(const Text& other) const {
  return size_ == other.size_ && std::memcmp(bytes_.data(), other.bytes_.data(), size_) == 0;
}

}  // namespace zt::telemetry::collector::performancesamples

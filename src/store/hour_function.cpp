#include "store/hour_function.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include "store/sqlite_handles.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

constexpr const char* kName = "strftime";
constexpr int kArguments = 2;
constexpr std::string_view kHourFormat = "%Y-%m-%dT%H:00:00.000Z";
constexpr std::string_view kRestOfAnHour = ":00:00.000Z";
constexpr std::string_view kForm = "0000-00-00T00:00:00";
constexpr std::size_t kUpToTheHour = 13;  // 2026-03-07T12
constexpr std::size_t kSeparator = 10;

// SQLite refuses in a generated column whatever differs from one moment to the next.
constexpr const char* kQuestion =
    "CREATE TABLE question(format, time, answer AS (strftime(format, time))); INSERT INTO question VALUES(NULL, NULL);";

int TwoDigits(std::string_view text, std::size_t at) {
  constexpr int kTen = 10;
  return (text[at] - '0') * kTen + (text[at + 1] - '0');
}

// "2026-03-07T12:34:56", with a blank in place of the "T" too.
bool HasTheFormOfATime(std::string_view text) {
  if (text.size() != kForm.size()) return false;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    const bool fits = kForm[i] == '0'   ? text[i] >= '0' && text[i] <= '9'
                      : i == kSeparator ? text[i] == 'T' || text[i] == ' '
                                        : text[i] == kForm[i];
    if (!fits) return false;
  }
  return true;
}

// A time that there is. SQLite reads others too: 24:00, and 31 days of every month.
bool IsPlainTime(std::string_view text) {
  if (!HasTheFormOfATime(text)) return false;
  constexpr int kHundred = 100;
  constexpr int kHours = 24;
  constexpr int kMinutes = 60;
  const std::chrono::year year(TwoDigits(text, 0) * kHundred + TwoDigits(text, 2));
  const std::chrono::month month(static_cast<unsigned>(TwoDigits(text, 5)));
  const std::chrono::day day(static_cast<unsigned>(TwoDigits(text, 8)));
  return (year / month / day).ok() && TwoDigits(text, 11) < kHours && TwoDigits(text, 14) < kMinutes &&
         TwoDigits(text, 17) < kMinutes;
}

std::string_view TextOf(sqlite3_value* value) {
  if (sqlite3_value_type(value) != SQLITE_TEXT) return {};
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  if (text == nullptr) return {};
  return {text, static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

// SQLite's own function, on a database in memory that is made when it is first asked. SQLite calls it, which no
// exception can pass: what it needs, SQLite's allocator gives.
class OriginalFunction {
 public:
  void Answer(sqlite3_context* context, sqlite3_value** arguments) {
    if (!database_ && !Open()) return sqlite3_result_error_nomem(context);
    const bool asked = sqlite3_bind_value(ask_.get(), 1, arguments[0]) == SQLITE_OK &&
                       sqlite3_bind_value(ask_.get(), 2, arguments[1]) == SQLITE_OK &&
                       sqlite3_step(ask_.get()) == SQLITE_DONE;
    if (asked && sqlite3_step(answer_.get()) == SQLITE_ROW) {
      sqlite3_result_value(context, sqlite3_column_value(answer_.get(), 0));
    } else if (sqlite3_errcode(database_.get()) == SQLITE_NOMEM) {
      sqlite3_result_error_nomem(context);  // no error of the query's own
    } else {
      sqlite3_result_error(context, "the time is no fixed one", -1);
    }
    sqlite3_reset(ask_.get());
    sqlite3_reset(answer_.get());
  }

 private:
  bool Open() {
    sqlite3* handle = nullptr;
    const int outcome = sqlite3_open(":memory:", &handle);
    Database opened(handle);
    if (outcome != SQLITE_OK || !Run(handle, kQuestion)) return false;
    // A database with a statement that is still ready to run would stay open.
    Statement ask = Prepare(handle, "UPDATE question SET format = ?1, time = ?2;");
    Statement answer = Prepare(handle, "SELECT answer FROM question;");
    if (!ask || !answer) return false;
    ask_ = std::move(ask);
    answer_ = std::move(answer);
    database_ = std::move(opened);
    return true;
  }

  Database database_;
  Statement ask_;
  Statement answer_;
};

void AnswerHour(sqlite3_context* context, int /*count*/, sqlite3_value** arguments) {
  const std::string_view time = TextOf(arguments[1]);
  if (TextOf(arguments[0]) != kHourFormat || !IsPlainTime(time)) {
    return static_cast<OriginalFunction*>(sqlite3_user_data(context))->Answer(context, arguments);
  }
  char hour[kUpToTheHour + kRestOfAnHour.size()];
  time.copy(hour, kUpToTheHour);
  hour[kSeparator] = 'T';
  kRestOfAnHour.copy(hour + kUpToTheHour, kRestOfAnHour.size());
  sqlite3_result_text(context, hour, sizeof hour, SQLITE_TRANSIENT);
}

}  // namespace

std::string_view HourPart(std::string_view date_time) {
  const std::string_view time = date_time.substr(0, kForm.size());
  return IsPlainTime(time) ? time.substr(0, kUpToTheHour) : std::string_view();
}

bool UseFastHours(sqlite3* database) {
  auto original = std::make_unique<OriginalFunction>();
  // Called for the last time when the connection is closed, and also when it does not take the function.
  const auto release = [](void* function) { delete static_cast<OriginalFunction*>(function); };
  return sqlite3_create_function_v2(database, kName, kArguments, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
                                    original.release(), &AnswerHour, nullptr, nullptr, release) == SQLITE_OK;
}

}  // namespace zt::telemetry::collector::performancesamples

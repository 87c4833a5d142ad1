#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <plog/Log.h>

#include <string>
#include <type_traits>
#include <vector>

#include "messages/log_text.h"
#include "plugin/component_appender.h"
#include "plugin/logger_export.h"

// Built once for each way in which a host's plog keeps messages: as UTF-8 and, on Windows, as wide texts.
namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::ElementsAre;
using Text = plog::util::nstring;

// A host's log that reads messages as its own plog keeps them.
class HostLog : public plog::IAppender {
 public:
  void write(const plog::Record& record) override {
    messages.emplace_back(record.getMessage());
    objects.emplace_back(static_cast<const wchar_t*>(record.getObject()));
  }

  std::vector<Text> messages;
  std::vector<std::wstring> objects;
};

class RecordWithoutMessage : public plog::Record {
 public:
  RecordWithoutMessage() : plog::Record(plog::warning, "Where", 7, "file.cpp", nullptr, 3) {}
  const plog::util::nchar* getMessage() const override { return nullptr; }
};

// "Lüfter 日本" as UTF-8.
const std::string kBeyondAscii =
    "L\xC3\xBC"
    "fter \xE6\x97\xA5\xE6\x9C\xAC";

[[maybe_unused]] void BeyondAscii(std::string& text) {
  text = kBeyondAscii;
}
[[maybe_unused]] void BeyondAscii(std::wstring& text) {
  text =
      L"L\u00FC"
      L"fter \u65E5\u672C";
}

// The same as the host's plog keeps it.
Text HostsText() {
  Text text;
  BeyondAscii(text);
  return text;
}

TEST(LoggerWidthTest, IsTheOneThatThisProgramIsBuiltFor) {
  EXPECT_EQ((std::is_same_v<Text, std::string>), PLOG_CHAR_IS_UTF8 == 1);
}

TEST(LoggerWidthTest, ALineReachesTheHostWithAllItsCharacters) {
  HostLog host;
  ztSharedInitializeLogger(plog::info, &host);
  PLOG_ERROR << LogText(kBeyondAscii);
  EXPECT_THAT(host.messages, ElementsAre(HostsText()));
}

TEST(LoggerWidthTest, PlainTextsAndNumbersReachTheHost) {
  HostLog host;
  ztSharedInitializeLogger(plog::info, &host);
  PLOG_ERROR << "status " << std::to_string(-7) << " of " << 3;
  EXPECT_THAT(host.messages, ElementsAre(Text(PLOG_NSTR("status -7 of 3"))));
}

TEST(LoggerWidthTest, TheComponentIsAWideTextWhateverMessagesAre) {
  HostLog host;
  shared::common::logger::ComponentAppender appender(L"component.dll", &host);
  plog::Record record(plog::debug, "Where", 42, "file.cpp", nullptr, 3);
  record << LogText(kBeyondAscii);
  appender.write(record);
  EXPECT_THAT(host.messages, ElementsAre(HostsText()));
  EXPECT_THAT(host.objects, ElementsAre(L"component.dll"));
}

TEST(LoggerWidthTest, ARecordWithoutMessageReadsNull) {
  HostLog host;
  shared::common::logger::ComponentAppender appender(L"component.dll", &host);
  appender.write(RecordWithoutMessage());
  EXPECT_THAT(host.messages, ElementsAre(Text(PLOG_NSTR("(null)"))));
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples

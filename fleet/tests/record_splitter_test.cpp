#include "fleet/forward/record_splitter.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zt::telemetry::fleet {
namespace {

// The pieces of an input that comes in chunks of a size; problems in brackets.
std::vector<std::string> PiecesOf(const std::string& input, std::size_t chunk, InputForm form = InputForm::kUnknown) {
  RecordSplitter splitter(form);
  std::vector<std::string> pieces;
  const auto take = [&] {
    while (const auto piece = splitter.Next()) {
      pieces.push_back(piece->problem.empty() ? std::string(piece->bytes) : "[" + piece->problem + "]");
    }
  };
  for (std::size_t at = 0; at < input.size(); at += chunk) {
    splitter.Add(std::string_view(input).substr(at, chunk));
    take();
  }
  splitter.End();
  take();
  return pieces;
}

std::string Delimited(const std::vector<std::string>& records) {
  std::string bytes;
  for (const std::string& record : records) {
    std::size_t length = record.size();
    for (; length >= 0x80; length >>= 7U) bytes += static_cast<char>((length & 0x7FU) | 0x80U);
    bytes += static_cast<char>(length);
    bytes += record;
  }
  return bytes;
}

TEST(RecordSplitterTest, FindsLinesHoweverTheyAreCut) {
  const std::string input = "{\"a\":1}\r\n\n  \n{\"b\":2}\n{\"c\":3}";
  for (std::size_t chunk = 1; chunk <= input.size(); ++chunk) {
    EXPECT_EQ(PiecesOf(input, chunk), (std::vector<std::string>{"{\"a\":1}", "{\"b\":2}", "{\"c\":3}"})) << chunk;
  }
}

TEST(RecordSplitterTest, FindsRecordsHoweverTheyAreCut) {
  const std::vector<std::string> records = {"\x0A\x01x", std::string(300, 'y'), "z"};
  const std::string input = Delimited(records);
  for (std::size_t chunk = 1; chunk <= input.size(); ++chunk) EXPECT_EQ(PiecesOf(input, chunk), records) << chunk;
}

TEST(RecordSplitterTest, TakesARecordOfTheBracesLengthForARecord) {
  const std::vector<std::string> records = {
      "\x0A\x05"
      "abcde" +
      std::string(116, 'x')};
  ASSERT_EQ(records.front().size(), 123U);
  EXPECT_EQ(PiecesOf(Delimited(records), 7), records);
}

TEST(RecordSplitterTest, TakesWhatDoesNotBeginLikeARecordForLines) {
  EXPECT_EQ(PiecesOf("nonsense\n{\"a\":1}\n", 3), (std::vector<std::string>{"nonsense", "{\"a\":1}"}));
  EXPECT_EQ(PiecesOf("x\n{\"a\":1}\n", 3), (std::vector<std::string>{"x", "{\"a\":1}"}));
}

TEST(RecordSplitterTest, LeavesTheMarkOfUtf8Out) {
  EXPECT_EQ(PiecesOf("\xEF\xBB\xBF{\"a\":1}\n", 100), (std::vector<std::string>{"{\"a\":1}"}));
}

TEST(RecordSplitterTest, TellsALineThatIsTooLongOnceAndGoesOnBehindIt) {
  const std::string input = "{\"a\":1}\n{\"" + std::string(RecordSplitter::kLongest * 3, 'x') + "\n{\"b\":2}\n";
  const std::vector<std::string> pieces = PiecesOf(input, 65'536);
  ASSERT_EQ(pieces.size(), 3U);
  EXPECT_EQ(pieces[1], "[a line of more than 900000 bytes; expected a hand-over]");
  EXPECT_EQ(pieces[2], "{\"b\":2}");
}

TEST(RecordSplitterTest, TellsWhatIsMissingOfTheLastRecord) {
  const std::string input = Delimited({"\x0A\x01x", "whole record"});
  EXPECT_EQ(PiecesOf(input.substr(0, input.size() - 5), 4),
            (std::vector<std::string>{"\x0A\x01x", "[the input ends 5 bytes before its last record does]"}));
}

TEST(RecordSplitterTest, TellsALengthThatIsNone) {
  EXPECT_EQ(PiecesOf("\xFF\xFF\xFF\xFF\xFF\xFF", 1, InputForm::kDelimited),
            (std::vector<std::string>{"[expected the length of a record in protobuf's form]"}));
}

TEST(RecordSplitterTest, TellsARecordThatIsTooLong) {
  EXPECT_EQ(PiecesOf("\xFF\xFF\x7F", 3, InputForm::kDelimited),
            (std::vector<std::string>{"[a record of 2097151 bytes; expected at most 900000]"}));
}

TEST(RecordSplitterTest, FindsNothingInNothing) {
  EXPECT_EQ(PiecesOf("", 1), std::vector<std::string>());
  EXPECT_EQ(PiecesOf("\n\r\n", 1), std::vector<std::string>());
}

}  // namespace
}  // namespace zt::telemetry::fleet

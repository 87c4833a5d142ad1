#include "host/query_recorder.h"

#include <algorithm>
#include <string>

#include "host/consent/consented_texts.h"
#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"
#include "zt/shared/wmi/wmi_client.h"
#include "zt/text/wide_text.h"

namespace zt::telemetry::host {
namespace {

// A line break inside a query would make two lines of it.
std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char character) { return character == '\n' || character == '\r'; }, ' ');
  return text;
}

}  // namespace

QueryRecorder::QueryRecorder(const std::filesystem::path& file, const Consent& consent)
    : file_(file), stream_(OpenForWriting(file, "--queries")) {
  shared::wmi::ObserveQueries([this, &consent](const std::wstring& wql) {
    stream_ << OneLine(ConsentedQuery(consent, text::ToUtf8(wql))) << std::endl;
  });
}

QueryRecorder::~QueryRecorder() {
  shared::wmi::ObserveQueries({});
}

void QueryRecorder::RequireWritten() {
  if (!stream_.flush())
    throw Failure(kExitFailed, "--queries " + PathText(file_) + ": not every query could be written");
}

}  // namespace zt::telemetry::host

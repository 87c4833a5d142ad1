#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/temporary_folder.h"
#include "tests/host/program_run.h"

namespace zt::telemetry::host {

inline constexpr char kLineStart[] =
    R"({"handover":"send","type":"zt.telemetry.contract.upload.log.PcLogPerformanceSamplesAsCDM","record":)";
inline constexpr char kStoredStart[] =
    R"({"handover":"store","type":"zt.telemetry.contract.storage.device_performance.AmdPmfSamples","record":)";
inline constexpr char kBatteries[] = "PcLogPerformanceSamplesAsCDM.hw_info.batteries_info";

inline std::string LiveLine(const std::string& serial, const std::string& time, const std::string& figures = "{}") {
  const std::string local_time = time + ".000Z";
  return kLineStart + std::string(R"({"collectionId":")") + (serial + "_" + local_time).substr(0, 30) +
         R"(","localTime":")" + local_time + R"(","hwInfo":)" + figures + "}}\n";
}

inline std::string HourlyLine(const std::string& id) {
  return kLineStart + std::string(R"({"collectionId":")") + id + R"(","localTime":"2026-03-07T20:00:00.000Z",)" +
         R"("hwInfo":{"systemBoardInfo":{"temperatureSensorsInfo":[{"sensorName":"ext_sensor","temperatureCelsius":21}]}}}})" +
         "\n";
}

inline std::vector<nlohmann::json> Unpacked(const nlohmann::json& packed) {
  if (packed.contains("values")) return packed.at("values");
  std::vector<nlohmann::json> values;
  const nlohmann::json& runs = packed.at("runs");
  for (std::size_t i = 0; i < runs.size(); i += 2) values.insert(values.end(), runs[i + 1].get<std::size_t>(), runs[i]);
  return values;
}

inline const nlohmann::json& Named(const nlohmann::json& list, const std::string& path) {
  for (const nlohmann::json& one : list) {
    if (one.at("path") == path) return one;
  }
  throw std::runtime_error("nothing has the path " + path);
}

// Reports of lines or records, and what stands in their pages.
class ReportTest : public testing::Test {
 protected:
  ProgramRun Report(const std::string& lines, std::vector<std::string> options = {}) {
    WriteFile(folder_.Path() / "records.jsonl", lines);
    return ReportOf({folder_.File("records.jsonl")}, std::move(options));
  }

  ProgramRun ReportOf(const std::vector<std::string>& files, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"report", "--output", folder_.File("report.html"), "--records"});
    options.insert(options.begin() + 4, files.begin(), files.end());
    return RunProgram(options);
  }

  // With the records; what was begun and not finished would be one more.
  std::ptrdiff_t FilesInFolder() const {
    return std::distance(std::filesystem::directory_iterator(folder_.Path()), std::filesystem::directory_iterator());
  }

  std::string Page(const std::string& name = "report.html") const { return ReadFile(folder_.Path() / name); }

  // What stands in the page's data element.
  std::string DataText(const std::string& name = "report.html") const {
    const std::string page = Page(name);
    const std::string start = R"(<script id="data" type="application/json">)";
    const std::size_t begin = page.find(start) + start.size();
    return page.substr(begin, page.find("</script>", begin) - begin);
  }

  nlohmann::json Data(const std::string& name = "report.html") const { return nlohmann::json::parse(DataText(name)); }

  std::vector<nlohmann::json> Column(const std::string& table, const std::string& column) const {
    const nlohmann::json found = Named(Named(Data().at("tables"), table).at("columns"), column);
    std::vector<nlohmann::json> values = Unpacked(found.at("data"));
    if (!found.contains("texts")) return values;
    for (nlohmann::json& value : values)
      value = value.is_null() ? value : found.at("texts").at(value.get<std::size_t>());
    return values;
  }

  zt::tests::TemporaryFolder folder_;
};

}  // namespace zt::telemetry::host

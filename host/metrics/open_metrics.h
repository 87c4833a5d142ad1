#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zt::telemetry::host {

/// The labels of a metric, in the order in which they are written: names as `MetricWord` makes them, values any bytes.
using Labels = std::vector<std::pair<std::string, std::string>>;

/// What all metrics of a name have in common.
struct MetricFamily {
  std::string name;  // ends with the unit where it has one
  std::string unit;  // empty without one
  std::string help;
};

/// Metrics in OpenMetrics' text form, which readers of Prometheus' older text form take as well. For that all of them
/// are gauges (the two forms name counters differently) and no value has a time of its own (the textfile collector of
/// Prometheus' node exporter refuses those).
class OpenMetrics {
 public:
  /// Adds a value. A second one with the very same labels is told apart from the first by the label "entry", which
  /// counts from 2: one machine may have two things with one name.
  void Add(const MetricFamily& family, Labels labels, double value);

  /// Everything, families in the order of their first value, each with its help and unit; ends with "# EOF".
  std::string Text() const;

 private:
  struct Family {
    MetricFamily family;
    std::map<Labels, std::size_t> entries;
    std::vector<std::string> samples;
  };

  std::vector<Family> families_;
  std::map<std::string, std::size_t> places_;
};

/// `text` as a part of a name: lower-case letters and digits of ASCII, all else as single underscores between them.
std::string MetricWord(std::string_view text);

/// "zt_" and the words that are not empty, joined by underscores.
std::string MetricName(const std::vector<std::string_view>& words);

}  // namespace zt::telemetry::host

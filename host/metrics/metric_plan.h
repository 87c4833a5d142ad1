#pragma once

#include <google/protobuf/message.h>

#include <string>
#include <vector>

#include "host/contract_comments.h"
#include "host/metrics/open_metrics.h"

namespace zt::telemetry::host {

/// Which metrics a type of record gives. All of it follows from the contract: a metric is named by its section's title,
/// its label and its base unit, and its help is the comment of its field. Numbers become metrics. Of an entry of a list
/// (a battery, a process) the first figure is a label of them all, and its other texts are the labels of one metric
/// more, "…_info", which is always 1.
class MetricPlan {
 public:
  MetricPlan(const google::protobuf::Descriptor& record, const ContractComments& comments);

  /// Adds what is set in `record`, a record of that type.
  void Add(const google::protobuf::Message& record, OpenMetrics& metrics) const;

  /// All metrics that such a record may give, in their order.
  std::vector<MetricFamily> Families() const;

  /// A field, by names joined by dots from the entry's message on.
  struct Field {
    std::string path;
    const google::protobuf::FieldDescriptor* field = nullptr;
  };
  struct Number {
    Field field;
    MetricFamily family;
  };
  struct Text {
    Field field;
    std::string label;
  };
  /// A section of the record, or a list in one: what each of its entries gives.
  struct Entries {
    std::string path;          // from what is around it
    std::vector<Text> labels;  // of everything below
    std::vector<Number> numbers;
    MetricFamily info;        // without a name: there is none
    std::vector<Text> texts;  // of the info
    std::vector<Entries> lists;
  };

 private:
  std::vector<Entries> sections_;
};

}  // namespace zt::telemetry::host

#include "fleet/forward/producer.h"

#include <algorithm>
#include <array>
#include <exception>
#include <string_view>
#include <utility>

#include "fleet/forward/client_configuration.h"
#include "fleet/forward/record_maker.h"
#include "fleet/forward/record_splitter.h"
#include "host/failure.h"

namespace zt::telemetry::fleet {
namespace {

constexpr std::size_t kErrorTextSize = 512;
constexpr std::size_t kLongestReason = 1000;
constexpr int kPatienceAtEndMs = 1000;

struct DestroyError {
  void operator()(rd_kafka_error_t* error) const { rd_kafka_error_destroy(error); }
};

// What a broker says of a record that it takes at no time: it goes to the dead letters instead.
bool IsRefused(rd_kafka_resp_err_t error) {
  return error == RD_KAFKA_RESP_ERR_MSG_SIZE_TOO_LARGE || error == RD_KAFKA_RESP_ERR_INVALID_MSG ||
         error == RD_KAFKA_RESP_ERR_INVALID_MSG_SIZE || error == RD_KAFKA_RESP_ERR_INVALID_RECORD ||
         error == RD_KAFKA_RESP_ERR_POLICY_VIOLATION || error == RD_KAFKA_RESP_ERR_INVALID_TIMESTAMP;
}

}  // namespace

/// The headers of a message; the client owns them once it has taken the message.
struct Producer::Headers {
  struct Destroy {
    void operator()(rd_kafka_headers_t* headers) const { rd_kafka_headers_destroy(headers); }
  };

  void Add(const char* name, std::string_view value) {
    rd_kafka_header_add(list.get(), name, -1, value.data(), static_cast<ssize_t>(value.size()));
  }

  std::unique_ptr<rd_kafka_headers_t, Destroy> list{rd_kafka_headers_new(4)};
};

Producer::Producer(const KafkaSettings& kafka, Counters& counters, std::ostream& log)
    : kafka_(kafka), counters_(counters), log_(log), storage_type_(StorageType()) {
  for (std::size_t topic = 0; topic < upload_topics_.size(); ++topic) {
    upload_topics_.at(topic) = kafka.upload_topic + std::string(kUploadTopicSuffixes.at(topic));
  }
  ClientConfiguration configuration = ConfigurationOf(kafka);
  rd_kafka_conf_set_opaque(configuration.get(), this);
  rd_kafka_conf_set_dr_msg_cb(configuration.get(), OnDelivery);
  rd_kafka_conf_set_error_cb(configuration.get(), OnError);
  rd_kafka_conf_set_log_cb(configuration.get(), nullptr);  // its errors come to OnError
  std::array<char, kErrorTextSize> text{};
  client_.reset(rd_kafka_new(RD_KAFKA_PRODUCER, configuration.get(), text.data(), text.size()));
  if (client_ == nullptr) {
    throw host::WrongUsage(std::string("the Kafka client cannot be made with these settings: ") + text.data());
  }
  static_cast<void>(configuration.release());  // the client's by now
}

// What was not answered for by now never will be: nobody looks at the deliveries any more.
Producer::~Producer() {
  abandoned_ = true;
  rd_kafka_purge(client_.get(), RD_KAFKA_PURGE_F_QUEUE | RD_KAFKA_PURGE_F_INFLIGHT);
  rd_kafka_flush(client_.get(), kPatienceAtEndMs);
}

bool Producer::TrySend(const Record& record, Delivery& delivery) {
  Headers headers;
  headers.Add("zt-message", record.type);
  headers.Add("zt-contract-version", record.contract_version);
  headers.Add("zt-collection-id", record.collection_id);
  headers.Add("zt-part", record.part);
  return Produce(TopicOf(record), record.machine, record.bytes.data(), record.bytes.size(), std::move(headers),
                 delivery);
}

const std::string& Producer::TopicOf(const Record& record) const {
  if (record.type == storage_type_) return kafka_.storage_topic;
  if (!kafka_.upload_topics_by_kind) return kafka_.upload_topic;
  return upload_topics_.at(static_cast<std::size_t>(record.topic));
}

bool Producer::TrySendDead(const BadRecord& bad, const std::string& source, Delivery& delivery) {
  Headers headers;
  headers.Add("zt-reason", std::string_view(bad.reason).substr(0, kLongestReason));
  headers.Add("zt-source", source);
  const std::size_t size = std::min(bad.bytes.size(), RecordSplitter::kLongest);
  if (size < bad.bytes.size()) headers.Add("zt-cut-from-bytes", std::to_string(bad.bytes.size()));
  return Produce(kafka_.dead_letter_topic, {}, bad.bytes.data(), size, std::move(headers), delivery);
}

bool Producer::Produce(const std::string& topic, const std::string& key, const void* bytes, std::size_t size,
                       Headers headers, Delivery& delivery) {
  std::array<rd_kafka_vu_t, 6> message{};
  message[0].vtype = RD_KAFKA_VTYPE_TOPIC;
  message[0].u.cstr = topic.c_str();
  message[1].vtype = RD_KAFKA_VTYPE_MSGFLAGS;
  message[1].u.i = RD_KAFKA_MSG_F_COPY;
  message[2].vtype = RD_KAFKA_VTYPE_KEY;
  message[2].u.mem = {const_cast<char*>(key.empty() ? nullptr : key.data()), key.size()};
  message[3].vtype = RD_KAFKA_VTYPE_VALUE;
  message[3].u.mem = {const_cast<void*>(bytes), size};
  message[4].vtype = RD_KAFKA_VTYPE_HEADERS;
  message[4].u.headers = headers.list.get();
  message[5].vtype = RD_KAFKA_VTYPE_OPAQUE;
  message[5].u.ptr = &delivery;
  const std::unique_ptr<rd_kafka_error_t, DestroyError> refused(
      rd_kafka_produceva(client_.get(), message.data(), message.size()));
  if (refused == nullptr) {
    static_cast<void>(headers.list.release());
    ++delivery.pending;
    return true;
  }
  const auto error = rd_kafka_error_code(refused.get());
  if (error == RD_KAFKA_RESP_ERR__QUEUE_FULL) return false;
  RequireNoFatalError();
  throw host::Failure(host::kExitFailed, "the Kafka client does not take a record for the topic " + topic + ": " +
                                             rd_kafka_err2str(error));
}

void Producer::OnDelivery(rd_kafka_t* /*client*/, const rd_kafka_message_t* message, void* opaque) {
  static_cast<Producer*>(opaque)->Answered(*message);
}

void Producer::Answered(const rd_kafka_message_t& message) {
  if (abandoned_) return;
  auto& delivery = *static_cast<Delivery*>(message._private);
  --delivery.pending;
  const bool is_dead = rd_kafka_topic_name(message.rkt) == kafka_.dead_letter_topic;
  if (message.err == RD_KAFKA_RESP_ERR_NO_ERROR) {
    ++(is_dead ? counters_.dead_letters : counters_.delivered);
    counters_.last_delivery = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    return;
  }
  if (!is_dead && IsRefused(message.err) && BuryRefused(message, delivery)) return;
  ++delivery.failed;
  ++counters_.failed;
}

bool Producer::BuryRefused(const rd_kafka_message_t& message, Delivery& delivery) {
  ++counters_.bad_records;
  const BadRecord bad{std::string(static_cast<const char*>(message.payload), message.len),
                      std::string("the broker refuses it: ") + rd_kafka_err2str(message.err)};
  try {
    return TrySendDead(bad, std::string("topic ") + rd_kafka_topic_name(message.rkt), delivery);
  } catch (const std::exception& failure) {
    // The client calls this, and is C: nothing may be thrown through it. The record counts as failed, and its file
    // stays.
    log_ << "zt-telemetry-forward: " << failure.what() << std::endl;
    return false;
  }
}

void Producer::OnError(rd_kafka_t* /*client*/, int error, const char* reason, void* opaque) {
  auto& producer = *static_cast<Producer*>(opaque);
  ++producer.counters_.client_errors;
  const std::string complaint = std::string(rd_kafka_err2name(static_cast<rd_kafka_resp_err_t>(error))) + ": " + reason;
  if (complaint == producer.last_complaint_) return;  // brokers that are away are told of again and again
  producer.last_complaint_ = complaint;
  producer.log_ << "zt-telemetry-forward: " << complaint << std::endl;
}

void Producer::RequireNoFatalError() const {
  std::array<char, kErrorTextSize> text{};
  const auto error = rd_kafka_fatal_error(client_.get(), text.data(), text.size());
  if (error == RD_KAFKA_RESP_ERR_NO_ERROR) return;
  throw host::Failure(host::kExitFailed, std::string("the Kafka client cannot go on (") + rd_kafka_err2name(error) +
                                             "): " + text.data() + "; what was not delivered is kept");
}

void Producer::Poll(int milliseconds) {
  rd_kafka_poll(client_.get(), milliseconds);
  RequireNoFatalError();
}

void Producer::Flush(int milliseconds) {
  rd_kafka_flush(client_.get(), milliseconds);
  RequireNoFatalError();
}

std::int64_t Producer::Waiting() const {
  return rd_kafka_outq_len(client_.get());
}

}  // namespace zt::telemetry::fleet

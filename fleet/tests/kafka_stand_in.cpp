// Three brokers that keep what they are given in memory, as a process of its own: what the tests and ./run fleet have
// for Kafka. They are librdkafka's, and speak Kafka's protocol over TCP.
//
//   zt-kafka-stand-in TOPIC:PARTITIONS...
//
// Prints their addresses in one line, and then answers the lines of standard input with "done": "down N" and "up N"
// stop and start broker N (1 to 3). Ends with its input.
#include <librdkafka/rdkafka.h>
#include <librdkafka/rdkafka_mock.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

constexpr int kBrokers = 3;

struct DestroyClient {
  void operator()(rd_kafka_t* client) const { rd_kafka_destroy(client); }
};
struct DestroyCluster {
  void operator()(rd_kafka_mock_cluster_t* cluster) const { rd_kafka_mock_cluster_destroy(cluster); }
};

class Brokers {
 public:
  Brokers() {
    std::array<char, 512> text{};
    client_.reset(rd_kafka_new(RD_KAFKA_PRODUCER, rd_kafka_conf_new(), text.data(), text.size()));
    if (client_ == nullptr) throw std::runtime_error(text.data());
    cluster_.reset(rd_kafka_mock_cluster_new(client_.get(), kBrokers));
    if (cluster_ == nullptr) throw std::runtime_error("the brokers cannot be made");
  }

  std::string Addresses() const { return rd_kafka_mock_cluster_bootstraps(cluster_.get()); }

  // "name:partitions"
  void AddTopic(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    const int partitions = colon == std::string::npos ? 0 : std::atoi(text.c_str() + colon + 1);
    if (partitions < 1) throw std::runtime_error("expected TOPIC:PARTITIONS, but got " + text);
    const std::string name = text.substr(0, colon);
    if (rd_kafka_mock_topic_create(cluster_.get(), name.c_str(), partitions, kBrokers) != RD_KAFKA_RESP_ERR_NO_ERROR) {
      throw std::runtime_error("the topic " + name + " cannot be made");
    }
  }

  void Obey(const std::string& line) {
    std::istringstream words(line);
    std::string what;
    std::string which;
    std::string bytes;
    words >> what >> which >> bytes;
    if (what == "put") return Put(which, bytes);
    const int broker = std::atoi(which.c_str());
    const bool is_known = (what == "down" || what == "up") && broker >= 1 && broker <= kBrokers;
    if (!is_known) throw std::runtime_error("expected \"down N\", \"up N\" or \"put TOPIC BYTES\", but got " + line);
    if (what == "down") {
      rd_kafka_mock_broker_set_down(cluster_.get(), broker);
    } else {
      rd_kafka_mock_broker_set_up(cluster_.get(), broker);
    }
  }

 private:
  void Put(const std::string& topic, const std::string& hexadecimal) {
    constexpr int kHexadecimal = 16;
    constexpr int kPatienceMs = 10'000;
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2) {
      bytes += static_cast<char>(std::stoi(hexadecimal.substr(i, 2), nullptr, kHexadecimal));
    }
    rd_kafka_conf_t* const configuration = rd_kafka_conf_new();
    std::array<char, 512> text{};
    rd_kafka_conf_set(configuration, "bootstrap.servers", Addresses().c_str(), text.data(), text.size());
    const std::unique_ptr<rd_kafka_t, DestroyClient> producer(
        rd_kafka_new(RD_KAFKA_PRODUCER, configuration, text.data(), text.size()));
    if (producer == nullptr) throw std::runtime_error(text.data());
    std::array<rd_kafka_vu_t, 3> message{};
    message[0].vtype = RD_KAFKA_VTYPE_TOPIC;
    message[0].u.cstr = topic.c_str();
    message[1].vtype = RD_KAFKA_VTYPE_MSGFLAGS;
    message[1].u.i = RD_KAFKA_MSG_F_COPY;
    message[2].vtype = RD_KAFKA_VTYPE_VALUE;
    message[2].u.mem = {bytes.data(), bytes.size()};
    if (rd_kafka_produceva(producer.get(), message.data(), message.size()) != nullptr ||
        rd_kafka_flush(producer.get(), kPatienceMs) != RD_KAFKA_RESP_ERR_NO_ERROR) {
      throw std::runtime_error("the message cannot be put into " + topic);
    }
  }

  std::unique_ptr<rd_kafka_t, DestroyClient> client_;
  std::unique_ptr<rd_kafka_mock_cluster_t, DestroyCluster> cluster_;  // before its client
};

}  // namespace

int main(int count, char** values) {
  try {
    Brokers brokers;
    for (int i = 1; i < count; ++i) brokers.AddTopic(values[i]);
    std::cout << brokers.Addresses() << std::endl;
    for (std::string line; std::getline(std::cin, line);) {
      brokers.Obey(line);
      std::cout << "done" << std::endl;
    }
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "zt-kafka-stand-in: " << failure.what() << std::endl;
    return 1;
  }
}

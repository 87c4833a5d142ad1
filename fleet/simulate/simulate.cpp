#include "fleet/simulate/simulate.h"

#include <google/protobuf/util/json_util.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <fstream>
#include <functional>
#include <iomanip>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "fleet/forward/counters.h"
#include "fleet/forward/kafka_sink.h"
#include "fleet/forward/record_maker.h"
#include "fleet/forward/settings.h"
#include "fleet/simulate/fleet_machine.h"
#include "host/failure.h"
#include "host/files.h"
#include "host/program_environment.h"
#include "host/whole_file.h"

namespace zt::telemetry::fleet {
namespace {

namespace chrono = std::chrono;
using Upload = FleetMachine::Upload;

constexpr std::uint32_t kMachinesOfAFile = 500;
constexpr int kLastTickMs = 100;

// Takes the records of some machines; one for each thread.
class Receiver {
 public:
  virtual ~Receiver() = default;

  /// False when no more is wanted.
  virtual bool Take(const Upload& record, const MachineFacts& machine) = 0;
  /// The records of some machines in one hour are complete.
  virtual void EndBlock(std::uint32_t /*hour*/, std::uint32_t /*first_machine*/) {}
  /// Everything was taken. False when not all of it arrived.
  virtual bool End() { return true; }

  std::int64_t records = 0;
  std::int64_t bytes = 0;
};

class Counting : public Receiver {
 public:
  bool Take(const Upload& record, const MachineFacts& /*machine*/) override {
    record.SerializeToString(&serialized_);
    bytes += static_cast<std::int64_t>(serialized_.size());
    ++records;
    return true;
  }

 private:
  std::string serialized_;
};

void AppendLength(std::size_t length, std::string& text) {
  constexpr unsigned kBits = 7;
  constexpr unsigned kMore = 0x80;
  for (; length >= kMore; length >>= kBits) text += static_cast<char>((length & (kMore - 1)) | kMore);
  text += static_cast<char>(length);
}

void AppendRecord(const Upload& record, const MachineFacts& machine, OutputForm form, std::string& text) {
  if (form == OutputForm::kDelimited) {
    AppendLength(record.ByteSizeLong(), text);
    record.AppendToString(&text);
    return;
  }
  std::string json;
  const auto status = google::protobuf::util::MessageToJsonString(record, &json);
  if (!status.ok()) throw host::Failure(host::kExitFailed, "a record cannot be written as JSON: " + status.ToString());
  text += R"({"handover":"send","type":")" + std::string(record.GetTypeName()) + R"(","contract_version":")" +
          machine.contract_version + R"(","record":)" + json + "}\n";
}

class Writing : public Receiver {
 public:
  Writing(std::ostream& stream, OutputForm form) : stream_(stream), form_(form) {}

  bool Take(const Upload& record, const MachineFacts& machine) override {
    text_.clear();
    AppendRecord(record, machine, form_, text_);
    ++records;
    bytes += static_cast<std::int64_t>(text_.size());
    return static_cast<bool>(stream_.write(text_.data(), static_cast<std::streamsize>(text_.size())));
  }

  bool End() override { return static_cast<bool>(stream_.flush()); }

 private:
  std::ostream& stream_;
  OutputForm form_;
  std::string text_;
};

// A file for each hour of some machines, as gateways put them there: whole or not at all.
class Spooling : public Receiver {
 public:
  Spooling(std::filesystem::path folder, OutputForm form) : folder_(std::move(folder)), form_(form) {
    host::MakeWritableFolder(folder_, "--spool");
  }

  bool Take(const Upload& record, const MachineFacts& machine) override {
    AppendRecord(record, machine, form_, text_);
    ++records;
    return true;
  }

  void EndBlock(std::uint32_t hour, std::uint32_t first_machine) override {
    if (text_.empty()) return;
    std::ostringstream name;
    name << "hour-" << std::setfill('0') << std::setw(5) << hour << "-machines-" << std::setw(7) << first_machine
         << (form_ == OutputForm::kLines ? ".jsonl" : ".pb");
    const std::filesystem::path partial = folder_ / (name.str() + ".partial");
    std::ofstream stream = host::OpenForWriting(partial, "--spool");
    stream << text_;
    if (!stream.flush()) throw host::Failure(host::kExitFailed, "--spool: " + name.str() + " cannot be written");
    stream.close();
    std::filesystem::rename(partial, folder_ / name.str());
    bytes += static_cast<std::int64_t>(text_.size());
    text_.clear();
  }

 private:
  std::filesystem::path folder_;
  OutputForm form_;
  std::string text_;
};

class Producing : public Receiver {
 public:
  Producing(const Settings& settings, std::ostream& err) : sink_(settings, counters_, err), type_(UploadType()) {}

  bool Take(const Upload& record, const MachineFacts& machine) override {
    record.SerializeToString(&serialized_);
    MadeRecord made = maker_.OfBytes(type_, serialized_, machine.contract_version);
    ++records;
    bytes += static_cast<std::int64_t>(serialized_.size());
    return sink_.Send(std::get<Record>(made), delivery_);
  }

  bool End() override {
    while (!delivery_.IsDone() && !sink_.Stops()) sink_.Tick(kLastTickMs);
    return delivery_.IsComplete();
  }

 private:
  Counters counters_;
  Delivery delivery_;  // outlives the sink
  KafkaSink sink_;
  RecordMaker maker_{""};
  std::string type_;
  std::string serialized_;
};

// Every so many machines of the fleet, hour by hour.
class Share {
 public:
  Share(const SimulateCommand& command, std::uint32_t first, std::uint32_t count, chrono::sys_seconds begin)
      : command_(command), first_(first), begin_(begin) {
    machines_.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
      const std::uint32_t number = first + i;
      machines_.push_back(
          std::make_unique<FleetMachine>(command.raw ? PlainMachine(number, command.random_seed)
                                                     : VariedMachine(number, command.random_seed, command.hours),
                                         begin));
    }
  }

  void Live(Receiver& receiver, std::atomic<bool>& goes_on) {
    for (std::uint32_t hour = 0; hour < command_.hours && goes_on; ++hour) LiveHour(hour, receiver, goes_on);
  }

 private:
  void LiveHour(std::uint32_t hour, Receiver& receiver, std::atomic<bool>& goes_on) {
    const FleetMachine::Take take = [&](const Upload& record, const MachineFacts& machine) {
      if (goes_on && !receiver.Take(record, machine)) goes_on = false;
    };
    for (std::size_t i = 0; i < machines_.size() && goes_on; ++i) {
      machines_[i]->Send(begin_ + chrono::hours(hour), take);
      const bool is_last = (i + 1) % kMachinesOfAFile == 0 || i + 1 == machines_.size();
      if (is_last)
        receiver.EndBlock(hour, first_ + static_cast<std::uint32_t>(i / kMachinesOfAFile * kMachinesOfAFile));
    }
  }

  const SimulateCommand& command_;
  std::uint32_t first_;
  chrono::sys_seconds begin_;
  std::vector<std::unique_ptr<FleetMachine>> machines_;
};

// What a thread does, and what became of it.
struct Worker {
  std::unique_ptr<Receiver> receiver;
  std::exception_ptr failure;
  bool is_complete = false;
};

class Simulation {
 public:
  Simulation(const SimulateCommand& command, std::function<std::unique_ptr<Receiver>()> new_receiver)
      : command_(command), new_receiver_(std::move(new_receiver)) {}

  // False when not all of it arrived.
  bool Run() {
    const std::uint32_t threads = std::min(command_.threads, command_.machines);
    std::vector<Worker> workers(threads);
    for (Worker& worker : workers) worker.receiver = new_receiver_();
    std::vector<std::thread> running;
    std::uint32_t first = 0;
    for (std::uint32_t i = 0; i < threads; ++i) {
      const std::uint32_t count = (command_.machines - first) / (threads - i);
      running.emplace_back([this, &worker = workers[i], first, count] { Work(worker, first, count); });
      first += count;
    }
    for (std::thread& thread : running) thread.join();
    for (const Worker& worker : workers) {
      if (worker.failure) std::rethrow_exception(worker.failure);
    }
    bool is_complete = goes_on_;
    for (const Worker& worker : workers) {
      is_complete = is_complete && worker.is_complete;
      records += worker.receiver->records;
      bytes += worker.receiver->bytes;
    }
    return is_complete;
  }

  std::int64_t records = 0;
  std::int64_t bytes = 0;

 private:
  void Work(Worker& worker, std::uint32_t first, std::uint32_t count) {
    try {
      Share share(command_, command_.first_machine + first, count, command_.until - chrono::hours(command_.hours));
      share.Live(*worker.receiver, goes_on_);
      worker.is_complete = worker.receiver->End();
    } catch (...) {
      worker.failure = std::current_exception();
      goes_on_ = false;
    }
  }

  const SimulateCommand& command_;
  std::function<std::unique_ptr<Receiver>()> new_receiver_;
  std::atomic<bool> goes_on_ = true;
};

void RequireOneGoal(const SimulateCommand& command) {
  const int goals = (command.count_only ? 1 : 0) + (command.config.has_value() ? 1 : 0) +
                    (command.output.has_value() ? 1 : 0) + (command.spool.has_value() ? 1 : 0);
  if (goals > 1) throw host::WrongUsage("expected at most one of --count, --config, --output and --spool");
  const bool is_one_stream = goals == 0 || command.output.has_value() || command.spool.has_value();
  if (is_one_stream && command.threads > 1) {
    throw host::WrongUsage("--threads " + std::to_string(command.threads) +
                           ": files and standard output are written by one; expected it with --config or --count");
  }
}

}  // namespace

int Simulate(const SimulateCommand& command, std::ostream& out, std::ostream& err) {
  RequireOneGoal(command);
  std::optional<Settings> settings;
  if (command.config.has_value()) settings = ReadSettingsFile(*command.config);
  std::optional<host::WholeFile> file;
  if (command.output.has_value()) file.emplace(*command.output, "--output");
  Simulation simulation(command, [&]() -> std::unique_ptr<Receiver> {
    if (command.count_only) return std::make_unique<Counting>();
    if (settings.has_value()) return std::make_unique<Producing>(*settings, err);
    if (command.spool.has_value()) return std::make_unique<Spooling>(*command.spool, command.form);
    return std::make_unique<Writing>(file.has_value() ? file->Stream() : out, command.form);
  });
  const auto begin = chrono::steady_clock::now();
  const bool is_complete = simulation.Run();
  if (file.has_value() && is_complete) file->Finish();
  const double seconds = chrono::duration<double>(chrono::steady_clock::now() - begin).count();
  err << "zt-telemetry-forward: " << simulation.records << " records, " << simulation.bytes << " bytes of "
      << command.machines << " machines in " << std::fixed << std::setprecision(2) << seconds << " s" << std::endl;
  return is_complete ? host::kExitDone : host::kExitFailed;
}

}  // namespace zt::telemetry::fleet

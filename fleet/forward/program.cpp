#include <exception>

#include "fleet/forward/commands.h"
#include "fleet/forward/forward.h"
#include "fleet/forward/settings.h"
#include "host/failure.h"

namespace zt::telemetry::fleet {
namespace {

// Runs a command; one operation for each kind.
class Runner {
 public:
  Runner(std::ostream& out, std::ostream& err) : out_(out), err_(err) {}

  int operator()(const StdinCommand& command) const { return ForwardStdin(command, err_); }
  int operator()(const SpoolCommand& command) const { return ForwardSpool(command, err_); }
  int operator()(const OutboxCommand& command) const { return ForwardOutboxes(command, err_); }
  int operator()(const SimulateCommand& command) const { return Simulate(command, out_, err_); }

  int operator()(const CheckCommand& command) const {
    out_ << SettingsText(ReadSettingsFile(command.config)) << std::flush;
    return host::kExitDone;
  }

  int operator()(const ShowTextCommand& command) const {
    out_ << command.text << std::flush;
    return host::kExitDone;
  }

 private:
  std::ostream& out_;
  std::ostream& err_;
};

}  // namespace

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  try {
    return std::visit(Runner(out, err), ReadCommandLine(arguments));
  } catch (const host::Failure& failure) {
    err << "zt-telemetry-forward: " << failure.what() << std::endl;
    return failure.ExitCode();
  } catch (const std::exception& error) {
    err << "zt-telemetry-forward: unexpected failure: " << error.what() << std::endl;
    return host::kExitFailed;
  }
}

}  // namespace zt::telemetry::fleet

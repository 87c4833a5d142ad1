#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace zt::fuzz {

/// The first inputs of all harnesses: a folder for each harness, in it a file for each input.
class SeedFolder {
 public:
  explicit SeedFolder(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void Add(const std::string& harness, std::string_view input) {
    const std::filesystem::path folder = folder_ / harness;
    std::filesystem::create_directories(folder);
    std::ofstream file(folder / std::to_string(++inputs_[harness]), std::ios::binary);
    file.write(input.data(), static_cast<std::streamsize>(input.size()));
    if (!file.flush()) throw std::runtime_error("cannot write to " + folder.string());
  }

 private:
  std::filesystem::path folder_;
  std::map<std::string, int> inputs_;
};

/// Inputs from hours of samples as the seed command makes them: databases, and what the summary query says of them.
void AddSampleSeeds(SeedFolder& seeds);

/// Inputs from the profiles of the simulated machine (`profiles`: their folder), and from cycles on them: what it
/// states, what is asked of it, what is sent.
void AddMachineSeeds(SeedFolder& seeds, const std::filesystem::path& profiles);

/// Inputs in the layouts of the system: the firmware's table, answers of drivers.
void AddDeviceSeeds(SeedFolder& seeds);

/// Inputs from the records of a simulated machine, as gateways have them.
void AddFleetSeeds(SeedFolder& seeds);

}  // namespace zt::fuzz

// Writes the first inputs of the harnesses, made from real output: write_seeds FOLDER PROFILES
#include <exception>
#include <iostream>

#include "seed_folder.h"

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "usage: write_seeds FOLDER PROFILES\n";
    return 2;
  }
  try {
    zt::fuzz::SeedFolder seeds(arguments[1]);
    zt::fuzz::AddSampleSeeds(seeds);
    zt::fuzz::AddMachineSeeds(seeds, arguments[2]);
    zt::fuzz::AddDeviceSeeds(seeds);
    zt::fuzz::AddFleetSeeds(seeds);
  } catch (const std::exception& error) {
    std::cerr << "write_seeds: " << error.what() << "\n";
    return 1;
  }
  return 0;
}

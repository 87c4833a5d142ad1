// Writes the contract as it is built over the file of what is agreed, unless something agreed would be lost by it.
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

#include "record_listing.h"

namespace {

std::string TextIn(const char* path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

bool Write(const char* path, const std::string& text) {
  std::ofstream file(path, std::ios::trunc);
  return static_cast<bool>(file << text << std::flush);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: list_records AGREED_RECORDS\n";
    return 2;
  }
  const char* const path = arguments[1];
  const std::string listing = zt::tests::ListingOfTheContract();
  const std::string lost = zt::tests::Without(zt::tests::StatementsOf(TextIn(path)), zt::tests::StatementsOf(listing));
  if (!lost.empty()) {
    std::cerr << "Agreed, and no longer in contracts/:\n"
              << lost << "Put it back as it was; what is new gets a name and a number of its own.\n";
    return 1;
  }
  if (!Write(path, listing)) {
    std::cerr << path << " cannot be written\n";
    return 1;
  }
  return 0;
}

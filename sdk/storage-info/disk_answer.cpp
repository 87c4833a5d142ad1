#include "disk_answer.h"

#include <algorithm>

namespace zt::shared::storage {
namespace {

// Size of a STORAGE_ADAPTER_SERIAL_NUMBER. Some drivers refuse a smaller buffer for it, instead of putting into it what
// fits; the answers to other questions usually fit too.
constexpr std::size_t kFirstBuffer = 264;
constexpr std::size_t kLargestBuffer = std::size_t{64} * 1024;
constexpr std::size_t kSizeOffset = 4;
constexpr std::size_t kHeaderSize = 8;

std::size_t StatedSize(const std::vector<std::uint8_t>& answer) {
  std::size_t size = 0;
  for (std::size_t i = 0; i < kHeaderSize - kSizeOffset; ++i) size |= std::size_t{answer[kSizeOffset + i]} << (8 * i);
  return size;
}

std::vector<std::uint8_t> AskOnce(const AskDriver& ask, std::size_t room) {
  std::vector<std::uint8_t> answer(room);
  answer.resize(std::min(ask(answer), room));
  return answer;
}

}  // namespace

std::vector<std::uint8_t> ReadWholeAnswer(const AskDriver& ask) {
  std::vector<std::uint8_t> answer = AskOnce(ask, kFirstBuffer);
  if (answer.size() < kHeaderSize) return {};
  const std::size_t size = std::min(StatedSize(answer), kLargestBuffer);
  if (size > kFirstBuffer) return AskOnce(ask, size);
  answer.resize(std::min(answer.size(), size));
  return answer;
}

}  // namespace zt::shared::storage

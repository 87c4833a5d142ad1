#include "disk_answer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace zt::shared::storage {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kSerialNumberAnswer = 264;

// An answer of `size` bytes that states `stated` as its size.
Bytes AnswerOf(std::size_t size, std::size_t stated) {
  Bytes answer(size, 0x5A);
  for (std::size_t i = 0; i < 8; ++i) answer[i] = 0;
  answer[0] = 12;
  for (std::size_t i = 0; i < 4; ++i) answer[4 + i] = static_cast<std::uint8_t>(stated >> (8 * i));
  return answer;
}

// A driver, and the rooms that it was asked with.
struct Driver {
  Bytes answer;
  std::size_t least_room = 0;
  std::vector<std::size_t> rooms;

  std::size_t operator()(std::span<std::uint8_t> buffer) {
    rooms.push_back(buffer.size());
    if (buffer.size() < least_room) return 0;
    const std::size_t size = std::min(buffer.size(), answer.size());
    std::copy_n(answer.begin(), size, buffer.begin());
    return size;
  }

  Bytes Read() { return ReadWholeAnswer(std::ref(*this)); }
};

TEST(DiskAnswerTest, ADriverThatWantsRoomForTheWholeSerialNumberIsAskedOnce) {
  Driver driver{AnswerOf(kSerialNumberAnswer, kSerialNumberAnswer), kSerialNumberAnswer, {}};
  EXPECT_EQ(driver.Read(), driver.answer);
  EXPECT_THAT(driver.rooms, ElementsAre(kSerialNumberAnswer));
}

TEST(DiskAnswerTest, AShortAnswerIsOneQuestion) {
  Driver driver{AnswerOf(40, 40), 0, {}};
  EXPECT_EQ(driver.Read(), driver.answer);
  EXPECT_THAT(driver.rooms, SizeIs(1));
}

TEST(DiskAnswerTest, AnAnswerThatStatesMoreThanFitIsAskedForAgain) {
  Driver driver{AnswerOf(1000, 1000), 0, {}};
  EXPECT_EQ(driver.Read(), driver.answer);
  EXPECT_THAT(driver.rooms, ElementsAre(kSerialNumberAnswer, 1000));
}

TEST(DiskAnswerTest, WhatFollowsTheStatedSizeIsNoPartOfTheAnswer) {
  Driver driver{AnswerOf(60, 40), 0, {}};
  EXPECT_THAT(driver.Read(), SizeIs(40));
}

TEST(DiskAnswerTest, AnAnswerWithoutAHeaderIsNone) {
  Driver driver{Bytes(7, 1), 0, {}};
  EXPECT_THAT(driver.Read(), IsEmpty());
  driver.answer.clear();
  EXPECT_THAT(driver.Read(), IsEmpty());
}

TEST(DiskAnswerTest, NoDriverGetsMoreThanSixtyFourKilobytes) {
  Driver driver{AnswerOf(100'000, 0xFFFF'FFFF), 0, {}};
  EXPECT_THAT(driver.Read(), SizeIs(64 * 1024));
}

TEST(DiskAnswerTest, ADriverThatRefusesTheSecondTimeHasNoAnswer) {
  int questions = 0;
  const Bytes header = AnswerOf(8, 1000);
  const Bytes answer = ReadWholeAnswer([&](std::span<std::uint8_t> buffer) {
    if (++questions > 1) return std::size_t{0};
    std::copy(header.begin(), header.end(), buffer.begin());
    return header.size();
  });
  EXPECT_THAT(answer, IsEmpty());
  EXPECT_EQ(questions, 2);
}

// A driver that tells of more bytes than it had room for.
TEST(DiskAnswerTest, NothingIsReadBeyondTheRoom) {
  const Bytes answer = ReadWholeAnswer([](std::span<std::uint8_t> buffer) {
    buffer[5] = 1;  // states 256 bytes
    return buffer.size() + 100;
  });
  EXPECT_THAT(answer, SizeIs(256));
}

}  // namespace
}  // namespace zt::shared::storage

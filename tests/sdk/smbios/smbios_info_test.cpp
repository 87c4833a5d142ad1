#include "zt/shared/smbios/smbios_info.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/smbios_table.h"

namespace zt::shared::smbios {
namespace {

Bytes Texts(std::initializer_list<std::string_view> texts) {
  Bytes bytes;
  for (const std::string_view text : texts) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back(0);
  }
  if (bytes.empty()) bytes.push_back(0);
  bytes.push_back(0);
  return bytes;
}

// A structure with `fields` after its header of four bytes.
Bytes Structure(std::uint8_t type, const Bytes& fields, const Bytes& texts) {
  return Bytes{type, static_cast<std::uint8_t>(4 + fields.size()), 0, 1} + fields + texts;
}

const Bytes kBios = Structure(0, {1, 2, 0, 0, 0, 0}, Texts({"Maker", "1.0"}));
const Bytes kSystem = Structure(1, {1, 2, 3, 4}, Texts({"Maker", "Model", "Rev", "5CG0000001"}));
const Bytes kEnd = Structure(127, {}, Texts({}));

TypeSysInfo Read(const Bytes& table) {
  FixedReader reader(table);
  return SMBiosInfo(&reader).GetTypeSysInfo();
}

void ExpectNoTexts(const TypeSysInfo& info) {
  EXPECT_EQ(info.manufacturer, std::nullopt);
  EXPECT_EQ(info.product_name, std::nullopt);
  EXPECT_EQ(info.version, std::nullopt);
  EXPECT_EQ(info.serial_number, std::nullopt);
}

TEST(SmbiosInfoTest, ReadsTheTextsOfTheSystemStructure) {
  const TypeSysInfo info = Read(Table(kBios + kSystem + kEnd));
  EXPECT_EQ(info.manufacturer, "Maker");
  EXPECT_EQ(info.product_name, "Model");
  EXPECT_EQ(info.version, "Rev");
  EXPECT_EQ(info.serial_number, "5CG0000001");
}

TEST(SmbiosInfoTest, TheTableIsReadOnce) {
  FixedReader reader(Table(kSystem));
  const SMBiosInfo info(&reader);
  EXPECT_EQ(info.GetTypeSysInfo().serial_number, "5CG0000001");
  EXPECT_EQ(info.GetTypeSysInfo().serial_number, "5CG0000001");
  EXPECT_EQ(reader.reads, 1);
}

TEST(SmbiosInfoTest, TheFirstSystemStructureCounts) {
  const Bytes second = Structure(1, {0, 0, 0, 1}, Texts({"SECOND"}));
  EXPECT_EQ(Read(Table(kSystem + second + kEnd)).serial_number, "5CG0000001");
}

TEST(SmbiosInfoTest, TextsAreFoundByTheirNumberNotTheirOrder) {
  const TypeSysInfo info = Read(Table(Structure(1, {2, 2, 0, 1}, Texts({"SN", "Both"}))));
  EXPECT_EQ(info.manufacturer, "Both");
  EXPECT_EQ(info.product_name, "Both");
  EXPECT_EQ(info.version, std::nullopt);
  EXPECT_EQ(info.serial_number, "SN");
}

TEST(SmbiosInfoTest, AStructureWithoutTextsDoesNotHideTheNextOne) {
  EXPECT_EQ(Read(Table(Structure(32, {0, 0, 0}, Texts({})) + kSystem)).serial_number, "5CG0000001");
}

TEST(SmbiosInfoTest, AnEmptyTextIsEmptyNotAbsent) {
  EXPECT_EQ(Read(Table(Structure(1, {0, 0, 0, 1}, Texts({""})))).serial_number, "");
}

TEST(SmbiosInfoTest, TextNumberZeroIsAbsent) {
  EXPECT_EQ(Read(Table(Structure(1, {1, 1, 1, 0}, Texts({"Maker"})))).serial_number, std::nullopt);
}

TEST(SmbiosInfoTest, ATextNumberBeyondTheSetIsAbsent) {
  const Bytes broken = Structure(1, {1, 0, 3, 255}, Texts({"Maker", "Model"}));
  const TypeSysInfo info = Read(Table(broken + kEnd));
  EXPECT_EQ(info.manufacturer, "Maker");
  EXPECT_EQ(info.version, std::nullopt);
  EXPECT_EQ(info.serial_number, std::nullopt);
}

TEST(SmbiosInfoTest, ATextNumberBeyondTheSetDoesNotReachTheNextStructure) {
  const Bytes next = Structure(2, {1, 0, 0, 0}, Texts({"BOARD"}));
  EXPECT_EQ(Read(Table(Structure(1, {0, 0, 0, 3}, Texts({"Maker", "Model"})) + next)).serial_number, std::nullopt);
}

TEST(SmbiosInfoTest, AnEmptyTableHasNoTexts) {
  ExpectNoTexts(Read({}));
}

TEST(SmbiosInfoTest, ATableOfNoStructuresHasNoTexts) {
  ExpectNoTexts(Read(Table({})));
}

TEST(SmbiosInfoTest, ATruncatedHeaderHasNoTexts) {
  const Bytes table = Table(kSystem);
  for (std::size_t size = 0; size < 8; ++size) {
    ExpectNoTexts(Read(Bytes(table.begin(), table.begin() + static_cast<std::ptrdiff_t>(size))));
  }
}

TEST(SmbiosInfoTest, ALengthBeyondTheDataReadsWhatIsThere) {
  EXPECT_EQ(Read(Header(kSystem.size() + 100) + kSystem).serial_number, "5CG0000001");
  EXPECT_EQ(Read(Header(0xFFFFFFFFU) + kSystem).serial_number, "5CG0000001");
}

TEST(SmbiosInfoTest, ALengthShortOfTheDataHidesTheRest) {
  ExpectNoTexts(Read(Header(kBios.size()) + kBios + kSystem));
}

TEST(SmbiosInfoTest, AStructureShorterThanItsOwnHeaderEndsTheReading) {
  for (std::uint8_t length = 0; length < 4; ++length) {
    ExpectNoTexts(Read(Table(Bytes{2, length, 0, 1, 0, 0} + kSystem)));
  }
}

TEST(SmbiosInfoTest, AStructureThatReachesBeyondTheDataEndsTheReading) {
  ExpectNoTexts(Read(Table(Bytes{1, 200, 0, 1, 0, 0, 0, 1, 'S', 'N', 0, 0})));
}

TEST(SmbiosInfoTest, ASystemStructureTooShortForASerialHasNone) {
  // The byte after the structure would do for a text number.
  const TypeSysInfo info = Read(Table(Structure(1, {2, 2, 2}, Texts({"\x02", "Model"})) + kEnd));
  EXPECT_EQ(info.manufacturer, "Model");
  EXPECT_EQ(info.version, "Model");
  EXPECT_EQ(info.serial_number, std::nullopt);
}

TEST(SmbiosInfoTest, ATextSetWithoutItsLastZeroIsReadToTheEnd) {
  Bytes structures = kSystem;
  structures.pop_back();
  EXPECT_EQ(Read(Table(structures)).serial_number, "5CG0000001");
}

TEST(SmbiosInfoTest, ATextThatBreaksOffIsAbsent) {
  Bytes structures = kSystem;
  structures.resize(structures.size() - 3);
  const TypeSysInfo info = Read(Table(structures));
  EXPECT_EQ(info.version, "Rev");
  EXPECT_EQ(info.serial_number, std::nullopt);
}

TEST(SmbiosInfoTest, ASystemStructureWithoutATextSetHasNoTexts) {
  ExpectNoTexts(Read(Table(Bytes{1, 8, 0, 1, 1, 2, 3, 4})));
}

TEST(SmbiosInfoTest, NothingIsReadBehindTheEndOfTheTable) {
  ExpectNoTexts(Read(Table(kBios + kEnd + kSystem)));
}

TEST(SmbiosInfoTest, EveryTableCutShortIsReadWithoutHarm) {
  const Bytes table = Table(kBios + kSystem + kEnd);
  for (std::size_t size = 0; size <= table.size(); ++size) {
    const TypeSysInfo info = Read(Bytes(table.begin(), table.begin() + static_cast<std::ptrdiff_t>(size)));
    EXPECT_EQ(info.serial_number.value_or("5CG0000001"), "5CG0000001") << "cut to " << size;
  }
}

TEST(SmbiosInfoTest, EveryWrongByteIsReadWithoutHarm) {
  const Bytes table = Table(kBios + kSystem + kEnd);
  for (std::size_t place = 0; place < table.size(); ++place) {
    for (const std::uint8_t wrong : Bytes{0x00, 0x01, 0x03, 0x7F, 0x80, 0xFF}) {
      Bytes broken = table;
      broken[place] = wrong;
      const TypeSysInfo info = Read(broken);
      EXPECT_LT(info.serial_number.value_or("").size(), table.size());
    }
  }
}

}  // namespace
}  // namespace zt::shared::smbios

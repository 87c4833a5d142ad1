#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/src/collector/stored_samples_fixture.h"

namespace zt::telemetry::collector::performancesamples {
namespace {

using testing::SizeIs;

constexpr uid_t kAdministrator = 0;
constexpr uid_t kNobody = 65534;

// A file that the process may read and not write. An administrator may write anything: such a one is nobody meanwhile.
class ReadOnly {
 public:
  explicit ReadOnly(const std::filesystem::path& file) : folder_(file.parent_path()) {
    using std::filesystem::perms;
    const perms everyone_reads = perms::owner_read | perms::group_read | perms::others_read;
    const perms everyone_enters = perms::owner_exec | perms::group_exec | perms::others_exec;
    std::filesystem::permissions(file, everyone_reads);
    std::filesystem::permissions(folder_, everyone_reads | everyone_enters);
    if (geteuid() == kAdministrator) BecomeUser(kNobody);
  }
  ~ReadOnly() {
    if (getuid() == kAdministrator) BecomeUser(kAdministrator);
    std::filesystem::permissions(folder_, std::filesystem::perms::owner_all);
  }
  ReadOnly(const ReadOnly&) = delete;
  ReadOnly& operator=(const ReadOnly&) = delete;

 private:
  static void BecomeUser(uid_t user) { EXPECT_EQ(seteuid(user), 0); }

  std::filesystem::path folder_;
};

class ReadOnlyFileTest : public StoredSamplesTest {};

TEST_F(ReadOnlyFileTest, AReadOnlyFileIsSummarisedInEveryCycle) {
  auto store = MakeStore();
  store.AddThermal("2026-03-07T10:00:30.000Z");
  store.AddNetwork("2026-03-07T10:00:30.000Z");
  store.Close();
  const ReadOnly file(folder_.Path() / "ssm.db");
  ASSERT_FALSE(std::ofstream(folder_.Path() / "ssm.db", std::ios::app).is_open());
  for (int cycle = 0; cycle < 2; ++cycle) {
    Cycle();
    EXPECT_THAT(Thermal(), SizeIs(1));
    EXPECT_THAT(Network(), SizeIs(1));
  }
}

}  // namespace
}  // namespace zt::telemetry::collector::performancesamples

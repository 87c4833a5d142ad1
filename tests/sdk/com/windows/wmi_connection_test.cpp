#include "zt/com/wmi_connection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

#include "support/status_codes.h"
#include "support/windows/com_thread.h"
#include "support/windows/counted_connection.h"
#include "support/wmi_namespace.h"

namespace zt::tests {
namespace {

using com::WmiConnection;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(WmiConnectionTest, IsAttemptedWhenItIsFirstNeeded) {
  CountedConnection wmi;
  WmiConnection connection(tests::kWmiNamespace, wmi.AsConnect());
  EXPECT_THAT(wmi.attempts, IsEmpty());
  EXPECT_EQ(connection.Ensure(), S_OK);
  EXPECT_THAT(wmi.attempts, ElementsAre(tests::kWmiNamespace));
  EXPECT_EQ(&connection.Services(), wmi.services.Get());
}

TEST(WmiConnectionTest, IsMadeOnce) {
  CountedConnection wmi;
  WmiConnection connection(tests::kWmiNamespace, wmi.AsConnect());
  for (int i = 0; i < 3; ++i) EXPECT_EQ(connection.Ensure(), S_OK);
  EXPECT_THAT(wmi.attempts, SizeIs(1));
}

TEST(WmiConnectionTest, AFailureIsKeptAndNotAttemptedAgain) {
  CountedConnection wmi;
  wmi.status = tests::kServerUnavailable;
  WmiConnection connection(tests::kWmiNamespace, wmi.AsConnect());
  for (int i = 0; i < 3; ++i) EXPECT_EQ(connection.Ensure(), tests::kServerUnavailable);
  EXPECT_THAT(wmi.attempts, SizeIs(1));
}

TEST(WmiConnectionTest, JoinsComForItsOwnLifeOnly) {
  OnFreshThread([] {
    {
      CountedConnection wmi;
      WmiConnection connection(tests::kWmiNamespace, wmi.AsConnect());
      EXPECT_EQ(CurrentApartment(), std::nullopt);
      connection.Ensure();
      EXPECT_EQ(CurrentApartment(), APTTYPE_MTA);
    }
    EXPECT_EQ(CurrentApartment(), std::nullopt);
  });
}

}  // namespace
}  // namespace zt::tests

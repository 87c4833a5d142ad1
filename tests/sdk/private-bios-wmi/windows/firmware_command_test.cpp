#include "sdk/private-bios-wmi/windows/firmware_command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <string>

#include "base/time_limit.h"
#include "support/status_codes.h"
#include "support/windows/fake_services.h"
#include "zt/com/object_gathering.h"

namespace zt::tests {
namespace {

using base::kTimedOut;
using com::ComPtr;
using shared::ztbios::FirmwareCommand;
using shared::ztbios::FirmwareReply;
using shared::ztbios::RunFirmwareCommand;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Bytes = std::vector<std::uint8_t>;

void SetBytes(FakeClassObject& object, const std::wstring& name, const Bytes& bytes) {
  VARIANT* value = object.Property(name);
  value->parray = ::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  std::copy(bytes.begin(), bytes.end(), static_cast<std::uint8_t*>(value->parray->pvData));
  value->vt = VT_ARRAY | VT_UI1;
}

class FirmwareCommandTest : public ::testing::Test {
 protected:
  FirmwareCommandTest() {
    ComPtr<FakeClassObject> instance = MakeFake<FakeClassObject>();
    instance->SetText(L"__RELPATH", L"ZTBiosInterface.InstanceName=\"ACPI\\\\PNP0C14\"");
    services_->instances->answers = {{WBEM_S_FALSE, {instance}}};
    services_->class_object->method_parameters = MakeFake<FakeClassObject>();
    services_->method_result->SetNumber(L"ReturnCode", 0);
    SetBytes(*services_->method_result.Get(), L"OutputData", {2, 55});
  }

  HRESULT Run(FirmwareReply& reply) { return RunFirmwareCommand(*services_.Get(), {1, 40, input_, 128}, reply); }

  // The status of a command that fails; checks that the reply stays as it was.
  HRESULT Failure() {
    FirmwareReply reply{77, {7, 7}};
    const HRESULT status = Run(reply);
    EXPECT_EQ(reply.return_code, 77U);
    EXPECT_THAT(reply.output, ElementsAre(7, 7));
    return status;
  }

  FirmwareReply Success() {
    FirmwareReply reply;
    EXPECT_EQ(Run(reply), S_OK);
    return reply;
  }

  // What the method was given.
  com::Variant& Given(const std::wstring& name) {
    static com::Variant value;
    EXPECT_EQ(services_->given_parameters->Get(name.c_str(), 0, value.Receive(), nullptr, nullptr), S_OK);
    return value;
  }
  LONG GivenNumber(const std::wstring& name) {
    EXPECT_EQ(Given(name).Type(), VT_I4);
    return Given(name).Get().lVal;
  }
  Bytes GivenBytes(const std::wstring& name) {
    const com::Variant& value = Given(name);
    EXPECT_EQ(value.Type(), VT_ARRAY | VT_UI1);
    const SAFEARRAY* array = value.Get().parray;
    const auto* first = static_cast<const std::uint8_t*>(array->pvData);
    return {first, first + array->rgsabound[0].cElements};
  }

  Bytes input_ = {9, 0, 0, 0};
  ComPtr<FakeServices> services_ = MakeFake<FakeServices>();
};

TEST_F(FirmwareCommandTest, TheReplyHasTheFirmwaresCodeAndBytes) {
  services_->method_result->SetNumber(L"ReturnCode", 3);
  const FirmwareReply reply = Success();
  EXPECT_EQ(reply.return_code, 3U);
  EXPECT_THAT(reply.output, ElementsAre(2, 55));
}

TEST_F(FirmwareCommandTest, TheMethodOfTheOneInstanceIsCalled) {
  Success();
  EXPECT_EQ(services_->asked_instances, L"ZTBiosInterface");
  EXPECT_EQ(services_->asked_class, L"ZTBiosInterface");
  EXPECT_EQ(services_->class_object->asked_method, L"ExecuteCommand");
  EXPECT_EQ(services_->called_path, L"ZTBiosInterface.InstanceName=\"ACPI\\\\PNP0C14\"");
  EXPECT_EQ(services_->called_method, L"ExecuteCommand");
}

TEST_F(FirmwareCommandTest, TheMethodGetsTheWholeCommand) {
  Success();
  EXPECT_EQ(GivenNumber(L"Command"), 1);
  EXPECT_EQ(GivenNumber(L"CommandType"), 40);
  EXPECT_EQ(GivenNumber(L"InputSize"), 4);
  EXPECT_THAT(GivenBytes(L"InputData"), ElementsAre(9, 0, 0, 0));
  EXPECT_EQ(GivenNumber(L"OutputSize"), 128);
}

TEST_F(FirmwareCommandTest, EveryByteOfTheInputArrives) {
  input_.resize(256);
  std::iota(input_.begin(), input_.end(), std::uint8_t{0});
  Success();
  EXPECT_EQ(GivenBytes(L"InputData"), input_);
}

TEST_F(FirmwareCommandTest, ACommandWithoutInputSendsAnEmptyArray) {
  input_.clear();
  Success();
  EXPECT_EQ(GivenNumber(L"InputSize"), 0);
  EXPECT_THAT(GivenBytes(L"InputData"), IsEmpty());
}

TEST_F(FirmwareCommandTest, ACommandOfAllBitsKeepsThem) {
  FirmwareReply reply;
  EXPECT_EQ(RunFirmwareCommand(*services_.Get(), {0xFFFFFFFF, 0x80000000, input_, 0}, reply), S_OK);
  EXPECT_EQ(static_cast<std::uint32_t>(GivenNumber(L"Command")), 0xFFFFFFFF);
  EXPECT_EQ(static_cast<std::uint32_t>(GivenNumber(L"CommandType")), 0x80000000);
}

TEST_F(FirmwareCommandTest, AReturnCodeOfAllBitsKeepsThem) {
  services_->method_result->SetNumber(L"ReturnCode", -1);
  EXPECT_EQ(Success().return_code, 0xFFFFFFFF);
}

TEST_F(FirmwareCommandTest, AReplyWithoutDataIsEmpty) {
  services_->method_result->Property(L"OutputData")->vt = VT_NULL;
  EXPECT_THAT(Success().output, IsEmpty());
}

TEST_F(FirmwareCommandTest, AReplyThatComesLaterIsWaitedForWithALimit) {
  services_->pending_method = MakeFake<FakeCallResult>();
  services_->pending_method->object = services_->method_result;
  EXPECT_THAT(Success().output, ElementsAre(2, 55));
  EXPECT_EQ(services_->pending_method->timeout_ms, 5'000);
}

TEST_F(FirmwareCommandTest, AReplyThatNeverComesTimesOut) {
  services_->pending_method = MakeFake<FakeCallResult>();
  services_->pending_method->status = WBEM_S_TIMEDOUT;
  EXPECT_EQ(Failure(), kTimedOut);
}

TEST_F(FirmwareCommandTest, AFailureThatComesLaterIsTheStatus) {
  services_->pending_method = MakeFake<FakeCallResult>();
  services_->pending_method->status = tests::kAccessDenied;
  EXPECT_EQ(Failure(), tests::kAccessDenied);
}

TEST_F(FirmwareCommandTest, AResultWithoutAnObjectFails) {
  services_->pending_method = MakeFake<FakeCallResult>();
  EXPECT_EQ(Failure(), tests::kNotFound);
}

TEST_F(FirmwareCommandTest, WithoutAnInstanceTheCommandFails) {
  services_->instances->answers.clear();
  EXPECT_EQ(Failure(), tests::kNotFound);
  EXPECT_EQ(services_->called_method, L"");
}

TEST_F(FirmwareCommandTest, AnInstanceWithoutAPathFails) {
  services_->instances->answers.front().objects.front()->Property(L"__RELPATH")->vt = VT_NULL;
  EXPECT_EQ(Failure(), DISP_E_TYPEMISMATCH);
}

TEST_F(FirmwareCommandTest, AFailingEnumerationIsTheStatus) {
  services_->enumeration_status = tests::kAccessDenied;
  EXPECT_EQ(Failure(), tests::kAccessDenied);
}

TEST_F(FirmwareCommandTest, AFailureOfTheFirstInstanceIsTheStatus) {
  services_->instances->answers = {{tests::kAccessDenied, {}}};
  EXPECT_EQ(Failure(), tests::kAccessDenied);
}

TEST_F(FirmwareCommandTest, AMissingClassIsTheStatus) {
  services_->class_status = tests::kNotFound;
  EXPECT_EQ(Failure(), tests::kNotFound);
}

TEST_F(FirmwareCommandTest, AMissingMethodIsTheStatus) {
  services_->class_object->method_status = tests::kNotFound;
  EXPECT_EQ(Failure(), tests::kNotFound);
}

TEST_F(FirmwareCommandTest, AMethodWithoutParametersFails) {
  services_->class_object->method_parameters = nullptr;
  EXPECT_LT(Failure(), 0);
  EXPECT_EQ(services_->called_method, L"");
}

TEST_F(FirmwareCommandTest, ARefusedParameterIsTheStatus) {
  services_->class_object->method_parameters->put_status = tests::kAccessDenied;
  EXPECT_EQ(Failure(), tests::kAccessDenied);
  EXPECT_EQ(services_->called_method, L"");
}

TEST_F(FirmwareCommandTest, AFailingMethodIsTheStatus) {
  services_->method_status = tests::kAccessDenied;
  EXPECT_EQ(Failure(), tests::kAccessDenied);
}

TEST_F(FirmwareCommandTest, AReplyWithoutACodeFails) {
  services_->method_result->Remove(L"ReturnCode");
  EXPECT_EQ(Failure(), tests::kNotFound);
}

TEST_F(FirmwareCommandTest, ACodeThatIsNoNumberFails) {
  services_->method_result->SetText(L"ReturnCode", L"0");
  EXPECT_EQ(Failure(), DISP_E_TYPEMISMATCH);
}

TEST_F(FirmwareCommandTest, AReplyWithoutTheDataPropertyFails) {
  services_->method_result->Remove(L"OutputData");
  EXPECT_EQ(Failure(), tests::kNotFound);
}

TEST_F(FirmwareCommandTest, DataThatIsNoByteArrayFails) {
  services_->method_result->SetText(L"OutputData", L"2,55");
  EXPECT_EQ(Failure(), DISP_E_TYPEMISMATCH);
}

}  // namespace
}  // namespace zt::tests

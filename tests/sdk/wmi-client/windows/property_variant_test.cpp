#include "sdk/wmi-client/windows/property_variant.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "variant_values.h"
#include "zt/shared/wmi/wmi_status.h"

namespace zt::shared::wmi {
namespace {

// What a VARIANT of `type` becomes; `fill` writes its value.
template <typename Fill>
WmiValue Converted(VARTYPE type, const Fill& fill) {
  com::Variant variant;
  VARIANT* fields = variant.Receive();
  fields->vt = type;
  fill(*fields);
  EXPECT_EQ(Normalise(variant.Get()), S_OK);
  return ValueOf(variant.Get());
}

WmiValue ConvertedEmpty(VARTYPE type) {
  return Converted(type, [](VARIANT&) {});
}

TEST(PropertyVariantTest, NothingAndNullStayApart) {
  EXPECT_EQ(ConvertedEmpty(VT_EMPTY), WmiValue(std::monostate()));
  EXPECT_EQ(ConvertedEmpty(VT_NULL), WmiValue(Null()));
}

TEST(PropertyVariantTest, ABooleanIsTrueUnlessAllBitsAreClear) {
  EXPECT_EQ(Converted(VT_BOOL, [](VARIANT& to) { to.boolVal = VARIANT_TRUE; }), WmiValue(true));
  EXPECT_EQ(Converted(VT_BOOL, [](VARIANT& to) { to.boolVal = 1; }), WmiValue(true));
  EXPECT_EQ(Converted(VT_BOOL, [](VARIANT& to) { to.boolVal = VARIANT_FALSE; }), WmiValue(false));
}

TEST(PropertyVariantTest, SmallIntegersAreWidenedWithTheirSign) {
  EXPECT_EQ(Converted(VT_I1, [](VARIANT& to) { to.cVal = static_cast<char>(0x80); }), WmiValue(std::int32_t{-128}));
  EXPECT_EQ(Converted(VT_UI1, [](VARIANT& to) { to.bVal = 255; }), WmiValue(std::int32_t{255}));
  EXPECT_EQ(Converted(VT_I2, [](VARIANT& to) { to.iVal = -32768; }), WmiValue(std::int32_t{-32768}));
  EXPECT_EQ(Converted(VT_UI2, [](VARIANT& to) { to.uiVal = 65535; }), WmiValue(std::int32_t{65535}));
}

TEST(PropertyVariantTest, IntegersOf32BitsKeepTheirSign) {
  EXPECT_EQ(Converted(VT_I4, [](VARIANT& to) { to.lVal = -1; }), WmiValue(std::int32_t{-1}));
  EXPECT_EQ(Converted(VT_INT, [](VARIANT& to) { to.intVal = -1; }), WmiValue(std::int32_t{-1}));
  EXPECT_EQ(Converted(VT_UI4, [](VARIANT& to) { to.ulVal = 0xFFFFFFFF; }), WmiValue(std::uint32_t{0xFFFFFFFF}));
  EXPECT_EQ(Converted(VT_UINT, [](VARIANT& to) { to.uintVal = 0xFFFFFFFF; }), WmiValue(std::uint32_t{0xFFFFFFFF}));
}

TEST(PropertyVariantTest, AnIntegerOf64BitsStaysWhole) {
  constexpr std::uint64_t kAll = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(Converted(VT_UI8, [](VARIANT& to) { to.ullVal = kAll; }), WmiValue(kAll));
}

TEST(PropertyVariantTest, RealNumbersKeepTheirWidth) {
  EXPECT_EQ(Converted(VT_R4, [](VARIANT& to) { to.fltVal = 2.5F; }), WmiValue(2.5F));
  EXPECT_EQ(Converted(VT_R8, [](VARIANT& to) { to.dblVal = 2.5; }), WmiValue(2.5));
}

TEST(PropertyVariantTest, ATextIsCopiedWhole) {
  const std::wstring text(L"a\0b", 3);
  const auto fill = [&](VARIANT& to) { to.bstrVal = ::SysAllocStringLen(text.data(), 3); };
  EXPECT_EQ(Converted(VT_BSTR, fill), WmiValue(text));
}

TEST(PropertyVariantTest, ATextOfNullIsEmpty) {
  EXPECT_EQ(Converted(VT_BSTR, [](VARIANT& to) { to.bstrVal = nullptr; }), WmiValue(std::wstring()));
}

TEST(PropertyVariantTest, WhatCannotBeHeldIsATypeMismatch) {
  for (const VARTYPE type : {VT_I8, VT_DATE, VT_CY, VT_ERROR, VT_UNKNOWN, VT_DISPATCH}) {
    com::Variant variant;
    variant.Receive()->vt = type;
    EXPECT_EQ(Normalise(variant.Get()), kTypeMismatch) << type;
    EXPECT_EQ(variant.Type(), type);
  }
}

TEST(PropertyVariantTest, AnArrayIsATypeMismatch) {
  com::Variant variant;
  VARIANT* fields = variant.Receive();
  fields->parray = ::SafeArrayCreateVector(VT_BSTR, 0, 2);
  fields->vt = VT_ARRAY | VT_BSTR;
  EXPECT_EQ(Normalise(variant.Get()), kTypeMismatch);
  EXPECT_EQ(variant.Type(), VT_ARRAY | VT_BSTR);
}

TEST(PropertyVariantTest, EveryValueGoesBothWays) {
  const WmiValue values[] = {std::monostate(),         Null(),           true, false, std::int32_t{-5},
                             std::uint32_t{5},         std::uint64_t{5}, 2.5F, 2.5,   std::wstring(L"text"),
                             std::wstring(L"a\0b", 3), std::wstring()};
  for (const WmiValue& value : values) {
    com::Variant variant;
    ToVariant(value, variant);
    ASSERT_EQ(Normalise(variant.Get()), S_OK);
    EXPECT_EQ(ValueOf(variant.Get()), value) << "alternative " << value.index();
  }
}

}  // namespace
}  // namespace zt::shared::wmi

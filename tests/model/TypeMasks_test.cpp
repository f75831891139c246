#include "phonepim/model/TypeMasks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "phonepim/model/CCustomType.h"
#include "phonepim/model/CPostalAddress.h"

namespace phonepim {
namespace {

struct MaskCase {
  const char* name;
  std::uint32_t value;
  std::uint32_t expected;
};

// The phones, the vCard writer and the synchronisation records all depend on
// these exact numbers.
const MaskCase kMasks[] = {
    {"Pref", kTypePref, 0x10000000},
    {"TelephoneHome", kTelephoneTypeHome, 0x1},
    {"TelephoneWork", kTelephoneTypeWork, 0x2},
    {"TelephoneVoice", kTelephoneTypeVoice, 0x4},
    {"TelephoneFax", kTelephoneTypeFax, 0x8},
    {"TelephoneMsg", kTelephoneTypeMsg, 0x10},
    {"TelephoneCell", kTelephoneTypeCell, 0x20},
    {"TelephonePager", kTelephoneTypePager, 0x40},
    {"TelephoneBBS", kTelephoneTypeBBS, 0x80},
    {"TelephoneModem", kTelephoneTypeModem, 0x100},
    {"TelephoneCar", kTelephoneTypeCar, 0x200},
    {"TelephoneISDN", kTelephoneTypeISDN, 0x400},
    {"TelephoneVideo", kTelephoneTypeVideo, 0x800},
    {"TelephoneInternet", kTelephoneTypeInternet, 0x1000},
    {"TelephoneDTMF", kTelephoneTypeDTMF, 0x2000},
    {"TelephonePTT", kTelephoneTypePTT, 0x4000},
    {"TelephoneEtc", kTelephoneTypeEtc, 0x8000},
    {"TelephonePref", kTelephoneTypePref, 0x10000000},
    {"TelephoneMain", kTelephoneTypeMain, 0x10000},
    {"TelephoneCallback", kTelephoneTypeCallback, 0x40000},
    {"TelephoneAssistant", kTelephoneTypeAssistant, 0x80000},
    {"TelephoneCustom", kTelephoneTypeCustom, 0x100000},
    {"EmailHome", kEmailTypeHome, 0x1},
    {"EmailWork", kEmailTypeWork, 0x2},
    {"EmailCell", kEmailTypeCell, 0x4},
    {"EmailEtc", kEmailTypeEtc, 0x8},
    {"EmailCustom", kEmailTypeCustom, 0x10},
    {"EmailPref", kEmailTypePref, 0x10000000},
    {"AddressHome", kAddressTypeHome, 0x1},
    {"AddressWork", kAddressTypeWork, 0x2},
    {"AddressEtc", kAddressTypeEtc, 0x4},
    {"AddressCell", kAddressTypeCell, 0x8},
    {"AddressCustom", kAddressTypeCustom, 0x10},
    {"AddressPref", kAddressTypePref, 0x10000000},
    {"URLHome", kURLTypeHome, 0x1},
    {"URLWork", kURLTypeWork, 0x2},
    {"URLPref", kURLTypePref, 0x10000000},
    {"MessengerAIM", kMessengerTypeAIM, 0x1},
    {"MessengerWindowsLive", kMessengerTypeWindowsLive, 0x2},
    {"MessengerYahoo", kMessengerTypeYahoo, 0x4},
    {"MessengerSkype", kMessengerTypeSkype, 0x8},
    {"MessengerQQ", kMessengerTypeQQ, 0x10},
    {"MessengerGoogleTalk", kMessengerTypeGoogleTalk, 0x20},
    {"MessengerICQ", kMessengerTypeICQ, 0x40},
    {"MessengerJabber", kMessengerTypeJabber, 0x80},
    {"OrganizationHome", kOrganizationTypeHome, 0x1},
    {"OrganizationWork", kOrganizationTypeWork, 0x2},
    {"OrganizationEtc", kOrganizationTypeEtc, 0x8},
    {"CustomTypeBase", kCustomTypeBase, 0x10000000},
    {"FirstCustomType", kFirstCustomType, 0x10000001},
    {"PostalAddressMax", kPostalAddressMax, 8},
};

class type_mask : public ::testing::TestWithParam<MaskCase> {};

TEST_P(type_mask, has_the_value_phones_use) {
  EXPECT_EQ(GetParam().value, GetParam().expected) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(all, type_mask, ::testing::ValuesIn(kMasks),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace phonepim

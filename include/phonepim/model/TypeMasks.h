// The type masks of the contact elements. Each bit stands for one vCard type
// parameter word; several bits may be set at once. The vCard reader and
// writer and the synchronisation records all test and set these bits, so
// they are defined here and nowhere else.
//
// A type field may instead hold a custom-label code (0x10000001 upward, see
// CCustomType.h). Those codes always carry the preferred bit, so code that
// tests for kTypePref must first rule out a custom label.
#pragma once

#include <cstdint>

namespace phonepim {

/// PREF: the preferred element of its kind. The same bit in every mask.
inline constexpr std::uint32_t kTypePref = 0x10000000;

// --- Telephone numbers (CTelephoneNumber) ---

inline constexpr std::uint32_t kTelephoneTypeHome = 0x1;        ///< HOME
inline constexpr std::uint32_t kTelephoneTypeWork = 0x2;        ///< WORK
inline constexpr std::uint32_t kTelephoneTypeVoice = 0x4;       ///< VOICE
inline constexpr std::uint32_t kTelephoneTypeFax = 0x8;         ///< FAX
inline constexpr std::uint32_t kTelephoneTypeMsg = 0x10;        ///< MSG
inline constexpr std::uint32_t kTelephoneTypeCell = 0x20;       ///< CELL
inline constexpr std::uint32_t kTelephoneTypePager = 0x40;      ///< PAGER
inline constexpr std::uint32_t kTelephoneTypeBBS = 0x80;        ///< BBS
inline constexpr std::uint32_t kTelephoneTypeModem = 0x100;     ///< MODEM
inline constexpr std::uint32_t kTelephoneTypeCar = 0x200;       ///< CAR
inline constexpr std::uint32_t kTelephoneTypeISDN = 0x400;      ///< ISDN
inline constexpr std::uint32_t kTelephoneTypeVideo = 0x800;     ///< VIDEO
inline constexpr std::uint32_t kTelephoneTypeInternet = 0x1000; ///< INTERNET
inline constexpr std::uint32_t kTelephoneTypeDTMF = 0x2000;     ///< DTMF
inline constexpr std::uint32_t kTelephoneTypePTT = 0x4000;      ///< PTT
inline constexpr std::uint32_t kTelephoneTypeEtc = 0x8000;      ///< X-ETC
inline constexpr std::uint32_t kTelephoneTypePref = kTypePref;  ///< PREF

// Telephone bits beyond the vCard words above. Some phones' exports carry
// them: a number whose whole type is kTelephoneTypeMain is written back as
// "X-CUSTOM(Main)", X-CALLBACK reads as kTelephoneTypeCallback, and an
// "X-CUSTOM(...)" parameter sets kTelephoneTypeCustom with the label text
// kept on the number itself.
inline constexpr std::uint32_t kTelephoneTypeMain = 0x10000;
inline constexpr std::uint32_t kTelephoneTypeCallback = 0x40000;   ///< X-CALLBACK
inline constexpr std::uint32_t kTelephoneTypeAssistant = 0x80000;
inline constexpr std::uint32_t kTelephoneTypeCustom = 0x100000;    ///< X-CUSTOM(...)

// --- E-mail addresses (CEmail) ---

inline constexpr std::uint32_t kEmailTypeHome = 0x1;    ///< HOME
inline constexpr std::uint32_t kEmailTypeWork = 0x2;    ///< WORK
inline constexpr std::uint32_t kEmailTypeCell = 0x4;    ///< CELL
inline constexpr std::uint32_t kEmailTypeEtc = 0x8;     ///< X-ETC
/// The e-mail carries its own custom label ("X-CUSTOM(...)").
inline constexpr std::uint32_t kEmailTypeCustom = 0x10;
inline constexpr std::uint32_t kEmailTypePref = kTypePref;  ///< PREF

// --- Postal addresses (CPostalAddress) ---
// CELL and X-ETC sit on the opposite bits from the e-mail mask. Phones were
// built against these exact values, so the crossing stays.

inline constexpr std::uint32_t kAddressTypeHome = 0x1;  ///< HOME
inline constexpr std::uint32_t kAddressTypeWork = 0x2;  ///< WORK
inline constexpr std::uint32_t kAddressTypeEtc = 0x4;   ///< X-ETC
/// CELL: the address's "mobile" kind, spelled as the phones spell it.
inline constexpr std::uint32_t kAddressTypeCell = 0x8;
/// The address carries its own custom label ("X-CUSTOM(...)").
inline constexpr std::uint32_t kAddressTypeCustom = 0x10;
inline constexpr std::uint32_t kAddressTypePref = kTypePref;  ///< PREF

// --- Web addresses (CURL) ---

inline constexpr std::uint32_t kURLTypeHome = 0x1;  ///< HOME
inline constexpr std::uint32_t kURLTypeWork = 0x2;  ///< WORK
inline constexpr std::uint32_t kURLTypePref = kTypePref;  ///< PREF

// --- Messenger services (CMessengerID) ---
// One service per ID. When several bits are set, writers take the first of
// AIM, GOOGLETALK, ICQ, JABBER, QQ, SKYPE, WINDOWSLIVE, YAHOO.

inline constexpr std::uint32_t kMessengerTypeAIM = 0x1;          ///< AIM
inline constexpr std::uint32_t kMessengerTypeWindowsLive = 0x2;  ///< WINDOWSLIVE
inline constexpr std::uint32_t kMessengerTypeYahoo = 0x4;        ///< YAHOO
inline constexpr std::uint32_t kMessengerTypeSkype = 0x8;        ///< SKYPE
inline constexpr std::uint32_t kMessengerTypeQQ = 0x10;          ///< QQ
inline constexpr std::uint32_t kMessengerTypeGoogleTalk = 0x20;  ///< GOOGLETALK
inline constexpr std::uint32_t kMessengerTypeICQ = 0x40;         ///< ICQ
inline constexpr std::uint32_t kMessengerTypeJabber = 0x80;      ///< JABBER

// --- Organizations (COrganization) ---

inline constexpr std::uint32_t kOrganizationTypeHome = 0x1;  ///< HOME
inline constexpr std::uint32_t kOrganizationTypeWork = 0x2;  ///< WORK
inline constexpr std::uint32_t kOrganizationTypeEtc = 0x8;   ///< X-ETC

}  // namespace phonepim

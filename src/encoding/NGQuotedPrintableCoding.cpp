#include "phonepim/encoding/NGQuotedPrintableCoding.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "phonepim/encoding/Encoding.h"
#include "phonepim/platform/Assert.h"
#include "encoding/QuotedPrintableUTF8.h"
#include "platform/UTF8Decoding.h"
#include "platform/UTF8Encoding.h"

namespace phonepim {
namespace {

// The encoders write upper-case hex only, so the same value always gives
// the same text (the sync side compares written values byte for byte).
constexpr char s_chHexChars[] = "0123456789ABCDEF";

// Hex digit values (either case), -1 for every other byte. A table keeps the
// decoders' inner loops free of range tests.
constexpr std::array<signed char, 256> MakeHexValues() {
  std::array<signed char, 256> table{};
  for (int c = 0; c < 256; ++c) {
    signed char value = -1;
    if (c >= '0' && c <= '9') value = static_cast<signed char>(c - '0');
    if (c >= 'A' && c <= 'F') value = static_cast<signed char>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f') value = static_cast<signed char>(c - 'a' + 10);
    table[static_cast<std::size_t>(c)] = value;
  }
  return table;
}
constexpr std::array<signed char, 256> kHexValues = MakeHexValues();

inline int hexToChar(unsigned char c) { return kHexValues[c]; }

// The byte of an escape "=XY" as one OR of two lookups: the high digit's
// value already shifted, and 0x100 for a byte that is no digit, so that any
// result above 0xFF means "not an escape".
constexpr std::array<std::uint16_t, 256> MakeEscapeDigits(int shift) {
  std::array<std::uint16_t, 256> table{};
  for (std::size_t c = 0; c < 256; ++c) {
    table[c] = kHexValues[c] < 0 ? 0x100 : static_cast<std::uint16_t>(kHexValues[c] << shift);
  }
  return table;
}
constexpr std::array<std::uint16_t, 256> kEscapeHigh = MakeEscapeDigits(4);
constexpr std::array<std::uint16_t, 256> kEscapeLow = MakeEscapeDigits(0);

inline unsigned EscapeByte(const unsigned char* digits) {
  return static_cast<unsigned>(kEscapeHigh[digits[0]] | kEscapeLow[digits[1]]);
}

// Bytes STL_QPEncode and QPEncode2 copy whatever the column: the test is
// made on the byte as a signed char, so every byte from 0x80 up is escaped
// along with the controls, the space, '=' and DEL.
constexpr std::array<bool, 256> MakeAlwaysLiteral() {
  std::array<bool, 256> table{};
  for (int c = 33; c < 127; ++c) table[static_cast<std::size_t>(c)] = c != '=';
  return table;
}
constexpr std::array<bool, 256> kAlwaysLiteral = MakeAlwaysLiteral();

// Bytes NGEncodeQuotedPrintable copies: TAB, LF, CR and the printable ASCII
// range except '=' and '_' (an '_' would read back as a space).
constexpr std::array<bool, 256> MakeHeaderLiteral() {
  std::array<bool, 256> table{};
  table['\t'] = table['\n'] = table['\r'] = true;
  for (int c = 32; c < 127; ++c) table[static_cast<std::size_t>(c)] = true;
  table['='] = table['_'] = false;
  return table;
}
constexpr std::array<bool, 256> kHeaderLiteral = MakeHeaderLiteral();

// What a literal byte decodes to. Phones write '_' for a space in
// quoted-printable (the mail header-word habit), so under the underscore
// rule it reads back as a space.
constexpr std::array<unsigned char, 256> MakeByteMap(bool underscoreIsSpace) {
  std::array<unsigned char, 256> table{};
  for (int c = 0; c < 256; ++c) {
    table[static_cast<std::size_t>(c)] = static_cast<unsigned char>(c);
  }
  if (underscoreIsSpace) table['_'] = ' ';
  return table;
}
constexpr std::array<unsigned char, 256> kIdentityMap = MakeByteMap(false);
constexpr std::array<unsigned char, 256> kUnderscoreAsSpaceMap = MakeByteMap(true);

// The encoders break a line after the byte that takes it past this column,
// so an encoded line carries up to 70 characters before its '='.
constexpr int kMaxColumn = 67;
// TAB (and for QPEncode2 the space) stays literal only below this column, so
// that a line never ends in white space a mail relay could strip; and never
// first on a line after a soft break, where a versit reader would take it for
// folding and drop it.
constexpr int kWhiteSpaceColumn = 64;

inline bool WhiteSpaceStaysLiteral(int column, bool continuation) {
  return column < kWhiteSpaceColumn && !(continuation && column == 0);
}

struct EncodeResult {
  std::size_t written = 0;
  bool fits = true;  // false: the next write would have passed the capacity
};

// The loop shared by STL_QPEncode and QPEncode2. The capacity is checked
// before each byte's output, so a failure stops with nothing written past
// the destination; the caller turns it into the assertion.
EncodeResult EncodeLines(const unsigned char* src, std::size_t nSrcLen, char* dst,
                         std::size_t capacity, unsigned int flags,
                         bool literalSpace) {
  EncodeResult result;
  std::size_t written = 0;
  int column = 0;
  for (std::size_t i = 0; i < nSrcLen; ++i) {
    const unsigned char c = src[i];
    const bool stuffDot = (flags & kQPDotStuffing) != 0 && column == 0 && c == '.';
    const bool literal =
        kAlwaysLiteral[c] ||
        ((c == '\t' || (literalSpace && c == ' ')) && WhiteSpaceStaysLiteral(column, i > 0));
    std::size_t need = (stuffDot ? 1u : 0u) + (literal ? 1u : 3u);
    column += static_cast<int>(need);
    const bool softBreak = column > kMaxColumn && i + 1 < nSrcLen;
    if (softBreak) need += 3;
    if (capacity - written < need) {
      result.written = written;
      result.fits = false;
      return result;
    }
    char* out = dst + written;
    if (stuffDot) *out++ = '.';
    if (literal) {
      *out++ = static_cast<char>(c);
    } else {
      out[0] = '=';
      out[1] = s_chHexChars[c >> 4];
      out[2] = s_chHexChars[c & 0x0F];
      out += 3;
    }
    if (softBreak) {
      out[0] = '=';
      out[1] = '\r';
      out[2] = '\n';
      column = 0;
    }
    written += need;
  }
  if ((flags & kQPFinalSoftBreak) != 0) {
    if (capacity - written < 3) {
      result.written = written;
      result.fits = false;
      return result;
    }
    std::memcpy(dst + written, "=\r\n", 3);
    written += 3;
  }
  result.written = written;
  return result;
}

struct TransferDecodeResult {
  bool ok = false;
  std::size_t length = 0;
};

inline bool IsAsciiAlnum(unsigned char c) {
  return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z');
}

// The decoder shared by STL_QPDecode and QPDecode2. It runs until it has
// consumed src[nSrcLen] too: that byte (the source's NUL) is copied like any
// other and left out of the reported length, so the output comes terminated.
TransferDecodeResult DecodeTransfer(const unsigned char* src, std::size_t nSrcLen,
                                    char* dst, int nEncoding, unsigned int flags) {
  TransferDecodeResult result;
  std::size_t consumed = 0;
  std::size_t written = 0;
  long linePos = -1;
  for (;;) {
    if (consumed > nSrcLen) {
      result.ok = true;
      // Nothing written means no terminator either (only possible when
      // src[nSrcLen] is a line end rather than a NUL).
      result.length = written == 0 ? 0 : written - 1;
      return result;
    }
    unsigned char c = src[consumed++];
    ++linePos;
    if (c == '=') {
      if (consumed < nSrcLen && IsAsciiAlnum(src[consumed])) {
        // Two characters read as strtol would read them in base 16: it
        // stops at the first non-hex character, so "=G1" is a zero byte
        // and "=1G" is 0x01. The second may be src[nSrcLen].
        const unsigned char high = src[consumed];
        unsigned char low = src[consumed + 1];
        // With the vCalendar carriage-return option the phone means a line
        // feed where it wrote "=0D"; the byte goes out as it is, unlike a
        // raw line end.
        if (nEncoding == kEncodingQuotedPrintableCR && high == '0' && low == 'D') {
          low = 'A';
        }
        int value = 0;
        if (hexToChar(high) >= 0) {
          value = hexToChar(high);
          if (hexToChar(low) >= 0) value = value * 16 + hexToChar(low);
        }
        dst[written++] = static_cast<char>(value);
        consumed += 2;
        continue;
      }
      if (consumed < nSrcLen && src[consumed] == '\r' && src[consumed + 1] == '\n') {
        // Soft line break: skip the CR here; the LF goes as a line end.
        ++consumed;
        linePos = -1;
        continue;
      }
      if (consumed <= nSrcLen) return result;
      c = '\0';
    }
    if (c == '\r' || c == '\n') {
      linePos = -1;
      continue;
    }
    if ((flags & kQPDotStuffing) != 0 && c == '.' && linePos == 0) continue;
    dst[written++] = static_cast<char>(c);
  }
}

// The NUL-terminated copy that the decoders' read of src[length] needs.
std::unique_ptr<char[]> TerminatedCopy(const std::uint8_t* bytes, std::size_t length) {
  std::unique_ptr<char[]> copy(new char[length + 1]);
  if (length != 0) std::memcpy(copy.get(), bytes, length);
  copy[length] = '\0';
  return copy;
}

// dataByDecodingQuotedPrintable on borrowed bytes.
std::optional<Bytes> DecodeQuotedPrintableBytes(const std::uint8_t* bytes,
                                                std::size_t length) {
  if (length > std::numeric_limits<unsigned int>::max()) return std::nullopt;
  const auto srcLen = static_cast<unsigned int>(length);
  const std::unique_ptr<char[]> source = TerminatedCopy(bytes, length);
  std::unique_ptr<char[]> buffer(new char[length + 2]);
  const int decoded =
      NGDecodeQuotedPrintableX(source.get(), srcLen, buffer.get(), srcLen, 1);
  if (decoded < 0) return std::nullopt;
  return Bytes(buffer.get(), buffer.get() + decoded);
}

// Largest source an encoder's capacity formula can describe in an int.
constexpr std::size_t kMaxEncodableLength = 600'000'000;

}  // namespace

int QPEncodeGetRequiredLength(int nSrcLen) {
  // Computed wide and wrapped back, as the int formula always did; a
  // wrapped value only weakens the first check, never the write checks.
  const std::int64_t n = nSrcLen;
  const std::int64_t required = ((3 * n) / 68 + n) * 3 + 3;
  return static_cast<int>(static_cast<std::uint32_t>(required));
}

int QPDecodeGetRequiredLength(int nSrcLen) { return nSrcLen; }

int STL_QPEncode(const char* src, unsigned long nSrcLen, char* dst,
                 unsigned long* pnDestLen, unsigned int flags) {
  if (src == nullptr || dst == nullptr || pnDestLen == nullptr) return 0;
  PHONEPIM_ASSERT(*pnDestLen >= static_cast<unsigned long>(static_cast<long>(
                                    QPEncodeGetRequiredLength(static_cast<int>(nSrcLen)))),
                  "*pnDestLen >= QPEncodeGetRequiredLength(nSrcLen)");
  const EncodeResult result =
      EncodeLines(reinterpret_cast<const unsigned char*>(src), nSrcLen, dst, *pnDestLen,
                  flags, /*literalSpace=*/false);
  PHONEPIM_ASSERT(result.fits, "*pnDestLen >= nWritten");
  *pnDestLen = result.written;
  return 1;
}

int QPEncode2(const unsigned char* src, int nSrcLen, char* dst, int* pnDestLen,
              unsigned int flags) {
  if (src == nullptr || dst == nullptr || pnDestLen == nullptr) return 0;
  PHONEPIM_ASSERT(*pnDestLen >= QPEncodeGetRequiredLength(nSrcLen),
                  "*pnDestLen >= QPEncodeGetRequiredLength(nSrcLen)");
  const std::size_t length = nSrcLen < 0 ? 0 : static_cast<std::size_t>(nSrcLen);
  const std::size_t capacity = *pnDestLen < 0 ? 0 : static_cast<std::size_t>(*pnDestLen);
  const EncodeResult result =
      EncodeLines(src, length, dst, capacity, flags, /*literalSpace=*/true);
  PHONEPIM_ASSERT(result.fits, "*pnDestLen >= nWritten");
  *pnDestLen = static_cast<int>(result.written);
  return 1;
}

int STL_QPDecode(const char* src, unsigned long nSrcLen, char* dst,
                 unsigned long* pnDestLen, int nEncoding, unsigned int flags) {
  if (src == nullptr || dst == nullptr || pnDestLen == nullptr) return 0;
  const TransferDecodeResult result = DecodeTransfer(
      reinterpret_cast<const unsigned char*>(src), nSrcLen, dst, nEncoding, flags);
  if (!result.ok) return 0;
  *pnDestLen = result.length;
  return 1;
}

int QPDecode2(const unsigned char* src, int nSrcLen, char* dst, int* pnDestLen,
              int nEncoding, unsigned int flags) {
  if (src == nullptr || dst == nullptr || pnDestLen == nullptr) return 0;
  // A negative length ends the loop before the first read.
  if (nSrcLen < 0) {
    *pnDestLen = 0;
    return 1;
  }
  const TransferDecodeResult result =
      DecodeTransfer(src, static_cast<std::size_t>(nSrcLen), dst, nEncoding, flags);
  if (!result.ok) return 0;
  *pnDestLen = static_cast<int>(result.length);
  return 1;
}

int NGDecodeQuotedPrintableX(const char* src, unsigned int srcLen, char* dst,
                             unsigned int dstLen, signed char underscoreIsSpace) {
  if (srcLen < dstLen) return -1;
  if (srcLen != 0 && (src == nullptr || (dst == nullptr && dstLen != 0))) return -1;
  const auto* in = reinterpret_cast<const unsigned char*>(src);
  const unsigned char* map =
      underscoreIsSpace != 0 ? kUnderscoreAsSpaceMap.data() : kIdentityMap.data();
  unsigned int i = 0;
  unsigned int j = 0;
  while (i < srcLen && j < dstLen) {
    const unsigned char c = in[i];
    if (c != '=') {
      dst[j++] = static_cast<char>(map[c]);
      ++i;
      continue;
    }
    if (srcLen - i < 2) break;
    ++i;
    const unsigned char first = in[i];
    // Reads in[srcLen] when "=X" closes the text: the caller's terminator.
    const unsigned char second = in[i + 1];
    if (first == '\r' || first == '\n') {
      // Soft line break. Any second line-end byte goes too, so "=\n\n"
      // swallows two line ends, as the phones' own decoders do.
      if (second == '\r' || second == '\n') ++i;
    } else {
      const int high = hexToChar(first);
      const int low = hexToChar(second);
      if (high >= 0 && low >= 0) {
        dst[j++] = static_cast<char>(high * 16 + low);
        ++i;
      } else if (dstLen - j >= 2) {
        // Not an escape: keep what follows the '=' as text.
        dst[j++] = static_cast<char>(first);
        dst[j++] = static_cast<char>(second);
        ++i;
      } else {
        break;
      }
    }
    ++i;
  }
  if (i < srcLen) return -1;
  return static_cast<int>(j);
}

namespace {

// The decoding of DecodeQuotedPrintableUTF8 into `out`, which has room for
// `len` units (a byte of text gives at most one). Returns the number of
// units, or -1 when the text needs the general path.
std::ptrdiff_t DecodeQuotedPrintableUTF8Into(const char* text, std::size_t len, char16_t* out,
                                            const unsigned char* literalMap) {
  const auto* p = reinterpret_cast<const unsigned char*>(text);
  const unsigned char* const end = p + len;
  char16_t* d = out;
  bool plain = true;  // false once an escape is not one
  const auto next = [&p, end, &plain, literalMap](unsigned& byte) {
    if (p == end) return false;
    if (*p != '=') {
      byte = literalMap[*p++];
      return true;
    }
    if (end - p < 3 || (byte = EscapeByte(p + 1)) > 0xFF) {
      plain = false;
      return false;
    }
    p += 3;
    return true;
  };
  unsigned lead = 0;
  for (;;) {
    // Runs of plain ASCII (no '=', no '_', no top bit), the bulk of a note,
    // eight bytes at a time: a zero byte of `word` xor '=' (or '_') marks
    // an escape (or a space), a top bit the start of a UTF-8 sequence.
    while (std::endian::native == std::endian::little && end - p >= 8) {
      constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
      constexpr std::uint64_t kHighs = 0x8080808080808080ULL;
      std::uint64_t word;
      std::memcpy(&word, p, 8);
      const std::uint64_t equals = word ^ (kOnes * '=');
      const std::uint64_t underscores = word ^ (kOnes * '_');
      const std::uint64_t stops =
          ((equals - kOnes) & ~equals) | ((underscores - kOnes) & ~underscores) | word;
      // The lowest flagged byte is exact (only bytes above a real stop can
      // be flagged falsely): the run before it is plain.
      const std::uint64_t flagged = stops & kHighs;
      const int run = flagged == 0 ? 8 : std::countr_zero(flagged) / 8;
      utf8::WidenEight(word, d);
      p += run;
      d += run;
      if (run != 8) break;
    }
    if (!next(lead)) break;
    if (lead < 0x80) {
      *d++ = static_cast<char16_t>(lead);
      continue;
    }
    // "=C3=BC": a two-byte character, both bytes escaped, the common case
    // of accented Latin, Greek and Cyrillic names.
    if (lead >= 0xC2 && lead <= 0xDF && end - p >= 3 && p[0] == '=') {
      const unsigned trail = EscapeByte(p + 1);
      if ((trail & 0x1C0) == 0x80) {  // a digit pair, and 80..BF
        *d++ = static_cast<char16_t>(((lead & 0x1F) << 6) | (trail & 0x3F));
        p += 3;
        continue;
      }
    }
    if (!utf8::DecodeSequence(lead, next, d)) return -1;
  }
  return plain ? d - out : -1;
}

}  // namespace

bool DecodeQuotedPrintableUTF8(const char* text, std::size_t len, String* out,
                               bool underscoreIsSpace) {
  const unsigned char* const literalMap =
      underscoreIsSpace ? kUnderscoreAsSpaceMap.data() : kIdentityMap.data();
  // Names and address parts are short, and their encoded form is longer
  // than their text ("M=C3=BCller" is "Müller"): decoded on the stack, a
  // text that fits the string's own buffer costs no allocation.
  constexpr std::size_t kStackUnits = 64;
  if (len <= kStackUnits) {
    char16_t buffer[kStackUnits];
    const std::ptrdiff_t n = DecodeQuotedPrintableUTF8Into(text, len, buffer, literalMap);
    if (n < 0) return false;
    out->assign(buffer, static_cast<std::size_t>(n));  // a scratch text keeps its buffer
    return true;
  }
  out->assign(len, u'\0');
  const std::ptrdiff_t n = DecodeQuotedPrintableUTF8Into(text, len, out->data(), literalMap);
  if (n < 0) return false;
  out->resize(static_cast<std::size_t>(n));
  return true;
}

namespace {

// STL_QPEncode (no flags) of the UTF-8 form of `text` into `first`, which
// has room for the worst case; answers the end. `Char` is the output's
// character: UTF-16 for the model's texts, bytes for a writer's output.
template <class Char>
Char* EncodeQuotedPrintableUTF8Into(std::u16string_view text, Char* const first) {
  Char* d = first;
  int column = 0;
  // STL_QPEncode's soft break: after the byte that takes the line past
  // kMaxColumn, unless it is the last byte.
  const auto breakLineAfter = [&](bool lastByte) {
    if (column <= kMaxColumn || lastByte) return;
    d[0] = '=';
    d[1] = '\r';
    d[2] = '\n';
    d += 3;
    column = 0;
  };
  const char16_t* const units = text.data();
  const std::size_t count = text.size();
  for (std::size_t i = 0; i < count; ++i) {
    const char16_t unit = units[i];
    if (unit < 0x80 && kAlwaysLiteral[unit]) {
      // Most of a text: a run of printable ASCII, copied up to the end of
      // the line (the column is at most kMaxColumn here).
      const std::size_t stop =
          std::min(count, i + static_cast<std::size_t>(kMaxColumn + 1 - column));
      std::size_t j = i;
      do {
        *d++ = static_cast<Char>(units[j++]);
      } while (j < stop && units[j] < 0x80 && kAlwaysLiteral[units[j]]);
      column += static_cast<int>(j - i);
      i = j - 1;
      breakLineAfter(j == count);
      continue;
    }
    if (unit < 0x80 && unit != '\t') {
      // The spaces between the words, and the odd control character.
      d[0] = '=';
      d[1] = static_cast<Char>(s_chHexChars[unit >> 4]);
      d[2] = static_cast<Char>(s_chHexChars[unit & 0x0F]);
      d += 3;
      column += 3;
      breakLineAfter(i + 1 == count);
      continue;
    }
    unsigned char bytes[4];
    const int n = utf8::EncodeCharacter(units, count, &i, bytes);
    const bool lastCharacter = i + 1 == count;
    for (int k = 0; k < n; ++k) {
      // STL_QPEncode's rule for each byte (no dot stuffing, space escaped).
      const unsigned char c = bytes[k];
      const bool literal =
          kAlwaysLiteral[c] || (c == '\t' && WhiteSpaceStaysLiteral(column, d != first));
      if (literal) {
        *d++ = static_cast<Char>(c);
        ++column;
      } else {
        d[0] = '=';
        d[1] = static_cast<Char>(s_chHexChars[c >> 4]);
        d[2] = static_cast<Char>(s_chHexChars[c & 0x0F]);
        d += 3;
        column += 3;
      }
      breakLineAfter(lastCharacter && k + 1 == n);
    }
  }
  return d;
}

// The encoded text in a scratch buffer that keeps its room from value to
// value (one per output type), valid until the next call.
template <class Char>
std::basic_string_view<Char> EncodeQuotedPrintableUTF8InScratch(std::u16string_view text) {
  // Worst case per unit: three bytes (a pair's four stand for two units),
  // each "=XX", and a soft break "=\r\n" every 22 escapes.
  thread_local std::basic_string<Char> scratch;
  const std::size_t room = text.size() * 10 + 3;
  // A long note must not pin its size for the rest of the address book.
  if (scratch.size() > 64 * 1024 && room <= 64 * 1024) std::basic_string<Char>().swap(scratch);
  if (scratch.size() < room) scratch.resize(room);
  const Char* const end = EncodeQuotedPrintableUTF8Into(text, scratch.data());
  return {scratch.data(), static_cast<std::size_t>(end - scratch.data())};
}

}  // namespace

void EncodeQuotedPrintableUTF8(std::u16string_view text, String* out) {
  out->assign(EncodeQuotedPrintableUTF8InScratch<char16_t>(text));
}

void AppendQuotedPrintableUTF8(std::u16string_view text, std::string& out) {
  out.append(EncodeQuotedPrintableUTF8InScratch<char>(text));
}

int NGDecodeQuotedPrintable(const char* src, unsigned int srcLen, char* dst,
                            unsigned int dstLen) {
  return NGDecodeQuotedPrintableX(src, srcLen, dst, dstLen, 1);
}

int NGEncodeQuotedPrintable(const char* src, unsigned int srcLen, char* dst,
                            unsigned int dstLen) {
  if (dstLen < srcLen) return -1;
  if (srcLen != 0 && (src == nullptr || dst == nullptr)) return -1;
  const auto* in = reinterpret_cast<const unsigned char*>(src);
  unsigned int j = 0;
  for (unsigned int i = 0; i < srcLen; ++i) {
    const unsigned char c = in[i];
    if (kHeaderLiteral[c]) {
      if (j == dstLen) return -1;
      dst[j++] = static_cast<char>(c);
    } else {
      if (dstLen - j < 3) return -1;
      dst[j] = '=';
      dst[j + 1] = s_chHexChars[c >> 4];
      dst[j + 2] = s_chHexChars[c & 0x0F];
      j += 3;
    }
  }
  return static_cast<int>(j);
}

std::optional<Bytes> dataByEncodingQuotedPrintable(const Bytes& data) {
  // Beyond this the capacity formula no longer fits an int.
  if (data.size() > kMaxEncodableLength) return std::nullopt;
  unsigned long capacity = static_cast<unsigned long>(
      QPEncodeGetRequiredLength(static_cast<int>(data.size())));
  std::unique_ptr<char[]> buffer(new char[capacity]);
  static const char kEmpty = '\0';
  const char* bytes =
      data.empty() ? &kEmpty : reinterpret_cast<const char*>(data.data());
  if (STL_QPEncode(bytes, data.size(), buffer.get(), &capacity, 0) != 1) {
    return std::nullopt;
  }
  return Bytes(buffer.get(), buffer.get() + capacity);
}

std::optional<Bytes> dataByDecodingQuotedPrintable(const Bytes& data) {
  return DecodeQuotedPrintableBytes(data.data(), data.size());
}

std::optional<Bytes> dataByDecodingQuotedPrintableTransferEncoding(const Bytes& data) {
  const std::unique_ptr<char[]> source = TerminatedCopy(data.data(), data.size());
  std::unique_ptr<char[]> buffer(new char[data.size() + 2]);
  unsigned long length = 0;
  if (STL_QPDecode(source.get(), data.size(), buffer.get(), &length,
                   kEncodingQuotedPrintable, 0) != 1) {
    return std::nullopt;
  }
  return Bytes(buffer.get(), buffer.get() + length);
}

std::optional<String> stringByDecodingQuotedPrintable(const char* bytes,
                                                      std::size_t length,
                                                      StringEncoding encoding) {
  if (bytes == nullptr && length != 0) return std::nullopt;
  const std::optional<Bytes> decoded =
      DecodeQuotedPrintableBytes(reinterpret_cast<const std::uint8_t*>(bytes), length);
  if (!decoded) return std::nullopt;
  return StringFromBytes(decoded->data(), decoded->size(), encoding);
}

std::optional<String> stringByDecodingQuotedPrintable(const String& text) {
  const std::optional<std::string> utf8 = UTF8FromString(text);
  if (!utf8) return std::nullopt;
  const std::optional<Bytes> decoded = DecodeQuotedPrintableBytes(
      reinterpret_cast<const std::uint8_t*>(utf8->data()), utf8->size());
  if (!decoded) return std::nullopt;
  return StringFromBytes(decoded->data(), decoded->size(), StringEncoding::Latin1);
}

std::optional<String> stringByEncodingQuotedPrintable(const String& text) {
  const std::optional<std::string> utf8 = UTF8FromString(text);
  if (!utf8) return std::nullopt;
  const auto* first = reinterpret_cast<const std::uint8_t*>(utf8->data());
  const std::optional<Bytes> encoded =
      dataByEncodingQuotedPrintable(Bytes(first, first + utf8->size()));
  if (!encoded) return std::nullopt;
  return StringFromBytes(encoded->data(), encoded->size(), StringEncoding::ASCII);
}

}  // namespace phonepim

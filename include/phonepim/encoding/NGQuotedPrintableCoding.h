// Quoted-printable: the byte-level encoders and decoders, and the string and
// data conveniences built on them.
//
// Two encoders (STL_QPEncode, the one the writers use, and QPEncode2) and two
// decoder families (NGDecodeQuotedPrintableX, which the readers use, and
// STL_QPDecode / QPDecode2) with deliberately different quirks; see each
// function. None keeps state.
#pragma once

#include <cstddef>
#include <optional>

#include "phonepim/platform/String.h"

namespace phonepim {

/// Encoder flag: double a dot at the start of a line ("dot-stuffing").
inline constexpr unsigned int kQPDotStuffing = 1;
/// Encoder flag: end the output with a soft line break "=\r\n".
inline constexpr unsigned int kQPFinalSoftBreak = 2;

/// Capacity an encoder needs for `nSrcLen` bytes:
/// ((3 * nSrcLen) / 68 + nSrcLen) * 3 + 3. It covers the worst case, every
/// byte escaped with a soft break each 23 bytes and a final soft break. For
/// lengths near INT_MAX / 3 the int result wraps; the encoders' write checks
/// still hold them to the capacity they are given.
int QPEncodeGetRequiredLength(int nSrcLen);

/// Capacity the decoders report for `nSrcLen` bytes (the length itself).
/// Note that STL_QPDecode and QPDecode2 write one more byte than this.
int QPDecodeGetRequiredLength(int nSrcLen);

/// Encodes `nSrcLen` bytes. `*pnDestLen` is the capacity of `dst` on entry
/// and the bytes written on return; no NUL is written. Returns 0 if a pointer
/// is null, else 1. A capacity below QPEncodeGetRequiredLength(nSrcLen) fails
/// the assertion "*pnDestLen >= QPEncodeGetRequiredLength(nSrcLen)".
///
/// Every byte below '!' (space included, and every byte 0x80-0xFF), '=' and
/// DEL is written "=XX"; TAB is literal while the line is under 64 columns.
/// A soft line break "=\r\n" follows the byte that takes a line past 67
/// columns when more bytes follow, so a line carries up to 70 characters
/// before its '='. With kQPDotStuffing a '.' that starts a line is doubled;
/// with kQPFinalSoftBreak the output ends in "=\r\n".
///
/// The capacity is checked before every write: should the output outgrow
/// it (only possible when the capacity formula wrapped), the assertion
/// "*pnDestLen >= nWritten" fails with nothing written past `dst`.
int STL_QPEncode(const char* src, unsigned long nSrcLen, char* dst,
                 unsigned long* pnDestLen, unsigned int flags);

/// STL_QPEncode with int lengths and one difference: a space or TAB is
/// literal while the column is at most 63 and "=20" / "=09" after that.
int QPEncode2(const unsigned char* src, int nSrcLen, char* dst, int* pnDestLen,
              unsigned int flags);

/// Decodes quoted-printable text as a mail transfer encoding: CR and LF are
/// dropped, "=\r\n" is a soft break, "=XX" is read by strtol's base-16 rule
/// ("=G1" gives a zero byte), and with nEncoding 3 "=0D" reads as a line
/// feed. With kQPDotStuffing a dot at the start of a line is dropped.
///
/// The decoder reads one byte past the source, `src[nSrcLen]`, which must be
/// readable (callers pass a NUL-terminated buffer); it writes that byte too
/// and reports the length without it. So `dst` needs nSrcLen + 1 bytes.
/// Returns 0 for a null pointer or an '=' that is neither an escape nor a
/// soft break ("=\n", "=\r" and a trailing '=' included), leaving
/// `*pnDestLen` alone; else 1 with the length in `*pnDestLen`.
///
/// An escape "=X" that closes the source swallows `src[nSrcLen]` as its
/// second digit; its byte then stands where the terminator would and is not
/// counted. A `src[nSrcLen]` of '=' is written as a NUL.
int STL_QPDecode(const char* src, unsigned long nSrcLen, char* dst,
                 unsigned long* pnDestLen, int nEncoding, unsigned int flags);

/// STL_QPDecode with int lengths. A negative length reads nothing and
/// reports 0.
int QPDecode2(const unsigned char* src, int nSrcLen, char* dst, int* pnDestLen,
              int nEncoding, unsigned int flags);

/// Decodes quoted-printable as phones write it: "=XX" (either case) is a
/// byte, "=" before CR or LF is a soft break, an invalid escape "=ZZ" gives
/// "ZZ", and `_` reads as a space when `underscoreIsSpace` is non-zero.
/// Returns the bytes written, or -1 when srcLen < dstLen, when `dst` runs out
/// or when the text ends in a lone '='.
///
/// An escape "=X" at the very end reads its second digit from `src[srcLen]`,
/// which must be readable (a terminating NUL); with a NUL there the escape
/// is invalid and "X" plus that NUL are written. A soft break's CR or LF at
/// the end also looks at `src[srcLen]`. The result never exceeds `dstLen`.
/// Null pointers give -1 unless the lengths make them unused.
int NGDecodeQuotedPrintableX(const char* src, unsigned int srcLen, char* dst,
                             unsigned int dstLen, signed char underscoreIsSpace);

/// NGDecodeQuotedPrintableX with `_` read as a space.
int NGDecodeQuotedPrintable(const char* src, unsigned int srcLen, char* dst,
                            unsigned int dstLen);

/// Header-word quoted-printable: TAB, LF, CR and the printable bytes other
/// than '=' and '_' are literal; everything else is "=XX". No line length
/// limit. Returns the bytes written, or -1 when dstLen < srcLen or `dst` runs
/// out.
int NGEncodeQuotedPrintable(const char* src, unsigned int srcLen, char* dst,
                            unsigned int dstLen);

// --- Data conveniences. No value stands for the platform's nil. ---

/// STL_QPEncode of the bytes with no flags. Nothing for data longer than
/// the int capacity formula can describe (600,000,000 bytes).
std::optional<Bytes> dataByEncodingQuotedPrintable(const Bytes& data);

/// NGDecodeQuotedPrintableX of the bytes, `_` read as a space; nothing when
/// the decoder fails (for example on a trailing '=').
std::optional<Bytes> dataByDecodingQuotedPrintable(const Bytes& data);

/// STL_QPDecode of the bytes with nEncoding 1 and no flags; nothing when it
/// fails.
std::optional<Bytes> dataByDecodingQuotedPrintableTransferEncoding(const Bytes& data);

// --- String conveniences. ---

/// Decodes `length` quoted-printable bytes (through
/// dataByDecodingQuotedPrintable) and builds a string from the result in
/// `encoding`; nothing when either step fails.
std::optional<String> stringByDecodingQuotedPrintable(const char* bytes,
                                                      std::size_t length,
                                                      StringEncoding encoding);

/// Decodes the UTF-8 form of `text` and reads the result as a C string in
/// Latin-1 (the platform's C-string encoding); nothing when decoding fails.
std::optional<String> stringByDecodingQuotedPrintable(const String& text);

/// Encodes the UTF-8 form of `text` with STL_QPEncode; the result is ASCII.
/// Nothing when `text` has no UTF-8 form (an unpaired surrogate).
std::optional<String> stringByEncodingQuotedPrintable(const String& text);

}  // namespace phonepim

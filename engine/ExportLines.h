// The lines that describe a problem in a backup, in the text form that the
// registry editor imports. No line has an end of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace hivesweep {

// Every backslash doubled, and nothing else: quotes stay as they are.
std::u16string Escaped(std::u16string_view Text);

// "[HKEY_...]": the path as it is given, a backslash at its end included.
std::u16string KeyLine(std::u16string_view KeyPath);

// "name"="data"; a key's default value, which has no name, is @="data". Name and
// Data are written as they are given: where backslashes are doubled the caller
// has done it.
std::u16string StringLine(std::u16string_view Name, std::u16string_view Data);

// "name"=dword:0000001A, eight upper-case hexadecimal digits.
std::u16string DwordLine(std::u16string_view Name, std::uint32_t Number);

// "name"=dword:26, in decimal digits, as backups have always had it. The editor reads
// the digits as hexadecimal, so the text alone brings back a larger count of users, or
// none when there are more than eight digits. The exact record puts back the real one.
std::u16string DecimalDwordLine(std::u16string_view Name, std::uint32_t Number);

// "name"=hex:0A,FF: as many elements as there are bytes, but element i is byte 2 * i
// (0 past the end): the list takes one byte of each UTF-16 unit. After elements 25,
// 50 and so on, unless it is the last, the line goes on behind a backslash and a
// carriage return.
std::u16string BinaryLine(std::u16string_view Name, std::span<const std::byte> Bytes);

} // namespace hivesweep

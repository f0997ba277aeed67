#include "platform/posix/PosixProfiles.h"

#include <cerrno>
#include <ctime>

#include <sys/stat.h>

#include "platform/DiskFile.h"
#include "platform/Text.h"
#include "platform/posix/IniText.h"

namespace hivesweep {

namespace {

std::u16string_view WithoutQuotes(std::u16string_view Value) {
  if (Value.size() >= 2 && Value.front() == Value.back() &&
      (Value.front() == u'"' || Value.front() == u'\''))
    return Value.substr(1, Value.size() - 2);
  return Value;
}

std::u16string ReadText(std::u16string_view Path) {
  std::string Bytes;
  return ReadWholeFile(Path, Bytes) ? std::u16string() : DecodeTextFile(Bytes);
}

// How the units of a settings file stand on the disk.
enum class TEncoding { Utf16, Utf16HighFirst, MarkedUtf8, Utf8, Ansi };

TEncoding EncodingOf(std::string_view Bytes) {
  if (Bytes.starts_with("\xFF\xFE"))
    return TEncoding::Utf16;
  if (Bytes.starts_with("\xFE\xFF"))
    return TEncoding::Utf16HighFirst;
  if (Bytes.starts_with("\xEF\xBB\xBF"))
    return TEncoding::MarkedUtf8;
  return FromStrictUtf8(Bytes) ? TEncoding::Utf8 : TEncoding::Ansi;
}

std::string Encoded(std::u16string_view Text, TEncoding Encoding) {
  switch (Encoding) {
  case TEncoding::MarkedUtf8:
    return "\xEF\xBB\xBF" + ToUtf8(Text);
  case TEncoding::Utf8:
    return ToUtf8(Text);
  case TEncoding::Ansi:
    return ToAnsi(Text);
  case TEncoding::Utf16:
  case TEncoding::Utf16HighFirst:
    break;
  }
  const bool HighFirst = Encoding == TEncoding::Utf16HighFirst;
  std::string Out = HighFirst ? "\xFE\xFF" : "\xFF\xFE";
  for (const char16_t Unit : Text) {
    Out.push_back(static_cast<char>(HighFirst ? Unit >> 8 : Unit & 0xFF));
    Out.push_back(static_cast<char>(HighFirst ? Unit & 0xFF : Unit >> 8));
  }
  return Out;
}

std::uint64_t Nanoseconds(const timespec &Time) {
  return static_cast<std::uint64_t>(Time.tv_sec) * 1'000'000'000u +
         static_cast<std::uint64_t>(Time.tv_nsec);
}

} // namespace

std::u16string TPosixProfiles::ReadString(std::u16string_view Path, std::u16string_view Section,
                                          std::u16string_view Key, std::u16string_view Default) {
  const std::u16string Text = ReadText(Path);
  for (const TIniLine &Line : IniLines(Text, Section))
    if (Line.HasValue && EqualNoCase(Line.Name, Trim(Key)))
      return std::u16string(WithoutQuotes(Line.Value));
  return std::u16string(Default);
}

std::vector<std::u16string> TPosixProfiles::KeyNames(std::u16string_view Path,
                                                     std::u16string_view Section) {
  const std::u16string Text = ReadText(Path);
  std::vector<std::u16string> Out;
  for (const TIniLine &Line : IniLines(Text, Section))
    if (Line.HasValue)
      Out.emplace_back(Line.Name);
  return Out;
}

std::vector<std::u16string> TPosixProfiles::Lines(std::u16string_view Path,
                                                  std::u16string_view Section) {
  const std::u16string Text = ReadText(Path);
  std::vector<std::u16string> Out;
  for (const TIniLine &Line : IniLines(Text, Section)) {
    Out.emplace_back(Line.Name);
    if (Line.HasValue)
      Out.back().append(u"=").append(Line.Value);
  }
  return Out;
}

bool TPosixProfiles::WriteString(std::u16string_view Path, std::u16string_view Section,
                                 std::u16string_view Key, std::optional<std::u16string_view> Text) {
  if (!IsIniText(Section) || !IsIniText(Key) || !IsIniText(Text.value_or(u"")))
    return false;
  std::string Bytes = "\xFF\xFE";
  struct stat Found = {};
  const bool IsMissing = stat(ToUtf8(Path).c_str(), &Found) != 0 && errno == ENOENT;
  if (IsMissing && !Text)
    return true;
  if (!IsMissing && ReadWholeFile(Path, Bytes))
    return false;
  const TEncoding Encoding = EncodingOf(Bytes);
  std::u16string Whole = DecodeTextFile(Bytes);
  // Else what is malformed in the file would be lost.
  if (Encoded(Whole, Encoding) != Bytes)
    return false;
  SetIniText(Whole, Section, Key, Text);
  const std::string New = Encoded(Whole, Encoding);
  return (!IsMissing && New == Bytes) || !WriteWholeFile(Path, New);
}

std::optional<TFileStamp> TPosixProfiles::Stamp(std::u16string_view Path) {
  struct stat Found = {};
  if (stat(ToUtf8(Path).c_str(), &Found) != 0) {
    if (errno == ENOENT || errno == ENOTDIR)
      return TFileStamp{};
    return std::nullopt;
  }
  // Disks keep times in steps: a change that follows within one step leaves the
  // same time.
  constexpr std::uint64_t Settled = 3'000'000'000u;
  timespec Now = {};
  clock_gettime(CLOCK_REALTIME, &Now);
  const std::uint64_t Modified = Nanoseconds(Found.st_mtim);
  if (IsWithin(Settled, Modified, Nanoseconds(Now)))
    return std::nullopt;
  return TFileStamp{Modified, Nanoseconds(Found.st_ctim),
                    static_cast<std::uint64_t>(Found.st_size)};
}

} // namespace hivesweep

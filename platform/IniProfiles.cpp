#include "platform/IniProfiles.h"

#include <algorithm>
#include <utility>

#include "platform/DiskFile.h"
#include "platform/IniText.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// How the units of a settings file stand on the disk.
enum class TEncoding { Utf16, Utf16HighFirst, MarkedUtf8, Utf8, Ansi };

TEncoding EncodingOf(std::string_view Bytes, TIniProfiles::TUnmarked Unmarked) {
  if (Bytes.starts_with("\xFF\xFE"))
    return TEncoding::Utf16;
  if (Bytes.starts_with("\xFE\xFF"))
    return TEncoding::Utf16HighFirst;
  if (Bytes.starts_with("\xEF\xBB\xBF"))
    return TEncoding::MarkedUtf8;
  const bool MayBeUtf8 = Unmarked == TIniProfiles::TUnmarked::Utf8;
  return MayBeUtf8 && FromStrictUtf8(Bytes) ? TEncoding::Utf8 : TEncoding::Ansi;
}

std::u16string Decoded(std::string_view Bytes, TEncoding Encoding) {
  return Encoding == TEncoding::Ansi ? FromAnsi(Bytes) : DecodeTextFile(Bytes);
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

// The texts stand in the lines of an INI file as they are given: they have no line break and
// no zero in them.
bool AreIniTexts(std::u16string_view Section, std::span<const TIniChange> Changes) {
  const auto IsIniText = [](std::u16string_view Text) {
    return Text.find_first_of(std::u16string_view(u"\r\n\0", 3)) == std::u16string_view::npos;
  };
  return IsIniText(Section) && std::ranges::all_of(Changes, [&](const TIniChange &Change) {
           return IsIniText(Change.Key) && IsIniText(Change.Text.value_or(u""));
         });
}

TError Unwritable(std::u16string_view Path) {
  return {TErrorCode::Unwritable, std::u16string(Path)};
}

} // namespace

// A missing file has no bytes, and is no failure.
TError TIniProfiles::Read(std::u16string_view Path, std::string &Bytes) {
  TError Error = ReadWholeFile(Path, Bytes, LargestSettingsFile);
  if (!Error && EndsInHalfUnit(Bytes))
    Error = {TErrorCode::TextCut, {}};
  if (Error && Stamp(Path) == TFileStamp())
    return {};
  return Because(std::move(Error), TErrorCode::Unreadable, Path);
}

TError TIniProfiles::ReadSection(std::u16string_view Path, std::u16string_view Section,
                                 TIniSection &Out) {
  Out = {};
  std::string Bytes;
  if (TError Error = Read(Path, Bytes))
    return Error;
  const std::u16string Text = Decoded(Bytes, EncodingOf(Bytes, Unmarked_));
  for (const TIniLine &Line : IniLines(Text, Section))
    Out.Add({std::u16string(Line.Name),
             Line.HasValue ? std::optional<std::u16string>(Line.Value) : std::nullopt});
  return {};
}

TError TIniProfiles::WriteSection(std::u16string_view Path, std::u16string_view Section,
                                  std::span<const TIniChange> Changes) {
  if (!AreIniTexts(Section, Changes))
    return Unwritable(Path);
  std::string Bytes;
  if (TError Error = Read(Path, Bytes))
    return Error;
  const bool IsNew = Bytes.empty() && Stamp(Path) == TFileStamp();
  const TEncoding Encoding = IsNew ? TEncoding::Utf16 : EncodingOf(Bytes, Unmarked_);
  std::u16string Whole = Decoded(Bytes, Encoding);
  // Else what is malformed in the file would be lost.
  if (!IsNew && Encoded(Whole, Encoding) != Bytes)
    return Unwritable(Path);
  const std::u16string Before = Whole;
  SetIniTexts(Whole, Section, Changes);
  if (Whole == Before)
    return {};
  return Because(WriteWholeFile(Path, Encoded(Whole, Encoding)), TErrorCode::Unwritable, Path);
}

} // namespace hivesweep

// The settings family of the seam: INI files, read and written by path. Nothing
// is kept between calls. Section and key names are matched without regard to
// case; the first section and the first key of a name count. Paths are absolute.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hivesweep {

// Tells one state of a file from another. Opaque: only equality means something.
struct TFileStamp {
  std::uint64_t Modified = 0;
  std::uint64_t Created = 0;
  std::uint64_t Size = 0;
  bool operator==(const TFileStamp &) const = default;
};

class TProfiles {
public:
  TProfiles() = default;
  TProfiles(const TProfiles &) = delete;
  TProfiles &operator=(const TProfiles &) = delete;
  virtual ~TProfiles() = default;

  // The key's text, without blanks and one pair of quotes around it; Default when
  // the file, the section or the key is missing.
  virtual std::u16string ReadString(std::u16string_view Path, std::u16string_view Section,
                                    std::u16string_view Key, std::u16string_view Default) = 0;

  // The names of the section's keys, in file order.
  virtual std::vector<std::u16string> KeyNames(std::u16string_view Path,
                                               std::u16string_view Section) = 0;

  // The section's lines, "name=value", in file order, doubles included.
  virtual std::vector<std::u16string> Lines(std::u16string_view Path,
                                            std::u16string_view Section) = 0;

  // Sets the key's text, or deletes the key when there is none; deleting what is not
  // there is fine. A missing file is made, in UTF-16 with a mark, so that it can take
  // every letter; one that is there keeps its encoding. False when it could not be
  // written, and for a text with a line break or a zero in it. What else the form of an
  // INI file can't hold ("=" in a key, blanks at its ends) is not noticed here: read it
  // back.
  virtual bool WriteString(std::u16string_view Path, std::u16string_view Section,
                           std::u16string_view Key, std::optional<std::u16string_view> Text) = 0;

  // The file's stamp: while it is equal to an earlier one, so is the content.
  // Nothing when that can't be promised, because the file was changed so shortly
  // ago that another change could leave the same stamp. A time in the future, from a
  // wrong clock, is as good as one long past: a change would bring another time. A
  // missing file has a stamp too.
  virtual std::optional<TFileStamp> Stamp(std::u16string_view Path) = 0;
};

// A file's time is so close to the clock's that the next change may bring the same one.
constexpr bool IsWithin(std::uint64_t Span, std::uint64_t Modified, std::uint64_t Now) {
  return Modified < Now ? Now - Modified < Span : Modified - Now < Span;
}

// A text that stands in one line of an INI file as it is given: it has no line break and
// no zero in it.
bool IsIniText(std::u16string_view Text);

// The text as a whole number, as settings store switches; Default when it is none.
int ReadInteger(TProfiles &Profiles, std::u16string_view Path, std::u16string_view Section,
                std::u16string_view Key, int Default);

} // namespace hivesweep

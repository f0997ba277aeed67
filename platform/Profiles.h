// The settings family of the seam: INI files, read and written by path. Nothing
// is kept between calls. Section and key names are matched without regard to
// case; the first section and the first key of a name count. Paths are absolute.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/Error.h"

namespace hivesweep {

// The lines of one section, in file order, doubles included. Comments are none.
class TIniSection {
public:
  struct TLine {
    std::u16string Name;                // the whole line where there is no "="
    std::optional<std::u16string> Text; // as it stands, with its quotes
  };

  void Add(TLine Line);
  const std::vector<TLine> &Lines() const { return Lines_; }

  // The key's text, without blanks and one pair of quotes around it.
  std::optional<std::u16string_view> Find(std::u16string_view Key) const;
  std::u16string TextOr(std::u16string_view Key, std::u16string_view Default) const;

private:
  std::vector<TLine> Lines_;
  std::unordered_map<std::u16string, std::size_t> Keys_; // by capitals: the first of each name
};

// What becomes of a key: it gets a text, or is deleted.
struct TIniChange {
  std::u16string_view Key;
  std::optional<std::u16string_view> Text;
};

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

  // Reads the file once. A file or section that is missing is read as an empty section.
  // After a failure, which names the file, Out is empty.
  virtual TError ReadSection(std::u16string_view Path, std::u16string_view Section,
                             TIniSection &Out) = 0;

  // Makes all changes, and writes the file once, or makes none. Deleting what is not there
  // is fine. A missing file is made, in UTF-16 with a mark, so that it can take every
  // letter; one that is there keeps its encoding, and all else that stands in it. A text
  // with a line break or a zero in it is refused. What else the form of an INI file can't
  // hold ("=" in a key, blanks at its ends) is not noticed here: read it back.
  virtual TError WriteSection(std::u16string_view Path, std::u16string_view Section,
                              std::span<const TIniChange> Changes) = 0;

  // The file's stamp: while it is equal to an earlier one, so is the content.
  // Nothing when that can't be promised, because the file was changed so shortly
  // ago that another change could leave the same stamp. A time in the future, from a
  // wrong clock, is as good as one long past: a change would bring another time. A
  // missing file has a stamp too.
  virtual std::optional<TFileStamp> Stamp(std::u16string_view Path) = 0;

  // One key, for those to whom a file that can't be read is as good as an empty one.
  std::u16string ReadString(std::u16string_view Path, std::u16string_view Section,
                            std::u16string_view Key, std::u16string_view Default);
};

// A file's time is so close to the clock's that the next change may bring the same one.
constexpr bool IsWithin(std::uint64_t Span, std::uint64_t Modified, std::uint64_t Now) {
  return Modified < Now ? Now - Modified < Span : Modified - Now < Span;
}

} // namespace hivesweep

#include "platform/posix/PosixProfiles.h"

#include <cerrno>
#include <ctime>

#include <sys/stat.h>

#include "platform/DiskFile.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

struct TLine {
  std::u16string_view Name;
  std::u16string_view Value; // with its quotes
  bool HasValue = false;     // there is a "="
};

// The name in a section's header; nothing when the line is none. The first closing
// bracket ends it, or else the line does; what follows is no text of the section.
std::optional<std::u16string_view> HeaderName(std::u16string_view Line) {
  if (!Line.starts_with(u'['))
    return std::nullopt;
  return Trim(Line.substr(1, Line.find(u']') - 1));
}

TLine SplitLine(std::u16string_view Line) {
  const std::size_t Equals = Line.find(u'=');
  if (Equals == std::u16string_view::npos)
    return {Line, {}, false};
  return {Trim(Line.substr(0, Equals)), Trim(Line.substr(Equals + 1)), true};
}

std::u16string_view WithoutQuotes(std::u16string_view Value) {
  if (Value.size() >= 2 && Value.front() == Value.back() &&
      (Value.front() == u'"' || Value.front() == u'\''))
    return Value.substr(1, Value.size() - 2);
  return Value;
}

std::u16string ReadText(std::u16string_view Path) {
  std::string Bytes;
  return ReadWholeFile(Path, Bytes).empty() ? DecodeTextFile(Bytes) : std::u16string();
}

// The lines of the first section of that name, without comments.
std::vector<TLine> SectionLines(std::u16string_view Text, std::u16string_view Section) {
  std::vector<TLine> Out;
  bool Inside = false;
  for (std::u16string_view Line : SplitLines(Text)) {
    Line = Trim(Line);
    if (const auto Name = HeaderName(Line)) {
      if (Inside)
        break;
      Inside = EqualNoCase(*Name, Trim(Section));
    } else if (Inside && !Line.empty() && !Line.starts_with(u';')) {
      Out.push_back(SplitLine(Line));
    }
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
  for (const TLine &Line : SectionLines(Text, Section))
    if (Line.HasValue && EqualNoCase(Line.Name, Trim(Key)))
      return std::u16string(WithoutQuotes(Line.Value));
  return std::u16string(Default);
}

std::vector<std::u16string> TPosixProfiles::KeyNames(std::u16string_view Path,
                                                     std::u16string_view Section) {
  const std::u16string Text = ReadText(Path);
  std::vector<std::u16string> Out;
  for (const TLine &Line : SectionLines(Text, Section))
    if (Line.HasValue)
      Out.emplace_back(Line.Name);
  return Out;
}

std::vector<std::u16string> TPosixProfiles::Lines(std::u16string_view Path,
                                                  std::u16string_view Section) {
  const std::u16string Text = ReadText(Path);
  std::vector<std::u16string> Out;
  for (const TLine &Line : SectionLines(Text, Section)) {
    Out.emplace_back(Line.Name);
    if (Line.HasValue)
      Out.back().append(u"=").append(Line.Value);
  }
  return Out;
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
  if (Modified + Settled > Nanoseconds(Now))
    return std::nullopt;
  return TFileStamp{Modified, Nanoseconds(Found.st_ctim),
                    static_cast<std::uint64_t>(Found.st_size)};
}

} // namespace hivesweep

#include "platform/FileSystem.h"

#include <algorithm>

#include "platform/Drives.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

bool IsSeparator(char16_t Unit) { return Unit == u'\\' || Unit == u'/'; }

// A component as the system stores it: without blanks and dots at its end.
std::u16string_view StoredName(std::u16string_view Component) {
  while (!Component.empty() && (Component.back() == u' ' || Component.back() == u'.'))
    Component.remove_suffix(1);
  return Component;
}

} // namespace

bool NoSuchFile(TFileSystem &Files, std::u16string_view Path) {
  return MeansNoFile(Files.Look(Path));
}

bool NoSuchFolder(TFileSystem &Files, std::u16string_view Path) {
  return MeansNoFolder(Files.Look(Path));
}

bool NothingThere(TFileSystem &Files, std::u16string_view Path) {
  return Files.Look(Path) == TPathState::Missing;
}

bool CreateFolderPath(TFileSystem &Files, std::u16string_view Path) {
  const std::u16string Whole = LookupPath(Path);
  if (Files.Look(Whole) == TPathState::Folder)
    return true;
  const std::size_t Parent = Whole.rfind(u'\\');
  if (Parent == std::u16string::npos || IsDriveRoot(Whole))
    return false;
  // "C:\a" has the root "C:\" as its parent, which keeps its backslash.
  const std::u16string_view ParentPath =
      std::u16string_view(Whole).substr(0, Parent == 2 ? 3 : Parent);
  CreateFolderPath(Files, ParentPath);
  Files.CreateFolder(Whole);
  return Files.Look(Whole) == TPathState::Folder;
}

std::u16string LookupPath(std::u16string_view Path) {
  std::u16string Out;
  LookupPath(Path, Out);
  return Out;
}

void LookupPath(std::u16string_view Path, std::u16string &Out) {
  Out.clear();
  // What stands before the components: a drive's root, a server's two
  // backslashes, or one backslash.
  if (Path.size() >= 2 && Path[1] == u':') {
    Out.assign(Path.substr(0, 2));
    Path.remove_prefix(2);
    if (!Path.empty() && IsSeparator(Path[0]))
      Out.push_back(u'\\');
  } else if (Path.size() >= 2 && IsSeparator(Path[0]) && IsSeparator(Path[1])) {
    Out = u"\\\\";
  } else if (!Path.empty() && IsSeparator(Path[0])) {
    Out = u"\\";
  }

  const std::size_t Front = Out.size();
  while (!Path.empty()) {
    std::size_t End = 0;
    while (End < Path.size() && !IsSeparator(Path[End]))
      ++End;
    const std::u16string_view Component = Path.substr(0, End);
    Path.remove_prefix(End == Path.size() ? End : End + 1);
    if (Component == u"..") {
      const std::size_t Last = Out.rfind(u'\\');
      Out.resize(Last == std::u16string::npos || Last < Front ? Front : Last);
    } else if (const std::u16string_view Name = StoredName(Component); !Name.empty()) {
      if (Out.size() > Front)
        Out.push_back(u'\\');
      Out.append(Name);
    }
  }
}

bool HasImpossibleName(std::u16string_view Path) {
  return std::any_of(Path.begin(), Path.end(),
                     [](char16_t Unit) { return Unit < 0x20 || Contains(u"\"<>|*?", Unit); });
}

} // namespace hivesweep

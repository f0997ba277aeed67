#include "engine/ScanDisk.h"

#include "engine/PathRules.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// So many files are looked for one by one before a folder's names are taken.
constexpr int LooksBeforeNames = 3;

// A folder of more names than this would cost more than it saves.
constexpr std::size_t MostNames = 20'000;

// So many folders are remembered before all are forgotten: what the scan of a large
// registry takes must not grow with it.
constexpr std::size_t MostFolders = 4'000;

} // namespace

void TScanDisk::Forget() {
  Types_.fill(std::nullopt);
  Folders_.clear();
}

TDriveType TScanDisk::TypeOf(std::u16string_view Root) {
  if (!IsDriveRoot(Root))
    return TDriveType::NoRoot;
  std::optional<TDriveType> &Type = Types_[static_cast<std::size_t>(AsciiUpper(Root[0]) - u'A')];
  if (!Type)
    Type = Drives_.TypeOf(Root);
  return *Type;
}

bool TScanDisk::IsOnFixedDrive(std::u16string_view Path) {
  return hivesweep::IsOnFixedDrive(*this, Path);
}

bool TScanDisk::NoSuchFile(std::u16string_view Path) { return MeansNoFile(Look(Path)); }

bool TScanDisk::NoSuchFolder(std::u16string_view Path) { return MeansNoFolder(Look(Path)); }

bool TScanDisk::NothingThere(std::u16string_view Path) { return Look(Path) == TPathState::Missing; }

TPathState TScanDisk::Look(std::u16string_view Path) {
  LookupPath(Path, Whole_);
  const std::size_t Break = Whole_.rfind(u'\\');
  if (Break == std::u16string::npos || Break + 1 == Whole_.size())
    return Files_.Look(Path);
  Upper_ = Whole_;
  for (char16_t &Unit : Upper_)
    Unit = Unit < 0x80 ? AsciiUpper(Unit) : UpperCase(Unit); // few are not ASCII
  const std::u16string_view Upper = Upper_;
  auto Folder = Folders_.find(Upper.substr(0, Break));
  if (Folder == Folders_.end()) {
    if (Folders_.size() >= MostFolders)
      Folders_.clear();
    Folder = Folders_.emplace(Upper.substr(0, Break), TFolder()).first;
  }
  // In its own spelling: a disk that tells letter case apart finds it at once.
  if (++Folder->second.Looks == LooksBeforeNames + 1)
    TakeNames(std::u16string_view(Whole_).substr(0, Break), Folder->second);
  const TNameMap<TPathState> &Names = Folder->second.Names;
  const auto Known = Names.find(Upper.substr(Break + 1));
  return Known == Names.end() ? Files_.Look(Path) : Known->second;
}

void TScanDisk::TakeNames(std::u16string_view Path, TFolder &Folder) {
  Files_.List(Path, [&](const TFolderEntry &Entry) {
    Folder.Names.emplace(UpperCase(Entry.Name),
                         Entry.IsFolder ? TPathState::Folder : TPathState::File);
    return Folder.Names.size() < MostNames;
  });
}

} // namespace hivesweep

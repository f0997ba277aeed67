// What a scan asks of drives and files, each thing as few times as it can.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/Drives.h"
#include "platform/FileSystem.h"

namespace hivesweep {

// Asks for each drive's type once per scan. Of a folder in which several files are
// looked for it takes the names once: most entries of a registry are healthy, and
// their files lie side by side.
//
// The names only ever say that something is there. What they do not hold is looked up
// itself, each time: a problem is never reported on the word of a list.
class TScanDisk final : public TDrives {
public:
  TScanDisk(TFileSystem &Files, TDrives &Drives) : Files_(Files), Drives_(Drives) {}

  // For a new scan.
  void Forget();

  TDriveType TypeOf(std::u16string_view Root) override;

  // The path begins with the root of a fixed drive.
  bool IsOnFixedDrive(std::u16string_view Path);

  // There certainly is no file, no folder, nothing at all of that name.
  bool NoSuchFile(std::u16string_view Path);
  bool NoSuchFolder(std::u16string_view Path);
  bool NothingThere(std::u16string_view Path);

private:
  // By upper-case names; asked with a part of a text, without a copy of it.
  struct TNameHash {
    using is_transparent = void;
    std::size_t operator()(std::u16string_view Name) const {
      return std::hash<std::u16string_view>()(Name);
    }
  };
  template <typename TValue>
  using TNameMap = std::unordered_map<std::u16string, TValue, TNameHash, std::equal_to<>>;

  struct TFolder {
    int Looks = 0;
    TNameMap<TPathState> Names;
  };

  TPathState Look(std::u16string_view Path);
  void TakeNames(std::u16string_view Path, TFolder &Folder);

  TFileSystem &Files_;
  TDrives &Drives_;
  std::array<std::optional<TDriveType>, 26> Types_; // by letter
  TNameMap<TFolder> Folders_;                       // by their paths
  std::u16string Whole_;                            // the path that is looked up
  std::u16string Upper_;                            // the same in capitals
};

} // namespace hivesweep

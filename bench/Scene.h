// What the benchmarks of scans have in common: files that entries name, and an engine
// over the live registry and disk.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ExportLines.h"
#include "platform/DiskFile.h"
#include "scanners/ScannerTable.h"
#include "tests/engine/TestScan.h"

namespace hivesweep {

inline std::u16string Number(int Value) { return ToDecimal(static_cast<std::uint64_t>(Value)); }
inline std::u16string Quoted(std::u16string_view Text) { return u"\"" + Escaped(Text) + u"\""; }

// The files that the entries name lie 40 to a folder, as a program's do.
inline std::u16string FolderName(int File) { return u"Program " + Number(File / 40); }
inline std::u16string FileName(int File) { return u"library " + Number(File) + u".dll"; }

// Two entries in a hundred name a file that is not there: a registry is healthy on
// the whole, even one that nobody ever cleaned.
inline bool IsGone(int File) { return File % 50 == 0; }

class TScene {
public:
  static constexpr int FileCount = 4000;

  TScene() : Run(std::make_unique<TRootedRegistry>(*Registry), {}, ScannerTable()) {
    std::optional<TPlatform> Live = MakeLivePlatform();
    Run.Platform.Files = std::move(Live->Files);
    Run.Platform.Drives = std::move(Live->Drives);
    Run.Engine = std::make_unique<TScanRegistry>(
        Run.Platform, *Run.Problems, TSettingsPaths(), ScannerTable(),
        std::vector<std::u16string>(EnglishLabels.begin(), EnglishLabels.end()));
    for (int File = 0; File < FileCount; ++File) {
      Run.Platform.Files->CreateFolder(HomeOf(File));
      if (!IsGone(File))
        WriteWholeFile(PathOf(File), "x");
    }
  }

  // Of a file's folder, and of the file.
  std::u16string HomeOf(int File) const { return Folder_.File(FolderName(File)); }
  std::u16string PathOf(int File) const { return HomeOf(File) + u"\\" + FileName(File); }

  std::int32_t Found() const {
    std::int32_t Found = 0;
    for (const TAreaResult &Area : Run.Engine->AreaResults())
      Found += Area.Found;
    return Found;
  }

private:
  const TScratchFolder Folder_;

public:
  const std::unique_ptr<TTestRegistry> Registry = LiveRegistries().front().Make();
  TTestScan Run;
};

} // namespace hivesweep

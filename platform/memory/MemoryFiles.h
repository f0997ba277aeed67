// The drives and files of a machine in memory.
#pragma once

#include <map>
#include <string>

#include "platform/Drives.h"
#include "platform/FileSystem.h"
#include "platform/memory/Faults.h"
#include "platform/memory/Machine.h"

namespace hivesweep {

// Looks paths up as the disk of the described machine would, with the other
// system folder that a 32-bit program on a 64-bit machine is shown.
class TMemoryFiles final : public TFileSystem {
public:
  TMemoryFiles(const TMachine &Machine, TFaults *Faults);

  TPathState Look(std::u16string_view Path) override;
  bool List(std::u16string_view Folder,
            const std::function<bool(const TFolderEntry &Entry)> &Take) override;
  bool CreateFolder(std::u16string_view Path) override;
  TFileStatus ReadContent(std::u16string_view Path, TFileContent &Out) override;
  TFileStatus WriteContent(std::u16string_view Path, const TFileContent &Content) override;
  TFileStatus RemoveFile(std::u16string_view Path) override;
  void *DisableRedirection() override;
  void RevertRedirection(void *Saved) override;

private:
  struct TEntry {
    TPathState State = TPathState::Folder;
    bool IsLink = false;
    std::u16string Name;  // the path's last part as it was first spelled
    TFileContent Content; // of a file; one that the machine's description names is empty
  };
  using TEntries = std::map<std::u16string, TEntry, TNameLess>; // by the path in lookup form

  // What stands in the way of a call on the file at Path; Ok and Found set when it is
  // there.
  TFileStatus FindFile(std::u16string_view Path, TEntries::iterator &Found);
  TPathState StateOf(std::u16string_view Path) const;

  std::u16string Resolve(std::u16string_view Path) const;
  TEntry &Add(std::u16string_view Path, TPathState State);

  TEntries Entries_;
  std::map<char16_t, TDriveType> Drives_;
  std::u16string WinDir_;
  bool Redirecting_;
  TFaults *Faults_;
};

} // namespace hivesweep

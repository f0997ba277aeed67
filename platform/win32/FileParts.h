// What the families that read and write whole files share.
#pragma once

#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include "platform/DiskFile.h"
#include "platform/win32/Win32.h"

namespace hivesweep {

// Why the last call to the system failed.
TError LastError();

// The disk has nothing of that name. Only what says so for certain.
bool MeansMissing(DWORD Error);

// There is a file of that name, not a folder, and it is marked read-only.
bool IsReadOnly(const std::u16string &SystemPath);

// Opens a file that is there, to be read by whoever else uses it; Flags are those of
// CreateFileW.
TFileHandle OpenToRead(const std::u16string &SystemPath, DWORD Flags);

// From where it is to the file's end. False, and Out is empty, with the system's last
// error.
bool ReadToEnd(HANDLE File, std::string &Out,
               std::size_t Limit = std::numeric_limits<std::size_t>::max());

// The size of a regular file in bytes. Nothing for a device, a pipe or a whole disk.
std::optional<std::uint64_t> RegularSize(HANDLE File);

// Writes all bytes. False with the system's last error.
bool WriteAll(HANDLE File, std::string_view Bytes);

// Writes all bytes and waits until the disk has them. False with the system's last error.
bool WriteAndFlush(HANDLE File, std::string_view Bytes);

// Gives the file another name, in the place of a file that has it, for good.
bool RenameOver(const std::u16string &SystemFrom, const std::u16string &SystemTo);

// A new file under a name of its own, that is deleted in the end unless it has been
// renamed by then. After a failure the system's last error says why.
class TTemporaryFile {
public:
  // In the folder, which ends in a separator. Not open when none could be made.
  explicit TTemporaryFile(std::u16string_view Folder);
  TTemporaryFile(const TTemporaryFile &) = delete;
  TTemporaryFile &operator=(const TTemporaryFile &) = delete;
  ~TTemporaryFile();

  bool IsMade() const { return IsMade_; }
  HANDLE Get() const { return Handle_.Get(); }

  // Closes it first.
  bool SetAttributes(DWORD Attributes);
  bool RenameTo(const std::u16string &SystemTarget);

private:
  std::u16string Path_;
  TFileHandle Handle_{INVALID_HANDLE_VALUE};
  bool IsMade_ = false;
};

} // namespace hivesweep

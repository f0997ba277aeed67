// The storage family of the seam: the program's own files (settings, backups, records)
// on the disk of the system that runs it. Paths are absolute, in that system's form.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/DiskFile.h"

namespace hivesweep {

struct TStoredFile {
  std::u16string Name;
  std::uint64_t Size = 0;
  TLocalTime Modified;
  bool IsFolder = false;
};

// A TError tells why a call failed; none when it went well. A file
// that is marked read-only is neither written nor replaced nor removed: MakeWritable first.
class TStorage {
public:
  TStorage() = default;
  TStorage(const TStorage &) = delete;
  TStorage &operator=(const TStorage &) = delete;
  virtual ~TStorage() = default;

  // What is in the folder but "." and "..", in the disk's order, hidden things included.
  // A folder that is not there has nothing in it and is no error.
  virtual TError List(std::u16string_view Folder, std::vector<TStoredFile> &Out) = 0;

  virtual TError Read(std::u16string_view Path, std::string &Out) = 0;

  // Writes the file under this very name, over an old one, and waits until the disk has
  // it. What is there after a failure is not promised: write under a name that nobody
  // reads, and then Rename.
  virtual TError Write(std::u16string_view Path, std::string_view Bytes) = 0;

  // Gives a file another name in the same folder, where it takes the place of a file
  // that has it; at once and for good: whatever happens, one of the two is there.
  virtual TError Rename(std::u16string_view From, std::u16string_view To) = 0;

  // Deleting what is not there is fine.
  virtual TError Remove(std::u16string_view Path) = 0;

  // Makes the folder with its missing parents. One that is there is fine.
  virtual TError CreateFolder(std::u16string_view Path) = 0;

  // Takes all attributes off a file that is marked read-only; any other, and a missing
  // one, stays as it is.
  virtual void MakeWritable(std::u16string_view Path) = 0;
};

} // namespace hivesweep

// The storage family of the seam: the program's own files (settings, backups, records)
// on the disk of the system that runs it. Paths are absolute, in that system's form.
#pragma once

#include <cstdint>
#include <memory>
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

// A file that this program has for itself. Gives it back when it is destroyed; the system
// does when the program ends, in whatever way.
class THeldFile {
public:
  THeldFile() = default;
  THeldFile(const THeldFile &) = delete;
  THeldFile &operator=(const THeldFile &) = delete;
  virtual ~THeldFile() = default;
};

// What became of taking a file for this program alone.
struct THolding {
  std::unique_ptr<THeldFile> File; // null: it was not to be had
  bool IsHeldElsewhere = false;    // because another holder has it
  std::u16string Holder;           // that one's program, when it could be known
  std::uint32_t HolderProcess = 0; // and the number of its process
  TError Error;                    // why not, when nobody else has it
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

  // The first Size bytes of the file, or all of a shorter one.
  virtual TError ReadFront(std::u16string_view Path, std::size_t Size, std::string &Out) = 0;

  // Writes the file under this very name, over an old one, and waits until the disk has
  // it. What is there after a failure is not promised: write under a name that nobody
  // reads, and then Rename.
  virtual TError Write(std::u16string_view Path, std::string_view Bytes) = 0;

  // The same for a name that nobody has yet. Something that has it stays as it is, and is
  // an error; of two programs that try at the same time only one succeeds.
  virtual TError WriteNew(std::u16string_view Path, std::string_view Bytes) = 0;

  // Gives a file another name in the same folder, where it takes the place of a file
  // that has it; at once and for good: whatever happens, one of the two is there.
  virtual TError Rename(std::u16string_view From, std::u16string_view To) = 0;

  // The same for a name that nobody has yet, as in WriteNew.
  virtual TError RenameNew(std::u16string_view From, std::u16string_view To) = 0;

  // Deleting what is not there is fine.
  virtual TError Remove(std::u16string_view Path) = 0;

  // Makes the folder with its missing parents. One that is there is fine.
  virtual TError CreateFolder(std::u16string_view Path) = 0;

  // Takes all attributes off a file that is marked read-only; any other, and a missing
  // one, stays as it is.
  virtual void MakeWritable(std::u16string_view Path) = 0;

  // Takes the file of this path for one holder alone, and does not wait. It is made when it
  // is missing, in a folder that is there, and stays when it is given back; what is in it
  // is for those who are refused.
  virtual THolding Hold(std::u16string_view Path) = 0;
};

// What a holder writes into its file, and how whoever is refused reads it.
std::string HolderText(std::uint32_t Process, std::u16string_view Program);
void ReadHolder(std::string_view Text, THolding &Out);

} // namespace hivesweep

// The file family of the seam: is there something of this name, and what is in it?
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace hivesweep {

// Missing is a definite answer: the disk was asked and has nothing of that name,
// or no file can have such a name. Whatever kept the disk from answering (no
// permission, a network that is down, a drive that is not ready) is Unknown.
enum class TPathState { Missing, File, Folder, Unknown };

// One name in a folder, valid during the call that tells it.
struct TFolderEntry {
  std::u16string_view Name;
  bool IsFolder = false;
  bool IsLink = false; // a junction or a link, also to a folder
};

// What became of a call on a file. Only NotFound says that it is not there.
enum class TFileStatus { Ok, NotFound, Denied, Failed };

// A whole file. Times are UTC in steps of 100 ns since 1601, as the disk keeps them;
// Attributes are the system's own bits.
struct TFileContent {
  std::string Bytes;
  std::uint64_t Created = 0;
  std::uint64_t Accessed = 0;
  std::uint64_t Written = 0;
  std::uint32_t Attributes = 0;
  bool operator==(const TFileContent &) const = default;
};

class TFileSystem {
public:
  TFileSystem() = default;
  TFileSystem(const TFileSystem &) = delete;
  TFileSystem &operator=(const TFileSystem &) = delete;
  virtual ~TFileSystem() = default;

  // Looks an absolute path up as Windows does (see LookupPath). A link counts
  // as being there, wherever it leads.
  virtual TPathState Look(std::u16string_view Path) = 0;

  // Tells every entry of a folder but "." and "..", until Take answers false. False
  // when that, or a failure, ended it before all had been told.
  virtual bool List(std::u16string_view Folder,
                    const std::function<bool(const TFolderEntry &Entry)> &Take) = 0;

  // Creates one folder in an existing one. False when it was not created.
  virtual bool CreateFolder(std::u16string_view Path) = 0;

  // The whole file, its times and attributes; those that reading it changes are told
  // as they were before. A folder is Failed. A link's own content is what it leads to.
  virtual TFileStatus ReadContent(std::u16string_view Path, TFileContent &Out) = 0;

  // Makes the file, or replaces one of that name (a read-only one too), with these
  // bytes, times and attributes: it is complete under its name or what it was before.
  // Its folder must be there. NotFound: it is not.
  virtual TFileStatus WriteContent(std::u16string_view Path, const TFileContent &Content) = 0;

  // A read-only file is Denied.
  virtual TFileStatus RemoveFile(std::u16string_view Path) = 0;

  // A 32-bit program on a 64-bit system is shown another system folder than the
  // real one. TRealSystemFolder switches that off; these do nothing elsewhere.
  // Revert takes what Disable answered.
  virtual void *DisableRedirection() = 0;
  virtual void RevertRedirection(void *Saved) = 0;
};

// While it lives, paths are looked up in the 64-bit system folder itself.
class TRealSystemFolder {
public:
  explicit TRealSystemFolder(TFileSystem &Files)
      : Files_(Files), Saved_(Files.DisableRedirection()) {}
  TRealSystemFolder(const TRealSystemFolder &) = delete;
  TRealSystemFolder &operator=(const TRealSystemFolder &) = delete;
  ~TRealSystemFolder() { Files_.RevertRedirection(Saved_); }

private:
  TFileSystem &Files_;
  void *Saved_;
};

// With this state there certainly is no file (no folder) of that name.
constexpr bool MeansNoFile(TPathState State) {
  return State == TPathState::Missing || State == TPathState::Folder;
}
constexpr bool MeansNoFolder(TPathState State) {
  return State == TPathState::Missing || State == TPathState::File;
}

// There certainly is no file (no folder, nothing at all) of that name.
bool NoSuchFile(TFileSystem &Files, std::u16string_view Path);
bool NoSuchFolder(TFileSystem &Files, std::u16string_view Path);
bool NothingThere(TFileSystem &Files, std::u16string_view Path);

// Creates the folder with all its missing parents. False when it is not there
// in the end.
bool CreateFolderPath(TFileSystem &Files, std::u16string_view Path);

// The form in which Windows looks an absolute path up: "/" becomes "\", several
// backslashes one, "." and ".." are followed, blanks and dots at a component's
// end go, and so does a last backslash (but for a drive's root, "C:\").
std::u16string LookupPath(std::u16string_view Path);
void LookupPath(std::u16string_view Path, std::u16string &Out); // into kept memory

// The path, which begins with a drive and a backslash, has a character that no
// file name can hold: a control character or one of "<>|*?
bool HasImpossibleName(std::u16string_view Path);

} // namespace hivesweep

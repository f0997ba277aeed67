// The file family of the seam: is there something of this name?
#pragma once

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

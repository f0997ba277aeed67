// The hosts over which the contract tests run, and a corner of the real disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ErrorTexts.h"
#include "platform/Platform.h"
#include "platform/Text.h"

namespace hivesweep {

// So that a failed comparison can be read.
inline void PrintTo(TRegStatus Status, std::ostream *Out) {
  static const char *const Names[] = {"Ok", "NotFound", "Denied", "Failed"};
  *Out << Names[static_cast<int>(Status)];
}
inline void PrintTo(TFileStatus Status, std::ostream *Out) {
  static const char *const Names[] = {"Ok", "NotFound", "Denied", "Failed"};
  *Out << Names[static_cast<int>(Status)];
}
inline void PrintTo(const TError &Error, std::ostream *Out) { *Out << ToUtf8(EnglishWords(Error)); }
inline void PrintTo(TPathState State, std::ostream *Out) {
  static const char *const Names[] = {"Missing", "File", "Folder", "Unknown"};
  *Out << Names[static_cast<int>(State)];
}

// A registry with a key of its own for one test, which is removed in the end.
class TTestRegistry {
public:
  TTestRegistry() = default;
  TTestRegistry(const TTestRegistry &) = delete;
  TTestRegistry &operator=(const TTestRegistry &) = delete;
  virtual ~TTestRegistry() = default;

  virtual TRegistryHost &Host() = 0;

  // Loads export text without its header, in which "~" at the front of a key's
  // path stands for the test's own key. The last name of a path may hold zeros.
  void Load(std::u16string_view Text);

  // From now on that key below the test's own can't be opened. False when this
  // registry knows no such thing.
  virtual bool Deny(std::u16string_view Path) = 0;

  // Makes a key that leads to another one, both below the test's own. False when this
  // registry knows no such thing.
  virtual bool Link(std::u16string_view /*Path*/, std::u16string_view /*Target*/) { return false; }

  // Values are enumerated in the order of their making; if not, sorted by name.
  virtual bool KeepsValueOrder() const = 0;

  // The test's own key, below HKEY_CURRENT_USER.
  std::u16string Path(std::u16string_view Below = u"") const;

protected:
  virtual void LoadFile(std::string_view Bytes) = 0;
};

struct TRegistryKind {
  const char *Name;
  std::unique_ptr<TTestRegistry> (*Make)();
};

// Content is named below the folder; what ends in a backslash is a folder.
class TTestDisk {
public:
  TTestDisk() = default;
  TTestDisk(const TTestDisk &) = delete;
  TTestDisk &operator=(const TTestDisk &) = delete;
  virtual ~TTestDisk() = default;

  virtual TFileSystem &Files() = 0;
  virtual TDrives &Drives() = 0;

  // Absolute, without a backslash at its end.
  virtual std::u16string Folder() const = 0;
};

struct TDiskKind {
  const char *Name;
  std::unique_ptr<TTestDisk> (*Make)(const std::vector<std::u16string> &Content);
};

// Shortcut files in a folder of their own.
class TTestShortcuts {
public:
  TTestShortcuts() = default;
  TTestShortcuts(const TTestShortcuts &) = delete;
  TTestShortcuts &operator=(const TTestShortcuts &) = delete;
  virtual ~TTestShortcuts() = default;

  virtual TShell &Shell() = 0;
  virtual std::u16string Folder() const = 0;

  // Makes a shortcut; without a target, one that leads to no file. On a live system
  // its own shell makes it.
  virtual void Add(std::u16string_view Name, std::u16string_view Target) = 0;

  // Makes a file of that name that is no shortcut.
  virtual void AddText(std::u16string_view Name) = 0;
};

struct TShortcutsKind {
  const char *Name;
  std::unique_ptr<TTestShortcuts> (*Make)();
};

// One key of a settings file; false when it could not be set or deleted.
inline bool WriteIni(TProfiles &Profiles, std::u16string_view Path, std::u16string_view Section,
                     std::u16string_view Key, std::optional<std::u16string_view> Text) {
  const TIniChange Change = {Key, Text};
  return Profiles.WriteSection(Path, Section, {&Change, 1}) == TError();
}

// The names of a section's keys.
inline std::vector<std::u16string> KeysOfIni(TProfiles &Profiles, std::u16string_view Path,
                                             std::u16string_view Section) {
  TIniSection Read;
  Profiles.ReadSection(Path, Section, Read);
  std::vector<std::u16string> Names;
  for (const TIniSection::TLine &Line : Read.Lines())
    if (Line.Text)
      Names.push_back(Line.Name);
  return Names;
}

// What the system's own function reads; nothing on a system that has none.
std::optional<std::u16string> SystemIniText(const std::u16string &Path, std::u16string_view Section,
                                            std::u16string_view Key, std::u16string_view Default);

// A text as a file in UTF-16 holds it.
inline std::string Utf16Bytes(std::u16string_view Text) {
  return {reinterpret_cast<const char *>(Text.data()), Text.size() * sizeof(char16_t)};
}

// The running system is not Windows but Wine, which does some things its own way.
bool IsWine();

// How the system's kernel names a key below the current user's. On Windows alone.
std::u16string KernelPath(std::u16string_view BelowUser);

// The hosts of the running system: none where it is not Windows.
std::vector<TRegistryKind> LiveRegistries();
std::vector<TDiskKind> LiveDisks();
std::vector<TShortcutsKind> LiveShortcuts();

// Those and the registry in memory.
std::vector<TRegistryKind> AllRegistries();

// A folder of the real disk for one test, removed in the end. Paths are in the
// form of the running system.
class TScratchFolder {
public:
  TScratchFolder();
  TScratchFolder(const TScratchFolder &) = delete;
  TScratchFolder &operator=(const TScratchFolder &) = delete;
  ~TScratchFolder();

  const std::u16string &Path() const { return Path_; }
  std::u16string File(std::u16string_view Name) const; // its path

  // The number of files and folders in it.
  std::size_t Count() const;

private:
  std::u16string Path_;
};

// As if the file had last been written so many seconds ago.
void SetAge(const std::u16string &Path, int Seconds);

// What this process holds: about how many handles or files are open, and its memory
// where the system tells it without a sanitizer's share.
std::size_t OpenHandles();
std::optional<std::size_t> PrivateBytes();

void SetReadOnly(const std::u16string &Path, bool ReadOnly);

} // namespace hivesweep

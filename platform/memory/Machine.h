// A machine in memory: its drives, folders and files, and where Windows lies.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/Platform.h"
#include "platform/Text.h"
#include "platform/memory/Faults.h"
#include "platform/memory/TextError.h"

namespace hivesweep {

struct TMachine {
  std::u16string WinDir = u"C:\\Windows";
  std::u16string TempDir = u"C:\\Windows\\Temp\\";
  std::u16string AppData;
  std::u16string CommonAppData;
  std::map<TSpecialFolder, std::u16string> Folders; // the others, where they are known
  std::u16string UserKey;                           // the user's key below HKEY_USERS
  bool Wow64 = false;
  std::map<char16_t, TDriveType> Drives = {{u'C', TDriveType::Fixed}}; // by upper-case letter
  std::map<std::u16string, std::u16string, TNameLess> Environment;
  std::vector<std::u16string> Files;      // a trailing backslash makes a folder
  std::vector<std::u16string> Unreadable; // these, and all below, can't be looked at
  std::vector<std::u16string> Links;      // of the files and folders, those that are links
  // Shortcut files, which are files as well, with the paths that they store.
  std::map<std::u16string, std::u16string, TNameLess> Shortcuts;
};

// Reads a machine file: INI text with the sections Machine, Drives, Environment,
// Files and Shortcuts ("C:\dir\name.lnk=stored path"). What it leaves out stays as
// above; one that names drives has no others.
std::variant<TMachine, TTextError> ParseMachine(std::u16string_view Text);

// A platform whose registry and machine are the given ones. Its other families
// are those of the running system. Faults as in TMemoryRegistry.
TPlatform MakeMemoryPlatform(std::unique_ptr<TRegistryHost> Registry, const TMachine &Machine,
                             TFaults *Faults = nullptr);

} // namespace hivesweep

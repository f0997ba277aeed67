#include "platform/win32/Hosts.h"
#include "platform/win32/Win32.h"

#include <shlobj.h>

namespace hivesweep {

namespace {

std::u16string WithoutBackslash(std::u16string Folder) {
  if (Folder.ends_with(u'\\'))
    Folder.pop_back();
  return Folder;
}

class TWin32Folders final : public TFolders {
public:
  std::u16string Special(TSpecialFolder Folder) override {
    wchar_t Path[MAX_PATH + 1] = {};
    if (!SHGetSpecialFolderPathW(nullptr, Path, static_cast<int>(Folder), FALSE))
      return {};
    return WithoutBackslash(FromWide(Path));
  }

  // Not the system's own Windows folder: a user of a terminal server has one of
  // his own, and paths in his registry name that one.
  std::u16string Windows() override {
    return WithoutBackslash(GrowingText(
        [](wchar_t *Units, DWORD Count) { return GetWindowsDirectoryW(Units, Count); }));
  }

  std::u16string Temp() override {
    return GrowingText([](wchar_t *Units, DWORD Count) { return GetTempPathW(Count, Units); });
  }

  std::u16string Program() override {
    std::u16string Path = GrowingText(
        [](wchar_t *Units, DWORD Count) { return GetModuleFileNameW(nullptr, Units, Count); });
    Path.resize(Path.rfind(u'\\') + 1);
    return Path;
  }
};

} // namespace

std::unique_ptr<TFolders> MakeWin32Folders() { return std::make_unique<TWin32Folders>(); }

} // namespace hivesweep

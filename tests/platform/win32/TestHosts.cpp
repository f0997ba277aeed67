#include "tests/platform/TestHosts.h"

#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "platform/memory/RegistryText.h"
#include "platform/win32/Win32.h"
#include "platform/win32/Win32Registry.h"

#include <objbase.h>
#include <psapi.h>
#include <shlobj.h>
#include <winternl.h>

namespace hivesweep {

namespace {

// ---- the live registry ---------------------------------------------------------

// Key names with zeros, which only the kernel's own functions take: texts are counted
// there, not ended.
HKEY MakeCountedKey(HKEY Base, std::u16string Name) {
  using TNtCreateKey = LONG(WINAPI *)(HANDLE *, ACCESS_MASK, OBJECT_ATTRIBUTES *, ULONG,
                                      UNICODE_STRING *, ULONG, ULONG *);
  const auto Size = static_cast<USHORT>(Name.size() * sizeof(char16_t));
  UNICODE_STRING Counted = {Size, Size, Wide(Name.data())};
  OBJECT_ATTRIBUTES Where = {};
  InitializeObjectAttributes(&Where, &Counted, OBJ_CASE_INSENSITIVE, Base, nullptr);
  HANDLE Key = nullptr;
  EXPECT_EQ(reinterpret_cast<TNtCreateKey>(FindFunction(L"ntdll.dll", "NtCreateKey"))(
                &Key, KEY_ALL_ACCESS, &Where, 0, nullptr, 0, nullptr),
            0);
  return static_cast<HKEY>(Key);
}

// Deletes the open key itself, even a link, and closes it.
void DeleteOpenKey(HKEY Key) {
  using TNtDeleteKey = LONG(WINAPI *)(HANDLE);
  reinterpret_cast<TNtDeleteKey>(FindFunction(L"ntdll.dll", "NtDeleteKey"))(Key);
  RegCloseKey(Key);
}

void RemoveKey(HKEY Base, const std::u16string &Path) {
  HKEY Key = nullptr;
  if (RegOpenKeyExW(Base, Wide(Path), 0, KEY_ALL_ACCESS, &Key) != ERROR_SUCCESS)
    return;
  char16_t Name[300] = {};
  DWORD Length = 300;
  while (RegEnumKeyExW(Key, 0, Wide(Name), &Length, nullptr, nullptr, nullptr, nullptr) ==
         ERROR_SUCCESS) {
    const std::u16string Subkey(Name, Length);
    if (HoldsZero(Subkey))
      DeleteOpenKey(MakeCountedKey(Key, Subkey));
    else
      RemoveKey(Key, Subkey);
    Length = 300;
  }
  RegCloseKey(Key);
  EXPECT_EQ(RegDeleteKeyW(Base, Wide(Path)), ERROR_SUCCESS) << ToUtf8(Path);
}

// Writes the content of a text into HKEY_CURRENT_USER, as bytes.
class TLiveWriter final : public TRegistryTextReader {
public:
  ~TLiveWriter() override { RegCloseKey(Key_); }

  void OnKey(std::u16string_view KeyPath) override {
    RegCloseKey(Key_);
    Key_ = nullptr;
    const std::u16string Path = BelowRoot(KeyPath);
    const std::size_t LastBreak = HoldsZero(Path) ? Path.rfind(u'\\') : Path.size();
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, Wide(Path.substr(0, LastBreak)), 0, nullptr, 0,
                              KEY_ALL_ACCESS, nullptr, &Key_, nullptr),
              ERROR_SUCCESS);
    if (LastBreak == Path.size())
      return;
    const HKEY Parent = std::exchange(Key_, MakeCountedKey(Key_, Path.substr(LastBreak + 1)));
    RegCloseKey(Parent);
  }
  void OnDeleteKey(std::u16string_view KeyPath) override {
    RemoveKey(HKEY_CURRENT_USER, BelowRoot(KeyPath));
  }
  void OnValue(std::u16string_view Name, TRegType Type, std::span<const std::byte> Bytes) override {
    // The system looks behind a string without a final zero, and adds the zero that
    // it finds there: what stands behind must be none.
    std::vector<std::byte> Data(Bytes.begin(), Bytes.end());
    Data.resize(Data.size() + 4, std::byte{0xFF});
    ASSERT_EQ(RegSetValueExW(Key_, Wide(std::u16string(Name)), 0, static_cast<DWORD>(Type),
                             reinterpret_cast<const BYTE *>(Data.data()),
                             static_cast<DWORD>(Bytes.size())),
              ERROR_SUCCESS);
  }
  void OnDeleteValue(std::u16string_view Name) override {
    RegDeleteValueW(Key_, Wide(std::u16string(Name)));
  }

private:
  static std::u16string BelowRoot(std::u16string_view KeyPath) {
    return std::u16string(KeyPath.substr(KeyPath.find(u'\\') + 1));
  }
  HKEY Key_ = nullptr;
};

class TLiveRegistry final : public TTestRegistry {
public:
  TLiveRegistry() { RemoveKey(HKEY_CURRENT_USER, Path()); }
  ~TLiveRegistry() override {
    for (const HKEY Key : Denied_) {
      SetDacl(Key, nullptr);
      RegCloseKey(Key);
    }
    for (const HKEY Key : Links_)
      DeleteOpenKey(Key); // some tests have done so
    RemoveKey(HKEY_CURRENT_USER, Path());
    RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\Hivesweep tests"); // the last one can
  }

  TRegistryHost &Host() override { return Host_; }
  bool KeepsValueOrder() const override { return !IsWine(); }

  bool Deny(std::u16string_view Below) override {
    HKEY Key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, Wide(Path(Below)), 0, KEY_ALL_ACCESS, &Key),
              ERROR_SUCCESS);
    Denied_.push_back(Key);
    // A list without entries allows nothing to anybody.
    ACL Nobody = {};
    return InitializeAcl(&Nobody, sizeof Nobody, ACL_REVISION) && SetDacl(Key, &Nobody);
  }

  bool Link(std::u16string_view Below, std::u16string_view Target) override {
    HKEY Key = nullptr;
    const std::u16string Leads = KernelPath(Path(Target));
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, Wide(Path(Below)), 0, nullptr,
                              REG_OPTION_CREATE_LINK | REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr,
                              &Key, nullptr),
              ERROR_SUCCESS);
    Links_.push_back(Key);
    return RegSetValueExW(Key, L"SymbolicLinkValue", 0, REG_LINK,
                          reinterpret_cast<const BYTE *>(Leads.data()),
                          static_cast<DWORD>(Leads.size()) * sizeof(char16_t)) == ERROR_SUCCESS;
  }

protected:
  void LoadFile(std::string_view Bytes) override {
    TLiveWriter Writer;
    const auto Error = ReadRegistryText(Bytes, Writer);
    ASSERT_FALSE(Error) << ToUtf8(Error->Message) << " in line " << Error->Line;
  }

private:
  static bool SetDacl(HKEY Key, ACL *Dacl) {
    SECURITY_DESCRIPTOR Descriptor = {};
    return InitializeSecurityDescriptor(&Descriptor, SECURITY_DESCRIPTOR_REVISION) &&
           SetSecurityDescriptorDacl(&Descriptor, TRUE, Dacl, FALSE) &&
           RegSetKeySecurity(Key, DACL_SECURITY_INFORMATION, &Descriptor) == ERROR_SUCCESS;
  }

  TWin32Registry Host_;
  std::vector<HKEY> Denied_;
  std::vector<HKEY> Links_;
};

// ---- the disk -------------------------------------------------------------------

// Takes a path of any length.
std::u16string Long(std::u16string_view Path) { return u"\\\\?\\" + std::u16string(Path); }

std::vector<WIN32_FIND_DATAW> Entries(const std::u16string &Folder) {
  std::vector<WIN32_FIND_DATAW> Out;
  WIN32_FIND_DATAW Found = {};
  const HANDLE Search = FindFirstFileW(Wide(Long(Folder + u"\\*")), &Found);
  if (Search == INVALID_HANDLE_VALUE)
    return Out;
  do {
    const std::u16string_view Name = FromWide(Found.cFileName);
    if (Name != u"." && Name != u"..")
      Out.push_back(Found);
  } while (FindNextFileW(Search, &Found));
  FindClose(Search);
  return Out;
}

void RemoveFolder(const std::u16string &Folder) {
  for (const WIN32_FIND_DATAW &Entry : Entries(Folder)) {
    const std::u16string Path = Folder + u"\\" + FromWide(Entry.cFileName);
    SetFileAttributesW(Wide(Long(Path)), FILE_ATTRIBUTE_NORMAL);
    if ((Entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
      RemoveFolder(Path);
    else
      EXPECT_TRUE(DeleteFileW(Wide(Long(Path)))) << ToUtf8(Path);
  }
  EXPECT_TRUE(RemoveDirectoryW(Wide(Long(Folder)))) << ToUtf8(Folder);
}

class TLiveDisk final : public TTestDisk {
public:
  explicit TLiveDisk(const std::vector<std::u16string> &Content) {
    for (const std::u16string &Path : Content) {
      for (std::size_t End = Path.find(u'\\'); End != std::u16string::npos;
           End = Path.find(u'\\', End + 1))
        CreateDirectoryW(Wide(Long(Scratch_.File(Path.substr(0, End)))), nullptr);
      if (Path.ends_with(u'\\'))
        continue;
      const TFileHandle File(CreateFileW(Wide(Long(Scratch_.File(Path))), GENERIC_WRITE, 0, nullptr,
                                         CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
      EXPECT_TRUE(File.IsOpen()) << ToUtf8(Path) << " " << GetLastError();
    }
  }

  TFileSystem &Files() override { return *Platform_.Files; }
  TDrives &Drives() override { return *Platform_.Drives; }
  std::u16string Folder() const override { return Scratch_.Path(); }

private:
  TScratchFolder Scratch_;
  TPlatform Platform_ = MakeLivePlatform().value();
};

// ---- shortcuts ------------------------------------------------------------------

class TLiveShortcuts final : public TTestShortcuts {
public:
  TLiveShortcuts() { EXPECT_TRUE(SUCCEEDED(CoInitialize(nullptr))); }
  ~TLiveShortcuts() override { CoUninitialize(); }

  TShell &Shell() override { return *Platform_.Shell; }
  std::u16string Folder() const override { return Scratch_.Path(); }

  void Add(std::u16string_view Name, std::u16string_view Target) override {
    IShellLinkW *Link = nullptr;
    IPersistFile *File = nullptr;
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                               reinterpret_cast<void **>(&Link)),
              S_OK);
    ASSERT_EQ(Link->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&File)), S_OK);
    EXPECT_EQ(Link->SetDescription(L"made by a test"), S_OK);
    if (!Target.empty()) {
      EXPECT_TRUE(SUCCEEDED(Link->SetPath(Wide(std::u16string(Target)))));
    }
    EXPECT_EQ(File->Save(Wide(Scratch_.File(Name)), FALSE), S_OK) << ToUtf8(Name);
    File->Release();
    Link->Release();
  }
  void AddText(std::u16string_view Name) override {
    EXPECT_EQ(WriteWholeFile(Scratch_.File(Name), "no shortcut"), TError());
  }

private:
  TScratchFolder Scratch_;
  TPlatform Platform_ = MakeLivePlatform().value();
};

} // namespace

std::vector<TShortcutsKind> LiveShortcuts() {
  return {{"Live",
           []() -> std::unique_ptr<TTestShortcuts> { return std::make_unique<TLiveShortcuts>(); }}};
}

std::u16string KernelPath(std::u16string_view BelowUser) {
  return u"\\REGISTRY\\USER\\" + MakeLivePlatform()->System->UserKey() + u"\\" +
         std::u16string(BelowUser);
}

std::optional<std::u16string> SystemIniText(const std::u16string &Path, std::u16string_view Section,
                                            std::u16string_view Key, std::u16string_view Default) {
  return GrowingText([&](wchar_t *Units, DWORD Count) {
    return GetPrivateProfileStringW(Wide(std::u16string(Section)), Wide(std::u16string(Key)),
                                    Wide(std::u16string(Default)), Units, Count, Wide(Path));
  });
}

bool IsWine() { return FindFunction(L"ntdll.dll", "wine_get_version") != nullptr; }

std::vector<TRegistryKind> LiveRegistries() {
  return {{"Live",
           []() -> std::unique_ptr<TTestRegistry> { return std::make_unique<TLiveRegistry>(); }}};
}

std::vector<TDiskKind> LiveDisks() {
  return {{"Live", [](const std::vector<std::u16string> &Content) -> std::unique_ptr<TTestDisk> {
             return std::make_unique<TLiveDisk>(Content);
           }}};
}

TScratchFolder::TScratchFolder() {
  char16_t Temp[MAX_PATH + 1] = {};
  EXPECT_NE(GetTempPathW(MAX_PATH, Wide(Temp)), 0u);
  for (DWORD Try = 0; Path_.empty() && Try < 1000; ++Try) {
    std::u16string Path = std::u16string(Temp) + u"hivesweep-test-" +
                          ToDecimal(GetCurrentProcessId()) + u"-" + ToDecimal(Try);
    if (CreateDirectoryW(Wide(Path), nullptr))
      Path_ = std::move(Path);
  }
  EXPECT_NE(Path_, u"");
}

TScratchFolder::~TScratchFolder() { RemoveFolder(Path_); }

std::u16string TScratchFolder::File(std::u16string_view Name) const {
  return Path_ + u"\\" + std::u16string(Name);
}

std::size_t TScratchFolder::Count() const { return Entries(Path_).size(); }

void SetAge(const std::u16string &Path, int Seconds) {
  FILETIME Time = {};
  GetSystemTimeAsFileTime(&Time);
  ULARGE_INTEGER Number = {{Time.dwLowDateTime, Time.dwHighDateTime}};
  Number.QuadPart -= static_cast<ULONGLONG>(Seconds) * 10'000'000;
  Time = {Number.LowPart, Number.HighPart};
  const TFileHandle File(
      CreateFileW(Wide(Path), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(SetFileTime(File.Get(), nullptr, nullptr, &Time));
}

// As far as it shows in the number that a new one gets: Wine has no count of them.
std::size_t OpenHandles() {
  const TFileHandle Event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  return reinterpret_cast<std::uintptr_t>(Event.Get()) / 4;
}

std::optional<std::size_t> PrivateBytes() {
  using TGetProcessMemoryInfo = BOOL(WINAPI *)(HANDLE, PROCESS_MEMORY_COUNTERS *, DWORD);
  const HMODULE Library = LoadLibraryW(L"psapi.dll"); // newer systems have it in kernel32
  const auto GetMemory =
      reinterpret_cast<TGetProcessMemoryInfo>(FindFunction(L"psapi.dll", "GetProcessMemoryInfo"));
  PROCESS_MEMORY_COUNTERS Memory = {};
  EXPECT_TRUE(GetMemory && GetMemory(GetCurrentProcess(), &Memory, sizeof Memory));
  FreeLibrary(Library);
  return Memory.PagefileUsage;
}

void SetReadOnly(const std::u16string &Path, bool ReadOnly) {
  ASSERT_TRUE(
      SetFileAttributesW(Wide(Path), ReadOnly ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL));
}

} // namespace hivesweep

#include "platform/win32/FileParts.h"
#include "platform/win32/Hosts.h"

namespace hivesweep {

namespace {

// The texts of a list in which a zero ends each.
std::vector<std::u16string> SplitList(const std::u16string &List) {
  std::vector<std::u16string> Out;
  for (std::size_t At = 0; At < List.size();) {
    const std::size_t End = std::min(List.find(u'\0', At), List.size());
    Out.push_back(List.substr(At, End - At));
    At = End + 1;
  }
  return Out;
}

class TWin32Profiles final : public TProfiles {
public:
  std::u16string ReadString(std::u16string_view Path, std::u16string_view Section,
                            std::u16string_view Key, std::u16string_view Default) override {
    if (HoldsZero(Path) || HoldsZero(Section) || HoldsZero(Key))
      return std::u16string(Default);
    // The system takes blanks off the default it is given. This one comes back as
    // it is, and no line of a file can hold it.
    static const std::u16string Nothing = u"\x7F\n\x7F";
    const std::u16string File(Path);
    const std::u16string SectionName(Section);
    const std::u16string KeyName(Key);
    std::u16string Text = GrowingText([&](wchar_t *Units, DWORD Count) {
      return GetPrivateProfileStringW(Wide(SectionName), Wide(KeyName), Wide(Nothing), Units, Count,
                                      Wide(File));
    });
    return Text == Nothing ? std::u16string(Default) : Text;
  }

  std::vector<std::u16string> KeyNames(std::u16string_view Path,
                                       std::u16string_view Section) override {
    if (HoldsZero(Path) || HoldsZero(Section))
      return {};
    const std::u16string File(Path);
    const std::u16string SectionName(Section);
    return SplitList(GrowingText([&](wchar_t *Units, DWORD Count) {
      return GetPrivateProfileStringW(Wide(SectionName), nullptr, L"", Units, Count, Wide(File));
    }));
  }

  std::vector<std::u16string> Lines(std::u16string_view Path,
                                    std::u16string_view Section) override {
    if (HoldsZero(Path) || HoldsZero(Section))
      return {};
    const std::u16string File(Path);
    const std::u16string SectionName(Section);
    return SplitList(GrowingText([&](wchar_t *Units, DWORD Count) {
      return GetPrivateProfileSectionW(Wide(SectionName), Units, Count, Wide(File));
    }));
  }

  bool WriteString(std::u16string_view Path, std::u16string_view Section, std::u16string_view Key,
                   std::optional<std::u16string_view> Text) override {
    if (HoldsZero(Path) || !IsIniText(Section) || !IsIniText(Key) || !IsIniText(Text.value_or(u"")))
      return false;
    const std::u16string File(Path);
    if (IsMissing(File)) {
      if (!Text)
        return true;
      if (!MakeFile(File))
        return false;
    } else if (IsReadOnly(File)) {
      return false; // not every disk keeps an administrator from writing it
    }
    const std::u16string Value(Text.value_or(u""));
    const bool Written =
        WritePrivateProfileStringW(Wide(std::u16string(Section)), Wide(std::u16string(Key)),
                                   Text ? Wide(Value) : nullptr, Wide(File)) != 0;
    // Some systems keep what was written to themselves until they are asked.
    WritePrivateProfileStringW(nullptr, nullptr, nullptr, Wide(File));
    return Written;
  }

  std::optional<TFileStamp> Stamp(std::u16string_view Path) override {
    if (HoldsZero(Path))
      return std::nullopt;
    WIN32_FILE_ATTRIBUTE_DATA Found = {};
    if (!GetFileAttributesExW(Wide(std::u16string(Path)), GetFileExInfoStandard, &Found)) {
      const DWORD Error = GetLastError();
      if (Error == ERROR_FILE_NOT_FOUND || Error == ERROR_PATH_NOT_FOUND)
        return TFileStamp{};
      return std::nullopt;
    }
    // Disks keep times in steps of up to two seconds: a change that follows within
    // one step leaves the same time.
    constexpr std::uint64_t Settled = 3 * 10'000'000ull;
    FILETIME Now = {};
    GetSystemTimeAsFileTime(&Now);
    const std::uint64_t Modified = Number(Found.ftLastWriteTime);
    if (IsWithin(Settled, Modified, Number(Now)))
      return std::nullopt;
    return TFileStamp{Modified, Number(Found.ftCreationTime),
                      static_cast<std::uint64_t>(Found.nFileSizeHigh) << 32 | Found.nFileSizeLow};
  }

private:
  static bool IsMissing(const std::u16string &File) {
    return GetFileAttributesW(Wide(File)) == INVALID_FILE_ATTRIBUTES &&
           GetLastError() == ERROR_FILE_NOT_FOUND;
  }

  // In a file that begins with this mark the system keeps all letters, in one that it
  // makes itself those of the code page.
  static bool MakeFile(const std::u16string &File) {
    const TFileHandle Made(CreateFileW(Wide(File), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
    return Made.IsOpen() && WriteAndFlush(Made.Get(), "\xFF\xFE");
  }
};

} // namespace

std::unique_ptr<TProfiles> MakeWin32Profiles() { return std::make_unique<TWin32Profiles>(); }

} // namespace hivesweep

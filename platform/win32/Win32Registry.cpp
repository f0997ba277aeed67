#include "platform/win32/Win32Registry.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Text.h"
#include "platform/win32/KeySecurity.h"
#include "platform/win32/Win32.h"

namespace hivesweep {

namespace {

// A value's name has up to 16,383 units, a key's 255 (Wine: 256); one for the zero.
constexpr DWORD NameRoom = 16'384;

// Larger values are rare. The system allocates as much as it is offered, in every
// call, so a buffer that has grown for one value is not offered for the next.
constexpr DWORD UsualRoom = 32'768;

// A longer text does not fit into the system's own string type, whose 16-bit
// length would wrap: it would be taken for another one.
constexpr std::size_t LongestText = 32'766;

// Keys below this one are made and deleted with rights that the system looks up when it
// happens, so a handle needs none for them.
constexpr REGSAM FullRights = KEY_READ | KEY_SET_VALUE;

bool IsAddressable(std::u16string_view Text) {
  return Text.size() <= LongestText && !HoldsZero(Text) && !Text.starts_with(u'\\');
}

bool IsAddressableValue(std::u16string_view Name) {
  return Name.size() <= LongestText && !HoldsZero(Name);
}

TRegStatus StatusOf(LONG Error) {
  switch (Error) {
  case ERROR_SUCCESS:
    return TRegStatus::Ok;
  case ERROR_FILE_NOT_FOUND:
  case ERROR_PATH_NOT_FOUND:
  case ERROR_KEY_DELETED:
    return TRegStatus::NotFound;
  case ERROR_ACCESS_DENIED:
    return TRegStatus::Denied;
  default:
    return TRegStatus::Failed;
  }
}

HKEY RootHandle(TRegRoot Root) {
  switch (Root) {
  case TRegRoot::ClassesRoot:
    return HKEY_CLASSES_ROOT;
  case TRegRoot::CurrentUser:
    return HKEY_CURRENT_USER;
  case TRegRoot::LocalMachine:
    return HKEY_LOCAL_MACHINE;
  case TRegRoot::Users:
    return HKEY_USERS;
  }
  return nullptr;
}

// A key's handle; closes it.
class TKeyHandle {
public:
  TKeyHandle() = default;
  TKeyHandle(TKeyHandle &&Other) noexcept : Owned_(std::exchange(Other.Owned_, nullptr)) {}
  TKeyHandle &operator=(TKeyHandle &&Other) noexcept {
    std::swap(Owned_, Other.Owned_);
    Other.Close();
    return *this;
  }
  ~TKeyHandle() { Close(); }

  LONG Open(HKEY Base, const std::u16string &Path, DWORD Options, REGSAM Rights) {
    Close();
    return RegOpenKeyExW(Base, Wide(Path), Options, Rights, &Owned_);
  }
  LONG Create(HKEY Base, const std::u16string &Path, REGSAM Rights, std::u16string ClassName = {},
              DWORD Options = 0, DWORD *Disposition = nullptr) {
    Close();
    wchar_t *const Class = ClassName.empty() ? nullptr : Wide(ClassName.data());
    return RegCreateKeyExW(Base, Wide(Path), 0, Class, Options, Rights, nullptr, &Owned_,
                           Disposition);
  }
  HKEY Get() const { return Owned_; }
  void Close() {
    // Opening a root by an empty path answers the root's own number on Windows
    // 2000 and XP: closing it would close it for the whole process.
    const bool IsRoot = (reinterpret_cast<std::uintptr_t>(Owned_) & 0x8000'0000u) != 0;
    if (Owned_ && !IsRoot)
      RegCloseKey(Owned_);
    Owned_ = nullptr;
  }

private:
  HKEY Owned_ = nullptr;
};

} // namespace

struct TWin32Registry::TBuffers {
  std::vector<wchar_t> Name = std::vector<wchar_t>(NameRoom);
  std::vector<std::byte> Data;

  // Reads data of any size: Call(bytes, size) is one of the system's functions
  // that answer ERROR_MORE_DATA and the needed size. That size may have changed
  // by the next call, hence a loop; and a little more room than asked for each
  // time, or a value that keeps growing could be chased for ever.
  template <typename TCall> LONG Fill(DWORD &Size, TCall Call) {
    DWORD Room = UsualRoom;
    for (;;) {
      if (Data.size() < Room)
        Data.resize(Room);
      Size = Room;
      const LONG Error = Call(reinterpret_cast<BYTE *>(Data.data()), &Size);
      if (Error != ERROR_MORE_DATA)
        return Error;
      // More room for data does not help: another call would answer the same.
      if (Size <= Room)
        return ERROR_INVALID_DATA;
      Room = Size + std::min<DWORD>(Size / 4, MAXDWORD - Size);
    }
  }

  std::span<const std::byte> Bytes(DWORD Size) const { return std::span(Data).first(Size); }
  std::u16string_view NameText(DWORD Length) const { return {FromWide(Name.data()), Length}; }
};

namespace {

LONG ListSubkeys(HKEY Key, TWin32Registry::TBuffers &Buffers, std::vector<std::u16string> &Out) {
  Out.clear();
  for (DWORD Index = 0;; ++Index) {
    DWORD Length = NameRoom;
    const LONG Error =
        RegEnumKeyExW(Key, Index, Buffers.Name.data(), &Length, nullptr, nullptr, nullptr, nullptr);
    if (Error != ERROR_SUCCESS)
      return Error == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : Error;
    Out.emplace_back(Buffers.NameText(Length));
  }
}

// Whether the key has what makes a link of a key. Answers the system's error.
LONG HasLinkValue(HKEY Key, bool &Answer) {
  DWORD Type = REG_NONE;
  const LONG Error = RegQueryValueExW(Key, L"SymbolicLinkValue", nullptr, &Type, nullptr, nullptr);
  Answer = Error == ERROR_SUCCESS && Type == REG_LINK;
  return StatusOf(Error) == TRegStatus::NotFound ? ERROR_SUCCESS : Error;
}

// Any key can have a value of that name and type. But a link's own does not show when
// the link is followed.
LONG CheckForLink(HKEY Base, const std::u16string &Path, HKEY Itself, bool &Answer) {
  const LONG Error = HasLinkValue(Itself, Answer);
  if (Error != ERROR_SUCCESS || !Answer)
    return Error;
  TKeyHandle Followed;
  bool Shows = false;
  Answer = Followed.Open(Base, Path, 0, KEY_QUERY_VALUE) != ERROR_SUCCESS ||
           HasLinkValue(Followed.Get(), Shows) != ERROR_SUCCESS || !Shows;
  return ERROR_SUCCESS;
}

LONG ReadClassName(HKEY Key, std::u16string &Out) {
  constexpr DWORD Most = 65'536;
  LONG Error = ERROR_MORE_DATA;
  for (DWORD Room = 256; Error == ERROR_MORE_DATA && Room <= Most; Room *= 4) {
    Out.resize(Room);
    DWORD Length = Room;
    Error = RegQueryInfoKeyW(Key, Wide(Out.data()), &Length, nullptr, nullptr, nullptr, nullptr,
                             nullptr, nullptr, nullptr, nullptr, nullptr);
    Out.resize(Error == ERROR_SUCCESS ? Length : 0);
  }
  return Error;
}

// Systems from Windows Vista on tell it.
TRegVolatile VolatilityOf(HKEY Key) {
  using TNtQueryKey = LONG(WINAPI *)(HANDLE, int, void *, ULONG, ULONG *);
  static const auto NtQueryKey =
      reinterpret_cast<TNtQueryKey>(FindFunction(L"ntdll.dll", "NtQueryKey"));
  constexpr int FlagsInformation = 5;
  constexpr ULONG IsVolatile = 1;
  struct {
    ULONG Wow64;
    ULONG Key;
    ULONG Control;
  } Flags = {};
  ULONG Size = 0;
  // Older ones answer less, or nothing.
  if (!NtQueryKey || NtQueryKey(Key, FlagsInformation, &Flags, sizeof Flags, &Size) < 0 ||
      Size < sizeof Flags)
    return TRegVolatile::NotTold;
  return (Flags.Key & IsVolatile) != 0 ? TRegVolatile::Yes : TRegVolatile::No;
}

// Whether a key that stays can be made in this one; in a volatile key it can't. Leaves
// nothing behind.
LONG TryLastingSubkey(HKEY Key) {
  const std::u16string Name = u"Hivesweep tries " + ToDecimal(GetCurrentProcessId());
  TKeyHandle Made;
  DWORD Disposition = 0;
  LONG Error = Made.Create(Key, Name, KEY_READ, {}, 0, &Disposition);
  Made.Close();
  if (Error == ERROR_SUCCESS)
    Error =
        Disposition == REG_CREATED_NEW_KEY ? RegDeleteKeyW(Key, Wide(Name)) : ERROR_ALREADY_EXISTS;
  return Error;
}

// The system makes all levels of a path as it is told to make the last.
bool MustBeMadeAlone(const TRegKeyInfo &Info) {
  return !Info.ClassName.empty() || Info.IsLink || Info.Volatile == TRegVolatile::Yes;
}

// The front of the path that is made by a call of its own; 0: there is none.
std::size_t FrontToMakeFirst(std::u16string_view Path, bool LastIsAlone) {
  constexpr int MostLevels = 32; // that the system makes in one call
  int Levels = 0;
  std::size_t End = Path.find(u'\\');
  for (; End != std::u16string_view::npos; End = Path.find(u'\\', End + 1))
    if (++Levels == MostLevels)
      return End;
  return LastIsAlone && Levels > 0 ? Path.rfind(u'\\') : 0;
}

// Created: the key was not there before.
LONG CreateKey(HKEY Base, std::u16string_view Path, const TRegKeyInfo &Info, TKeyHandle &Out,
               bool &Created) {
  TKeyHandle Parent;
  while (const std::size_t End = FrontToMakeFirst(Path, MustBeMadeAlone(Info))) {
    TKeyHandle Next;
    const LONG Error = Next.Create(Base, std::u16string(Path.substr(0, End)), KEY_READ);
    if (Error != ERROR_SUCCESS)
      return Error;
    Parent = std::move(Next);
    Base = Parent.Get();
    Path.remove_prefix(End + 1);
  }
  DWORD Disposition = 0;
  const DWORD Options =
      (Info.IsLink ? static_cast<DWORD>(REG_OPTION_CREATE_LINK) : 0) |
      (Info.Volatile == TRegVolatile::Yes ? static_cast<DWORD>(REG_OPTION_VOLATILE) : 0);
  const LONG Error =
      Out.Create(Base, std::u16string(Path), FullRights, Info.ClassName, Options, &Disposition);
  Created = Error == ERROR_SUCCESS && Disposition == REG_CREATED_NEW_KEY;
  return Error;
}

// Deletes keys with all that is in them. Every key is opened as itself, never as
// what a link leads to.
class TTreeDeletion {
public:
  explicit TTreeDeletion(TWin32Registry::TBuffers &Buffers) : Buffers_(Buffers) {}

  LONG Run(HKEY Base, std::u16string Path) {
    LONG Error = Enter(Base, std::move(Path));
    if (Error != ERROR_SUCCESS)
      return Error;
    while (!Levels_.empty()) {
      TLevel &Level = Levels_.back();
      if (Level.Subkeys.empty()) {
        Error = LeaveDeleted(Base);
      } else {
        std::u16string Name = std::move(Level.Subkeys.back());
        Level.Subkeys.pop_back();
        Error = Enter(Level.Key.Get(), std::move(Name));
        if (StatusOf(Error) == TRegStatus::NotFound)
          Error = ERROR_SUCCESS; // someone else was faster
      }
      if (Error != ERROR_SUCCESS)
        return Error;
    }
    return ERROR_SUCCESS;
  }

private:
  struct TLevel {
    std::u16string Name; // below the level before; the path for the first one
    TKeyHandle Key;
    std::vector<std::u16string> Subkeys; // those that are still there
    bool IsLink = false;
  };

  LONG Enter(HKEY Parent, std::u16string Name) {
    TLevel Level;
    Level.Name = std::move(Name);
    LONG Error = Level.Key.Open(Parent, Level.Name, REG_OPTION_OPEN_LINK,
                                KEY_QUERY_VALUE | KEY_ENUMERATE_SUB_KEYS | DELETE);
    if (Error != ERROR_SUCCESS)
      return Error;
    Error = ListSubkeys(Level.Key.Get(), Buffers_, Level.Subkeys);
    if (Error != ERROR_SUCCESS)
      return Error;
    Error = HasLinkValue(Level.Key.Get(), Level.IsLink);
    if (Error != ERROR_SUCCESS)
      return Error;
    Levels_.push_back(std::move(Level));
    return ERROR_SUCCESS;
  }

  LONG LeaveDeleted(HKEY Base) {
    TLevel Level = std::move(Levels_.back());
    Levels_.pop_back();
    // RegDeleteKeyW would follow the link and delete what it leads to. For all
    // others it is the documented one.
    if (Level.IsLink)
      return DeleteItself(Level.Key.Get());
    Level.Key.Close();
    const LONG Error =
        RegDeleteKeyW(Levels_.empty() ? Base : Levels_.back().Key.Get(), Wide(Level.Name));
    return StatusOf(Error) == TRegStatus::NotFound ? ERROR_SUCCESS : Error;
  }

  static LONG DeleteItself(HKEY Key) {
    using TNtDeleteKey = LONG(WINAPI *)(HANDLE);
    static const auto NtDeleteKey =
        reinterpret_cast<TNtDeleteKey>(FindFunction(L"ntdll.dll", "NtDeleteKey"));
    constexpr LONG AccessDenied = static_cast<LONG>(0xC000'0022u);
    const LONG Status = NtDeleteKey ? NtDeleteKey(Key) : -1;
    if (Status >= 0)
      return ERROR_SUCCESS;
    return Status == AccessDenied ? ERROR_ACCESS_DENIED : ERROR_GEN_FAILURE;
  }

  TWin32Registry::TBuffers &Buffers_;
  std::vector<TLevel> Levels_;
};

class TWin32Key final : public TRegKey {
public:
  // ClassesPath: of a key of HKEY_CLASSES_ROOT, its path from there.
  TWin32Key(TKeyHandle Key, std::optional<std::u16string> ClassesPath,
            TWin32Registry::TBuffers &Buffers, bool IsLink = false)
      : Key_(std::move(Key)), ClassesPath_(std::move(ClassesPath)), Buffers_(Buffers),
        IsLink_(IsLink) {}

  static TRegOpened Open(HKEY Base, const std::optional<std::u16string> &ClassesPath,
                         TWin32Registry::TBuffers &Buffers, std::u16string_view Path,
                         TRegAccess Access) {
    if (!IsAddressable(Path))
      return {};
    TKeyHandle Opened;
    const LONG Error = Opened.Open(Base, std::u16string(Path), 0, RightsOf(Access));
    if (Error != ERROR_SUCCESS)
      return {StatusOf(Error), nullptr};
    return {TRegStatus::Ok,
            std::make_unique<TWin32Key>(std::move(Opened), Below(ClassesPath, Path), Buffers)};
  }

  TRegOpened Open(std::u16string_view Path, TRegAccess Access) override {
    return Open(Key_.Get(), ClassesPath_, Buffers_, Path, Access);
  }

  TRegOpened OpenItself(std::u16string_view Path, TRegAccess Access) override {
    if (!IsAddressable(Path))
      return {};
    const std::u16string Ended(Path);
    TKeyHandle Opened;
    bool IsLink = false;
    LONG Error = Opened.Open(Key_.Get(), Ended, REG_OPTION_OPEN_LINK, RightsOf(Access));
    if (Error == ERROR_SUCCESS)
      Error = CheckForLink(Key_.Get(), Ended, Opened.Get(), IsLink);
    if (Error != ERROR_SUCCESS)
      return {StatusOf(Error), nullptr};
    return {TRegStatus::Ok, KeyBelow(std::move(Opened), Path, IsLink)};
  }

  TRegOpened Create(std::u16string_view Path, const TRegKeyInfo &Info) override {
    if (!IsNewKeyPath(Path) || !IsAddressable(Path))
      return {};
    // What is there is opened first: a link can't be made over one, and there are systems
    // that give a key that is there another class.
    TRegOpened Opened{TRegStatus::NotFound, nullptr};
    if (MustBeMadeAlone(Info))
      Opened = Info.IsLink ? OpenItself(Path, TRegAccess::Full) : Open(Path, TRegAccess::Full);
    if (Opened.Status == TRegStatus::NotFound)
      Opened = Make(Path, Info);
    return Opened;
  }

  TRegStatus ReadInfo(TRegKeyInfo &Out) override {
    Out = {};
    LONG Error = ReadClassName(Key_.Get(), Out.ClassName);
    if (Error == ERROR_SUCCESS)
      Error = ReadKeySecurity(Key_.Get(), Out.Security);
    if (Error == ERROR_SUCCESS)
      Error = ReadKeyLabel(Key_.Get(), Out.Label);
    if (Error != ERROR_SUCCESS) {
      Out = {};
    } else {
      Out.Volatile = VolatilityOf(Key_.Get());
      Out.IsLink = IsLink_;
    }
    return StatusOf(Error);
  }

  TRegStatus TryLikeness(const TRegKeyInfo &Info) override {
    // A label that can be set once more can be set on a new key.
    LONG Error = Info.Label.empty() ? ERROR_SUCCESS : SetLabel(Key_.Get(), Info.Label);
    if (Error == ERROR_SUCCESS && Info.Volatile == TRegVolatile::NotTold)
      Error = TryLastingSubkey(Key_.Get());
    return StatusOf(Error);
  }

  TRegStatus Counts(TRegCounts &Out) override {
    DWORD Subkeys = 0;
    DWORD Values = 0;
    const LONG Error = RegQueryInfoKeyW(Key_.Get(), nullptr, nullptr, nullptr, &Subkeys, nullptr,
                                        nullptr, &Values, nullptr, nullptr, nullptr, nullptr);
    Out = Error == ERROR_SUCCESS ? TRegCounts{Subkeys, Values} : TRegCounts{};
    return StatusOf(Error);
  }

  TRegStatus SubkeyNames(std::vector<std::u16string> &Out) override {
    return StatusOf(ListSubkeys(Key_.Get(), Buffers_, Out));
  }

  TRegStatus Values(TRegValueList &Out) override {
    Out.Clear();
    for (DWORD Index = 0;; ++Index) {
      DWORD NameLength = 0;
      DWORD Type = REG_NONE;
      DWORD Size = 0;
      const LONG Error = Buffers_.Fill(Size, [&](BYTE *Data, DWORD *DataSize) {
        NameLength = NameRoom;
        return RegEnumValueW(Key_.Get(), Index, Buffers_.Name.data(), &NameLength, nullptr, &Type,
                             Data, DataSize);
      });
      // A value that vanished meanwhile only makes the list shorter.
      if (Error == ERROR_NO_MORE_ITEMS)
        return TRegStatus::Ok;
      if (Error != ERROR_SUCCESS)
        return StatusOf(Error);
      Out.Add(Buffers_.NameText(NameLength), static_cast<TRegType>(Type), Buffers_.Bytes(Size));
    }
  }

  TRegStatus Read(std::u16string_view Name, TRegValue &Out) override {
    Out.Assign(TRegType::None, {});
    if (!IsAddressableValue(Name))
      return TRegStatus::Failed;
    const std::u16string Ended(Name);
    DWORD Type = REG_NONE;
    DWORD Size = 0;
    const LONG Error = Buffers_.Fill(Size, [&](BYTE *Data, DWORD *DataSize) {
      return RegQueryValueExW(Key_.Get(), Wide(Ended), nullptr, &Type, Data, DataSize);
    });
    if (Error == ERROR_SUCCESS)
      Out.Assign(static_cast<TRegType>(Type), Buffers_.Bytes(Size));
    return StatusOf(Error);
  }

  TRegStatus SetValue(std::u16string_view Name, TRegType Type,
                      std::span<const std::byte> Bytes) override {
    if (!IsAddressableValue(Name) || Bytes.size() > MAXDWORD)
      return TRegStatus::Failed;
    // The system looks behind a text without a final zero, and adds the zero that it
    // finds there: what stands behind must be none.
    std::vector<std::byte> Data(Bytes.begin(), Bytes.end());
    Data.resize(Data.size() + 2 * sizeof(char16_t), std::byte{0xFF});
    return StatusOf(RegSetValueExW(
        Key_.Get(), Wide(std::u16string(Name)), 0, static_cast<DWORD>(Type),
        reinterpret_cast<const BYTE *>(Data.data()), static_cast<DWORD>(Bytes.size())));
  }

  TRegStatus DeleteValue(std::u16string_view Name) override {
    if (!IsAddressableValue(Name))
      return TRegStatus::Failed;
    return StatusOf(RegDeleteValueW(Key_.Get(), Wide(std::u16string(Name))));
  }

  TRegStatus DeleteTree(std::u16string_view Path) override {
    if (Path.empty() || !IsAddressable(Path))
      return TRegStatus::Failed;
    // Two keys may show as one there, the user's and the machine's. Deleted as they
    // show, subkey by subkey, the machine's would lose those that the user's lacks.
    if (const auto FromClasses = Below(ClassesPath_, Path)) {
      const LONG Error =
          TTreeDeletion(Buffers_).Run(HKEY_CURRENT_USER, u"Software\\Classes\\" + *FromClasses);
      if (StatusOf(Error) != TRegStatus::NotFound)
        return StatusOf(Error);
    }
    return StatusOf(TTreeDeletion(Buffers_).Run(Key_.Get(), std::u16string(Path)));
  }

private:
  static REGSAM RightsOf(TRegAccess Access) {
    return Access == TRegAccess::Full ? FullRights : KEY_READ;
  }

  TRegOpened Make(std::u16string_view Path, const TRegKeyInfo &Info) {
    TKeyHandle Made;
    bool Created = false;
    const LONG Error = CreateKey(Key_.Get(), Path, Info, Made, Created);
    if (Error != ERROR_SUCCESS)
      return {StatusOf(Error), nullptr};
    // By a handle of its own: the right that it needs would keep the user out of many a
    // key that is there already.
    TKeyHandle Giver; // first, as the list may take the right away
    if (Created && !Info.Security.empty())
      Giver.Open(Made.Get(), u"", REG_OPTION_OPEN_LINK, WRITE_OWNER);
    TKeyHandle Owned;
    if (Created && !Info.Security.empty() &&
        Owned.Open(Made.Get(), u"", REG_OPTION_OPEN_LINK, WRITE_DAC) == ERROR_SUCCESS)
      SetKeyAccessList(Owned.Get(), Info.Security);
    if (Created && !Info.Security.empty() && Giver.Get())
      SetKeyOwner(Giver.Get(), Info.Security);
    if (Created && !Info.Label.empty())
      SetLabel(Made.Get(), Info.Label);
    return {TRegStatus::Ok, KeyBelow(std::move(Made), Path, Created && Info.IsLink), Created};
  }

  static LONG SetLabel(HKEY Key, std::span<const std::byte> Label) {
    TKeyHandle Owned;
    const LONG Error = Owned.Open(Key, u"", REG_OPTION_OPEN_LINK, WRITE_OWNER);
    return Error == ERROR_SUCCESS ? SetKeyLabel(Owned.Get(), Label) : Error;
  }

  std::unique_ptr<TWin32Key> KeyBelow(TKeyHandle Key, std::u16string_view Path, bool IsLink) const {
    return std::make_unique<TWin32Key>(std::move(Key), Below(ClassesPath_, Path), Buffers_, IsLink);
  }

  static std::optional<std::u16string> Below(const std::optional<std::u16string> &ClassesPath,
                                             std::u16string_view Path) {
    if (!ClassesPath)
      return std::nullopt;
    const bool Between = !ClassesPath->empty() && !Path.empty();
    return *ClassesPath + (Between ? u"\\" : u"") + std::u16string(Path);
  }

  TKeyHandle Key_;
  std::optional<std::u16string> ClassesPath_;
  TWin32Registry::TBuffers &Buffers_;
  bool IsLink_; // itself, not what it leads to
};

} // namespace

TWin32Registry::TWin32Registry() : Buffers_(std::make_unique<TBuffers>()) {}
TWin32Registry::~TWin32Registry() = default;

TRegOpened TWin32Registry::Open(TRegRoot Root, std::u16string_view Path, TRegAccess Access) {
  std::optional<std::u16string> ClassesPath;
  if (Root == TRegRoot::ClassesRoot)
    ClassesPath.emplace();
  return TWin32Key::Open(RootHandle(Root), ClassesPath, *Buffers_, Path, Access);
}

} // namespace hivesweep

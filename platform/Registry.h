// The registry family of the seam: keys and values of some registry, be it the
// live one or one that was loaded from text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hivesweep {

enum class TRegRoot { ClassesRoot, CurrentUser, LocalMachine, Users };

// "HKEY_LOCAL_MACHINE" and so on.
std::u16string_view RegRootName(TRegRoot Root);

// The root of exactly that name (upper case, no abbreviation).
std::optional<TRegRoot> RegRootByName(std::u16string_view Name);

// The type that is stored with a value. Any number may be stored; these have names.
enum class TRegType : std::uint32_t {
  None = 0,
  String = 1,
  ExpandString = 2,
  Binary = 3,
  Dword = 4,
  DwordBigEndian = 5,
  Link = 6,
  MultiString = 7,
  Qword = 11,
};

// What became of a call. Only NotFound says that something is not there; Denied
// and Failed say that it could not be looked at.
enum class TRegStatus { Ok, NotFound, Denied, Failed };

// A value's type and stored bytes, borrowed. The type may lie about the bytes.
class TRegData {
public:
  TRegData() = default;
  // Units must hold (Size + 1) / 2 code units.
  TRegData(TRegType Type, const char16_t *Units, std::size_t Size)
      : Kind_(Type), First_(Units), ByteCount_(Size) {}

  TRegType Type() const { return Kind_; }
  std::size_t Size() const { return ByteCount_; }
  std::span<const std::byte> Bytes() const {
    return std::as_bytes(std::span(First_, (ByteCount_ + 1) / 2)).first(ByteCount_);
  }

  // A string or an expandable string.
  bool IsText() const { return Kind_ == TRegType::String || Kind_ == TRegType::ExpandString; }

  // The bytes read as text, up to the first zero unit or the end, whichever
  // comes first; an odd last byte is dropped.
  std::u16string_view Text() const;

  // The 32-bit number of a Dword value; nothing for other types and for
  // values of fewer than four bytes.
  std::optional<std::uint32_t> Dword() const;

private:
  TRegType Kind_ = TRegType::None;
  const char16_t *First_ = nullptr;
  std::size_t ByteCount_ = 0;
};

// A value's type and bytes, owned. Reading into the same object again reuses
// its memory.
class TRegValue {
public:
  void Assign(TRegType Type, std::span<const std::byte> Bytes);
  TRegData Data() const { return {Kind_, Units_.data(), ByteCount_}; }

private:
  TRegType Kind_ = TRegType::None;
  std::vector<char16_t> Units_;
  std::size_t ByteCount_ = 0;
};

// All values of a key at one moment: names, types and bytes in one block of
// memory, which is kept when the list is filled again.
class TRegValueList {
public:
  struct TEntry {
    std::u16string_view Name; // empty: the key's default value
    TRegData Data;
  };

  std::size_t Count() const { return Slots_.size(); }
  TEntry operator[](std::size_t Index) const;

  void Clear();
  void Add(std::u16string_view Name, TRegType Type, std::span<const std::byte> Bytes);

private:
  struct TSlot {
    std::size_t Offset;
    std::uint32_t NameLength;
    TRegType Type;
    std::size_t Size;
  };
  std::vector<TSlot> Slots_;
  std::vector<char16_t> Units_;
};

enum class TRegAccess { Read, Full };

struct TRegCounts {
  std::uint32_t Subkeys = 0;
  std::uint32_t Values = 0;
};

// Whether a key goes when the system ends. Older systems don't tell.
enum class TRegVolatile : std::uint8_t { No, Yes, NotTold };

// What a key is beside its values and subkeys.
struct TRegKeyInfo {
  std::u16string ClassName;
  // Owner, group and access list as one self-relative descriptor; empty in a registry
  // that keeps none.
  std::vector<std::byte> Security;
  // Its mandatory label, as a descriptor of its own; empty when it has none, and on a
  // system that knows no labels.
  std::vector<std::byte> Label;
  TRegVolatile Volatile = TRegVolatile::No;
  bool IsLink = false; // where it leads is its value SymbolicLinkValue of type Link

  bool operator==(const TRegKeyInfo &) const = default;
};

class TRegKey;

struct TRegOpened {
  TRegStatus Status = TRegStatus::Failed;
  std::unique_ptr<TRegKey> Key; // set exactly when Status is Ok
  bool Created = false;         // the key was not there before
};

// An open key. Closed when it is destroyed; it must not outlive its host.
//
// Names and paths are compared without regard to case. A path has no leading
// backslash; an empty path is the key itself. A name or path that the registry's
// interface cannot address (one with a zero inside) is answered with Failed:
// the text before the zero would name another key.
class TRegKey {
public:
  TRegKey() = default;
  TRegKey(const TRegKey &) = delete;
  TRegKey &operator=(const TRegKey &) = delete;
  virtual ~TRegKey() = default;

  // Opens a key below this one; never creates it.
  virtual TRegOpened Open(std::u16string_view Path, TRegAccess Access = TRegAccess::Read) = 0;

  // The same, but a link at the path's end is opened as itself and not as what it
  // leads to. Links on the way are followed.
  virtual TRegOpened OpenItself(std::u16string_view Path, TRegAccess Access = TRegAccess::Read) = 0;

  // Opens the key at Path, below this one, with full access; makes it when it is not
  // there, with all its missing parents. Only a key that is made takes the class name,
  // security, the label, and the nature of a link or of a volatile key from Info; a parent that
  // is made has none of them. Of owner, group, access list and label, what the system does not
  // let the user set is left out. A path that IsNewKeyPath refuses is Failed.
  virtual TRegOpened Create(std::u16string_view Path, const TRegKeyInfo &Info = {}) = 0;

  virtual TRegStatus ReadInfo(TRegKeyInfo &Out) = 0;

  // Finds out by trying whether a key like this one, with what ReadInfo told in Info, could
  // be made again: Ok when it could. May make a key below this one for a moment, so it is
  // for a key that is going to be deleted.
  virtual TRegStatus TryLikeness(const TRegKeyInfo &Info) = 0;

  // How many subkeys and values there are, without listing them.
  virtual TRegStatus Counts(TRegCounts &Out) = 0;

  // The names of all subkeys, in the registry's order: a snapshot, so that the
  // caller may delete while walking it. After a failure Out holds what could
  // be read.
  virtual TRegStatus SubkeyNames(std::vector<std::u16string> &Out) = 0;

  // All values with their data, in the registry's order: a snapshot too. One
  // call to the system for each value.
  virtual TRegStatus Values(TRegValueList &Out) = 0;

  // One value. After a failure Out has type None and no bytes.
  virtual TRegStatus Read(std::u16string_view Name, TRegValue &Out) = 0;

  // Stores type and bytes as they are given, over a value of that name, which keeps
  // the spelling of its name.
  virtual TRegStatus SetValue(std::u16string_view Name, TRegType Type,
                              std::span<const std::byte> Bytes) = 0;

  virtual TRegStatus DeleteValue(std::u16string_view Name) = 0;

  // Deletes the key at Path, below this one, with all that is in it. A link
  // inside is removed, what it leads to is not touched. Where HKEY_CLASSES_ROOT
  // shows two keys as one, the user's goes and the machine's shows. An empty path
  // is refused with Failed.
  virtual TRegStatus DeleteTree(std::u16string_view Path) = 0;
};

// A key could be made at this path: it has no zero inside and no part that is empty
// or longer than a key's name can be.
bool IsNewKeyPath(std::u16string_view Path);

// A value's name has no more units than this.
constexpr std::size_t LongestValueName = 16'383;

// Some registry.
class TRegistryHost {
public:
  TRegistryHost() = default;
  TRegistryHost(const TRegistryHost &) = delete;
  TRegistryHost &operator=(const TRegistryHost &) = delete;
  virtual ~TRegistryHost() = default;

  // Opens a key by its path from a root.
  virtual TRegOpened Open(TRegRoot Root, std::u16string_view Path,
                          TRegAccess Access = TRegAccess::Read) = 0;
};

// A registry seen through one root and one current key.
//
// A path that begins with a backslash is taken from the root, any other from the
// current key (from the root while none is open); backslashes at its end do not
// count. Opening never creates.
class TRegistry {
public:
  explicit TRegistry(TRegistryHost &Host, TRegAccess Access = TRegAccess::Read)
      : Host_(Host), Access_(Access) {}

  TRegRoot Root() const { return Root_; }

  // Another root closes the current key; the same one keeps it.
  void SetRoot(TRegRoot Root);

  // When the key can't be opened, the current key stays what it was.
  TRegStatus OpenKey(std::u16string_view Path);
  void CloseKey() { Current_.reset(); }

  // The current key; null while none is open.
  TRegKey *CurrentKey() const { return Current_.get(); }

  // Hands the current key over; none is open then.
  std::unique_ptr<TRegKey> ReleaseKey() { return std::move(Current_); }

  // Both answer NotFound while there is no key to look in.
  TRegStatus DeleteValue(std::u16string_view Name);
  TRegStatus DeleteKey(std::u16string_view Path);

private:
  TRegistryHost &Host_;
  TRegAccess Access_;
  TRegRoot Root_ = TRegRoot::CurrentUser;
  std::unique_ptr<TRegKey> Current_;
};

} // namespace hivesweep

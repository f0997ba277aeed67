#include "platform/Registry.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::pair<TRegRoot, std::u16string_view> RootNames[] = {
    {TRegRoot::ClassesRoot, u"HKEY_CLASSES_ROOT"},
    {TRegRoot::CurrentUser, u"HKEY_CURRENT_USER"},
    {TRegRoot::LocalMachine, u"HKEY_LOCAL_MACHINE"},
    {TRegRoot::Users, u"HKEY_USERS"},
};

void AppendBytes(std::vector<char16_t> &Units, std::span<const std::byte> Bytes) {
  const std::size_t Offset = Units.size();
  Units.resize(Offset + (Bytes.size() + 1) / 2);
  if (!Bytes.empty())
    std::memcpy(Units.data() + Offset, Bytes.data(), Bytes.size());
}

} // namespace

std::u16string_view RegRootName(TRegRoot Root) {
  for (const auto &[Value, Name] : RootNames)
    if (Value == Root)
      return Name;
  return {};
}

std::optional<TRegRoot> RegRootByName(std::u16string_view Name) {
  for (const auto &[Value, Known] : RootNames)
    if (Known == Name)
      return Value;
  return std::nullopt;
}

std::u16string_view TRegData::Text() const { return UpToZero({First_, ByteCount_ / 2}); }

std::optional<std::uint32_t> TRegData::Dword() const {
  if (Kind_ != TRegType::Dword || ByteCount_ < sizeof(std::uint32_t))
    return std::nullopt;
  return static_cast<std::uint32_t>(First_[0]) | static_cast<std::uint32_t>(First_[1]) << 16;
}

void TRegValue::Assign(TRegType Type, std::span<const std::byte> Bytes) {
  Kind_ = Type;
  ByteCount_ = Bytes.size();
  Units_.clear();
  AppendBytes(Units_, Bytes);
}

TRegValueList::TEntry TRegValueList::operator[](std::size_t Index) const {
  const TSlot &Slot = Slots_[Index];
  const char16_t *Name = Units_.data() + Slot.Offset;
  return {{Name, Slot.NameLength}, {Slot.Type, Name + Slot.NameLength, Slot.Size}};
}

void TRegValueList::Clear() {
  Slots_.clear();
  Units_.clear();
}

void TRegValueList::Add(std::u16string_view Name, TRegType Type, std::span<const std::byte> Bytes) {
  Slots_.push_back({Units_.size(), static_cast<std::uint32_t>(Name.size()), Type, Bytes.size()});
  Units_.insert(Units_.end(), Name.begin(), Name.end());
  AppendBytes(Units_, Bytes);
}

bool IsNewKeyPath(std::u16string_view Path) {
  constexpr std::size_t LongestKeyName = 255;
  if (Contains(Path, u'\0'))
    return false;
  for (;;) {
    const std::size_t End = std::min(Path.find(u'\\'), Path.size());
    if (End == 0 || End > LongestKeyName)
      return false;
    if (End == Path.size())
      return true;
    Path.remove_prefix(End + 1);
  }
}

void TRegistry::SetRoot(TRegRoot Root) {
  if (Root == Root_)
    return;
  Root_ = Root;
  CloseKey();
}

namespace {

// The path without the backslash that only says where it begins, and without
// those at its end.
std::u16string_view BarePath(std::u16string_view Path) {
  if (Path.starts_with(u'\\'))
    Path.remove_prefix(1);
  while (Path.ends_with(u'\\'))
    Path.remove_suffix(1);
  return Path;
}

} // namespace

TRegStatus TRegistry::OpenKey(std::u16string_view Path) {
  const bool FromCurrent = Current_ && !Path.starts_with(u'\\');
  TRegOpened Opened = FromCurrent ? Current_->Open(BarePath(Path), Access_)
                                  : Host_.Open(Root_, BarePath(Path), Access_);
  if (Opened.Status == TRegStatus::Ok)
    Current_ = std::move(Opened.Key);
  return Opened.Status;
}

TRegStatus TRegistry::DeleteValue(std::u16string_view Name) {
  return Current_ ? Current_->DeleteValue(Name) : TRegStatus::NotFound;
}

TRegStatus TRegistry::DeleteKey(std::u16string_view Path) {
  if (Current_ && !Path.starts_with(u'\\'))
    return Current_->DeleteTree(BarePath(Path));
  const TRegOpened Base = Host_.Open(Root_, u"", Access_);
  return Base.Status == TRegStatus::Ok ? Base.Key->DeleteTree(BarePath(Path)) : Base.Status;
}

} // namespace hivesweep

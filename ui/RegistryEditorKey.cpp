#include "ui/RegistryEditorKey.h"

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view EditorKey =
    u"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";
constexpr std::u16string_view LastKeyValue = u"LastKey";

// More than any language calls a computer; what is longer was never written by an editor.
constexpr std::size_t LongestPrefix = 64;

} // namespace

std::u16string LastKeyPrefix(std::u16string_view LastKey, std::u16string_view Default) {
  constexpr std::u16string_view RootFront = u"HKEY_";
  if (LastKey.starts_with(RootFront))
    return {};
  std::u16string_view Computer = LastKey.substr(0, LastKey.find(u'\\'));
  const bool IsPath = Computer.size() < LastKey.size();
  if (Computer.empty() || Computer.size() > LongestPrefix || (!IsPath && Default.empty()) ||
      (IsPath && !LastKey.substr(Computer.size() + 1).starts_with(RootFront)))
    return std::u16string(Default);
  return std::u16string(Computer) + u'\\';
}

std::u16string NearestKey(TRegistryHost &Registry, std::u16string_view KeyPath) {
  while (KeyPath.ends_with(u'\\'))
    KeyPath.remove_suffix(1);
  const std::size_t RootEnd = KeyPath.find(u'\\');
  const std::optional<TRegRoot> Root = RegRootByName(KeyPath.substr(0, RootEnd));
  while (Root && KeyPath.size() > RootEnd &&
         Registry.Open(*Root, KeyPath.substr(RootEnd + 1)).Status == TRegStatus::NotFound)
    KeyPath = KeyPath.substr(0, KeyPath.rfind(u'\\'));
  return std::u16string(KeyPath);
}

TRegStatus StoreLastKey(TRegistryHost &Registry, std::u16string_view KeyPath,
                        std::u16string_view DefaultPrefix) {
  const TRegOpened User = Registry.Open(TRegRoot::CurrentUser, u"", TRegAccess::Full);
  if (!User.Key)
    return User.Status;
  const TRegOpened Editor = User.Key->Create(EditorKey);
  if (!Editor.Key)
    return Editor.Status;
  TRegValue Last;
  Editor.Key->Read(LastKeyValue, Last); // what can't be read has no type, and no text
  std::u16string Path =
      LastKeyPrefix(Last.Data().IsText() ? Last.Data().Text() : u"", DefaultPrefix);
  Path += KeyPath;
  return Editor.Key->SetValue(LastKeyValue, TRegType::String,
                              std::as_bytes(std::span(Path.c_str(), Path.size() + 1)));
}

} // namespace hivesweep

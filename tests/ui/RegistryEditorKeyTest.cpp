// Where the system's registry editor opens: which key, and how it has to be written.
#include <gtest/gtest.h>

#include "platform/Text.h"
#include "platform/memory/MemoryRegistry.h"
#include "ui/RegistryEditorKey.h"

namespace hivesweep {
namespace {

TEST(RegistryEditorKey, PrefixIsTheEditorsOwn) {
  static const struct {
    const char *Why;
    const char16_t *LastKey;
    const char16_t *Prefix;
  } Cases[] = {
      {"English", u"My Computer\\HKEY_LOCAL_MACHINE\\Software", u"My Computer\\"},
      {"another language", u"Arbeitsplatz\\HKEY_CURRENT_USER", u"Arbeitsplatz\\"},
      {"only the computer was selected", u"Poste de travail", u"Poste de travail\\"},
      {"an editor without a prefix", u"HKEY_USERS\\.DEFAULT", u""},
      {"a root without a prefix", u"HKEY_USERS", u""},
      {"nothing stored", u"", u"Default\\"},
      {"no root at the second place", u"Computer\\Software\\HKEY_USERS", u"Default\\"},
      {"a path of something else", u"C:\\Windows", u"Default\\"},
      {"only a backslash", u"\\", u"Default\\"},
      {"a root behind a backslash", u"\\HKEY_USERS", u"Default\\"},
  };
  for (const auto &C : Cases)
    EXPECT_EQ(ToUtf8(LastKeyPrefix(C.LastKey, u"Default\\")), ToUtf8(C.Prefix)) << C.Why;
  EXPECT_EQ(LastKeyPrefix(std::u16string(65, u'x'), u""), u"") << "no computer's name";
}

TEST(RegistryEditorKey, NearestKeyIsTheKeyOrWhatIsLeftAboveIt) {
  TMemoryRegistry Registry;
  ASSERT_FALSE(Registry.LoadText("REGEDIT4\n\n"
                                 "[HKEY_LOCAL_MACHINE\\Software\\Vendor\\Product]\n"
                                 "[HKEY_LOCAL_MACHINE\\Software\\Closed\\Below]\n"));
  ASSERT_TRUE(Registry.Deny(u"HKEY_LOCAL_MACHINE\\Software\\Closed"));
  ASSERT_TRUE(Registry.Deny(u"HKEY_LOCAL_MACHINE\\Software\\Closed\\Below"));
  static const struct {
    const char *Why;
    const char16_t *Asked;
    const char16_t *Shown;
  } Cases[] = {
      {"there, in another spelling", u"HKEY_LOCAL_MACHINE\\software\\vendor",
       u"HKEY_LOCAL_MACHINE\\software\\vendor"},
      {"gone", u"HKEY_LOCAL_MACHINE\\Software\\Vendor\\Gone",
       u"HKEY_LOCAL_MACHINE\\Software\\Vendor"},
      {"gone with its parents", u"HKEY_LOCAL_MACHINE\\Software\\A\\B\\C",
       u"HKEY_LOCAL_MACHINE\\Software"},
      {"nothing left but the root", u"HKEY_CURRENT_USER\\A\\B", u"HKEY_CURRENT_USER"},
      {"a root", u"HKEY_CURRENT_USER", u"HKEY_CURRENT_USER"},
      {"a backslash too many", u"HKEY_LOCAL_MACHINE\\Software\\Vendor\\",
       u"HKEY_LOCAL_MACHINE\\Software\\Vendor"},
      {"not allowed to look", u"HKEY_LOCAL_MACHINE\\Software\\Closed\\Below",
       u"HKEY_LOCAL_MACHINE\\Software\\Closed\\Below"},
      {"no root that is known", u"HKEY_CURRENT_CONFIG\\System", u"HKEY_CURRENT_CONFIG\\System"},
  };
  for (const auto &C : Cases)
    EXPECT_EQ(ToUtf8(NearestKey(Registry, C.Asked)), ToUtf8(C.Shown)) << C.Why;
}

TEST(RegistryEditorKey, IsStoredBehindThePrefixThatIsThere) {
  const std::string Key =
      "HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";
  const std::string Line = "[" + Key + "]\n\"LastKey\"=";
  const struct {
    const char *Why;
    std::string Content;
    const char16_t *Stored;
    const char16_t *Default = u"Default\\";
  } Cases[] = {
      {"no editor ran yet", "", u"Default\\HKEY_USERS"},
      {"one did", Line + "\"Arbeitsplatz\\\\HKEY_CURRENT_USER\\\\Console\"\n",
       u"Arbeitsplatz\\HKEY_USERS"},
      {"no text", Line + "dword:00000001\n", u"Default\\HKEY_USERS"},
      {"an editor that needs none", Line + "\"Computer\"\n", u"HKEY_USERS", u""},
      {"and has one all the same", Line + "\"Computer\\\\HKEY_USERS\"\n", u"Computer\\HKEY_USERS",
       u""},
  };
  for (const auto &C : Cases) {
    TMemoryRegistry Registry;
    ASSERT_FALSE(Registry.LoadText("REGEDIT4\n\n" + C.Content));
    EXPECT_EQ(StoreLastKey(Registry, u"HKEY_USERS", C.Default), TRegStatus::Ok) << C.Why;
    const TRegOpened Editor =
        Registry.Open(TRegRoot::CurrentUser, FromUtf8(Key.substr(Key.find('\\') + 1)));
    ASSERT_TRUE(Editor.Key) << C.Why;
    TRegValue Stored;
    ASSERT_EQ(Editor.Key->Read(u"LastKey", Stored), TRegStatus::Ok) << C.Why;
    EXPECT_EQ(Stored.Data().Type(), TRegType::String) << C.Why;
    EXPECT_EQ(ToUtf8(Stored.Data().Text()), ToUtf8(C.Stored)) << C.Why;
    EXPECT_EQ(Stored.Data().Size(), (Stored.Data().Text().size() + 1) * 2) << C.Why;
  }
}

} // namespace
} // namespace hivesweep

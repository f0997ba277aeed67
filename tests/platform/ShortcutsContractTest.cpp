// What every shell promises of shortcut files, run over all of them.
#include <gtest/gtest.h>

#include "platform/memory/Machine.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {
namespace {

class TMemoryShortcuts final : public TTestShortcuts {
public:
  TShell &Shell() override {
    Platform_ = MakeMemoryPlatform(nullptr, Machine_);
    return *Platform_.Shell;
  }
  std::u16string Folder() const override { return u"C:\\Some Folder"; }
  void Add(std::u16string_view Name, std::u16string_view Target) override {
    Machine_.Shortcuts[Folder() + u"\\" + std::u16string(Name)] = Target;
  }
  void AddText(std::u16string_view Name) override {
    Machine_.Files.push_back(Folder() + u"\\" + std::u16string(Name));
  }

private:
  TMachine Machine_;
  TPlatform Platform_;
};

std::vector<TShortcutsKind> AllShortcuts() {
  std::vector<TShortcutsKind> Kinds = LiveShortcuts();
  Kinds.push_back({"Memory", []() -> std::unique_ptr<TTestShortcuts> {
                     return std::make_unique<TMemoryShortcuts>();
                   }});
  return Kinds;
}

class ShortcutsContract : public testing::TestWithParam<TShortcutsKind> {};

INSTANTIATE_TEST_SUITE_P(Hosts, ShortcutsContract, testing::ValuesIn(AllShortcuts()),
                         [](const auto &Kind) { return std::string(Kind.param.Name); });

TEST_P(ShortcutsContract, ATargetIsReadAsItIsStored) {
  const auto Shortcuts = GetParam().Make();
  static const struct {
    std::u16string_view Name;
    std::u16string_view Target;
  } Cases[] = {
      {u"gone.lnk", u"C:\\no such folder\\no such file.exe"},
      {u"there.lnk", u"C:\\windows"},
      // The shortcut's own name may have any letters; in a target, Wine's shell keeps
      // those of the code page.
      {u"\u0416\u65E5.lnk", u"C:\\gone\\\u00E4.exe"},
      {u"on another drive.LNK", u"X:\\gone.exe"},
      {u"on a server.lnk", u"\\\\no-such-server\\share\\gone.exe"},
      {u"nowhere.lnk", u""},
  };
  for (const auto &C : Cases)
    Shortcuts->Add(C.Name, C.Target);
  TShell &Shell = Shortcuts->Shell();
  for (const auto &C : Cases) {
    const auto Target = Shell.ShortcutTarget(Shortcuts->Folder() + u"\\" + std::u16string(C.Name));
    ASSERT_TRUE(Target) << ToUtf8(C.Name);
    EXPECT_TRUE(EqualNoCase(*Target, C.Target)) << ToUtf8(*Target);
  }
}

TEST_P(ShortcutsContract, WhatIsNoShortcutHasNoAnswer) {
  const auto Shortcuts = GetParam().Make();
  Shortcuts->AddText(u"text.lnk");
  TShell &Shell = Shortcuts->Shell();
  for (const std::u16string &Path :
       {Shortcuts->Folder() + u"\\missing.lnk", Shortcuts->Folder() + u"\\text.lnk",
        Shortcuts->Folder(), std::u16string(), std::u16string(u"C:\\a\0.lnk", 9)})
    EXPECT_EQ(Shell.ShortcutTarget(Path), std::nullopt) << ToUtf8(Path);
}

} // namespace
} // namespace hivesweep

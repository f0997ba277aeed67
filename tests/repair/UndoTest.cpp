// The promise of every fix, held over the registry in memory and, where there is one,
// the live registry with its own editor: whatever happens, all of it comes back.
#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "tests/platform/CutSeam.h"
#include "tests/repair/TestRepair.h"

namespace hivesweep {
namespace {

// A registry, a disk and an editor for one fix.
class TWorld {
public:
  explicit TWorld(const TRegistryKind &Kind) : Registry_(Kind.Make()) {
    std::optional<TPlatform> Live;
    if (Kind.Name != std::string_view("Memory"))
      Live = MakeLivePlatform();
    IsLive = Live.has_value();
    if (Live) {
      Platform = *std::move(Live);
      Shortcut = Folder.File(u"dead.lnk");
    } else {
      auto Memory = std::make_unique<TMemoryRegistry>();
      TMemoryRegistry &Importing = *Memory;
      Platform = MakeMemoryPlatform(std::move(Memory), {});
      Platform.Shell = std::make_unique<TTestEditor>(
          [&Importing](std::u16string_view Parameters) { Import(Importing, Parameters); });
      CreateFolderPath(*Platform.Files, u"C:\\Users\\me\\Desktop");
      Shortcut = u"C:\\Users\\me\\Desktop\\dead.lnk";
    }
    Subject = std::make_unique<TSubject>(*Platform.Registry, Registry_->Path());
    // The other half of what a fix of shortcuts takes away.
    EXPECT_EQ(Platform.Files->WriteContent(Shortcut, Lnk()), TFileStatus::Ok);
    EXPECT_EQ(Platform.Files->ReadContent(Shortcut, Before_), TFileStatus::Ok);
  }

  static TFileContent Lnk() {
    TFileContent Content;
    Content.Bytes.assign("L\0\0\0\x01\x14\x02", 7);
    Content.Created = 130'000'000'000'000'000;
    Content.Accessed = 130'500'000'000'000'000;
    Content.Written = 131'000'000'000'000'000;
    Content.Attributes = 2; // hidden
    return Content;
  }

  // The shortcut is there as it was first, times and attributes included.
  bool HasShortcut() {
    TFileContent Now;
    if (Platform.Files->ReadContent(Shortcut, Now) != TFileStatus::Ok)
      return false;
    Now.Accessed = Before_.Accessed; // whoever looks changes it
    if (IsLive && IsWine())
      Now.Created = Before_.Created; // it can't be set on the disks below Wine
    return Now == Before_;
  }

  // What the real editor makes of the test's key, where there is one.
  std::string Export() {
    if (!IsLive)
      return {};
    const std::u16string File = Folder.File(u"export.reg");
    const auto Editor = Platform.Shell->Start(
        u"Regedit", u"/E \"" + File + u"\" \"" + u"HKEY_CURRENT_USER\\" + Subject->Path() + u"\"");
    EXPECT_TRUE(Editor && Editor->WaitForEnd(60'000));
    std::string Bytes;
    EXPECT_EQ(ReadWholeFile(File, Bytes), TError());
    EXPECT_GT(Bytes.size(), 100u);
    return Bytes;
  }

  std::u16string DataFolder() const { return Folder.File(u"data"); }

  TScratchFolder Folder;
  bool IsLive = false;
  TPlatform Platform;
  std::unique_ptr<TSubject> Subject;
  std::u16string Shortcut;

private:
  // As the editor does it: what it does not understand it leaves out.
  static void Import(TMemoryRegistry &Registry, std::u16string_view Parameters) {
    ASSERT_TRUE(Parameters.starts_with(u"/s \"") && Parameters.ends_with(u'"'));
    std::string Bytes;
    ASSERT_EQ(ReadWholeFile(Parameters.substr(4, Parameters.size() - 5), Bytes), TError());
    std::u16string Text = FromAnsi(Bytes);
    RemoveAll(Text, u"\\\r"); // lists of bytes go on in the next line
    std::u16string Key;
    for (std::u16string_view Line : SplitLines(Text)) {
      Line = Trim(Line);
      if (Line.starts_with(u'['))
        Key = u"Windows Registry Editor Version 5.00\r\n" + std::u16string(Line) + u"\r\n";
      if (!Key.empty())
        Registry.LoadText(ToUtf8(Key + std::u16string(Line) + u"\r\n"));
    }
  }

  TFileContent Before_;
  std::unique_ptr<TTestRegistry> Registry_; // removes the test's key in the end
};

// A string's end of a line of Describe.
std::u16string Described(std::u16string_view Data) {
  std::u16string Out;
  for (const std::byte Byte : BytesOf(Data))
    Out.push_back(static_cast<char16_t>(u'\x100' + std::to_integer<int>(Byte)));
  return Out + u"\n";
}

class UndoTest : public testing::TestWithParam<TRegistryKind> {};

std::vector<std::byte> Pattern(std::size_t Size) {
  std::vector<std::byte> Out(Size);
  for (std::size_t Index = 0; Index < Size; ++Index)
    Out[Index] = static_cast<std::byte>(Index * 7 + Index / 256);
  return Out;
}

const std::u16string_view OddNames[] = {
    u"",        u"quote\"d",      u"back\\slash",  u"line\nbreak",     u"\u0416\u65E5\u672C",
    u"a\"=\"b", u" with blanks ", u"[HKEY_USERS]", u";comment=\u00E4", u"\u0130\u00DF\uFB01"};

// Values of every type and size under every kind of name.
void FillOddValues(TSubject &Subject, std::u16string_view Key) {
  constexpr std::uint32_t Types[] = {0, 1, 2, 3, 4, 5, 7, 8, 11, 0x1234, 0xFFFF'0001};
  constexpr std::size_t Sizes[] = {0, 1, 2, 3, 8, 26, 27, 1'000, 100'000};
  std::size_t Next = 0;
  for (const std::uint32_t Type : Types)
    for (const std::size_t Size : Sizes) {
      const std::u16string_view Odd = OddNames[Next % std::size(OddNames)];
      const std::u16string Name =
          Next < std::size(OddNames) ? std::u16string(Odd) : std::u16string(Odd) + ToDecimal(Next);
      Subject.Value(Key, Name, static_cast<TRegType>(Type), Pattern(Size));
      ++Next;
    }
  Subject.Value(Key, u"many", TRegType::MultiString, BytesOf(std::u16string(u"one\0two\0", 8)));
}

// A fix of what a scan could have found: values, keys with all below them, a shortcut,
// and problems that are listed and not chosen. Thousands for Many.
void Prepare(TTestFix &Fix, TWorld &World, bool Many) {
  TSubject &Subject = *World.Subject;
  std::vector<std::u16string> &Backup = Fix.Engine.BackupText;
  const auto Lines = [&](std::u16string_view Key, std::u16string_view Line) {
    Backup.push_back(KeyLine(Subject.KeyPath(Key)));
    Backup.emplace_back(Line);
  };

  for (int Index = 0; Index < (Many ? 1'500 : 3); ++Index) {
    const std::u16string Name = u"C:\\gone\\" + ToDecimal(static_cast<std::uint64_t>(Index));
    Subject.Value(u"Values", Name, Index % 3 == 0 ? TRegType::ExpandString : TRegType::String,
                  BytesOf(u"%X%\\" + Name));
    TItemInfo &Item = Fix.Add(Subject.KeyPath(u"Values"), Name);
    Item.Checked = Index % 4 != 1;
    // The editor reads the name of this line as another one, and would leave that behind.
    Lines(u"Values", StringLine(Name, Escaped(u"%X%\\" + Name)));
  }
  for (int Index = 0; Index < (Many ? 300 : 2); ++Index) {
    const std::u16string Tree =
        u"Trees\\" + ToDecimal(static_cast<std::uint64_t>(Index)) + u"\\Top";
    Subject.Value(Tree, u"", TRegType::String, BytesOf(u"top"), u"ClassOfTop");
    Subject.Value(Tree + u"\\Sub \u0416", u"n", TRegType::Binary, Pattern(40), u"Sub class");
    Subject.Text(Tree + u"\\Sub \u0416\\Below", u"x", u"y");
    Fix.Add(Subject.KeyPath(Tree), Index % 2 == 0 ? u"N/A" : u" N/A ");
    Lines(Tree, StringLine(u"", u"top"));
  }
  Subject.Value(u"Unchosen", u"expand", TRegType::ExpandString, BytesOf(u"%TEMP%\\x"));
  Subject.Value(u"Unchosen", u"binary", TRegType::Binary, Pattern(90));
  Fix.Add(Subject.KeyPath(u"Unchosen"), u"expand").Checked = false;
  Lines(u"Unchosen", StringLine(u"expand", u"%TEMP%\\\\x"));
  Backup.push_back(BinaryLine(u"binary", Pattern(90)));
  // Gone between scan and fix: an import would make it again.
  Fix.Add(Subject.KeyPath(u"Vanished\\Deep"), u"v");
  Lines(u"Vanished\\Deep", StringLine(u"v", u"d"));
  // A value of a key that can't be opened: it hits the key that is open.
  Subject.Text(u"Open", u"hit", u"by the next");
  Subject.Text(u"Open", u"first", u"1");
  Fix.Add(Subject.KeyPath(u"Missing"), u"hit");
  Fix.Add(Subject.KeyPath(u"Open"), u"first");
  Fix.Add(World.Shortcut, u"N/A", World.Shortcut, TProblemType::ShortcutFile);
  if (!Many)
    return;
  FillOddValues(Subject, u"Odd");
  for (const std::u16string_view Name : OddNames)
    Fix.Add(Subject.KeyPath(u"Odd"), Name);
  FillOddValues(Subject, u"Whole\\Odd");
  std::u16string Deep = u"Whole";
  for (int Level = 0; Level < 120; ++Level)
    Deep += u"\\d";
  Subject.Value(Deep, u"bottom", TRegType::Qword, Pattern(8), u"Deep class");
  Fix.Add(Subject.KeyPath(u"Whole"), u"N/A");
}

// Restores and waits for the end of it.
TRestoreReport Restore(TRegistryClean &Clean, std::u16string_view Name) {
  if (Clean.RestoreBackup(Name))
    Clean.FinishRestore();
  return Clean.RestoreReport();
}

TEST_P(UndoTest, AFixOfEverythingComesBackExactly) {
  TWorld World(GetParam());
  TTestFix Fix(World.Platform, World.DataFolder());
  ASSERT_NO_FATAL_FAILURE(Prepare(Fix, World, true));
  const std::u16string Before = World.Subject->Now();
  const std::string ExportBefore = World.Export();

  const TFixReport Report = Fix.Run();
  EXPECT_EQ(Report.Failure, TError());
  EXPECT_EQ(Report.BackupFailure, TError());
  // The one that had gone, and the one whose key was missing.
  EXPECT_EQ(Report.NotRemoved.size(), 2u);
  EXPECT_GT(Report.Removed, 1'400);
  const std::u16string Fixed = World.Subject->Now();
  EXPECT_EQ(Fixed.find(u"Sub class"), std::u16string::npos);
  EXPECT_EQ(Fixed.find(u"hit"), std::u16string::npos);
  EXPECT_EQ(World.Platform.Files->Look(World.Shortcut), TPathState::Missing);

  const TRestoreReport First = Restore(Fix.Clean, Report.BackupName);
  EXPECT_EQ(First.Failure, TError());
  EXPECT_TRUE(First.NotRestored.empty());
  EXPECT_TRUE(First.Notes.empty());
  EXPECT_EQ(Difference(World.Subject->Now(), Before), "");
  EXPECT_TRUE(World.Export() == ExportBefore);
  EXPECT_TRUE(World.HasShortcut());

  // A restore is undone in the same way, and that again.
  const TRestoreReport Second = Restore(Fix.Clean, First.UndoName);
  EXPECT_EQ(Second.Failure, TError());
  EXPECT_EQ(Difference(World.Subject->Now(), Fixed), "");
  EXPECT_EQ(World.Platform.Files->Look(World.Shortcut), TPathState::Missing);
  EXPECT_EQ(Restore(Fix.Clean, Second.UndoName).Failure, TError());
  EXPECT_EQ(Difference(World.Subject->Now(), Before), "");
  EXPECT_TRUE(World.HasShortcut());
}

TEST_P(UndoTest, NewerDataIsKeptOutOfHarm) {
  TWorld World(GetParam());
  TTestFix Fix(World.Platform, World.DataFolder());
  TSubject &Subject = *World.Subject;
  ASSERT_NO_FATAL_FAILURE(Prepare(Fix, World, false));
  const TFixReport Report = Fix.Run();
  // The program was installed again, and more.
  Subject.Text(u"Trees\\0\\Top", u"", u"newer");
  Subject.Text(u"Trees\\0\\Top", u"extra", u"newer still");
  Subject.Text(u"Trees\\0\\Top\\New sub", u"n", u"1");
  Subject.Text(u"Values", u"unrelated", u"changed after the fix");
  Subject.Value(u"Unchosen", u"expand", TRegType::ExpandString, BytesOf(u"%NEW%"));
  const std::u16string Newer = Subject.Now();

  const TRestoreReport Restored = Restore(Fix.Clean, Report.BackupName);
  EXPECT_TRUE(Restored.NotRestored.empty());
  const std::u16string Now = Subject.Now();
  const auto Has = [&](std::u16string_view Name, std::u16string_view Data) {
    std::u16string Line = u"value " + std::u16string(Name) + u" type ";
    const std::size_t At = Now.find(Line);
    return At != std::u16string::npos && Now.find(Described(Data), At) != std::u16string::npos;
  };
  EXPECT_TRUE(Has(u"", u"top")) << "what the fix took is back";
  EXPECT_TRUE(Has(u"extra", u"newer still")) << "what came meanwhile stays";
  EXPECT_TRUE(Has(u"unrelated", u"changed after the fix"));
  EXPECT_TRUE(Has(u"expand", u"%NEW%")) << "it was never fixed";
  EXPECT_NE(Now.find(u"key New sub"), std::u16string::npos);

  EXPECT_EQ(Restore(Fix.Clean, Restored.UndoName).Failure, TError());
  EXPECT_EQ(Difference(Subject.Now(), Newer), "") << "and what was replaced comes back";
}

// The registry holds lines for the editor in a value's name and data, and somebody adds one
// to the backup as well. None is obeyed, and the fixed values come back.
TEST_P(UndoTest, NoLineOfOthersIsImported) {
  for (const bool IsTextChanged : {false, true}) {
    TWorld World(GetParam());
    TTestFix Fix(World.Platform, World.DataFolder());
    TSubject &Subject = *World.Subject;
    Subject.Text(u"Foreign\\Tree", u"v", u"stays");
    const std::u16string Lines = u"\r\n[-" + Subject.KeyPath(u"Foreign") + u"]\r\n[" +
                                 Subject.KeyPath(u"Planted") + u"]\r\n";
    const std::pair<std::u16string, std::u16string> Values[] = {
        {u"x\"=\"1\"" + Lines + u"\"y", u"d"}, {u"data", u"x" + Lines}, {u"plain", u"p"}};
    for (const auto &[Name, Data] : Values) {
      Subject.Text(u"Values", Name, Data);
      Fix.Add(Subject.KeyPath(u"Values"), Name);
      Fix.Engine.BackupText.push_back(KeyLine(Subject.KeyPath(u"Values")));
      Fix.Engine.BackupText.push_back(StringLine(Name, Escaped(Data)));
    }
    const std::u16string Before = Subject.Now();
    const TFixReport Report = Fix.Run();
    EXPECT_EQ(Report.Removed, 3);
    const std::u16string Text = Fix.Clean.Paths.BackupFolderPath + Report.BackupName;
    std::string Bytes;
    ASSERT_EQ(ReadWholeFile(Text, Bytes), TError());
    EXPECT_NE(Bytes.find("plain"), std::string::npos) << "what harms nobody is in the text";
    if (IsTextChanged) {
      ASSERT_EQ(WriteWholeFile(Text, Bytes + " [-" + ToUtf8(Subject.KeyPath(u"Foreign")) + "]\r\n"),
                TError());
    }
    const TRestoreReport Restored = Restore(Fix.Clean, Report.BackupName);
    EXPECT_EQ(Restored.Failure, TError());
    EXPECT_TRUE(Restored.Notes.empty() && Restored.NotRestored.empty());
    EXPECT_EQ(Restored.Remarks.size(), IsTextChanged ? 1u : 0u);
    EXPECT_EQ(Difference(Subject.Now(), Before), "");
  }
}

// What was listed in the same backup and not fixed is not the undo's business, and one entry
// that can't come back does not keep the others from it.
TEST_P(UndoTest, BringsBackAllThatWasFixedAndNothingElse) {
  TWorld World(GetParam());
  TTestFix Fix(World.Platform, World.DataFolder());
  ASSERT_NO_FATAL_FAILURE(Prepare(Fix, World, false));
  const auto Remove = [&] {
    const TRegOpened Own = World.Platform.Registry->Open(TRegRoot::CurrentUser,
                                                         World.Subject->Path(), TRegAccess::Full);
    EXPECT_EQ(Own.Key->DeleteTree(u"Unchosen"), TRegStatus::Ok);
  };
  const std::u16string Name = Fix.Run().BackupName;
  Remove();
  ASSERT_TRUE(World.Platform.Files->CreateFolder(World.Shortcut)); // in the file's place
  const TRestoreReport Report = Restore(Fix.Clean, Name);
  EXPECT_EQ(Report.Failure, TError());
  ASSERT_EQ(Report.NotRestored.size(), 1u);
  EXPECT_EQ(Report.NotRestored[0].Path, World.Shortcut);
  const std::u16string Now = World.Subject->Now();
  EXPECT_EQ(Now.find(u"Unchosen"), std::u16string::npos) << "it was never fixed";
  EXPECT_NE(Now.find(u"Sub class"), std::u16string::npos);
  EXPECT_NE(Now.find(u"hit"), std::u16string::npos);
}

// The program dies in its n-th call of the seam, or that one call fails, for every n:
// in a fix, and in a restore. What is then restored by a program that runs to its end is
// everything.
class UndoSweepTest : public UndoTest {
protected:
  // One life of the program: Body runs on a platform whose power behaves as Power says.
  void Live(TWorld &World, TPowerCut &Power, const std::function<void(TTestFix &)> &Body) {
    TPlatform Cut = CutPlatform(World.Platform, Power);
    // The editor is another program, but a dead one can't start it.
    auto Editor = std::make_unique<TCutEditor>(*World.Platform.Shell, Power);
    Cut.Shell = std::move(Editor);
    TTestFix Fix(Cut, World.DataFolder());
    Body(Fix);
  }

  // Lives over a live registry take longer, and every call has its turn in the native
  // run: here only some do.
  static std::uint64_t Step(const TWorld &World, std::uint64_t Calls) {
    return World.IsLive || IsWine() ? std::max<std::uint64_t>(Calls / 7, 1) : 1;
  }

  // Whatever is listed is restored, the newest fix included.
  void ExpectAllBack(TWorld &World, const std::u16string &Before, const std::string &Why) {
    TTestFix Later(World.Platform, World.DataFolder());
    std::vector<TBackupEntry> Backups = Later.Clean.EnumerateBackups();
    if (!Backups.empty()) {
      const std::u16string Name = Backups.front().Name;
      const TRestoreReport Report = Restore(Later.Clean, Name);
      EXPECT_EQ(Report.Failure, TError()) << Why;
      EXPECT_TRUE(Report.NotRestored.empty()) << Why;
    }
    EXPECT_EQ(Difference(World.Subject->Now(), Before), "") << Why;
    EXPECT_TRUE(World.HasShortcut()) << Why;
  }

  // Sweeps over the calls of a fix, or of the restore after one that went well.
  void Sweep(bool InRestore, bool Cut) {
    // The first life is uncut and counts the calls.
    std::uint64_t Calls = 0;
    for (std::uint64_t Call = 0; Call <= Calls && !HasFailure();) {
      TWorld World(GetParam());
      TPowerCut Power;
      std::u16string Before;
      std::u16string Name;
      const auto Begin = [&] { Cut ? Power.CutBefore(Call) : Power.FailOnly(Call); };
      const auto Fixing = [&](TTestFix &Fix) {
        ASSERT_NO_FATAL_FAILURE(Prepare(Fix, World, false));
        Before = World.Subject->Now();
        Power.Reset();
        if (!InRestore)
          Begin();
        Name = Fix.Run().BackupName;
      };
      Live(World, Power, Fixing);
      if (InRestore) {
        Power.Reset();
        Begin();
        Live(World, Power, [&](TTestFix &Fix) { Restore(Fix.Clean, Name); });
      }
      if (Call == 0)
        Calls = Power.Calls();
      ExpectAllBack(World, Before,
                    (Cut ? "killed in call " : "failed in call ") + std::to_string(Call));
      Call += Step(World, Calls);
    }
    EXPECT_GT(Calls, 100u) << "the sweep has something to break";
  }

  // Breaks the restore after a fix in each of its calls, then lets a restore of another backup
  // begin, which puts that right.
  void SweepInterrupted(bool Cut, bool IsChangedMeanwhile) {
    std::uint64_t Calls = 0;
    int Pending = 0;
    for (std::uint64_t Call = 0; Call <= Calls && !HasFailure();) {
      TWorld World(GetParam());
      TPowerCut Power;
      std::u16string Before, Name, Other;
      Live(World, Power, [&](TTestFix &Fix) {
        Fix.Add(World.Subject->KeyPath(u"Nothing"), u"here");
        Other = Fix.Run().BackupName;
      });
      Live(World, Power, [&](TTestFix &Fix) {
        ASSERT_NO_FATAL_FAILURE(Prepare(Fix, World, false));
        Before = World.Subject->Now();
        Name = Fix.Run().BackupName;
      });
      const std::u16string Fixed = World.Subject->Now();
      Power.Reset();
      Cut ? Power.CutBefore(Call) : Power.FailOnly(Call);
      Live(World, Power, [&](TTestFix &Fix) { Restore(Fix.Clean, Name); });
      if (Call == 0)
        Calls = Power.Calls();

      const std::string Why = (Cut ? "killed in call " : "failed in call ") + std::to_string(Call);
      TTestFix Later(World.Platform, World.DataFolder());
      const bool IsPending = !Later.Clean.InterruptedRestores().empty();
      Pending += IsPending ? 1 : 0;
      const std::u16string Left = World.Subject->Now();
      const bool IsReached = Left == Before && World.HasShortcut();
      if (IsChangedMeanwhile)
        World.Subject->Text(u"Trees\\0\\Top", u"", u"installed again");
      const TRestoreReport Report = Restore(Later.Clean, Other);
      EXPECT_EQ(Report.Failure, TError()) << Why;
      if (IsChangedMeanwhile)
        EXPECT_NE(World.Subject->Now().find(Described(u"installed again")), std::u16string::npos)
            << Why;
      else if (!IsPending || IsReached)
        EXPECT_EQ(Difference(World.Subject->Now(), Left), "") << Why << ": it had reached its goal";
      else
        EXPECT_EQ(Difference(World.Subject->Now(), Fixed), "") << Why << ": it is taken back";
      EXPECT_EQ(Report.Remarks.empty(), !IsPending || Left == Fixed) << Why;
      EXPECT_TRUE(Later.Clean.InterruptedRestores().empty()) << Why;
      Call += Step(World, Calls);
    }
    // Where only some of the calls are broken, it may be that none of these leaves anything.
    EXPECT_TRUE(Pending > 0 || IsWine());
  }

private:
  class TCutEditor final : public TShell {
  public:
    TCutEditor(TShell &Shell, TPowerCut &Power) : Shell_(Shell), Power_(Power) {}
    bool Open(std::u16string_view, std::u16string_view) override { return false; }
    std::unique_ptr<TProcess> Start(std::u16string_view Target,
                                    std::u16string_view Parameters) override {
      return Power_.Passes() ? Shell_.Start(Target, Parameters) : nullptr;
    }
    std::optional<std::u16string> ShortcutTarget(std::u16string_view) override { return {}; }

  private:
    TShell &Shell_;
    TPowerCut &Power_;
  };
};

TEST_P(UndoSweepTest, AFixThatIsKilledAtAnyPointIsUndone) { Sweep(false, true); }
TEST_P(UndoSweepTest, ARestoreThatIsKilledAtAnyPointIsDoneAgain) { Sweep(true, true); }
TEST_P(UndoSweepTest, AFixWithAnyCallFailingIsUndone) { Sweep(false, false); }
TEST_P(UndoSweepTest, ARestoreWithAnyCallFailingIsDoneAgain) { Sweep(true, false); }
TEST_P(UndoSweepTest, AKilledRestoreIsTakenBackUnlessItHasReachedItsGoal) {
  SweepInterrupted(true, false);
}
TEST_P(UndoSweepTest, ARestoreThatReachedItsGoalIsNotTakenBackForAFailure) {
  SweepInterrupted(false, false);
}
TEST_P(UndoSweepTest, WhatCameAfterAKilledRestoreStays) { SweepInterrupted(true, true); }

const auto NameOfKind = [](const auto &Info) { return std::string(Info.param.Name); };
INSTANTIATE_TEST_SUITE_P(Hosts, UndoTest, testing::ValuesIn(AllRegistries()), NameOfKind);
INSTANTIATE_TEST_SUITE_P(Hosts, UndoSweepTest, testing::ValuesIn(AllRegistries()), NameOfKind);

} // namespace
} // namespace hivesweep

#include <gtest/gtest.h>

#include "platform/ErrorTexts.h"
#include "repair/UndoRecord.h"
#include "tests/repair/TestRepair.h"

namespace hivesweep {
namespace {

TKeyPlace Place(std::u16string_view Path) { return {TRegRoot::CurrentUser, std::u16string(Path)}; }

TUndoRecord FullRecord() {
  TUndoRecord Record;
  Record.Number = 0x1'0000'0002;
  Record.Kind = TUndoKind::Restore;
  Record.ViewBits = ThisView();
  Record.Finished = false;
  Record.Changes = 12;
  TSnapshot &Before = Record.Before;
  Before.Scope.Keys = {Place(u"A"), {TRegRoot::Users, u"S-1\\\u0416"}};
  Before.Scope.Trees = {Place(u"T")};
  Before.Scope.Files = {u"C:\\a.lnk", u"C:\\b.lnk"};
  TSavedKey &Key = Before.Keys[Place(u"A")];
  Key.Info.ClassName = u"class";
  Key.Info.Security = {std::byte{1}, std::byte{0}};
  Key.Info.IsLink = true;
  Key.Info.Volatile = TRegVolatile::Yes;
  Key.Info.Label = {std::byte{7}};
  Key.Values[u""] = {static_cast<TRegType>(0xFFFF'FFFFu), {}, 1};
  Key.Values[u"n\n\"\u0416"] = {TRegType::Binary, {std::byte{0}, std::byte{0xFF}}, 0};
  Before.Files[u"C:\\a.lnk"] = {std::string("\0b", 2), 1, 2, ~0ull, 0x27};
  Before.UnreadableKeys[Place(u"T\\closed")] = TRegStatus::Denied;
  Before.UnreadableFiles[u"C:\\b.lnk"] = TFileStatus::Failed;
  Record.Marks.MarkKey(Place(u"T\\new"), TUndoMark::Added);
  Record.Marks.MarkValue(Place(u"A"), u"", TUndoMark::Taken);
  Record.Marks.Files[u"C:\\a.lnk"] = TUndoMark::Taken;
  Record.Goal = TRestoreGoal{u"backup1.reg", Before.Keys, Before.Files, {Place(u"E")}, {}};
  Record.Goal->Keys.erase(Place(u"A"));
  Record.Goal->Keys[Place(u"G")].Values[u"v"] = {TRegType::Dword, {std::byte{4}}, 0};
  Record.Goal->EditorValues = {{Place(u"E"), u"n", {TRegType::String, BytesOf(u"x"), 0}}};
  return Record;
}

// A record's file with that body and a checksum that is right.
std::string FileOf(std::uint8_t Version, std::string_view Body) {
  std::uint32_t Sum = 0xFFFF'FFFFu;
  for (const char Byte : Body) {
    Sum ^= static_cast<unsigned char>(Byte);
    for (int Bit = 0; Bit < 8; ++Bit)
      Sum = (Sum >> 1) ^ ((Sum & 1) != 0 ? 0xEDB8'8320u : 0u);
  }
  std::string Out = "HSWPUNDO";
  const auto Add = [&Out](std::uint64_t Number, int Bytes) {
    for (int Byte = 0; Byte < Bytes; ++Byte)
      Out.push_back(static_cast<char>(Number >> (8 * Byte)));
  };
  Add(Version, 4);
  Add(Body.size(), 8);
  Add(~Sum, 4);
  return Out.append(Body);
}
constexpr std::size_t BodyAt = 24;

TEST(UndoFormat, ReadsBackWhatItWrote) {
  const std::string Bytes = EncodeUndoRecord(FullRecord());
  TError Why;
  const auto Read = DecodeUndoRecord(Bytes, Why);
  ASSERT_TRUE(Read) << ToUtf8(EnglishWords(Why));
  EXPECT_EQ(Read->Kind, TUndoKind::Restore);
  EXPECT_FALSE(Read->Finished);
  EXPECT_EQ(Read->Changes, 12u);
  const TSavedKey &Key = Read->Before.Keys.at(Place(u"a"));
  EXPECT_EQ(Key.Info, FullRecord().Before.Keys.at(Place(u"A")).Info);
  EXPECT_EQ(Read->Number, 0x1'0000'0002u);
  EXPECT_EQ(Key.Values.at(u"").Order, 1u);
  EXPECT_EQ(Read->Before.Files.at(u"C:\\a.lnk"), FullRecord().Before.Files.at(u"C:\\a.lnk"));
  EXPECT_FALSE(Read->Before.Knows(Place(u"T\\closed\\below")));
  EXPECT_EQ(Read->Marks.OfKey(Place(u"T\\new")), TUndoMark::Added);
  // Nothing is lost on the way: written again it is the same.
  EXPECT_EQ(EncodeUndoRecord(*Read), Bytes);
}

TEST(UndoFormat, RefusesWhatIsCutOrChanged) {
  const std::string Bytes = EncodeUndoRecord(FullRecord());
  TError Why;
  for (std::size_t Length = 0; Length < Bytes.size(); ++Length)
    EXPECT_FALSE(DecodeUndoRecord(Bytes.substr(0, Length), Why)) << "cut at " << Length;
  for (std::size_t At = 0; At < Bytes.size(); ++At) {
    std::string Changed = Bytes;
    Changed[At] ^= 0x10;
    EXPECT_FALSE(DecodeUndoRecord(Changed, Why)) << "changed at " << At;
  }
  EXPECT_FALSE(DecodeUndoRecord(Bytes + "x", Why));
  std::string Newer = Bytes;
  Newer[8] = 3;
  EXPECT_FALSE(DecodeUndoRecord(Newer, Why));
  EXPECT_EQ(Why.Number, 3u);
}

// A right checksum over lengths that lie: no crash, no large allocation.
TEST(UndoFormat, RefusesLyingLengthsBehindARightChecksum) {
  const std::string Bytes = EncodeUndoRecord(FullRecord());
  TError Why;
  int Refused = 0;
  for (std::size_t At = BodyAt + 7; At + 4 <= Bytes.size(); ++At) {
    std::string Lying = Bytes;
    Lying.replace(At, 4, "\xFF\xFF\xFF\x7F");
    Refused += DecodeUndoRecord(FileOf(2, Lying.substr(BodyAt)), Why) ? 0 : 1;
  }
  EXPECT_GT(Refused, 50);
}

// The first version had no numbers, volatility, labels and goals, and marked all that a
// backup's text named.
TEST(UndoFormat, ReadsTheFirstVersion) {
  TUndoRecord Record = FullRecord();
  Record.Goal.reset();
  const TKeyPlace Machine = {TRegRoot::LocalMachine, u"Software\\Classes\\x"};
  Record.Marks.MarkKey(Machine, TUndoMark::Named);
  Record.Marks.MarkValue(Machine, u"v", TUndoMark::Named);
  Record.Marks.MarkValue(Machine, u"w", TUndoMark::Named);
  Record.Marks.MarkValue(Place(Machine.Path), u"v", TUndoMark::Taken);
  Record.Marks.MarkValue(Place(u"A"), u"other", TUndoMark::Named);
  std::string Body = EncodeUndoRecord(Record).substr(BodyAt + 8); // no number,
  Body.pop_back();                                                // no goal,
  const std::string Security("\2\0\0\0\1\0\1", 7);                // and the mark of a link
  Body.erase(Body.find(Security) + Security.size(), 1 + 4 + 1);   // no volatility, no label
  TError Why;
  const auto Read = DecodeUndoRecord(FileOf(1, Body), Why);
  ASSERT_TRUE(Read) << ToUtf8(EnglishWords(Why));
  EXPECT_FALSE(Read->Goal);
  EXPECT_EQ(Read->Number, 0u);
  EXPECT_EQ(Read->Before.Keys.at(Place(u"A")).Info.Volatile, TRegVolatile::No);
  EXPECT_TRUE(Read->Before.Keys.at(Place(u"A")).Info.Label.empty());
  EXPECT_EQ(DecodeUndoHead(FileOf(1, Body)).Changes, 12u);
  EXPECT_EQ(Read->Marks.OfValue(Place(u"A"), u""), TUndoMark::Taken);
  EXPECT_EQ(Read->Marks.OfValue(Place(u"A"), u"other"), TUndoMark::Kept) << "it was never fixed";
  EXPECT_EQ(Read->Marks.OfValue(Machine, u"v"), TUndoMark::Named) << "it may have been hit";
  EXPECT_EQ(Read->Marks.OfValue(Machine, u"w"), TUndoMark::Kept);
  EXPECT_EQ(Read->Marks.OfKey(Machine), TUndoMark::Kept);
}

// One value of one key through a fix or restore and back.
TEST(Undone, LeavesAloneWhatItDidNotDo) {
  static const struct {
    const char *Why;
    const char16_t *Before; // null: not there
    TUndoMark Mark;
    const char16_t *Present;
    const char16_t *Wanted;
  } Cases[] = {
      {"taken and gone", u"1", TUndoMark::Taken, nullptr, u"1"},
      {"taken and there again with newer data", u"1", TUndoMark::Taken, u"2", u"1"},
      {"named and changed since", u"1", TUndoMark::Named, u"2", u"2"},
      {"named and gone since", u"1", TUndoMark::Named, nullptr, u"1"},
      {"kept and changed since", u"1", TUndoMark::Kept, u"2", u"2"},
      {"kept and gone since", u"1", TUndoMark::Kept, nullptr, nullptr},
      {"added and still there", nullptr, TUndoMark::Added, u"2", nullptr},
      {"added and gone since", nullptr, TUndoMark::Added, nullptr, nullptr},
  };
  for (const auto &C : Cases) {
    TUndoRecord Record;
    TSnapshot Present;
    Present.Keys[Place(u"K")].Values[u"other"] = {TRegType::String, BytesOf(u"stays"), 0};
    Record.Before.Keys[Place(u"K")];
    if (C.Before)
      Record.Before.Keys[Place(u"K")].Values[u"v"] = {TRegType::String, BytesOf(C.Before), 1};
    if (C.Present)
      Present.Keys[Place(u"K")].Values[u"V"] = {TRegType::String, BytesOf(C.Present), 1};
    if (C.Mark != TUndoMark::Kept)
      Record.Marks.MarkValue(Place(u"K"), u"v", C.Mark);
    const TSnapshot Wanted = Undone(Record, Present);
    const TSavedValue *const Value = Wanted.FindValue(Place(u"K"), u"v");
    ASSERT_EQ(Value != nullptr, C.Wanted != nullptr) << C.Why;
    EXPECT_TRUE(!Value || Value->Bytes == BytesOf(C.Wanted)) << C.Why;
    EXPECT_TRUE(Wanted.FindValue(Place(u"K"), u"other")) << C.Why;
  }
}

TEST(Undone, AddedKeysGoUnlessSomethingNewIsInThem) {
  TUndoRecord Record;
  TSnapshot Present;
  for (const std::u16string_view Path : {u"N", u"N\\a", u"N\\a b", u"N\\a\\deep", u"M", u"M\\x"}) {
    Record.Marks.MarkKey(Place(Path), TUndoMark::Added);
    Present.Keys[Place(Path)];
  }
  Present.Keys[Place(u"M\\x\\newer")];
  const TSnapshot Wanted = Undone(Record, Present);
  std::u16string Left;
  for (const auto &[Key, Content] : Wanted.Keys)
    Left += Key.Path + u" ";
  EXPECT_EQ(Left, u"M M\\x M\\x\\newer ");
}

// One value through a restore that was broken off: only its own work is taken back.
TEST(TakenBack, LeavesAloneWhatOthersHaveDone) {
  static const struct {
    const char *Why;
    const char16_t *Before; // null: not there
    const char16_t *Goal;
    const char16_t *Present;
    const char16_t *Wanted;
    bool HasReachedGoal;
  } Cases[] = {
      {"not yet written", nullptr, u"1", nullptr, nullptr, false},
      {"written", nullptr, u"1", u"1", nullptr, true},
      {"written, then changed by somebody", nullptr, u"1", u"2", u"2", true},
      {"replaced", u"0", u"1", u"1", u"0", true},
      {"replaced, then deleted by somebody", u"0", u"1", nullptr, nullptr, true},
      {"removed", u"0", nullptr, nullptr, u"0", true},
      {"removed, then made again by somebody", u"0", nullptr, u"2", u"2", true},
      {"not yet removed", u"0", nullptr, u"0", u"0", false},
      {"left by the editor", nullptr, nullptr, u"editor", nullptr, false},
      {"none of the restore's", nullptr, nullptr, u"2", u"2", true},
  };
  for (const auto &C : Cases) {
    TUndoRecord Record;
    Record.Finished = false;
    Record.Goal = TRestoreGoal{};
    Record.Goal->EditorValues = {{Place(u"K"), u"v", {TRegType::String, BytesOf(u"editor"), 0}}};
    TSnapshot Present;
    const auto Set = [](TSavedKeys &Keys, const char16_t *Data) {
      Keys[Place(u"K")];
      if (Data)
        Keys[Place(u"K")].Values[u"v"] = {TRegType::String, BytesOf(Data), 0};
    };
    Set(Record.Before.Keys, C.Before);
    Set(Record.Goal->Keys, C.Goal);
    Set(Present.Keys, C.Present);
    const TTakenBack Taken = TakenBack(Record, Present);
    EXPECT_EQ(Taken.HasReachedGoal, C.HasReachedGoal) << C.Why;
    const TSavedValue *const Value = Taken.Wanted.FindValue(Place(u"K"), u"v");
    ASSERT_EQ(Value != nullptr, C.Wanted != nullptr) << C.Why;
    EXPECT_TRUE(!Value || Value->Bytes == BytesOf(C.Wanted)) << C.Why;
  }
}

// What a restore tells when not all is as it was.
TEST(Snapshot, DifferencesAreNamedOneByOne) {
  TSnapshot Wanted;
  TSavedKey &Key = Wanted.Keys[Place(u"K")];
  Key.Info.ClassName = u"class";
  Key.Info.Security = {std::byte{1}};
  Key.Values[u"v"] = {TRegType::String, BytesOf(u"1"), 0};
  Wanted.Keys[Place(u"missing")];
  Wanted.Files[u"C:\\a.lnk"].Bytes = "1";
  TSnapshot Now = Wanted;
  EXPECT_TRUE(Differences(Now, Wanted).empty());
  Now.Scope.Files = {u"C:\\a.lnk"};
  Now.Files.clear();
  Now.Keys.erase(Place(u"missing"));
  Now.Keys[Place(u"extra")];
  Now.Keys[Place(u"K")] = {};
  Now.Keys[Place(u"K")].Values[u"w"];
  std::u16string Told;
  const TPutFailure Denied = {PathOf(Place(u"K")), u"v", TRegStatus::Denied};
  for (const TPutFailure &Failure : Differences(Now, Wanted, {&Denied, 1}))
    Told += Failure.Path.substr(Failure.Path.find(u'\\') + 1) + u"." + Failure.Value +
            ToDecimal(static_cast<std::uint32_t>(Failure.Part)) +
            (Failure.Status == TRegStatus::Denied ? u"denied " : u" ");
  EXPECT_EQ(ToUtf8(Told), "K.v0denied K.w0 K.1 K.2 missing.0 extra.0 a.lnk.0 ");
}

// What one TakeSnapshot can't read is never taken for gone.
TEST(Snapshot, UnreadableIsNeverMissing) {
  auto Registry = MemoryRegistry(u"[HKEY_CURRENT_USER\\T]\n[HKEY_CURRENT_USER\\T\\a]\n\"v\"=\"1\"\n"
                                 u"[HKEY_CURRENT_USER\\T\\a\\b]\n\"v\"=\"2\"\n");
  TMemoryRegistry &Memory = *Registry;
  TPlatform Platform = MakeMemoryPlatform(std::move(Registry), {});
  TScope Scope;
  Scope.Trees = {Place(u"t"), Place(u"Gone\\deep\\er")};
  const TSnapshot Before = TakeSnapshot(Platform, Scope);
  EXPECT_EQ(Before.Keys.size(), 3u);
  EXPECT_EQ(Before.Keys.begin()->first.Path, u"T") << "as it is stored, not as it was asked for";
  EXPECT_TRUE(Before.Scope.Trees.contains(Place(u"Gone"))) << "the topmost missing key";

  ASSERT_TRUE(Memory.Deny(u"HKEY_CURRENT_USER\\T\\a"));
  const TSnapshot Now = TakeSnapshot(Platform, Scope);
  EXPECT_TRUE(MarksOfChange(Before, Now).Keys.empty());
  EXPECT_TRUE(MarksOfChange(Now, Before).Keys.empty());
  TSnapshot Nothing = Before;
  Nothing.Keys.clear();
  EXPECT_EQ(PutBack(Platform, Now, Nothing).size(), 1u) << "the key above it can't go either";
  EXPECT_EQ(Platform.Registry->Open(TRegRoot::CurrentUser, u"T").Status, TRegStatus::Ok);
}

} // namespace
} // namespace hivesweep

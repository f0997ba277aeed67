#include <gtest/gtest.h>

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
  return Record;
}

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

// A record's bytes with the size and the checksum that its body has.
std::string WithRightHead(std::string Bytes) {
  constexpr std::size_t BodyAt = 24;
  std::uint32_t Sum = 0xFFFF'FFFFu;
  for (const char Byte : Bytes.substr(BodyAt)) {
    Sum ^= static_cast<unsigned char>(Byte);
    for (int Bit = 0; Bit < 8; ++Bit)
      Sum = (Sum >> 1) ^ ((Sum & 1) != 0 ? 0xEDB8'8320u : 0u);
  }
  Sum = ~Sum;
  for (std::size_t Byte = 0; Byte < 4; ++Byte) {
    Bytes[20 + Byte] = static_cast<char>(Sum >> (8 * Byte));
    Bytes[12 + Byte] = static_cast<char>((Bytes.size() - BodyAt) >> (8 * Byte));
  }
  return Bytes;
}

// Records of the first version had no number, no volatility and no label.
TEST(UndoFormat, ReadsRecordsOfTheFirstVersion) {
  std::string Bytes = EncodeUndoRecord(FullRecord());
  const std::string Security("\2\0\0\0\1\0\1", 7); // and the mark of a link
  Bytes.erase(Bytes.find(Security) + Security.size(), 1 + 4 + 1);
  Bytes.erase(24, 8);
  Bytes[8] = 1;
  TError Why;
  const auto Read = DecodeUndoRecord(WithRightHead(Bytes), Why);
  ASSERT_TRUE(Read) << ToUtf8(EnglishWords(Why));
  TUndoRecord Expected = FullRecord();
  Expected.Number = 0;
  TRegKeyInfo &Info = Expected.Before.Keys.at(Place(u"A")).Info;
  Info.Volatile = TRegVolatile::No;
  Info.Label.clear();
  EXPECT_EQ(EncodeUndoRecord(*Read), EncodeUndoRecord(Expected));
  EXPECT_EQ(DecodeUndoHead(Bytes).Changes, 12u);
}

// A right checksum over lengths that lie: no crash, no large allocation.
TEST(UndoFormat, RefusesLyingLengthsBehindARightChecksum) {
  const std::string Bytes = EncodeUndoRecord(FullRecord());
  constexpr std::size_t BodyAt = 24;
  TError Why;
  int Refused = 0;
  for (std::size_t At = BodyAt + 7; At + 4 <= Bytes.size(); ++At) {
    std::string Lying = Bytes;
    Lying.replace(At, 4, "\xFF\xFF\xFF\x7F");
    Lying = WithRightHead(Lying);
    Refused += DecodeUndoRecord(Lying, Why) ? 0 : 1;
  }
  EXPECT_GT(Refused, 50);
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

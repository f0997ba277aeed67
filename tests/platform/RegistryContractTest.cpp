// What every registry host promises, run over all of them.
#include <algorithm>
#include <tuple>

#include <gtest/gtest.h>

#include "platform/memory/MemoryRegistry.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {
namespace {

using TBytes = std::vector<std::byte>;
using TValue = std::tuple<std::u16string, std::uint32_t, TBytes>;

TBytes BytesOf(std::span<const std::byte> Bytes) { return {Bytes.begin(), Bytes.end()}; }

TBytes BytesOf(std::u16string_view Units) { return BytesOf(std::as_bytes(std::span(Units))); }

TBytes BytesOf(std::initializer_list<int> Numbers) {
  TBytes Out;
  for (const int Number : Numbers)
    Out.push_back(static_cast<std::byte>(Number));
  return Out;
}

TValue ValueOf(std::u16string_view Name, TRegData Data) {
  return {std::u16string(Name), static_cast<std::uint32_t>(Data.Type()), BytesOf(Data.Bytes())};
}

class RegistryContract : public testing::TestWithParam<TRegistryKind> {
protected:
  void Load(std::u16string_view Text) { Registry->Load(Text); }

  std::unique_ptr<TRegKey> OpenKey(std::u16string_view Below = u"",
                                   TRegAccess Access = TRegAccess::Full) {
    TRegOpened Opened = Registry->Host().Open(TRegRoot::CurrentUser, Registry->Path(Below), Access);
    EXPECT_EQ(Opened.Status, TRegStatus::Ok) << ToUtf8(Below);
    EXPECT_EQ(Opened.Key != nullptr, Opened.Status == TRegStatus::Ok);
    return std::move(Opened.Key);
  }

  std::vector<std::u16string> Subkeys(std::u16string_view Below = u"") {
    std::vector<std::u16string> Names;
    EXPECT_EQ(OpenKey(Below)->SubkeyNames(Names), TRegStatus::Ok);
    return Names;
  }

  std::vector<TValue> Values(std::u16string_view Below = u"") {
    TRegValueList List;
    EXPECT_EQ(OpenKey(Below)->Values(List), TRegStatus::Ok);
    std::vector<TValue> Out;
    for (std::size_t Index = 0; Index < List.Count(); ++Index)
      Out.push_back(ValueOf(List[Index].Name, List[Index].Data));
    return Out;
  }

  // Values that were made in this order, as the host enumerates them.
  std::vector<TValue> InHostOrder(std::vector<TValue> Made) const {
    if (!Registry->KeepsValueOrder())
      std::sort(Made.begin(), Made.end(), [](const TValue &Left, const TValue &Right) {
        return TNameLess()(std::get<0>(Left), std::get<0>(Right));
      });
    return Made;
  }

  // The running system's, not one in memory.
  bool IsLive() const { return std::string_view(GetParam().Name) == "Live"; }

  std::unique_ptr<TTestRegistry> Registry = GetParam().Make();
};

INSTANTIATE_TEST_SUITE_P(Hosts, RegistryContract, testing::ValuesIn(AllRegistries()),
                         [](const auto &Kind) { return std::string(Kind.param.Name); });

// ---- opening --------------------------------------------------------------------

TEST_P(RegistryContract, PathsAreTakenFromTheRootOrTheCurrentKey) {
  Load(uR"(
[~\One]
@="one"
[~\One\Two]
@="two"
[~\One\Two\Three.4 {5}]
@="three"
)");
  using enum TRegStatus;
  const std::u16string Top = Registry->Path();
  const std::u16string AtRoot = u"\\" + Top;
  const struct {
    const char *Why;
    std::u16string From; // opened first, from the root; empty: no key is open
    std::u16string Path;
    TRegStatus Status;
    std::u16string_view Current; // the default value of the current key afterwards
  } Cases[] = {
      {"no key is open: from the root", u"", Top + u"\\One", Ok, u"one"},
      {"a backslash in front: from the root", u"", AtRoot + u"\\One", Ok, u"one"},
      {"the same while a key is open", Top + u"\\One\\Two", AtRoot + u"\\One", Ok, u"one"},
      {"from the current key", Top + u"\\One", u"Two", Ok, u"two"},
      {"several steps", Top + u"\\One", u"Two\\Three.4 {5}", Ok, u"three"},
      {"another case", Top + u"\\oNE", u"tWO\\tHREE.4 {5}", Ok, u"three"},
      {"backslashes at the end", Top + u"\\One", u"Two\\\\", Ok, u"two"},
      {"nothing: the current key again", Top + u"\\One", u"", Ok, u"one"},
      {"missing: the current key stays", Top + u"\\One", u"Three", NotFound, u"one"},
      {"a name's beginning is no name", Top + u"\\One", u"Tw", NotFound, u"one"},
      {"missing below a missing one", Top + u"\\One", u"No\\Two", NotFound, u"one"},
      {"a full path is not taken from the current key", Top + u"\\One", Top, NotFound, u"one"},
      {"a zero inside", Top + u"\\One", std::u16string(u"Two\0x", 5), Failed, u"one"},
      {"a zero at the end", Top + u"\\One", std::u16string(u"Two\0", 4), Failed, u"one"},
      {"missing, and no key is open", u"", Top + u"\\Three", NotFound, {}},
  };
  for (const TRegAccess Access : {TRegAccess::Read, TRegAccess::Full})
    for (const auto &C : Cases) {
      SCOPED_TRACE(C.Why);
      TRegistry Seen(Registry->Host(), Access);
      if (!C.From.empty()) {
        ASSERT_EQ(Seen.OpenKey(C.From), Ok);
      }
      EXPECT_EQ(Seen.OpenKey(C.Path), C.Status);
      ASSERT_EQ(Seen.CurrentKey() != nullptr, !C.Current.empty());
      if (!Seen.CurrentKey())
        continue;
      TRegValue Default;
      EXPECT_EQ(Seen.CurrentKey()->Read(u"", Default), Ok);
      EXPECT_EQ(Default.Data().Text(), C.Current);
    }
  EXPECT_EQ(Subkeys(), std::vector<std::u16string>{u"One"}) << "opening makes nothing";
  EXPECT_EQ(Subkeys(u"One"), std::vector<std::u16string>{u"Two"});
}

TEST_P(RegistryContract, AnotherRootClosesTheCurrentKey) {
  Load(u"[~\\One]");
  TRegistry Seen(Registry->Host());
  ASSERT_EQ(Seen.OpenKey(Registry->Path()), TRegStatus::Ok);
  Seen.SetRoot(TRegRoot::CurrentUser);
  EXPECT_NE(Seen.CurrentKey(), nullptr);
  Seen.SetRoot(TRegRoot::LocalMachine);
  EXPECT_EQ(Seen.CurrentKey(), nullptr);
  EXPECT_EQ(Seen.OpenKey(Registry->Path()), TRegStatus::NotFound);
  EXPECT_EQ(Seen.DeleteValue(u""), TRegStatus::NotFound);
  Seen.SetRoot(TRegRoot::CurrentUser);
  EXPECT_EQ(Seen.OpenKey(u"One"), TRegStatus::NotFound);
  EXPECT_EQ(Seen.OpenKey(u"\\"), TRegStatus::Ok);
  EXPECT_EQ(Seen.OpenKey(Registry->Path(u"One")), TRegStatus::Ok);
}

TEST_P(RegistryContract, ADeniedKeyIsNotAMissingOne) {
  Load(u"[~\\Secret\\Below]\n[~\\Open]");
  if (!Registry->Deny(u"Secret"))
    GTEST_SKIP() << "this registry lets nobody be kept out";
  const auto Key = OpenKey();
  if (Key->Open(u"Secret").Status == TRegStatus::Ok)
    GTEST_SKIP() << "this registry keeps permissions but does not look at them";
  EXPECT_EQ(Key->Open(u"Secret").Status, TRegStatus::Denied);
  EXPECT_EQ(Key->Open(u"Secret", TRegAccess::Full).Status, TRegStatus::Denied);
  EXPECT_EQ(Key->OpenItself(u"Secret").Status, TRegStatus::Denied);
  EXPECT_EQ(Key->Create(u"Secret").Status, TRegStatus::Denied);
  // Wine looks at the permissions of a key that is there, not of its parent.
  if (!IsLive() || !IsWine()) {
    EXPECT_EQ(Key->Create(u"Secret\\New").Status, TRegStatus::Denied);
  }
  EXPECT_EQ(Key->DeleteTree(u"Secret"), TRegStatus::Denied);
  EXPECT_EQ(Subkeys(), (std::vector<std::u16string>{u"Open", u"Secret"}));
}

// ---- reading ----------------------------------------------------------------------

TEST_P(RegistryContract, NamesKeepTheirSpellingAndAreFoundInAnyCase) {
  const std::u16string_view Names[] = {
      u"plain",        u"MiXed",      u"with blank ",         u" blank before",
      u"a/b",          u"{0-1}",      u"\u00C4\u00D6 \u00FC", u"\u0416\u0436",
      u"\u65E5\u672C", u"\U0001F600", u"%x%;,=[]@#'",         u"dots...",
      u"*?<>|:",
  };
  std::u16string Text = u"[~]\n";
  for (const std::u16string_view Name : Names)
    Text.append(u"\"").append(Name).append(u"\"=\"x\"\n");
  for (const std::u16string_view Name : Names)
    Text.append(u"[~\\").append(Name).append(u"]\n");
  Load(Text);

  std::vector<std::u16string> Expected(std::begin(Names), std::end(Names));
  std::sort(Expected.begin(), Expected.end(), TNameLess());
  EXPECT_EQ(Subkeys(), Expected);
  std::vector<std::u16string> Found;
  for (const TValue &Value : Values())
    Found.push_back(std::get<0>(Value));
  std::sort(Found.begin(), Found.end(), TNameLess());
  EXPECT_EQ(Found, Expected);

  const auto Key = OpenKey();
  for (const std::u16string_view Name : Names) {
    TRegValue Value;
    EXPECT_EQ(Key->Open(UpperCase(Name)).Status, TRegStatus::Ok) << ToUtf8(Name);
    EXPECT_EQ(Key->Read(UpperCase(Name), Value), TRegStatus::Ok) << ToUtf8(Name);
  }
}

TEST_P(RegistryContract, TypesAndBytesAreExact) {
  static const struct {
    const char *Why;
    std::u16string Name;
    std::u16string_view Data;
    std::uint32_t Type;
    TBytes Bytes;
  } Cases[] = {
      {"text with its zero", u"z text", u"\"ab\"", 1, BytesOf({'a', 0, 'b', 0, 0, 0})},
      {"an empty text", u"empty text", u"\"\"", 1, BytesOf({0, 0})},
      {"a text without bytes", u"no bytes", u"hex(1):", 1, {}},
      {"a text without its zero", u"open", u"hex(1):61,00", 1, BytesOf({'a', 0})},
      {"half a unit at the end", u"odd", u"hex(1):61,00,62", 1, BytesOf({'a', 0, 'b'})},
      {"one byte", u"one", u"hex(2):61", 2, BytesOf({'a'})},
      {"zeros inside", u"zeros", u"hex(1):61,00,00,00,62,00,00,00,00,00", 1,
       BytesOf({'a', 0, 0, 0, 'b', 0, 0, 0, 0, 0})},
      {"type none", u"none", u"hex(0):01", 0, BytesOf({1})},
      {"nothing at all", u"nothing", u"hex(0):", 0, {}},
      {"binary", u"binary", u"hex:00,ff,80,0d,0a", 3, BytesOf({0, 255, 128, 13, 10})},
      {"a number", u"number", u"dword:fedcba98", 4, BytesOf({0x98, 0xBA, 0xDC, 0xFE})},
      {"a number with too few bytes", u"short number", u"hex(4):01,02", 4, BytesOf({1, 2})},
      {"a number with too many", u"long number", u"hex(4):01,02,03,04,05", 4,
       BytesOf({1, 2, 3, 4, 5})},
      {"a big-endian number", u"big", u"hex(5):01,02,03,04", 5, BytesOf({1, 2, 3, 4})},
      {"a link's type in no link", u"link", u"hex(6):61,00", 6, BytesOf({'a', 0})},
      {"texts without the last zero", u"multi", u"hex(7):61,00,00,00", 7, BytesOf({'a', 0, 0, 0})},
      {"a long number", u"qword", u"hex(b):01,02,03,04,05,06,07,08", 11,
       BytesOf({1, 2, 3, 4, 5, 6, 7, 8})},
      {"a type that does not exist", u"a type", u"hex(1234):61", 0x1234, BytesOf({'a'})},
      {"the largest type", u"last", u"hex(ffffffff):", 0xFFFFFFFF, {}},
      {"the default value", u"", u"hex(3):07", 3, BytesOf({7})},
  };
  std::u16string Text = u"[~]\n";
  std::vector<TValue> Made;
  for (const auto &C : Cases) {
    Text.append(C.Name.empty() ? u"@" : u"\"" + C.Name + u"\"").append(u"=").append(C.Data) +=
        u'\n';
    Made.emplace_back(C.Name, C.Type, C.Bytes);
  }
  Load(Text);
  EXPECT_EQ(Values(), InHostOrder(Made));

  const auto Key = OpenKey();
  TRegValue Value; // used again and again: what a longer one left must not show
  for (const auto &C : Cases) {
    EXPECT_EQ(Key->Read(C.Name, Value), TRegStatus::Ok) << C.Why;
    EXPECT_EQ(ValueOf(C.Name, Value.Data()), TValue(C.Name, C.Type, C.Bytes)) << C.Why;
  }
}

TEST_P(RegistryContract, TheDefaultValueIsThereOnlyWhenItWasSet) {
  Load(u"[~\\None]\n\"x\"=\"1\"\n[~\\Empty]\n@=\"\"\n[~\\Set]\n@=\"text\"");
  TRegValue Value;
  ASSERT_EQ(OpenKey(u"Set")->Read(u"", Value), TRegStatus::Ok);
  EXPECT_EQ(Value.Data().Text(), u"text");
  EXPECT_EQ(OpenKey(u"None")->Read(u"", Value), TRegStatus::NotFound);
  EXPECT_EQ(Value.Data().Size(), 0u);
  EXPECT_EQ(Value.Data().Type(), TRegType::None);
  EXPECT_EQ(OpenKey(u"Empty")->Read(u"", Value), TRegStatus::Ok);
  EXPECT_EQ(Value.Data().Size(), 2u);
  EXPECT_EQ(OpenKey(u"Empty")->Read(u"missing", Value), TRegStatus::NotFound);
}

TEST_P(RegistryContract, LongNamesAndLargeDataDoNotDisturbTheirNeighbours) {
  const std::u16string LongName(16'383, u'n');
  const std::u16string LongKey(255, u'k');
  const std::u16string Large(1'048'576, u'd'); // 2 MiB, with a zero behind
  Load(u"[~]\n\"a\"=\"before\"\n\"" + LongName + u"\"=\"long name\"\n\"large\"=\"" + Large +
       u"\"\n\"z\"=\"after\"\n[~\\" + LongKey + u"]");

  const auto Zero = [](const std::u16string &Text) { return BytesOf(Text + u'\0'); };
  const std::vector<TValue> Made = {{u"a", 1, Zero(u"before")},
                                    {LongName, 1, Zero(u"long name")},
                                    {u"large", 1, Zero(Large)},
                                    {u"z", 1, Zero(u"after")}};
  EXPECT_TRUE(Values() == InHostOrder(Made));
  const auto Key = OpenKey();
  for (const auto &[Name, Type, Bytes] : Made) {
    TRegValue Value;
    EXPECT_EQ(Key->Read(Name, Value), TRegStatus::Ok) << Name.size();
    EXPECT_TRUE(BytesOf(Value.Data().Bytes()) == Bytes) << Name.size();
  }
  EXPECT_EQ(Subkeys(), std::vector<std::u16string>{LongKey});
  EXPECT_EQ(Key->Open(LongKey).Status, TRegStatus::Ok);
  // A name that nothing can have may be called missing or impossible, never found.
  // The last ones are those above to whom counts its bytes in 16 bits.
  TRegValue Value;
  for (const std::size_t Length : {256u, 16'384u, 32'768u + 255u, 65'536u + 255u})
    EXPECT_NE(Key->Open(std::u16string(Length, u'k')).Status, TRegStatus::Ok) << Length;
  for (const std::size_t Length : {16'384u, 32'769u, 65'537u})
    EXPECT_NE(Key->Read(std::u16string(Length, u'a'), Value), TRegStatus::Ok) << Length;
}

TEST_P(RegistryContract, ManySubkeysAndValuesAreAllListedInOrder) {
  constexpr int Many = 10'000;
  std::u16string Text = u"[~\\Few]\n\"x\"=\"1\"\n[~\\Many]\n";
  std::vector<std::u16string> Names;
  for (int Number = 0; Number < Many; ++Number) {
    // Every second one in capitals, or the order by case would not show.
    const std::u16string Name =
        (Number % 2 ? u"NAME " : u"name ") + ToDecimal(static_cast<unsigned>(Many - Number));
    Text.append(u"\"" + Name + u"\"=dword:1\n");
    Names.push_back(Name);
  }
  for (const std::u16string &Name : Names)
    Text.append(u"[~\\Many\\" + Name + u"]\n");
  Load(Text);

  TRegCounts Counts;
  EXPECT_EQ(OpenKey(u"Many")->Counts(Counts), TRegStatus::Ok);
  EXPECT_EQ(Counts.Subkeys, unsigned{Many});
  EXPECT_EQ(Counts.Values, unsigned{Many});
  EXPECT_EQ(OpenKey(u"Few")->Counts(Counts), TRegStatus::Ok);
  EXPECT_EQ(Counts.Subkeys, 0u);
  EXPECT_EQ(Counts.Values, 1u);
  EXPECT_EQ(OpenKey()->Counts(Counts), TRegStatus::Ok);
  EXPECT_EQ(Counts.Subkeys, 2u);
  EXPECT_EQ(Counts.Values, 0u);

  std::vector<TValue> Made;
  Made.reserve(Names.size());
  for (const std::u16string &Name : Names)
    Made.emplace_back(Name, 4, BytesOf({1, 0, 0, 0}));
  EXPECT_TRUE(Values(u"Many") == InHostOrder(Made));
  std::sort(Names.begin(), Names.end(), TNameLess());
  EXPECT_TRUE(Subkeys(u"Many") == Names);
}

// ---- writing ------------------------------------------------------------------------

TEST_P(RegistryContract, AValueIsStoredAsItIsGiven) {
  Load(u"[~\\Types]\n[~\\Names]");
  const auto Types = OpenKey(u"Types");
  std::vector<TValue> Made;
  for (const std::uint32_t Type : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 11u, 12u, 0x1234u, ~0u}) {
    // Without an end, with half a unit, with zeros at the end or inside, and large.
    for (const TBytes &Bytes :
         {TBytes(), BytesOf({'a'}), BytesOf({'a', 0}), BytesOf({'a', 0, 'b'}), BytesOf({0, 0}),
          BytesOf({'a', 0, 0, 0, 'b', 0, 0, 0}), TBytes(100'000, std::byte{'x'})}) {
      const std::u16string Name =
          ToDecimal(1'000 + Made.size()) + u" " + ToDecimal(Type) + u" " + ToDecimal(Bytes.size());
      EXPECT_EQ(Types->SetValue(Name, static_cast<TRegType>(Type), Bytes), TRegStatus::Ok)
          << ToUtf8(Name);
      Made.emplace_back(Name, Type, Bytes);
    }
  }
  EXPECT_TRUE(Values(u"Types") == InHostOrder(Made));

  Made.clear();
  const auto Names = OpenKey(u"Names");
  for (const std::u16string &Name :
       {std::u16string(), std::u16string(u"a\\b\\"), std::u16string(u"\\"),
        std::u16string(u"\"quoted\""), std::u16string(u"two\r\nlines"), std::u16string(u"="),
        std::u16string(u" blanks "), std::u16string(u"\u00C4\u0416\u65E5\U0001F600"),
        std::u16string(u"[x]"), std::u16string(1, u'\xD800'), std::u16string(16'383, u'n')}) {
    EXPECT_EQ(Names->SetValue(Name, TRegType::Binary, BytesOf(Name)), TRegStatus::Ok);
    Made.emplace_back(Name, 3, BytesOf(Name));
  }
  std::vector<TValue> Found = Values(u"Names");
  std::sort(Found.begin(), Found.end());
  std::sort(Made.begin(), Made.end());
  EXPECT_TRUE(Found == Made);
  for (const std::u16string &Name :
       {std::u16string(u"cut\0x", 5), std::u16string(u"x\0", 2), std::u16string(16'384, u'n')})
    EXPECT_EQ(Names->SetValue(Name, TRegType::Binary, {}), TRegStatus::Failed) << Name.size();
  EXPECT_EQ(Values(u"Names").size(), Made.size());
}

TEST_P(RegistryContract, AValueIsReplacedInItsPlaceUnderItsName) {
  Load(u"[~]\n\"First\"=\"a long text\"\n\"Second\"=\"2\"");
  const auto Key = OpenKey();
  EXPECT_EQ(Key->SetValue(u"fIRST", TRegType::None, BytesOf({7})), TRegStatus::Ok);
  EXPECT_EQ(Values(), (std::vector<TValue>{{u"First", 0, BytesOf({7})},
                                           {u"Second", 1, BytesOf(std::u16string(u"2\0", 2))}}));
  EXPECT_EQ(Key->Open(u"").Key->SetValue(u"Second", TRegType::None, {}), TRegStatus::Denied)
      << "opened for reading";
  EXPECT_EQ(Values().size(), 2u);
}

TEST_P(RegistryContract, AKeyIsMadeWithItsParentsOrOpened) {
  Load(u"[~\\There]\n\"x\"=\"1\"\n[~\\There\\Below]");
  const auto Key = OpenKey();
  std::u16string Deep = u"d";
  for (int Level = 1; Level < 100; ++Level)
    Deep += u"\\d";
  const struct {
    const char *Why;
    std::u16string Path;
    TRegStatus Status;
    bool Created;
  } Cases[] = {
      {"new", u"New", TRegStatus::Ok, true},
      {"in another case it is there", u"nEW", TRegStatus::Ok, false},
      {"with parents", u"P 1\\{2}\\\u00C4\u0416\u65E5", TRegStatus::Ok, true},
      {"a parent that is there now", u"P 1\\{2}", TRegStatus::Ok, false},
      {"very deep", Deep, TRegStatus::Ok, true},
      {"a long name", std::u16string(255, u'k'), TRegStatus::Ok, true},
      {"odd letters", u"a/b\\\"[=]\\two\r\nlines", TRegStatus::Ok, true},
      {"was there before", u"There", TRegStatus::Ok, false},
      {"no path", u"", TRegStatus::Failed, false},
      {"a backslash in front", u"\\Refused", TRegStatus::Failed, false},
      {"a backslash at the end", u"Refused\\", TRegStatus::Failed, false},
      {"a part without a name", u"Refused\\\\x", TRegStatus::Failed, false},
      {"a zero inside", std::u16string(u"Refused\0x", 9), TRegStatus::Failed, false},
      {"a name that is too long", std::u16string(256, u'r'), TRegStatus::Failed, false},
  };
  TRegKeyInfo WithClass;
  WithClass.ClassName = u"Class \u0416";
  for (const TRegKeyInfo &Info : {TRegKeyInfo(), WithClass}) {
    for (const auto &C : Cases) {
      SCOPED_TRACE(C.Why);
      const TRegOpened Made = Key->Create(C.Path, Info);
      EXPECT_EQ(Made.Status, C.Status);
      EXPECT_EQ(Made.Created, C.Created);
      ASSERT_EQ(Made.Key != nullptr, C.Status == TRegStatus::Ok);
      if (!Made.Key)
        continue;
      EXPECT_EQ(Made.Key->SetValue(u"made", TRegType::None, {}), TRegStatus::Ok);
      TRegKeyInfo Seen;
      EXPECT_EQ(Key->Open(C.Path).Key->ReadInfo(Seen), TRegStatus::Ok);
      EXPECT_TRUE(!C.Created || Seen.ClassName == Info.ClassName) << ToUtf8(Seen.ClassName);
      EXPECT_FALSE(Seen.IsLink);
    }
    for (const std::u16string_view Classless : {u"P 1", u"P 1\\{2}", u"There", u"d\\d"}) {
      TRegKeyInfo Seen;
      EXPECT_EQ(Key->Open(Classless).Key->ReadInfo(Seen), TRegStatus::Ok);
      EXPECT_EQ(Seen.ClassName, u"") << ToUtf8(Classless);
    }
    EXPECT_EQ(Subkeys(), (std::vector<std::u16string>{u"a/b", u"d", std::u16string(255, u'k'),
                                                      u"New", u"P 1", u"There"}));
    EXPECT_EQ(Subkeys(u"There"), std::vector<std::u16string>{u"Below"});
    EXPECT_EQ(Values(u"There").size(), 2u);
    for (const std::u16string_view Name : {u"a/b", u"d", u"New", u"P 1"})
      EXPECT_EQ(Key->DeleteTree(Name), TRegStatus::Ok);
    EXPECT_EQ(Key->DeleteTree(Cases[5].Path), TRegStatus::Ok);
  }
  const auto Doomed = OpenKey(u"There");
  ASSERT_EQ(Key->DeleteTree(u"There"), TRegStatus::Ok);
  TRegKeyInfo Info;
  EXPECT_EQ(Doomed->Create(u"x").Status, TRegStatus::NotFound);
  EXPECT_EQ(Doomed->SetValue(u"x", TRegType::None, {}), TRegStatus::NotFound);
  EXPECT_EQ(Doomed->ReadInfo(Info), TRegStatus::NotFound);
}

TEST_P(RegistryContract, ALinkIsMadeAndFoundOnlyAsItself) {
  Load(u"[~\\Plain]\n\"SymbolicLinkValue\"=hex(6):41,00");
  const auto Key = OpenKey();
  const TBytes Nowhere = BytesOf(u"\\Registry\\User\\Hivesweep tests, no such key");
  TRegKeyInfo Link;
  Link.IsLink = true;
  {
    const TRegOpened Made = Key->Create(u"Parent\\Link", Link);
    ASSERT_EQ(Made.Status, TRegStatus::Ok);
    EXPECT_TRUE(Made.Created);
    EXPECT_EQ(Made.Key->SetValue(u"SymbolicLinkValue", TRegType::Link, Nowhere), TRegStatus::Ok);
  }
  EXPECT_EQ(Key->Open(u"Parent\\Link").Status, TRegStatus::NotFound);
  EXPECT_EQ(Key->OpenItself(u"Parent\\Link\\x").Status, TRegStatus::NotFound);
  EXPECT_EQ(Key->OpenItself(u"Parent\\No link").Status, TRegStatus::NotFound);
  const TRegOpened Again = Key->Create(u"Parent\\Link", Link);
  ASSERT_EQ(Again.Status, TRegStatus::Ok);
  EXPECT_FALSE(Again.Created);
  TRegValue Value;
  TRegKeyInfo Seen;
  const auto Itself = Key->OpenItself(u"Parent\\Link").Key;
  for (const TRegKey *const Opened : {Again.Key.get(), Itself.get()})
    ASSERT_NE(Opened, nullptr);
  for (TRegKey *const Opened : {Again.Key.get(), Itself.get()}) {
    EXPECT_EQ(Opened->ReadInfo(Seen), TRegStatus::Ok);
    EXPECT_TRUE(Seen.IsLink);
    EXPECT_EQ(Opened->Read(u"SymbolicLinkValue", Value), TRegStatus::Ok);
    EXPECT_EQ(ValueOf(u"", Value.Data()), TValue(u"", 6, Nowhere));
  }
  // What has nothing but the value of a link is none.
  EXPECT_EQ(Key->OpenItself(u"Plain").Key->ReadInfo(Seen), TRegStatus::Ok);
  EXPECT_FALSE(Seen.IsLink);
  EXPECT_EQ(Key->OpenItself(u"Parent").Key->ReadInfo(Seen), TRegStatus::Ok);
  EXPECT_FALSE(Seen.IsLink);
  EXPECT_EQ(Key->DeleteTree(u"Parent"), TRegStatus::Ok);
  EXPECT_EQ(Subkeys(), std::vector<std::u16string>{u"Plain"});
}

// ---- deleting -----------------------------------------------------------------------

TEST_P(RegistryContract, DeletesOneValue) {
  Load(u"[~]\n@=\"default\"\n\"One\"=\"1\"\n\"One more\"=\"2\"\n[~\\One]");
  const auto Key = OpenKey();
  EXPECT_EQ(Key->DeleteValue(u"one"), TRegStatus::Ok);
  EXPECT_EQ(Key->DeleteValue(u"One"), TRegStatus::NotFound);
  EXPECT_EQ(Values(), InHostOrder({{u"", 1, BytesOf(std::u16string(u"default\0", 8))},
                                   {u"One more", 1, BytesOf(std::u16string(u"2\0", 2))}}));
  EXPECT_EQ(Key->DeleteValue(u""), TRegStatus::Ok);
  EXPECT_EQ(Key->DeleteValue(u""), TRegStatus::NotFound);
  EXPECT_EQ(Values().size(), 1u);
  EXPECT_EQ(Subkeys(), std::vector<std::u16string>{u"One"});

  const TRegOpened ToRead = Registry->Host().Open(TRegRoot::CurrentUser, Registry->Path());
  EXPECT_EQ(ToRead.Key->DeleteValue(u"One more"), TRegStatus::Denied);
  EXPECT_EQ(Values().size(), 1u);
}

TEST_P(RegistryContract, DeletesATreeAndNothingBesideIt) {
  std::u16string Deep = u"[~\\Tree";
  for (int Level = 0; Level < 100; ++Level)
    Deep += u"\\d";
  Load(Deep + uR"(]
"x"="1"
[~\Tree\Branch]
[~\Tree\Branch\Leaf]
"y"="2"
[~\Tree\A]
[~\Tree 2\Branch]
[~\Tre]
[~\Other\Tree\Branch]
)");
  const auto Key = OpenKey();
  const auto Doomed = OpenKey(u"Tree\\Branch\\Leaf");
  EXPECT_EQ(Key->DeleteTree(u"tREE"), TRegStatus::Ok);
  EXPECT_EQ(Key->DeleteTree(u"Tree"), TRegStatus::NotFound);
  EXPECT_EQ(Subkeys(), (std::vector<std::u16string>{u"Other", u"Tre", u"Tree 2"}));
  EXPECT_EQ(Subkeys(u"Tree 2"), std::vector<std::u16string>{u"Branch"});

  // A key that was open meanwhile says that it has gone, in every way.
  TRegCounts Counts;
  std::vector<std::u16string> Names;
  TRegValueList List;
  TRegValue Value;
  EXPECT_EQ(Doomed->Counts(Counts), TRegStatus::NotFound);
  EXPECT_EQ(Doomed->SubkeyNames(Names), TRegStatus::NotFound);
  EXPECT_EQ(Doomed->Values(List), TRegStatus::NotFound);
  EXPECT_EQ(Doomed->Read(u"y", Value), TRegStatus::NotFound);
  EXPECT_EQ(Doomed->DeleteValue(u"y"), TRegStatus::NotFound);
  EXPECT_EQ(Doomed->DeleteTree(u"z"), TRegStatus::NotFound);
  EXPECT_EQ(Doomed->Open(u"z").Status, TRegStatus::NotFound);

  EXPECT_EQ(Key->DeleteTree(u"Other\\Tree"), TRegStatus::Ok);
  EXPECT_EQ(Subkeys(u"Other"), std::vector<std::u16string>{});
  EXPECT_EQ(Key->DeleteTree(u"Other\\Tree\\Branch"), TRegStatus::NotFound);
  // An empty path would be the key itself.
  EXPECT_EQ(Key->DeleteTree(u""), TRegStatus::Failed);
  EXPECT_EQ(Subkeys(), (std::vector<std::u16string>{u"Other", u"Tre", u"Tree 2"}));
}

TEST_P(RegistryContract, DeletesByTheRulesOfPaths) {
  Load(u"[~\\A\\B]\n[~\\A\\C]\n[~\\B]");
  TRegistry Seen(Registry->Host(), TRegAccess::Full);
  EXPECT_EQ(Seen.DeleteValue(u"x"), TRegStatus::NotFound);
  ASSERT_EQ(Seen.OpenKey(Registry->Path(u"A")), TRegStatus::Ok);
  EXPECT_EQ(Seen.DeleteKey(u"B"), TRegStatus::Ok);
  EXPECT_EQ(Subkeys(), (std::vector<std::u16string>{u"A", u"B"}));
  EXPECT_EQ(Seen.DeleteKey(u"\\" + Registry->Path(u"B") + u"\\"), TRegStatus::Ok);
  EXPECT_EQ(Seen.DeleteKey(u""), TRegStatus::Failed);
  EXPECT_EQ(Seen.DeleteKey(u"\\"), TRegStatus::Failed);
  EXPECT_EQ(Subkeys(), std::vector<std::u16string>{u"A"});
  EXPECT_EQ(Subkeys(u"A"), std::vector<std::u16string>{u"C"});
}

TEST_P(RegistryContract, ANameWithAZeroIsNeverTakenForTheTextBeforeIt) {
  Load(u"[~]\n@=\"default\"\n\"Name\"=\"1\"\n[~\\Name]");
  const auto Key = OpenKey();
  TRegValue Value;
  for (const std::u16string &Name : {std::u16string(u"Name\0", 5), std::u16string(u"Name\0x", 6),
                                     std::u16string(u"\0Name", 5)}) {
    EXPECT_EQ(Key->Open(Name).Status, TRegStatus::Failed);
    EXPECT_EQ(Key->Read(Name, Value), TRegStatus::Failed);
    EXPECT_EQ(Value.Data().Size(), 0u);
    EXPECT_EQ(Key->DeleteValue(Name), TRegStatus::Failed);
    EXPECT_EQ(Key->DeleteTree(Name), TRegStatus::Failed);
  }
  EXPECT_EQ(Subkeys().size(), 1u);
  EXPECT_EQ(Values().size(), 2u);
}

TEST_P(RegistryContract, AListStaysWhatItIsWhileItsEntriesAreDeleted) {
  Load(u"[~]\n\"1\"=\"\"\n\"2\"=\"\"\n\"3\"=\"\"\n[~\\1]\n[~\\2]\n[~\\3\\4]");
  const auto Key = OpenKey();
  TRegValueList List;
  ASSERT_EQ(Key->Values(List), TRegStatus::Ok);
  for (std::size_t Index = 0; Index < List.Count(); ++Index)
    EXPECT_EQ(Key->DeleteValue(List[Index].Name), TRegStatus::Ok);
  for (const std::u16string &Name : Subkeys())
    EXPECT_EQ(Key->DeleteTree(Name), TRegStatus::Ok);
  EXPECT_EQ(Values().size() + Subkeys().size(), 0u);
}

} // namespace
} // namespace hivesweep

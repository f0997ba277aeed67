// What only the live registry can show: other threads, links, the system's handles.
#include <atomic>

#include <gtest/gtest.h>

#include "platform/win32/Win32.h"
#include "platform/win32/Win32Registry.h"
#include "tests/platform/TestHosts.h"

#include <sddl.h>

namespace hivesweep {
namespace {

// The scratch key of the contract tests, over the live registry.
class Win32Registry : public testing::Test {
protected:
  std::unique_ptr<TRegKey> OpenKey(std::u16string_view Below = u"") {
    return Registry->Host()
        .Open(TRegRoot::CurrentUser, Registry->Path(Below), TRegAccess::Full)
        .Key;
  }

  std::unique_ptr<TTestRegistry> Registry = LiveRegistries().front().Make();
};

// The system's own key, for what the host has no call for.
class TRawKey {
public:
  explicit TRawKey(const std::u16string &Path) {
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, Wide(Path), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &Key_, nullptr),
              ERROR_SUCCESS);
  }
  TRawKey(const TRawKey &) = delete;
  TRawKey &operator=(const TRawKey &) = delete;
  ~TRawKey() { RegCloseKey(Key_); }

  HKEY Get() const { return Key_; }
  LONG Set(const wchar_t *Name, DWORD Type, std::u16string_view Units) const {
    const auto Bytes = std::as_bytes(std::span(Units));
    return RegSetValueExW(Key_, Name, 0, Type, reinterpret_cast<const BYTE *>(Bytes.data()),
                          static_cast<DWORD>(Bytes.size()));
  }

private:
  HKEY Key_ = nullptr;
};

// Changes values as fast as it can until it is destroyed.
class TDisturber {
public:
  explicit TDisturber(std::u16string Path)
      : Path_(std::move(Path)), Thread_(CreateThread(nullptr, 0, Run, this, 0, nullptr)) {}
  TDisturber(const TDisturber &) = delete;
  TDisturber &operator=(const TDisturber &) = delete;
  ~TDisturber() {
    Stop_ = true;
    EXPECT_EQ(WaitForSingleObject(Thread_, 20'000), WAIT_OBJECT_0);
    CloseHandle(Thread_);
  }

  // A text that says how long it is: a mixture of two would show.
  static std::u16string Content(std::size_t Size) {
    return std::u16string(Size, static_cast<char16_t>(1 + Size % 1000));
  }

private:
  static DWORD WINAPI Run(void *Parameter) {
    TDisturber &Self = *static_cast<TDisturber *>(Parameter);
    const TRawKey Key(Self.Path_);
    for (std::size_t Round = 0; !Self.Stop_; ++Round) {
      const std::size_t Sizes[] = {3, 16'383, 16'384, 16'385, 50'000, 200'000};
      Key.Set(L"m changing", REG_BINARY, Content(Sizes[Round % std::size(Sizes)]));
      if (Round % 2)
        Key.Set(L"n coming and going", REG_BINARY, Content(Sizes[Round / 2 % std::size(Sizes)]));
      else
        RegDeleteValueW(Key.Get(), L"n coming and going");
    }
    return 0;
  }

  std::u16string Path_;
  std::atomic<bool> Stop_ = false;
  HANDLE Thread_;
};

TEST_F(Win32Registry, AValueThatChangesMeanwhileIsReadAsItWasAtOneMoment) {
  Registry->Load(u"[~]\n\"a\"=\"first\"\n\"m changing\"=hex:01,00\n\"z\"=\"last\"");
  const auto Key = OpenKey();
  const auto IsWhole = [](TRegData Data) {
    const std::u16string Text(reinterpret_cast<const char16_t *>(Data.Bytes().data()),
                              Data.Size() / 2);
    return Text == u"\1" || Text == TDisturber::Content(Text.size());
  };
  int Seen = 0;
  std::size_t Smallest = SIZE_MAX;
  std::size_t Largest = 0;
  {
    const TDisturber Disturber(Registry->Path());
    TRegValue Value;
    TRegValueList List;
    for (const DWORD Start = GetTickCount(); GetTickCount() - Start < 1500;) {
      ASSERT_EQ(Key->Read(u"m changing", Value), TRegStatus::Ok);
      ASSERT_TRUE(IsWhole(Value.Data())) << Value.Data().Size();
      Smallest = std::min(Smallest, Value.Data().Size());
      Largest = std::max(Largest, Value.Data().Size());
      const TRegStatus Status = Key->Read(u"n coming and going", Value);
      ASSERT_TRUE(Status == TRegStatus::Ok || Status == TRegStatus::NotFound);
      Seen += Status == TRegStatus::Ok;
      ASSERT_EQ(Status == TRegStatus::Ok, Value.Data().Size() != 0);

      ASSERT_EQ(Key->Values(List), TRegStatus::Ok);
      ASSERT_GE(List.Count(), 3u);
      ASSERT_EQ(List[0].Data.Text(), u"first");
      for (std::size_t Index = 0; Index < List.Count(); ++Index) {
        const bool Changes = List[Index].Data.Type() == TRegType::Binary;
        ASSERT_TRUE(!Changes || IsWhole(List[Index].Data)) << Index;
      }
    }
  }
  // Else nothing of all that was tried.
  EXPECT_GT(Seen, 0);
  EXPECT_LT(Smallest, Largest);
}

// ---- links -------------------------------------------------------------------------

TEST_F(Win32Registry, ALinkIsFollowedInReadingButNotInDeleting) {
  Registry->Load(uR"(
[~\Target]
"x"="kept"
[~\Target\Below]
[~\Tree\Before]
[~\Tree\Z]
[~\Pretender]
"SymbolicLinkValue"=hex(6):41,00
[~\Pretender\Below]
)");
  EXPECT_TRUE(Registry->Link(u"Tree\\Link", u"Target"));
  EXPECT_TRUE(Registry->Link(u"Link", u"Target"));
  EXPECT_TRUE(Registry->Link(u"Tree\\Loose", u"No such key"));

  TRegValue Value;
  ASSERT_EQ(OpenKey(u"Tree\\Link")->Read(u"x", Value), TRegStatus::Ok);
  EXPECT_EQ(Value.Data().Text(), u"kept");
  const auto Key = OpenKey();
  EXPECT_EQ(Key->Open(u"Tree\\Loose").Status, TRegStatus::NotFound);
  const TRegOpened Itself = Key->OpenItself(u"Link");
  ASSERT_EQ(Itself.Status, TRegStatus::Ok);
  EXPECT_EQ(Itself.Key->Read(u"x", Value), TRegStatus::NotFound) << "what it leads to";
  std::vector<std::u16string> InLink;
  EXPECT_EQ(Itself.Key->SubkeyNames(InLink), TRegStatus::Ok);
  EXPECT_TRUE(InLink.empty());

  for (const std::u16string_view Doomed : {u"Tree", u"Link", u"Pretender"})
    EXPECT_EQ(Key->DeleteTree(Doomed), TRegStatus::Ok) << ToUtf8(Doomed);
  std::vector<std::u16string> Names;
  EXPECT_EQ(Key->SubkeyNames(Names), TRegStatus::Ok);
  EXPECT_EQ(Names, std::vector<std::u16string>{u"Target"});
  EXPECT_EQ(OpenKey(u"Target")->SubkeyNames(Names), TRegStatus::Ok);
  EXPECT_EQ(Names, std::vector<std::u16string>{u"Below"});
  EXPECT_EQ(OpenKey(u"Target")->Read(u"x", Value), TRegStatus::Ok);
}

TEST_F(Win32Registry, ALinkThatIsMadeLeadsWhereItsValueSays) {
  Registry->Load(u"[~\\Target\\Below]\n\"x\"=\"1\"");
  const auto Key = OpenKey();
  TRegKeyInfo Info;
  Info.IsLink = true;
  const std::u16string Target = KernelPath(Registry->Path(u"Target"));
  ASSERT_EQ(
      Key->Create(u"Link", Info)
          .Key->SetValue(u"SymbolicLinkValue", TRegType::Link, std::as_bytes(std::span(Target))),
      TRegStatus::Ok);
  TRegValue Value;
  EXPECT_EQ(OpenKey(u"Link\\Below")->Read(u"x", Value), TRegStatus::Ok);
  EXPECT_EQ(Key->OpenItself(u"Link\\Below").Key->Read(u"x", Value), TRegStatus::Ok);
  EXPECT_EQ(OpenKey(u"Link")->ReadInfo(Info), TRegStatus::Ok);
  EXPECT_FALSE(Info.IsLink);
  EXPECT_EQ(Key->OpenItself(u"Link").Key->ReadInfo(Info), TRegStatus::Ok);
  EXPECT_TRUE(Info.IsLink);
  // A key below a link is made where that leads.
  EXPECT_TRUE(Key->Create(u"Link\\New").Created);
  EXPECT_EQ(Key->DeleteTree(u"Link"), TRegStatus::Ok);
  EXPECT_EQ(Key->Open(u"Target\\New").Status, TRegStatus::Ok);
}

// ---- security ----------------------------------------------------------------------

std::vector<std::byte> DescriptorOf(const wchar_t *Text) {
  void *Descriptor = nullptr;
  ULONG Size = 0;
  EXPECT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(Text, SDDL_REVISION_1,
                                                                   &Descriptor, &Size));
  const auto *const First = static_cast<const std::byte *>(Descriptor);
  std::vector<std::byte> Out(First, First + Size);
  LocalFree(Descriptor);
  return Out;
}

// The access list in words.
std::string AccessListOf(TRegKey &Key) {
  TRegKeyInfo Info;
  EXPECT_EQ(Key.ReadInfo(Info), TRegStatus::Ok);
  wchar_t *Text = nullptr;
  EXPECT_TRUE(ConvertSecurityDescriptorToStringSecurityDescriptorW(
      Info.Security.data(), SDDL_REVISION_1, DACL_SECURITY_INFORMATION, &Text, nullptr));
  std::string Out = ToUtf8(FromWide(Text));
  LocalFree(Text);
  // Wine also keeps that somebody asked for the flag before.
  if (IsWine() && Out.starts_with("D:PARAI"))
    Out.erase(3, 2);
  return Out;
}

TEST_F(Win32Registry, AKeyThatIsMadeGetsItsAccessList) {
  Registry->Load(u"[~\\There]");
  const auto Key = OpenKey();
  const std::string Usual = AccessListOf(*OpenKey(u"There"));
  TRegKeyInfo Info;
  for (const wchar_t *const Text :
       {L"D:(A;;KA;;;WD)", L"D:P(A;CI;KA;;;WD)(A;;KR;;;BU)", L"D:PAI(A;;KA;;;BA)(A;;KA;;;WD)"}) {
    Info.Security = DescriptorOf(Text);
    const TRegOpened Made = Key->Create(u"New\\Made", Info);
    ASSERT_TRUE(Made.Key);
    EXPECT_EQ(AccessListOf(*Made.Key), ToUtf8(FromWide(Text)));
    EXPECT_EQ(AccessListOf(*OpenKey(u"New")), Usual) << "a parent";
    EXPECT_EQ(AccessListOf(*Key->Create(u"There", Info).Key), Usual) << "was there";
    EXPECT_EQ(Key->DeleteTree(u"New"), TRegStatus::Ok);
  }
  // One that came to harm gives no list, and the key is made all the same.
  const std::vector<std::byte> Whole = Info.Security;
  for (std::size_t Length = 0; Length < Whole.size(); ++Length) {
    Info.Security.assign(Whole.begin(), Whole.begin() + static_cast<std::ptrdiff_t>(Length));
    EXPECT_EQ(AccessListOf(*Key->Create(u"Cut", Info).Key), Usual) << Length;
    EXPECT_EQ(Key->DeleteTree(u"Cut"), TRegStatus::Ok);
  }
}

// A key with what the system calls traits, which a fix must know before it deletes it.
TEST_F(Win32Registry, AVolatileKeyIsToldOrFoundByTrying) {
  Registry->Load(u"[~\\Lasting\\Below]");
  const auto Key = OpenKey();
  TRegKeyInfo Volatile;
  Volatile.Volatile = TRegVolatile::Yes;
  for (const std::u16string_view Name : {u"Volatile", u"Volatile\\Below"})
    ASSERT_TRUE(Key->Create(Name, Volatile).Created);
  EXPECT_EQ(Key->Create(u"Volatile\\Lasting").Status, TRegStatus::Failed)
      << "it would outlive the key that it is in";
  for (const std::u16string_view Name : {u"Lasting", u"Volatile", u"Volatile\\Below"}) {
    const bool IsVolatile = Name != u"Lasting";
    const TRegOpened Opened = Key->OpenItself(Name, TRegAccess::Full);
    ASSERT_TRUE(Opened.Key);
    TRegKeyInfo Told;
    EXPECT_EQ(Opened.Key->ReadInfo(Told), TRegStatus::Ok);
    if (Told.Volatile != TRegVolatile::NotTold) {
      EXPECT_EQ(Told.Volatile == TRegVolatile::Yes, IsVolatile) << ToUtf8(Name);
    }
    Told.Volatile = TRegVolatile::NotTold;
    EXPECT_EQ(Opened.Key->TryLikeness(Told) == TRegStatus::Ok, !IsVolatile) << ToUtf8(Name);
    TRegCounts Counts;
    EXPECT_EQ(Opened.Key->Counts(Counts), TRegStatus::Ok);
    EXPECT_EQ(Counts.Subkeys, Name == u"Volatile\\Below" ? 0u : 1u) << "nothing is left of it";
  }
}

TEST_F(Win32Registry, AKeyThatIsMadeGetsItsLabel) {
  const auto Key = [&] {
    Registry->Load(u"[~\\Plain]");
    return OpenKey();
  }();
  TRegKeyInfo Info;
  EXPECT_EQ(Key->Open(u"Plain").Key->ReadInfo(Info), TRegStatus::Ok);
  EXPECT_TRUE(Info.Label.empty());
  Info = {};
  Info.Label = DescriptorOf(L"S:(ML;CI;NW;;;LW)");
  const TRegOpened Made = Key->Create(u"Low", Info);
  ASSERT_TRUE(Made.Key);
  TRegKeyInfo Now;
  EXPECT_EQ(Made.Key->ReadInfo(Now), TRegStatus::Ok);
  if (Now.Label.empty() && IsWine())
    GTEST_SKIP() << "this system keeps no labels";
  wchar_t *Text = nullptr;
  ASSERT_TRUE(ConvertSecurityDescriptorToStringSecurityDescriptorW(
      Now.Label.data(), SDDL_REVISION_1, LABEL_SECURITY_INFORMATION, &Text, nullptr));
  EXPECT_EQ(ToUtf8(FromWide(Text)), "S:(ML;CI;NW;;;LW)");
  LocalFree(Text);
  EXPECT_EQ(Made.Key->TryLikeness(Now), TRegStatus::Ok);
  Now.Label.resize(Now.Label.size() - 1);
  EXPECT_NE(Made.Key->TryLikeness(Now), TRegStatus::Ok) << "one that came to harm";
}

TEST_F(Win32Registry, OfTwoClassesThatShowAsOneTheUsersIsDeletedFirst) {
  using TNames = std::vector<std::u16string>;
  TRegistryHost &Host = Registry->Host();
  const std::u16string Name = u"Hivesweep.Test";
  const auto Subkeys = [&](TRegRoot Root) {
    TNames Names;
    const TRegOpened Opened = Host.Open(Root, u"Software\\Classes\\" + Name);
    EXPECT_TRUE(!Opened.Key || Opened.Key->SubkeyNames(Names) == TRegStatus::Ok);
    return Names;
  };
  HKEY Key = nullptr;
  for (const wchar_t *Below : {L"Hivesweep.Test\\A", L"Hivesweep.Test\\B"}) {
    const std::u16string Path = std::u16string(u"Software\\Classes\\") + FromWide(Below);
    if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, Wide(Path), 0, nullptr, 0, KEY_READ, nullptr, &Key,
                        nullptr) != ERROR_SUCCESS)
      GTEST_SKIP() << "the machine's classes may not be written";
    RegCloseKey(Key);
  }
  { const TRawKey Users(u"Software\\Classes\\" + Name + u"\\A"); }

  const auto Root = Host.Open(TRegRoot::ClassesRoot, u"", TRegAccess::Full).Key;
  EXPECT_EQ(Root->Open(Name).Key->DeleteTree(u"A"), TRegStatus::Ok);
  EXPECT_EQ(Subkeys(TRegRoot::CurrentUser), TNames());
  EXPECT_EQ(Subkeys(TRegRoot::LocalMachine), (TNames{u"A", u"B"}));
  { const TRawKey Users(u"Software\\Classes\\" + Name + u"\\C"); }
  EXPECT_EQ(Root->DeleteTree(Name), TRegStatus::Ok);
  EXPECT_EQ(Subkeys(TRegRoot::CurrentUser), TNames());
  EXPECT_EQ(Subkeys(TRegRoot::LocalMachine), (TNames{u"A", u"B"}));
  EXPECT_EQ(Root->DeleteTree(Name), TRegStatus::Ok);
  EXPECT_EQ(Subkeys(TRegRoot::LocalMachine), TNames());
  EXPECT_EQ(Root->DeleteTree(Name), TRegStatus::NotFound);
}

// ---- what the process keeps -----------------------------------------------------------

TEST_F(Win32Registry, EveryHandleIsClosed) {
  Registry->Load(u"[~\\One\\Two]\n\"x\"=\"1\"\n[~\\Tree\\A\\B]");
  const auto Round = [&] {
    Registry->Load(u"[~\\Tree\\A\\B]");
    const auto Key = OpenKey();
    TRegKeyInfo Info;
    EXPECT_EQ(Key->OpenItself(u"One").Key->ReadInfo(Info), TRegStatus::Ok);
    Info.ClassName = u"Class";
    EXPECT_TRUE(Key->Create(u"Tree\\C\\D", Info).Created);
    const auto Below = Key->Open(u"One\\Two");
    std::vector<std::u16string> Names;
    TRegValueList List;
    TRegCounts Counts;
    EXPECT_EQ(Key->SubkeyNames(Names), TRegStatus::Ok);
    EXPECT_EQ(Below.Key->Values(List), TRegStatus::Ok);
    EXPECT_EQ(Key->Counts(Counts), TRegStatus::Ok);
    EXPECT_EQ(Key->Open(u"missing").Status, TRegStatus::NotFound);
    EXPECT_EQ(Key->DeleteTree(u"Tree"), TRegStatus::Ok);
    // A root itself: what closes it must not close it for everybody.
    for (const TRegRoot Root :
         {TRegRoot::ClassesRoot, TRegRoot::CurrentUser, TRegRoot::LocalMachine, TRegRoot::Users}) {
      const TRegOpened Opened = Registry->Host().Open(Root, u"");
      ASSERT_EQ(Opened.Status, TRegStatus::Ok);
      EXPECT_EQ(Opened.Key->SubkeyNames(Names), TRegStatus::Ok);
      EXPECT_FALSE(Names.empty());
    }
  };
  Round(); // the system opens some of its own once
  const std::size_t Before = OpenHandles();
  for (int Count = 0; Count < 100; ++Count)
    Round();
  EXPECT_LE(OpenHandles(), Before + 10);
}

} // namespace
} // namespace hivesweep

// A registry full of everything for a fix, and the fix itself, over any host.
#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ExportLines.h"
#include "repair/RegistryClean.h"
#include "tests/engine/TestScan.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {

inline std::vector<std::byte> BytesOf(std::u16string_view Text) {
  const auto Bytes = std::as_bytes(std::span(Text));
  std::vector<std::byte> Out(Bytes.begin(), Bytes.end());
  Out.insert(Out.end(), 2, std::byte{0});
  return Out;
}

// Every key, value and class name below a key, as a text to compare. An oracle of its
// own: it asks the registry key by key, and knows nothing of snapshots.
inline void Describe(TRegKey &Key, const std::u16string &Indent, std::u16string &Out) {
  TRegKeyInfo Info;
  EXPECT_EQ(Key.ReadInfo(Info), TRegStatus::Ok);
  Out += Indent + u"class " + Info.ClassName + (Info.IsLink ? u" link\n" : u"\n");
  TRegValueList Values;
  EXPECT_EQ(Key.Values(Values), TRegStatus::Ok);
  std::vector<std::u16string> Lines;
  for (std::size_t Index = 0; Index < Values.Count(); ++Index) {
    std::u16string Line = Indent + u"value " + std::u16string(Values[Index].Name) + u" type " +
                          ToDecimal(static_cast<std::uint32_t>(Values[Index].Data.Type())) + u":";
    for (const std::byte Byte : Values[Index].Data.Bytes())
      Line.push_back(static_cast<char16_t>(u'\x100' + std::to_integer<int>(Byte)));
    Lines.push_back(Line + u"\n");
  }
  std::ranges::sort(Lines); // a single value that comes back stands behind the others
  for (const std::u16string &Line : Lines)
    Out += Line;
  std::vector<std::u16string> Names;
  EXPECT_EQ(Key.SubkeyNames(Names), TRegStatus::Ok);
  for (const std::u16string &Name : Names) {
    Out += Indent + u"key " + Name + u"\n";
    if (const TRegOpened Opened = Key.OpenItself(Name); Opened.Key)
      Describe(*Opened.Key, Indent + u"  ", Out);
  }
}

inline std::u16string Describe(TRegistryHost &Host, std::u16string_view Path) {
  std::u16string Out;
  if (const TRegOpened Opened = Host.Open(TRegRoot::CurrentUser, Path); Opened.Key)
    Describe(*Opened.Key, u"", Out);
  return Out;
}

// Nothing when both are equal; else the first line in which they differ.
inline std::string Difference(std::u16string_view Now, std::u16string_view Wanted) {
  if (Now == Wanted)
    return {};
  const auto NowLines = SplitLines(Now);
  const auto WantedLines = SplitLines(Wanted);
  const auto [Left, Right] = std::ranges::mismatch(NowLines, WantedLines);
  const auto Text = [](const auto &Line, const auto &Lines) {
    return Line == Lines.end() ? std::string("the end") : ToUtf8(Line->substr(0, 120));
  };
  return Text(Left, NowLines) + " instead of " + Text(Right, WantedLines);
}

// Keys, values and problems for one fix, below a key of the current user.
class TSubject {
public:
  TSubject(TRegistryHost &Host, std::u16string Path) : Host_(Host), Path_(std::move(Path)) {}

  void Value(std::u16string_view Below, std::u16string_view Name, TRegType Type,
             std::span<const std::byte> Bytes, std::u16string_view ClassName = u"") {
    const TRegOpened Root = Host_.Open(TRegRoot::CurrentUser, u"", TRegAccess::Full);
    ASSERT_TRUE(Root.Key);
    TRegKeyInfo Info;
    Info.ClassName = ClassName;
    const TRegOpened Key = Root.Key->Create(Path_ + u"\\" + std::u16string(Below), Info);
    ASSERT_EQ(Key.Status, TRegStatus::Ok) << ToUtf8(Below);
    ASSERT_EQ(Key.Key->SetValue(Name, Type, Bytes), TRegStatus::Ok) << ToUtf8(Name);
  }
  void Text(std::u16string_view Below, std::u16string_view Name, std::u16string_view Data) {
    Value(Below, Name, TRegType::String, BytesOf(Data));
  }

  // The full path of a key below.
  std::u16string KeyPath(std::u16string_view Below) const {
    return u"HKEY_CURRENT_USER\\" + Path_ + u"\\" + std::u16string(Below);
  }
  const std::u16string &Path() const { return Path_; }
  std::u16string Now() const { return Describe(Host_, Path_); }

private:
  TRegistryHost &Host_;
  const std::u16string Path_;
};

// A fix and what belongs to it.
class TTestFix {
public:
  TTestFix(TPlatform &Platform, const std::u16string &DataFolder,
           std::vector<std::u16string> Captions = {EnglishLabels.begin(), EnglishLabels.end()})
      : Problems(*Platform.Messages), Engine(Platform, Problems, {}, {}, std::move(Captions)),
        Clean(Platform, DataPathsIn(DataFolder)) {
    Clean.FixPause = 0;
  }

  TItemInfo &Add(std::u16string_view KeyPath, std::u16string_view ValueName,
                 std::u16string_view Data = u"", TProblemType Type = TProblemType::MissingPath) {
    TGroupItems *Group = Problems.FindGroup(u"2");
    if (!Group)
      Group = Problems.AddGroup(u"2");
    TItemInfo &Item = *Group->Add();
    Item.TypeName = Engine.Caption(Type);
    Item.KeyPath = KeyPath;
    Item.ValueName = ValueName;
    Item.Data = Data;
    return Item;
  }

  TFixReport Run() { return Clean.BackupAndFix(Problems, Engine, Label, Bar, u"Fixing..."); }

  TListViewManage Problems;
  TScanRegistry Engine;
  TRegistryClean Clean;
  TTestLabel Label;
  TTestProgress Bar;
};

// The rows of a table as texts: cells with "|" between them.
class TTestRows final : public TListRows {
public:
  void Clear() override { Rows.clear(); }
  void Add(std::u16string_view Caption, std::span<const std::u16string> SubItems) override {
    Rows.emplace_back(Caption);
    for (const std::u16string &Item : SubItems)
      Rows.back() += u"|" + Item;
  }
  std::vector<std::u16string> Rows;
};

// Stands for the registry editor before a registry in memory: imports at once.
class TTestEditor final : public TShell {
public:
  explicit TTestEditor(std::function<void(std::u16string_view Parameters)> Import)
      : Import_(std::move(Import)) {}

  bool Open(std::u16string_view, std::u16string_view) override { return false; }
  std::unique_ptr<TProcess> Start(std::u16string_view Target,
                                  std::u16string_view Parameters) override {
    Started.push_back(std::u16string(Target) + u" " + std::u16string(Parameters));
    Import_(Parameters);
    return std::make_unique<TEnded>();
  }
  std::optional<std::u16string> ShortcutTarget(std::u16string_view) override { return {}; }
  std::vector<std::u16string> Started;

private:
  class TEnded final : public TProcess {
    bool WaitForEnd(std::uint32_t) override { return true; }
  };
  std::function<void(std::u16string_view Parameters)> Import_;
};

} // namespace hivesweep

// One area of a registry that a test has made, scanned over every registry there is.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "scanners/ScannerTable.h"
#include "tests/engine/TestScan.h"

namespace hivesweep {

using TLines = std::vector<std::string>;

// The machine of most of these tests. What is not listed is gone.
inline TMachine Machine() {
  TMachine Out;
  Out.WinDir = u"C:\\WINNT";
  Out.Drives = {{u'C', TDriveType::Fixed}, {u'N', TDriveType::Network}};
  Out.Files = {u"C:\\here.exe",
               u"C:\\here.dll",
               u"C:\\dir\\here.hlp",
               u"N:\\net\\here.hlp",
               u"C:\\v1.2\\",
               u"C:\\WINNT\\Fonts\\a.ttf",
               u"C:\\Program Files\\App\\here.exe"};
  Out.Unreadable = {u"C:\\locked"};
  return Out;
}

// Scans one area of a registry with the given content and tells what came of it, over
// each kind of registry that the running system has.
class TScannerTest : public testing::TestWithParam<TRegistryKind> {
protected:
  explicit TScannerTest(TMachine Where = Machine()) : Where_(std::move(Where)) {}

  // Export text without its header.
  void Load(std::u16string_view Text) {
    std::u16string Rooted;
    for (const std::u16string_view Line : SplitLines(Text))
      Rooted += (Line.starts_with(u"[HKEY_")    ? u"[~\\" + std::u16string(Line.substr(1))
                 : Line.starts_with(u"[-HKEY_") ? u"[-~\\" + std::u16string(Line.substr(2))
                                                : std::u16string(Line)) +
                u"\n";
    Registry_->Load(Rooted);
  }

  // Forgets what was loaded.
  void Renew() {
    Registry_ = nullptr; // the old one removes its key first
    Registry_ = GetParam().Make();
  }

  void RunScan(int Area) {
    Run_ = std::make_unique<TTestScan>(std::make_unique<TRootedRegistry>(*Registry_), Where_,
                                       ScannerTable());
    Run_->Messages->OnPump = OnPump_;
    Run_->Scan(TTestScan::Only(Area));
  }

  // A line for each problem, "type | key | value | data | kind", and each backup line.
  TLines Scan(int Area) {
    RunScan(Area);
    TLines Lines;
    const TGroupItems &Group = *Run_->Problems->GetGroup(0);
    for (std::int32_t Index = 0; Index < Group.Count(); ++Index) {
      const TItemInfo &Item = *Group.Get(Index);
      EXPECT_EQ(Item.ImageIndex, ToDecimal(static_cast<std::uint64_t>(Area)));
      Lines.push_back(ToUtf8(Item.TypeName + u" | " + Item.KeyPath + u" | " + Item.ValueName +
                             u" | " + Item.Data) +
                      " | " + std::to_string(Item.ItemKind));
    }
    for (const std::u16string &Line : Run_->Engine->BackupText)
      Lines.push_back(ToUtf8(Line));
    return Lines;
  }

  // For tests in which only one text of each problem matters. They are sorted, as
  // registries keep entries in different orders, and those that a list holds back are
  // among them.
  std::u16string Names(int Area) {
    return Sorted(Area, [](const auto &Problem) { return Problem.ValueName; });
  }
  // Without what they begin with.
  std::u16string Keys(int Area, std::u16string_view Beginning = u"") {
    return Sorted(Area, [&](const auto &Problem) {
      const std::u16string &Key = Problem.KeyPath;
      return Key.starts_with(Beginning) ? Key.substr(Beginning.size()) : Key;
    });
  }

  // The user of the test can be kept out of this key.
  bool Deny(const std::u16string &Path) {
    return Registry_->Deny(Path) &&
           Registry_->Host().Open(TRegRoot::CurrentUser, Registry_->Path(Path)).Status ==
               TRegStatus::Denied;
  }

  TMachine Where_; // as it is when the scan begins
  std::unique_ptr<TTestRegistry> Registry_ = GetParam().Make();
  std::unique_ptr<TTestScan> Run_;
  std::function<void()> OnPump_;

private:
  template <typename TText> std::u16string Sorted(int Area, TText Text) {
    RunScan(Area);
    std::vector<std::u16string> Found;
    const TGroupItems &Group = *Run_->Problems->GetGroup(0);
    for (std::int32_t Index = 0; Index < Group.Count(); ++Index)
      Found.push_back(Text(*Group.Get(Index)));
    for (const TProtectedItem &Item : Run_->Engine->ProtectedItems())
      Found.push_back(Text(Item));
    std::sort(Found.begin(), Found.end());
    std::u16string Out;
    for (const std::u16string &One : Found)
      Out += One + u" ";
    return Out;
  }
};

inline std::string NameOfKind(const testing::TestParamInfo<TRegistryKind> &Kind) {
  return Kind.param.Name;
}

} // namespace hivesweep

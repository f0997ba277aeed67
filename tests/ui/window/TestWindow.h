// What tests of the program's forms stand on: a workbench over the machine that the test
// runs on, with whatever scanners a test brings.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "controls/MessageLoop.h"
#include "ui/Workbench.h"

namespace hivesweep {

inline TPlatform WindowPlatform() {
  TPlatform Platform = std::move(*MakeLivePlatform());
  Platform.Messages = MakeWindowMessages();
  return Platform;
}

struct TTestBench : TWorkbench {
  explicit TTestBench(std::span<const TScannerRow> Scanners = {})
      : TWorkbench(WindowPlatform(), Scanners) {}

  // A problem of that area, in the problem list and not yet in its view.
  TItemInfo &AddProblem(int Area, std::u16string_view KeyPath, std::u16string_view TypeName = u"") {
    const std::u16string Name(AreaByNumber(Area).GroupName);
    TGroupItems *Group = Problems.FindGroup(Name);
    if (!Group)
      Group = Problems.AddGroup(Name);
    TItemInfo &Item = *Group->Add();
    Item.TypeName = TypeName;
    Item.KeyPath = KeyPath;
    Item.ValueName = WholeKey;
    Item.ImageIndex = ToDecimal(static_cast<unsigned>(Area));
    return Item;
  }
};

} // namespace hivesweep

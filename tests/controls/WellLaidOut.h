// What no form may get wrong, whatever its texts and its scale.
#pragma once

#include <string>

#include <gtest/gtest.h>

#include "controls/Form.h"
#include "controls/Win32.h"
#include "platform/Text.h"

namespace hivesweep {

inline bool IsShown(const TControl &Control) {
  for (const TControl *Each = &Control; Each; Each = Each->Parent())
    if (!Each->Visible())
      return false;
  return true;
}

// No control cuts its texts, leaves its parent, or covers a neighbour that the table
// keeps apart.
inline void ExpectWellLaidOut(const TForm &Form, const std::string &Why) {
  const auto Apart = [](const TRect &A, const TRect &B) {
    return A.Right() <= B.Left || B.Right() <= A.Left || A.Bottom() <= B.Top || B.Bottom() <= A.Top;
  };
  for (const auto &Component : Form.Components()) {
    const auto *Control = dynamic_cast<const TControl *>(Component.get());
    if (!Control || !IsShown(*Control))
      continue;
    const std::string Name = Why + ": " + ToUtf8(Control->Name());
    const TRect &Place = Control->Bounds();
    const TSize Needed = Control->Needed(Place.Width);
    EXPECT_GE(Place.Width, Needed.Width) << Name;
    EXPECT_GE(Place.Height, Needed.Height) << Name;
    RECT Room;
    GetClientRect(Control->Parent()->Handle(), &Room);
    EXPECT_TRUE(Place.Left >= 0 && Place.Top >= 0 && Place.Right() <= Room.right &&
                Place.Bottom() <= Room.bottom)
        << Name;
    for (const TControl *Other : Control->Parent()->Children()) {
      if (Other != Control && Other->Visible() && Apart(Control->Design(), Other->Design())) {
        EXPECT_TRUE(Apart(Place, Other->Bounds())) << Name << " and " << ToUtf8(Other->Name());
      }
    }
  }
}

} // namespace hivesweep

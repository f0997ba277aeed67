#include <gtest/gtest.h>

#include "platform/win32/Win32.h"
#include "ui/Icons.h"

namespace hivesweep {
namespace {

bool Loads(std::u16string_view Name, int Size) {
  const std::u16string Ended(Name);
  const HANDLE Icon =
      LoadImageW(GetModuleHandleW(nullptr), Wide(Ended), IMAGE_ICON, Size, Size, LR_DEFAULTCOLOR);
  return Icon && DestroyIcon(static_cast<HICON>(Icon));
}

TEST(IconResources, EveryIconLoadsByItsName) {
  for (const int Size : {16, 24, 32, 48})
    for (const std::u16string_view Name : IconNames)
      EXPECT_TRUE(Loads(Name, Size)) << Size;
  EXPECT_FALSE(Loads(u"NONE", 16));
}

BOOL CALLBACK TakeFirst(HMODULE, LPCWSTR, LPWSTR Name, LONG_PTR Out) {
  *reinterpret_cast<std::u16string *>(Out) =
      IS_INTRESOURCE(Name) ? u"" : std::u16string(FromWide(Name));
  return FALSE;
}

TEST(IconResources, TheProgramsOwnComesFirst) {
  // The one that the explorer shows for the program.
  std::u16string First;
  EnumResourceNamesW(GetModuleHandleW(nullptr), RT_GROUP_ICON, &TakeFirst,
                     reinterpret_cast<LONG_PTR>(&First));
  EXPECT_EQ(First, IconName(TIcon::App));
}

} // namespace
} // namespace hivesweep

// All forms, whatever the language and the scale; and what they leave behind.
#include <functional>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "tests/controls/User.h"
#include "tests/controls/WellLaidOut.h"
#include "tests/platform/TestHosts.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/CheckForm.h"
#include "ui/IgnoredForm.h"
#include "ui/MainForm.h"
#include "ui/ReportForm.h"
#include "ui/RescueForm.h"

namespace hivesweep {
namespace {

using TMakeDialog = std::function<std::unique_ptr<TForm>(Tfrm_main &Main, TWorkbench &Bench)>;

const std::vector<TMakeDialog> &Dialogs() {
  static const std::vector<TMakeDialog> Makers = {
      [](Tfrm_main &Main, TWorkbench &Bench) {
        Bench.DialogMode = TDialogMode::Scan;
        return std::make_unique<Tfrm_check>(Main, Bench, Main);
      },
      [](Tfrm_main &Main, TWorkbench &Bench) {
        Bench.DialogMode = TDialogMode::Fix;
        return std::make_unique<Tfrm_check>(Main, Bench, Main);
      },
      [](Tfrm_main &Main, TWorkbench &Bench) {
        return std::make_unique<Tfrm_ignored>(Main, Bench, Main);
      },
      [](Tfrm_main &Main, TWorkbench &Bench) { return std::make_unique<Tfrm_rescue>(Main, Bench); },
      [](Tfrm_main &Main, TWorkbench &Bench) {
        return std::make_unique<Tfrm_report>(Main, Bench, Bench.Text(LanguageText(u"NotRemoved")),
                                             std::vector<TReportRow>(3));
      },
  };
  return Makers;
}

TEST(Forms, ShowAllTheirTextsInEveryLanguageAndScale) {
  for (const char16_t *const Language : {u"English", u"German"}) {
    TWorkbench Bench(InLanguage(WindowPlatform(SHIPPED_FOLDER), Language), {});
    ASSERT_EQ(Bench.Language.ReadFileString(u"Main", u"DisplayName", u"").empty(), false);
    Bench.LimitedRights = true;
    for (const int Dpi : {96, 144, 192}) {
      TLook Look(Dpi);
      Tfrm_main Main(Look, Bench);
      Main.Show();
      const std::string Why = ToUtf8(Language) + ", " + std::to_string(Dpi);
      ExpectWellLaidOut(Main, Why);
      if (Dpi == 96) { // with its frame and menu it fits the smallest screen there is
        EXPECT_LE(Main.LeastClientSize().Width, 790) << Why;
        EXPECT_LE(Main.LeastClientSize().Height, 520) << Why;
      }
      for (const TMakeDialog &Make : Dialogs()) {
        const std::unique_ptr<TForm> Dialog = Make(Main, Bench);
        Dialog->Show();
        ExpectWellLaidOut(*Dialog, Why);
      }
    }
  }
}

TEST(Forms, LeaveNothingBehind) {
  TTestBench Bench;
  TLook Look;
  Tfrm_main Main(Look, Bench);
  Main.Show();
  const auto OpenEach = [&](int Times) {
    for (int Time = 0; Time < Times; ++Time)
      for (const TMakeDialog &Make : Dialogs()) {
        const std::unique_ptr<TForm> Dialog = Make(Main, Bench);
        Dialog->Show();
        PumpMessages();
        Dialog->Close();
      }
  };
  OpenEach(50); // what is made once, and what the system keeps for later
  const TObjectCount Objects = CountObjects();
  const std::size_t Handles = OpenHandles();
  const std::size_t Bytes = PrivateBytes().value_or(0);
  constexpr int Times = 200;
  OpenEach(Times);
  const TObjectCount Now = CountObjects();
  EXPECT_LT(Now.Drawing, Objects.Drawing + Times / 4);
  EXPECT_LT(Now.Windows, Objects.Windows + Times / 4);
  EXPECT_LE(OpenHandles(), Handles + 10);
  // Less than a picture of 16 pixels for each dialog that was opened.
  EXPECT_LE(PrivateBytes().value_or(0), Bytes + (512u << 10));
}

} // namespace
} // namespace hivesweep

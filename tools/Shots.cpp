// shots.exe LANGUAGE FOLDER PROGRAM_FOLDER: takes a picture of every form in every state,
// as the user of a machine with the sample's leftovers would see it. Writes them as
// FOLDER\NAME.bmp. Folders end in a slash.
#include <array>
#include <cstdio>
#include <exception>
#include <functional>

#include "controls/ListView.h"
#include "controls/MenuItem.h"
#include "platform/Text.h"
#include "scanners/ScannerTable.h"
#include "tests/controls/User.h"
#include "tests/ui/window/TestWindow.h"
#include "tools/Picture.h"
#include "ui/CheckForm.h"
#include "ui/IgnoredForm.h"
#include "ui/MainForm.h"
#include "ui/ReportForm.h"
#include "ui/RescueForm.h"
#include "ui/Wording.h"

namespace hivesweep {
namespace {

class TShots {
public:
  TShots(const std::u16string &Language, std::u16string Folder, const std::u16string &Program)
      : Folder_(std::move(Folder)),
        Bench_(InLanguage(WatchedPlatform(OnPump_, Program), Language), ScannerTable()) {}

  void TakeAll() {
    Main_.Show();
    Shot(u"01-start", Main_);
    ScanAndFix(TDialogMode::Scan, {u"02-scan", u"03-scanning", u"04-scanned"},
               [this] { return Bench_.Engine.CurrentArea() == 9; });
    Shot(u"05-results", Main_);
    Press(Main_.Find<TControl>(u"ImageNote_2"));
    Shot(u"06-category", Main_);
    PressRow(1);
    Shot(u"07-details", Main_);
    Ignore();
    const std::int32_t Found = Bench_.Problems.TotalCount();
    ScanAndFix(TDialogMode::Fix, {u"09-fix", u"10-fixing", u"11-fixed"},
               [this, Found] { return Bench_.Problems.TotalCount() < Found - 20; });
    Shot(u"12-after-fix", Main_);
    Report();
    Restore();
  }

private:
  void Shot(std::u16string_view Name, const TForm &Form) {
    PumpMessages();
    SavePicture(Form, Folder_ + std::u16string(Name) + u".bmp");
  }

  void PressRow(int Row) {
    auto &List = Main_.Find<TListView>(u"Lv_problems");
    const TRect Place = List.RowBounds(Row);
    PressAt(List, {Place.Left + Place.Width / 2, Place.Top + Place.Height / 2});
  }

  // Names: of the dialog before, in the middle of (as soon as During says so) and after a run.
  void ScanAndFix(TDialogMode Mode, const std::array<std::u16string_view, 3> &Names,
                  const std::function<bool()> &During) {
    Bench_.DialogMode = Mode;
    Bench_.SelectedCount = Bench_.Problems.CheckedCount();
    Tfrm_check Check(Main_, Bench_, Main_);
    Check.Show();
    Shot(Names[0], Check);
    OnPump_ = [&, Taken = false]() mutable {
      if (!Taken && Check.Find<TControl>(u"ImageProgress_1").Visible() && During()) {
        Taken = true;
        Shot(Names[1], Check);
      }
    };
    Press(Check.Find<TControl>(u"bt_scan"));
    OnPump_ = nullptr;
    Shot(Names[2], Check);
    Check.Close();
  }

  void Ignore() {
    Main_.Find<TMenuItem>(u"IgnoredProblem1").Click();
    Tfrm_ignored Ignored(Main_, Bench_, Main_);
    Ignored.Show();
    Shot(u"08-ignored", Ignored);
    Ignored.Close();
  }

  // Of problems with every reason that there is.
  void Report() {
    std::vector<TReportRow> Rows;
    for (const TRemoval Why : {TRemoval::GoneAlready, TRemoval::Denied, TRemoval::Failed,
                               TRemoval::NotRecorded, TRemoval::NotRemakable, TRemoval::Ignored,
                               TRemoval::ListUnread, TRemoval::FromOtherKey}) {
      const TNotRemoved Problem{.TypeName = {},
                                .KeyPath = u"HKEY_CURRENT_USER\\Software\\Example\\Recent Files",
                                .ValueName = u"File1",
                                .Data = {},
                                .Why = Why,
                                .OtherKey = u"HKEY_CURRENT_USER\\Software\\Example\\Paths"};
      Rows.push_back({Problem.KeyPath, Problem.ValueName, Worded(Bench_.Language, Problem)});
    }
    Tfrm_report Report(Main_, Bench_,
                       WithNumber(Bench_.Text(LanguageText(u"NotRemoved")), Rows.size()), Rows);
    Report.Show();
    Shot(u"14-report", Report);
    Report.Close();
  }

  void Restore() {
    Tfrm_rescue Rescue(Main_, Bench_);
    Rescue.Show();
    Shot(u"13-restore", Rescue);
    Rescue.Close();
  }

  const std::u16string Folder_;
  std::function<void()> OnPump_;
  TLook Look_;
  TWorkbench Bench_;
  Tfrm_main Main_{Look_, Bench_};
};

} // namespace
} // namespace hivesweep

int main(int Count, char **Values) {
  if (Count != 4) {
    std::fputs("shots LANGUAGE FOLDER PROGRAM_FOLDER\n", stderr);
    return 2;
  }
  try {
    using hivesweep::FromUtf8;
    hivesweep::TShots(FromUtf8(Values[1]), FromUtf8(Values[2]), FromUtf8(Values[3])).TakeAll();
    return 0;
  } catch (const std::exception &Error) {
    std::fprintf(stderr, "shots: %s\n", Error.what());
    return 3;
  }
}

// shots.exe LANGUAGE FOLDER PROGRAM_FOLDER: takes a picture of every form in every state,
// as the user of a machine with the sample's leftovers would see it. Writes them as
// FOLDER\NAME.bmp. Folders end in a slash.
#include <cstdio>
#include <exception>
#include <functional>

#include "controls/ListView.h"
#include "controls/MenuItem.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"
#include "scanners/ScannerTable.h"
#include "tests/controls/User.h"
#include "tests/ui/window/Picture.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/CheckForm.h"
#include "ui/IgnoredForm.h"
#include "ui/MainForm.h"
#include "ui/RescueForm.h"

namespace hivesweep {
namespace {

// The windows' messages; something else can happen once, so many of them later.
class TCountedMessages final : public TMessages {
public:
  void Pump() override {
    System_->Pump();
    if (Left_ > 0 && --Left_ == 0)
      Then_();
  }
  void Post(TWindowHandle Window, std::uint32_t Message, std::uintptr_t WParam,
            std::intptr_t LParam) override {
    System_->Post(Window, Message, WParam, LParam);
  }
  void After(int Calls, std::function<void()> Then) {
    Left_ = Calls;
    Then_ = std::move(Then);
  }

private:
  const std::unique_ptr<TMessages> System_ = MakeWindowMessages();
  int Left_ = 0;
  std::function<void()> Then_;
};

TPlatform CountedPlatform(const std::u16string &Program) {
  TPlatform Platform = WindowPlatform(Program);
  Platform.Messages = std::make_unique<TCountedMessages>();
  return Platform;
}

class TShots {
public:
  TShots(const std::u16string &Language, std::u16string Folder, const std::u16string &Program)
      : Folder_(std::move(Folder)),
        Bench_(InLanguage(CountedPlatform(Program), Language), ScannerTable()) {}

  void TakeAll() {
    Main_.Show();
    Shot(u"01-start", Main_);
    ScanAndFix(TDialogMode::Scan, u"scan", 3'000);
    Shot(u"05-results", Main_);
    Press(Main_.Find<TControl>(u"ImageNote_2"));
    Shot(u"06-category", Main_);
    PressRow(1);
    Shot(u"07-details", Main_);
    Ignore();
    ScanAndFix(TDialogMode::Fix, u"fix", 5);
    Shot(u"12-after-fix", Main_);
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

  // During: how many messages later the picture of the run is taken.
  void ScanAndFix(TDialogMode Mode, const std::u16string &Name, int During) {
    Bench_.DialogMode = Mode;
    Bench_.SelectedCount = Bench_.Problems.CheckedCount();
    Tfrm_check Check(Main_, Bench_, Main_);
    Check.Show();
    const std::u16string First = Mode == TDialogMode::Scan ? u"02-" : u"09-";
    const std::u16string Second = Mode == TDialogMode::Scan ? u"03-" : u"10-";
    const std::u16string Third = Mode == TDialogMode::Scan ? u"04-" : u"11-";
    Shot(First + Name, Check);
    Messages_.After(During, [&] { Shot(Second + Name + u"-running", Check); });
    Press(Check.Find<TControl>(u"bt_scan"));
    Shot(Third + Name + u"-done", Check);
    Check.Close();
  }

  void Ignore() {
    Main_.Find<TMenuItem>(u"IgnoredProblem1").Click();
    Tfrm_ignored Ignored(Main_, Bench_, Main_);
    Ignored.Show();
    Shot(u"08-ignored", Ignored);
    Ignored.Close();
  }

  void Restore() {
    Tfrm_rescue Rescue(Main_, Bench_);
    Rescue.Show();
    Shot(u"13-restore", Rescue);
    Rescue.Close();
  }

  const std::u16string Folder_;
  TLook Look_;
  TWorkbench Bench_;
  TCountedMessages &Messages_ = static_cast<TCountedMessages &>(*Bench_.Platform.Messages);
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

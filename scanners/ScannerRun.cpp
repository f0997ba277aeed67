#include "scanners/ScannerRun.h"

#include <utility>

#include "engine/ExportLines.h"

namespace hivesweep {

TScannerRun::TScannerRun(TScanRegistry &Owner, TStatusLabel &StatusLabel, TProgressBar &Bar,
                         TGroupItems &Group, int Area, TLabel Status)
    : Engine(Owner), ProgressBar(Bar), Group_(Group), Area_(Area) {
  ProgressBar.Advance();
  Engine.ShowStatus(StatusLabel, Status);
}

bool TScannerRun::GoesOn() {
  if (Engine.Stopped)
    return false;
  Engine.Pump();
  return !Engine.Stopped;
}

void TScannerRun::ReportKey(TLabel Label, std::u16string_view KeyPath, std::u16string_view Data,
                            bool HasBlankDefault) {
  std::vector<std::u16string> Lines = {KeyLine(KeyPath)};
  if (HasBlankDefault)
    Lines.push_back(StringLine(u"", u""));
  Report({.Label = Label,
          .KeyPath = std::u16string(KeyPath),
          .ValueName = std::u16string(WholeKey),
          .Data = std::u16string(Data),
          .ItemKind = Engine.KindKey,
          .BackupLines = std::move(Lines)});
}

void TScannerRun::ReportValue(TLabel Label, std::u16string_view KeyPath, std::u16string_view Name,
                              std::u16string_view Data, std::u16string_view Stored) {
  Report({.Label = Label,
          .KeyPath = std::u16string(KeyPath),
          .ValueName = std::u16string(Name),
          .Data = std::u16string(Data),
          .ItemKind = Engine.KindValue,
          .BackupLines = {KeyLine(KeyPath), StringLine(Name, Escaped(Stored))}});
}

void TScannerRun::Report(TFinding Finding) {
  ++Found;
  Finding.Area = Area_;
  Engine.Report(Group_, std::move(Finding));
}

std::unique_ptr<TRegKey> TScannerRun::Open(TRegKey &Parent, std::u16string_view ParentPath,
                                           std::u16string_view Name) {
  return Engine.OpenSubkey(Parent, std::u16string(ParentPath) + u"\\", Name);
}

std::vector<std::u16string> TScannerRun::SubkeyNames(TRegKey &Key, std::u16string_view KeyPath) {
  std::vector<std::u16string> Names;
  Engine.NoteUnreadable(KeyPath, Key.SubkeyNames(Names));
  return Names;
}

bool TScannerRun::NoSuchKey(TRegRoot Root, std::u16string_view Path) {
  return Engine.Platform().Registry->Open(Root, Path).Status == TRegStatus::NotFound;
}

std::u16string Below(std::u16string_view Parent, std::u16string_view Name) {
  return std::u16string(Parent).append(u"\\").append(Name);
}

} // namespace hivesweep

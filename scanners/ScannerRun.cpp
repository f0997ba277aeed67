#include "scanners/ScannerRun.h"

#include <utility>

#include "engine/ExportLines.h"

namespace hivesweep {

std::u16string Below(std::u16string_view Parent, std::u16string_view Name) {
  return std::u16string(Parent).append(u"\\").append(Name);
}

TScannerRun::TScannerRun(TScanRegistry &Owner, TStatusLabel &StatusLabel, TProgressBar &Bar,
                         TGroupItems &Group, int Area)
    : Engine(Owner), ProgressBar(Bar), StatusLabel_(StatusLabel), Group_(Group), Area_(Area) {}

void TScannerRun::Begin(TProblemType Status) {
  ProgressBar.Advance();
  ShowStatus(Status);
}

void TScannerRun::ShowStatus(TProblemType Status) { Engine.ShowStatus(StatusLabel_, Status); }

bool TScannerRun::GoesOn() {
  if (Engine.Stopped)
    return false;
  Engine.Pump();
  return !Engine.Stopped;
}

// ---- keys ---------------------------------------------------------------------------

bool TScannerRun::IsOk(TRegStatus Status, std::u16string_view KeyPath) {
  Engine.NoteUnreadable(KeyPath, Status);
  return Status == TRegStatus::Ok;
}

TKeyAt TScannerRun::Open(TRegRoot Root, std::u16string_view Path) {
  const std::u16string_view RootName = RegRootName(Root);
  return {Engine.OpenKey(Root, u"\\" + std::u16string(Path)),
          Path.empty() ? std::u16string(RootName) : Below(RootName, Path)};
}

TKeyAt TScannerRun::Open(const TKeyAt &Parent, std::u16string_view Name) {
  std::u16string Path = Parent.Path + u"\\";
  std::unique_ptr<TRegKey> Key = Engine.OpenSubkey(*Parent.Key, Path, Name);
  return {std::move(Key), Path.append(Name)};
}

TKeyNames TScannerRun::SubkeyNames(const TKeyAt &At) {
  TKeyNames Names;
  IsOk(At.Key->SubkeyNames(Names), At.Path);
  return Names;
}

std::optional<TKeyNames> TScannerRun::AllSubkeyNames(const TKeyAt &At) {
  TKeyNames Names;
  if (!IsOk(At.Key->SubkeyNames(Names), At.Path))
    return std::nullopt;
  return Names;
}

std::optional<TRegCounts> TScannerRun::Counts(const TKeyAt &At) {
  TRegCounts Counts;
  if (!IsOk(At.Key->Counts(Counts), At.Path))
    return std::nullopt;
  return Counts;
}

bool TScannerRun::Values(const TKeyAt &At, TRegValueList &Out) {
  return IsOk(At.Key->Values(Out), At.Path);
}

std::optional<std::u16string_view> TScannerRun::DefaultText(const TKeyAt &At) {
  if (!IsOk(At.Key->Read(u"", Default_), At.Path) || !Default_.Data().IsText())
    return std::nullopt;
  return Default_.Data().Text();
}

bool TScannerRun::NoSuchKey(TRegRoot Root, std::u16string_view Path) {
  return Engine.Platform().Registry->Open(Root, Path).Status == TRegStatus::NotFound;
}

// ---- reports ------------------------------------------------------------------------

void TScannerRun::ReportKey(TProblemType Label, std::u16string_view KeyPath,
                            std::u16string_view Data, std::int32_t ItemKind,
                            std::optional<std::u16string_view> Default) {
  std::vector<std::u16string> Lines = {KeyLine(KeyPath)};
  if (Default)
    Lines.push_back(StringLine(u"", Escaped(*Default)));
  Report({.Label = Label,
          .Action = TFixAction::RemoveKey,
          .KeyPath = std::u16string(KeyPath),
          .ValueName = std::u16string(WholeKey),
          .Data = std::u16string(Data),
          .ItemKind = ItemKind,
          .BackupLines = std::move(Lines)});
}

void TScannerRun::ReportValue(TProblemType Label, std::u16string_view KeyPath,
                              std::u16string_view Name, std::u16string_view Data,
                              std::u16string_view Stored) {
  Report({.Label = Label,
          .Action = TFixAction::RemoveValue,
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

} // namespace hivesweep

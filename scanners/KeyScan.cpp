#include "scanners/KeyScan.h"

#include <utility>

#include "engine/ExportLines.h"

namespace hivesweep {

std::u16string FullPath(const TKeyScan &Scan) {
  return std::u16string(RegRootName(Scan.Root)) + u"\\" + std::u16string(Scan.Path);
}

TKeyWalk::TKeyWalk(const TKeyScan &Scan, TScanRegistry &Engine, TStatusLabel &StatusLabel,
                   TGroupItems &Group)
    : Area_(Scan.Area), Path_(FullPath(Scan)), Engine_(Engine), Group_(Group),
      Key_(Engine.OpenKey(Scan.Root, Scan.Path)) {
  if (!Key_)
    return;
  Engine.ShowStatus(StatusLabel, Scan.StatusLabel);
  Engine.NoteUnreadable(Path_, Key_->SubkeyNames(Names_));
}

std::int32_t TKeyWalk::Run(const std::function<void(const std::u16string &Name)> &Look) {
  for (std::size_t Index = 0; Index < Names_.size() && !Engine_.Stopped; ++Index) {
    Engine_.Pump();
    Look(Names_[Index]);
  }
  return Found_;
}

std::u16string TKeyWalk::PathOf(std::u16string_view Name) const {
  return Path_ + std::u16string(Name);
}

bool TKeyWalk::IsOk(TRegStatus Status, std::u16string_view KeyPath) {
  Engine_.NoteUnreadable(KeyPath, Status);
  return Status == TRegStatus::Ok;
}

TKeyAt TKeyWalk::Open(const std::u16string &Name) {
  return {Engine_.OpenSubkey(*Key_, Path_, Name), PathOf(Name)};
}

TKeyAt TKeyWalk::Open(const TKeyAt &Parent, std::u16string_view Name) {
  std::u16string Path = Parent.Path + u"\\";
  std::unique_ptr<TRegKey> Key = Engine_.OpenSubkey(*Parent.Key, Path, Name);
  return {std::move(Key), Path.append(Name)};
}

std::optional<std::vector<std::u16string>> TKeyWalk::SubkeyNames(const TKeyAt &At) {
  std::vector<std::u16string> Names;
  if (!IsOk(At.Key->SubkeyNames(Names), At.Path))
    return std::nullopt;
  return Names;
}

std::optional<TRegCounts> TKeyWalk::Counts(const TKeyAt &At) {
  TRegCounts Counts;
  if (!IsOk(At.Key->Counts(Counts), At.Path))
    return std::nullopt;
  return Counts;
}

bool TKeyWalk::Values(const TKeyAt &At, TRegValueList &Out) {
  return IsOk(At.Key->Values(Out), At.Path);
}

std::optional<std::u16string_view> TKeyWalk::DefaultText(const TKeyAt &At) {
  if (!IsOk(At.Key->Read(u"", Default_), At.Path) || !Default_.Data().IsText())
    return std::nullopt;
  return Default_.Data().Text();
}

bool TKeyWalk::HoldsOnlyItsDefault(const TKeyAt &At) {
  const std::optional<TRegCounts> Content = Counts(At);
  return Content && Content->Subkeys == 0 && Content->Values == 1;
}

void TKeyWalk::ReportKey(TLabel Label, const TKeyAt &At, std::u16string_view Data,
                         std::int32_t ItemKind) {
  ReportKey(Label, At.Path, Data, ItemKind);
}

void TKeyWalk::ReportKey(TLabel Label, std::u16string KeyPath, std::u16string_view Data,
                         std::int32_t ItemKind) {
  TFinding Finding;
  Finding.Label = Label;
  Finding.ValueName = WholeKey;
  Finding.Data = Data;
  Finding.ItemKind = ItemKind;
  Finding.BackupLines = {KeyLine(KeyPath)};
  if (!Data.empty())
    Finding.BackupLines.push_back(StringLine(u"", Escaped(Data)));
  Finding.KeyPath = std::move(KeyPath);
  Report(std::move(Finding));
}

void TKeyWalk::Report(TFinding Finding) {
  ++Found_;
  Finding.Area = Area_;
  Engine_.Report(Group_, std::move(Finding));
}

} // namespace hivesweep

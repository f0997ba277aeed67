#include "repair/BackupList.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "platform/Text.h"
#include "repair/BackupText.h"

namespace hivesweep {

namespace {

// The three units behind the first dot are looked at, so "backup1.regold" is one too.
bool IsBackupName(std::u16string_view Name) {
  const std::size_t Dot = Name.find(u'.');
  return Name.starts_with(u"backup") && Dot != std::u16string_view::npos &&
         Name.substr(Dot + 1, 3) == u"reg";
}

// The file's lines that name a key.
std::int32_t CountKeys(TStorage &Storage, std::u16string_view Path) {
  std::string Bytes;
  if (Storage.Read(Path, Bytes))
    return 0;
  const std::vector<std::u16string> Lines = DecodeBackup(Bytes);
  return static_cast<std::int32_t>(std::ranges::count_if(
      Lines, [](const std::u16string &Line) { return Line.starts_with(u'['); }));
}

// A number of thousandths as a decimal with two places at most: 2500 is "2.5".
std::u16string Thousandths(std::int64_t Number) {
  const auto Hundredths = static_cast<std::uint64_t>((Number + 5) / 10);
  std::u16string Text = ToDecimal(Hundredths / 100);
  if (const std::uint64_t Rest = Hundredths % 100; Rest != 0) {
    Text += Rest < 10 ? u".0" : u".";
    Text += Rest % 10 == 0 ? ToDecimal(Rest / 10) : ToDecimal(Rest);
  }
  return Text;
}

} // namespace

std::vector<TBackupEntry> ListBackups(TStorage &Storage, const TUndoStore &Undo,
                                      std::u16string_view Folder, TError *Error) {
  std::vector<TStoredFile> Found;
  const TError ListError = About(Folder, Storage.List(Folder, Found));
  std::vector<TBackupEntry> Out;
  for (const TStoredFile &File : Found) {
    if (File.IsFolder || !IsBackupName(File.Name))
      continue;
    TBackupEntry &Entry = Out.emplace_back();
    Entry.Name = File.Name;
    Entry.Path = std::u16string(Folder) + File.Name;
    Entry.Size = static_cast<std::int64_t>(File.Size);
    Entry.Time = File.Modified;
  }
  const std::size_t Texts = Out.size();
  TError UndoError;
  const std::vector<TUndoFile> Records = Undo.List(&UndoError);
  if (Error)
    *Error = ListError ? ListError : UndoError;
  for (const TUndoFile &File : Records) {
    if (File.IsPending)
      continue;
    auto Entry = std::ranges::find(Out, File.BackupName, &TBackupEntry::Name);
    if (Entry == Out.end()) {
      Out.push_back({.Name = File.BackupName,
                     .Path = std::u16string(Folder) + File.BackupName,
                     .Size = static_cast<std::int64_t>(File.Size),
                     .Time = File.Time,
                     .HasText = false});
      Entry = std::prev(Out.end());
    }
    TUndoHead Head;
    Entry->Record = Undo.Check(File, Head);
    Entry->Changes = static_cast<std::int32_t>(Head.Changes);
    Entry->Number = File.Number;
  }
  for (TBackupEntry &Entry : std::span(Out).first(Texts))
    if (Entry.Record != TUndoState::Whole)
      Entry.Changes = CountKeys(Storage, Entry.Path);
  return Out;
}

void FillRows(std::span<const TBackupEntry> Backups, TListRows &Rows) {
  Rows.Clear();
  for (const TBackupEntry &Entry : Backups) {
    std::vector<std::u16string> Cells = {ToDecimal(static_cast<std::uint64_t>(Entry.Changes))};
    if (Entry.Size < 1000)
      Cells.push_back(ToDecimal(static_cast<std::uint64_t>(Entry.Size)) + u" Byte");
    if (Entry.Size > 1000)
      Cells.push_back(Thousandths(Entry.Size) + u" KB");
    if (Entry.Size > 1'000'000)
      Cells.push_back(Thousandths(Entry.Size / 1000) + u" M");
    Cells.push_back(Entry.Name);
    Rows.Add(DateTimeText(Entry.Time), Cells);
  }
}

std::vector<TBackupEntry> SurplusOf(std::span<const TBackupEntry> Backups) {
  std::vector<TBackupEntry> Out;
  if (Backups.size() < 3)
    return Out;
  const TBackupEntry *First = &Backups[0];
  const TBackupEntry *Second = &Backups[1];
  const auto IsLater = [](const TBackupEntry &Left, const TBackupEntry &Right) {
    return std::tie(Left.Number, Left.Time) > std::tie(Right.Number, Right.Time);
  };
  for (const TBackupEntry &Entry : Backups.subspan(2)) {
    if (IsLater(Entry, *First))
      Out.push_back(*std::exchange(First, &Entry));
    else if (IsLater(Entry, *Second))
      Out.push_back(*std::exchange(Second, &Entry));
    else
      Out.push_back(Entry);
  }
  return Out;
}

} // namespace hivesweep

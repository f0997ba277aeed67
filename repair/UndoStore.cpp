#include "repair/UndoStore.h"

#include <algorithm>
#include <limits>
#include <tuple>

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view Done = u".undo";
constexpr std::u16string_view Pending = u".pending";
constexpr std::u16string_view HalfWritten = u".new";
constexpr std::u16string_view BackupExtension = u".reg";

std::u16string_view WithoutExtension(std::u16string_view Name) {
  return Name.substr(0, Name.rfind(u'.'));
}

// The number in the name of a record among those of its second; the first one has none.
std::uint64_t NumberOf(std::u16string_view Name) {
  const std::u16string_view Stem = WithoutExtension(Name);
  std::uint64_t Number = 0;
  if (const std::size_t Dash = Stem.find(u'-'); Dash != std::u16string_view::npos)
    for (const char16_t Digit : Stem.substr(Dash + 1))
      Number = Number * 10 + static_cast<std::uint64_t>(Digit - u'0');
  return Number;
}

} // namespace

std::vector<TUndoFile> TUndoStore::List(TError *Error) const {
  std::vector<TStoredFile> Found;
  TError Listed = About(Folder_, Storage_.List(Folder_, Found));
  if (Error)
    *Error = std::move(Listed);
  std::vector<TUndoFile> Out;
  for (TStoredFile &File : Found) {
    const std::u16string_view Name = File.Name;
    const bool IsPending = Name.ends_with(Pending);
    if (File.IsFolder || !Name.starts_with(u"backup") || (!IsPending && !Name.ends_with(Done)))
      continue;
    std::u16string BackupName =
        std::u16string(WithoutExtension(Name)) + std::u16string(BackupExtension);
    std::string Front;
    Storage_.ReadFront(Folder_ + File.Name, UndoHeadSize, Front);
    Out.push_back({std::move(File.Name), std::move(BackupName), File.Size, File.Modified, IsPending,
                   DecodeUndoHead(Front).Number});
  }
  std::ranges::sort(Out, [](const TUndoFile &Left, const TUndoFile &Right) {
    const auto Place = [](const TUndoFile &File) {
      const std::u16string_view Stem = WithoutExtension(File.Name);
      return std::tuple(File.Number, Stem.substr(0, Stem.find(u'-')), NumberOf(File.Name));
    };
    return Place(Left) < Place(Right);
  });
  return Out;
}

std::optional<TUndoFile> TUndoStore::Of(std::u16string_view BackupName, TError *Error) const {
  for (TUndoFile &File : List(Error))
    if (!File.IsPending && File.BackupName == BackupName)
      return std::move(File); // cppcheck-suppress returnStdMoveLocal ; one of a list
  return std::nullopt;
}

TError TUndoStore::Save(TUndoRecord &Record, std::u16string_view BackupName, TUndoFile &File) {
  TError Error = About(Folder_, Storage_.CreateFolder(Folder_));
  std::vector<TUndoFile> Records;
  if (!Error)
    Records = List(&Error);
  std::vector<std::u16string> Taken;
  if (!Error)
    Error = TakenNames(Taken);
  if (Error)
    return Error;
  RemoveHalfWritten();
  constexpr std::uint64_t Most = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t Last = Records.empty() ? 0 : Records.back().Number;
  Record.Number = Last == Most ? Last : Last + 1;
  const std::u16string Second(WithoutExtension(BackupName));
  std::u16string Stem = Second;
  for (std::uint64_t Next = 2; std::ranges::count(Taken, Stem) != 0; ++Next)
    Stem = Second + u"-" + ToDecimal(Next);
  File.IsPending = !Record.Finished;
  File.Name = Stem + std::u16string(File.IsPending ? Pending : Done);
  File.BackupName = Stem + std::u16string(BackupExtension);
  File.Number = Record.Number;
  // Both under names that nobody else may have.
  const std::u16string HalfPath = Folder_ + File.Name + std::u16string(HalfWritten);
  Error = WriteProved(Record, HalfPath, &TStorage::WriteNew);
  if (!Error)
    Error = Storage_.RenameNew(HalfPath, Folder_ + File.Name);
  if (Error)
    Storage_.Remove(HalfPath);
  return About(Folder_, std::move(Error));
}

TError TUndoStore::Finish(const TUndoRecord &Record, const TUndoFile &File) {
  if (TError Error = SaveAs(Record, File.Name))
    return Error;
  const std::u16string Name = std::u16string(WithoutExtension(File.Name)) + std::u16string(Done);
  return About(Folder_ + Name, Storage_.Rename(Folder_ + File.Name, Folder_ + Name));
}

TError TUndoStore::SaveAs(const TUndoRecord &Record, std::u16string_view Name) {
  const std::u16string Target = Folder_ + std::u16string(Name);
  const std::u16string HalfPath = Target + std::u16string(HalfWritten);
  TError Error = WriteProved(Record, HalfPath, &TStorage::Write);
  if (!Error)
    Error = Storage_.Rename(HalfPath, Target);
  if (Error)
    Storage_.Remove(HalfPath);
  return About(Folder_, std::move(Error));
}

TError TUndoStore::WriteProved(const TUndoRecord &Record, std::u16string_view Path, TWrite Write) {
  const std::string Bytes = EncodeUndoRecord(Record);
  TError Error = (Storage_.*Write)(Path, Bytes);
  std::string Again;
  if (!Error)
    Error = Storage_.Read(Path, Again);
  if (!Error && Again != Bytes)
    Error = {TErrorCode::ReadBackDiffers, {}};
  return Error;
}

TError TUndoStore::TakenNames(std::vector<std::u16string> &Stems) const {
  for (const std::u16string *const Folder : {&Folder_, &TextFolder_}) {
    std::vector<TStoredFile> Found;
    if (TError Error = About(*Folder, Storage_.List(*Folder, Found)))
      return Error;
    for (const TStoredFile &File : Found)
      Stems.emplace_back(WithoutExtension(File.Name));
  }
  return {};
}

void TUndoStore::RemoveHalfWritten() {
  std::vector<TStoredFile> Found;
  Storage_.List(Folder_, Found);
  for (const TStoredFile &File : Found)
    if (File.Name.starts_with(u"backup") && File.Name.ends_with(HalfWritten))
      Storage_.Remove(Folder_ + File.Name);
}

TUndoState TUndoStore::Check(const TUndoFile &File, TUndoHead &Head) const {
  std::string Bytes;
  Head = {};
  if (Storage_.Read(Folder_ + File.Name, Bytes))
    return TUndoState::Unreadable;
  TError Unused;
  if (!IsWholeUndoRecord(Bytes, Unused))
    return TUndoState::Damaged;
  Head = DecodeUndoHead(Bytes);
  return TUndoState::Whole;
}

std::optional<TUndoRecord> TUndoStore::Load(std::u16string_view Name, TError &Why) const {
  const std::u16string Path = Folder_ + std::u16string(Name);
  std::string Bytes;
  Why = Because(Storage_.Read(Path, Bytes), TErrorCode::RecordUnreadable, Path);
  if (Why)
    return std::nullopt;
  std::optional<TUndoRecord> Record = DecodeUndoRecord(Bytes, Why);
  if (Record && Record->ViewBits != ThisView()) {
    Why = {TErrorCode::RecordOfOtherView, {}, Record->ViewBits};
    Record.reset();
  }
  if (!Record)
    Why.Subject = Path;
  return Record;
}

} // namespace hivesweep

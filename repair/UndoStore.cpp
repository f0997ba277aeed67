#include "repair/UndoStore.h"

#include <algorithm>

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

// The number of a record among those of its second; the first one has none.
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
    Out.push_back(
        {std::move(File.Name), std::move(BackupName), File.Size, File.Modified, IsPending});
  }
  std::ranges::sort(Out, [](const TUndoFile &Left, const TUndoFile &Right) {
    const auto Second = [](const TUndoFile &File) {
      const std::u16string_view Stem = WithoutExtension(File.Name);
      return Stem.substr(0, Stem.find(u'-'));
    };
    return Second(Left) != Second(Right) ? Second(Left) < Second(Right)
                                         : NumberOf(Left.Name) < NumberOf(Right.Name);
  });
  return Out;
}

std::optional<TUndoFile> TUndoStore::Of(std::u16string_view BackupName, TError *Error) const {
  for (TUndoFile &File : List(Error))
    if (!File.IsPending && File.BackupName == BackupName)
      return std::move(File); // cppcheck-suppress returnStdMoveLocal ; one of a list
  return std::nullopt;
}

TError TUndoStore::Save(const TUndoRecord &Record, std::u16string_view BackupName,
                        TUndoFile &File) {
  TError Error = About(Folder_, Storage_.CreateFolder(Folder_));
  std::vector<TUndoFile> Taken;
  if (!Error)
    Taken = List(&Error);
  if (Error)
    return Error;
  RemoveHalfWritten();
  const std::u16string Second(WithoutExtension(BackupName));
  std::u16string Stem = Second;
  const auto IsTaken = [&](const TUndoFile &Other) { return WithoutExtension(Other.Name) == Stem; };
  for (std::uint64_t Number = 2; std::ranges::any_of(Taken, IsTaken); ++Number)
    Stem = Second + u"-" + ToDecimal(Number);
  File.IsPending = !Record.Finished;
  File.Name = Stem + std::u16string(File.IsPending ? Pending : Done);
  File.BackupName = Stem + std::u16string(BackupExtension);
  return SaveAs(Record, File.Name);
}

TError TUndoStore::Finish(const TUndoRecord &Record, const TUndoFile &File) {
  if (TError Error = SaveAs(Record, File.Name))
    return Error;
  const std::u16string Name = std::u16string(WithoutExtension(File.Name)) + std::u16string(Done);
  return About(Folder_ + Name, Storage_.Rename(Folder_ + File.Name, Folder_ + Name));
}

TError TUndoStore::SaveAs(const TUndoRecord &Record, std::u16string_view Name) {
  const std::string Bytes = EncodeUndoRecord(Record);
  const std::u16string Target = Folder_ + std::u16string(Name);
  const std::u16string HalfPath = Target + std::u16string(HalfWritten);
  TError Error = Storage_.Write(HalfPath, Bytes);
  std::string Again;
  if (!Error)
    Error = Storage_.Read(HalfPath, Again);
  if (!Error && Again != Bytes)
    Error = {TErrorCode::ReadBackDiffers, {}};
  if (!Error)
    Error = Storage_.Rename(HalfPath, Target);
  if (Error)
    Storage_.Remove(HalfPath);
  return About(Folder_, std::move(Error));
}

void TUndoStore::RemoveHalfWritten() {
  std::vector<TStoredFile> Found;
  Storage_.List(Folder_, Found);
  for (const TStoredFile &File : Found)
    if (File.Name.starts_with(u"backup") && File.Name.ends_with(HalfWritten))
      Storage_.Remove(Folder_ + File.Name);
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

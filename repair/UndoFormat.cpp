// The file form of an undo record; docs/undo-record.md describes it.
#include <array>
#include <bit>
#include <concepts>
#include <cstring>

#include "repair/UndoRecord.h"

namespace hivesweep {

namespace {

constexpr std::string_view Magic = "HSWPUNDO";
constexpr std::uint32_t Version = 2;
constexpr std::uint32_t FirstVersion = 1; // without numbers, labels, volatility and goals
constexpr std::size_t HeaderSize = Magic.size() + 4 + 8 + 4;

constexpr std::array<std::uint32_t, 256> MakeCrcTable() {
  std::array<std::uint32_t, 256> Table{};
  for (std::uint32_t Index = 0; Index < Table.size(); ++Index) {
    std::uint32_t Rest = Index;
    for (int Bit = 0; Bit < 8; ++Bit)
      Rest = (Rest >> 1) ^ ((Rest & 1) != 0 ? 0xEDB88320u : 0u);
    Table[Index] = Rest;
  }
  return Table;
}
constexpr std::array<std::uint32_t, 256> CrcTable = MakeCrcTable();

// CRC-32 of IEEE 802.3.
std::uint32_t Crc32(std::string_view Bytes) {
  std::uint32_t Sum = 0xFFFF'FFFFu;
  for (const char Byte : Bytes)
    Sum = CrcTable[(Sum ^ static_cast<unsigned char>(Byte)) & 0xFF] ^ (Sum >> 8);
  return ~Sum;
}

// ---- writing --------------------------------------------------------------------

class TWriter {
public:
  template <std::unsigned_integral TNumber> void Number(TNumber Value) {
    for (std::size_t Byte = 0; Byte < sizeof(TNumber); ++Byte)
      Out.push_back(static_cast<char>((Value >> (8 * Byte)) & 0xFF));
  }
  void Count(std::size_t Value) { Number(static_cast<std::uint32_t>(Value)); }
  void Text(std::u16string_view Text) {
    Count(Text.size());
    for (const char16_t Unit : Text)
      Number(static_cast<std::uint16_t>(Unit));
  }
  void Bytes(std::string_view Bytes) {
    Count(Bytes.size());
    Out.append(Bytes);
  }
  void Bytes(const std::vector<std::byte> &Bytes) {
    Count(Bytes.size());
    Out.append(reinterpret_cast<const char *>(Bytes.data()), Bytes.size());
  }
  void Place(const TKeyPlace &Place) {
    Number(static_cast<std::uint8_t>(Place.Root));
    Text(Place.Path);
  }

  std::string Out;
};

template <typename TPlaces> void WritePlaces(TWriter &Writer, const TPlaces &Places) {
  Writer.Count(Places.size());
  for (const TKeyPlace &Place : Places)
    Writer.Place(Place);
}

void WriteScope(TWriter &Writer, const TScope &Scope) {
  WritePlaces(Writer, Scope.Keys);
  WritePlaces(Writer, Scope.Trees);
  Writer.Count(Scope.Files.size());
  for (const std::u16string &Path : Scope.Files)
    Writer.Text(Path);
}

void WriteValue(TWriter &Writer, std::u16string_view Name, const TSavedValue &Value) {
  Writer.Text(Name);
  Writer.Number(static_cast<std::uint32_t>(Value.Type));
  Writer.Number(Value.Order);
  Writer.Bytes(Value.Bytes);
}

void WriteKey(TWriter &Writer, const TKeyPlace &Place, const TSavedKey &Key) {
  Writer.Place(Place);
  Writer.Text(Key.Info.ClassName);
  Writer.Bytes(Key.Info.Security);
  Writer.Number(static_cast<std::uint8_t>(Key.Info.IsLink ? 1 : 0));
  Writer.Number(static_cast<std::uint8_t>(Key.Info.Volatile));
  Writer.Bytes(Key.Info.Label);
  Writer.Count(Key.Values.size());
  for (const auto &[Name, Value] : Key.Values)
    WriteValue(Writer, Name, Value);
}

void WriteFile(TWriter &Writer, std::u16string_view Path, const TFileContent &File) {
  Writer.Text(Path);
  for (const std::uint64_t Time : {File.Created, File.Accessed, File.Written})
    Writer.Number(Time);
  Writer.Number(File.Attributes);
  Writer.Bytes(File.Bytes);
}

void WriteMarks(TWriter &Writer, const TUndoMarks &Marks) {
  Writer.Count(Marks.Keys.size());
  for (const auto &[Place, Key] : Marks.Keys) {
    Writer.Place(Place);
    Writer.Number(static_cast<std::uint8_t>(Key.Key));
    Writer.Count(Key.Values.size());
    for (const auto &[Name, Mark] : Key.Values) {
      Writer.Text(Name);
      Writer.Number(static_cast<std::uint8_t>(Mark));
    }
  }
  Writer.Count(Marks.Files.size());
  for (const auto &[Path, Mark] : Marks.Files) {
    Writer.Text(Path);
    Writer.Number(static_cast<std::uint8_t>(Mark));
  }
}

// Of the keys only those that are to be otherwise than before.
void WriteGoal(TWriter &Writer, const TSnapshot &Before, const TRestoreGoal &Goal) {
  Writer.Text(Goal.BackupName);
  std::vector<TKeyPlace> Gone;
  for (const auto &[Place, Key] : Before.Keys)
    if (!Goal.Keys.contains(Place))
      Gone.push_back(Place);
  std::vector<TSavedKeys::const_iterator> Other;
  for (auto Key = Goal.Keys.begin(); Key != Goal.Keys.end(); ++Key) {
    const auto Old = Before.Keys.find(Key->first);
    if (Old == Before.Keys.end() || !SameInfo(Old->second.Info, Key->second.Info) ||
        !SameValues(Old->second.Values, Key->second.Values))
      Other.push_back(Key);
  }
  WritePlaces(Writer, Gone);
  Writer.Count(Other.size());
  for (const auto &Key : Other)
    WriteKey(Writer, Key->first, Key->second);
  Writer.Count(Goal.Files.size());
  for (const auto &[Path, File] : Goal.Files)
    WriteFile(Writer, Path, File);
  WritePlaces(Writer, Goal.EditorKeys);
  Writer.Count(Goal.EditorValues.size());
  for (const TEditorValue &Value : Goal.EditorValues) {
    Writer.Place(Value.Key);
    WriteValue(Writer, Value.Name, Value.Value);
  }
}

// ---- reading --------------------------------------------------------------------

struct TMalformed {};

// Every length is held against what is left: a damaged one ends the reading, and never
// becomes an allocation.
class TReader {
public:
  explicit TReader(std::string_view Bytes) : Rest_(Bytes) {}

  bool AtEnd() const { return Rest_.empty(); }

  template <std::unsigned_integral TNumber> TNumber Number() {
    TNumber Value = 0;
    const std::string_view Bytes = Take(sizeof(TNumber));
    for (std::size_t Byte = 0; Byte < sizeof(TNumber); ++Byte)
      Value = static_cast<TNumber>(
          Value | static_cast<TNumber>(static_cast<TNumber>(static_cast<unsigned char>(Bytes[Byte]))
                                       << (8 * Byte)));
    return Value;
  }
  // Of things of which none takes less than a byte.
  std::size_t Count() {
    const std::size_t Value = Number<std::uint32_t>();
    return Value <= Rest_.size() ? Value : throw TMalformed();
  }
  std::u16string Text() {
    std::u16string Out(Count(), u'\0');
    for (char16_t &Unit : Out)
      Unit = Number<std::uint16_t>();
    return Out;
  }
  std::string_view Bytes() { return Take(Count()); }
  std::vector<std::byte> ByteVector() {
    const auto Span = std::as_bytes(std::span(Bytes()));
    return {Span.begin(), Span.end()};
  }
  // A number up to Last.
  template <typename TEnum> TEnum Choice(TEnum First, TEnum Last) {
    const auto Value = static_cast<TEnum>(Number<std::uint8_t>());
    return Value >= First && Value <= Last ? Value : throw TMalformed();
  }
  TKeyPlace Place() {
    const TRegRoot Root = Choice(TRegRoot::ClassesRoot, TRegRoot::Users);
    return {Root, Text()};
  }
  TUndoMark Mark() { return Choice(TUndoMark::Kept, TUndoMark::Added); }

private:
  std::string_view Take(std::size_t Size) {
    if (Size > Rest_.size())
      throw TMalformed();
    const std::string_view Out = Rest_.substr(0, Size);
    Rest_.remove_prefix(Size);
    return Out;
  }

  std::string_view Rest_;
};

TScope ReadScope(TReader &Reader) {
  TScope Scope;
  for (auto *const Places : {&Scope.Keys, &Scope.Trees})
    for (std::size_t Left = Reader.Count(); Left > 0; --Left)
      Places->insert(Reader.Place());
  for (std::size_t Left = Reader.Count(); Left > 0; --Left)
    Scope.Files.insert(Reader.Text());
  return Scope;
}

TSavedValue ReadValue(TReader &Reader) {
  TSavedValue Value;
  Value.Type = static_cast<TRegType>(Reader.Number<std::uint32_t>());
  Value.Order = Reader.Number<std::uint32_t>();
  Value.Bytes = Reader.ByteVector();
  return Value;
}

TSavedKey ReadKey(TReader &Reader, std::uint32_t FileVersion) {
  TSavedKey Key;
  Key.Info.ClassName = Reader.Text();
  Key.Info.Security = Reader.ByteVector();
  Key.Info.IsLink = Reader.Number<std::uint8_t>() != 0;
  if (FileVersion != FirstVersion) {
    Key.Info.Volatile = Reader.Choice(TRegVolatile::No, TRegVolatile::NotTold);
    Key.Info.Label = Reader.ByteVector();
  }
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    std::u16string Name = Reader.Text();
    Key.Values.insert_or_assign(std::move(Name), ReadValue(Reader));
  }
  return Key;
}

TFileContent ReadFile(TReader &Reader) {
  TFileContent File;
  for (std::uint64_t *const Time : {&File.Created, &File.Accessed, &File.Written})
    *Time = Reader.Number<std::uint64_t>();
  File.Attributes = Reader.Number<std::uint32_t>();
  File.Bytes = Reader.Bytes();
  return File;
}

TUndoMarks ReadMarks(TReader &Reader) {
  TUndoMarks Marks;
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    TKeyMarks &Key = Marks.Keys[Reader.Place()];
    Key.Key = Reader.Mark();
    for (std::size_t Values = Reader.Count(); Values > 0; --Values) {
      std::u16string Name = Reader.Text();
      Key.Values[std::move(Name)] = Reader.Mark();
    }
  }
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    std::u16string Path = Reader.Text();
    Marks.Files[std::move(Path)] = Reader.Mark();
  }
  return Marks;
}

TRestoreGoal ReadGoal(TReader &Reader, const TSnapshot &Before) {
  TRestoreGoal Goal;
  Goal.BackupName = Reader.Text();
  Goal.Keys = Before.Keys;
  for (std::size_t Left = Reader.Count(); Left > 0; --Left)
    Goal.Keys.erase(Reader.Place());
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    TKeyPlace Place = Reader.Place();
    Goal.Keys.insert_or_assign(std::move(Place), ReadKey(Reader, Version));
  }
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    std::u16string Path = Reader.Text();
    Goal.Files.insert_or_assign(std::move(Path), ReadFile(Reader));
  }
  for (std::size_t Left = Reader.Count(); Left > 0; --Left)
    Goal.EditorKeys.insert(Reader.Place());
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    TEditorValue Value{Reader.Place(), Reader.Text(), {}};
    Value.Value = ReadValue(Reader);
    Goal.EditorValues.push_back(std::move(Value));
  }
  return Goal;
}

// Version 1 marked as Named all that the backup's text named, although its fix had not
// touched most of that. A thing can only have been hit in place of the one of its name
// that is stored in the other half of the classes.
void DropNamed(TUndoMarks &Marks) {
  const auto IsOtherTaken = [&Marks](const TKeyPlace &Place, const std::u16string *Name) {
    const TKeyPlace Other = {Place.Root == TRegRoot::LocalMachine ? TRegRoot::CurrentUser
                                                                  : TRegRoot::LocalMachine,
                             Place.Path};
    return IsAtOrBelow(Place, {Place.Root, u"Software\\Classes"}) &&
           (Marks.OfKey(Other) == TUndoMark::Taken ||
            (Name && Marks.OfValue(Other, *Name) == TUndoMark::Taken));
  };
  for (auto &[Place, Key] : Marks.Keys) {
    if (Key.Key == TUndoMark::Named && !IsOtherTaken(Place, nullptr))
      Key.Key = TUndoMark::Kept;
    std::erase_if(Key.Values, [&, &At = Place](const auto &Value) {
      return Value.second == TUndoMark::Named && !IsOtherTaken(At, &Value.first);
    });
  }
}

TUndoRecord ReadBody(TReader &Reader, std::uint32_t FileVersion) {
  TUndoRecord Record;
  if (FileVersion != FirstVersion)
    Record.Number = Reader.Number<std::uint64_t>();
  Record.Kind = Reader.Choice(TUndoKind::Fix, TUndoKind::Restore);
  Record.ViewBits = Reader.Number<std::uint8_t>();
  Record.Finished = Reader.Number<std::uint8_t>() != 0;
  Record.Changes = Reader.Number<std::uint32_t>();
  Record.Before.Scope = ReadScope(Reader);
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    TKeyPlace Place = Reader.Place();
    Record.Before.Keys.insert_or_assign(std::move(Place), ReadKey(Reader, FileVersion));
  }
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    std::u16string Path = Reader.Text();
    Record.Before.Files.insert_or_assign(std::move(Path), ReadFile(Reader));
  }
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    TKeyPlace Place = Reader.Place();
    Record.Before.UnreadableKeys[std::move(Place)] =
        Reader.Choice(TRegStatus::Ok, TRegStatus::Failed);
  }
  for (std::size_t Left = Reader.Count(); Left > 0; --Left) {
    std::u16string Path = Reader.Text();
    Record.Before.UnreadableFiles[std::move(Path)] =
        Reader.Choice(TFileStatus::Ok, TFileStatus::Failed);
  }
  Record.Marks = ReadMarks(Reader);
  if (FileVersion == FirstVersion)
    DropNamed(Record.Marks);
  else if (Reader.Number<std::uint8_t>() != 0)
    Record.Goal = ReadGoal(Reader, Record.Before);
  return Reader.AtEnd() ? std::move(Record) : throw TMalformed();
}

} // namespace

std::string EncodeUndoRecord(const TUndoRecord &Record) {
  TWriter Body;
  Body.Number(Record.Number);
  Body.Number(static_cast<std::uint8_t>(Record.Kind));
  Body.Number(Record.ViewBits);
  Body.Number(static_cast<std::uint8_t>(Record.Finished ? 1 : 0));
  Body.Number(Record.Changes);
  WriteScope(Body, Record.Before.Scope);
  Body.Count(Record.Before.Keys.size());
  for (const auto &[Place, Key] : Record.Before.Keys)
    WriteKey(Body, Place, Key);
  Body.Count(Record.Before.Files.size());
  for (const auto &[Path, File] : Record.Before.Files)
    WriteFile(Body, Path, File);
  Body.Count(Record.Before.UnreadableKeys.size());
  for (const auto &[Place, Status] : Record.Before.UnreadableKeys) {
    Body.Place(Place);
    Body.Number(static_cast<std::uint8_t>(Status));
  }
  Body.Count(Record.Before.UnreadableFiles.size());
  for (const auto &[Path, Status] : Record.Before.UnreadableFiles) {
    Body.Text(Path);
    Body.Number(static_cast<std::uint8_t>(Status));
  }
  WriteMarks(Body, Record.Marks);
  Body.Number(static_cast<std::uint8_t>(Record.Goal ? 1 : 0));
  if (Record.Goal)
    WriteGoal(Body, Record.Before, *Record.Goal);

  TWriter Out;
  Out.Out = Magic;
  Out.Number(Version);
  Out.Number(static_cast<std::uint64_t>(Body.Out.size()));
  Out.Number(Crc32(Body.Out));
  Out.Out += Body.Out;
  return std::move(Out.Out);
}

TUndoHead DecodeUndoHead(std::string_view Front) {
  TUndoHead Head;
  if (Front.size() < HeaderSize || !Front.starts_with(Magic))
    return Head;
  try {
    TReader Reader(Front.substr(Magic.size()));
    const auto FileVersion = Reader.Number<std::uint32_t>();
    Reader.Number<std::uint64_t>(); // the body's size
    Reader.Number<std::uint32_t>(); // and its sum
    TUndoHead Read;
    if (FileVersion != FirstVersion)
      Read.Number = Reader.Number<std::uint64_t>();
    for (int Byte = 0; Byte < 3; ++Byte) // kind, view, finished
      Reader.Number<std::uint8_t>();
    Read.Changes = Reader.Number<std::uint32_t>();
    Head = Read;
  } catch (const TMalformed &) { // too short
  }
  return Head;
}

bool IsWholeUndoRecord(std::string_view Bytes, TError &Why) {
  if (Bytes.size() < HeaderSize || !Bytes.starts_with(Magic)) {
    Why = {TErrorCode::RecordUnknown, {}};
    return false;
  }
  TReader Header(Bytes.substr(Magic.size()));
  const auto Found = Header.Number<std::uint32_t>();
  if (Found < FirstVersion || Found > Version) {
    Why = {TErrorCode::RecordOfNewerVersion, {}, Found};
    return false;
  }
  const auto Size = Header.Number<std::uint64_t>();
  const auto Sum = Header.Number<std::uint32_t>();
  const std::string_view Body = Bytes.substr(HeaderSize);
  const bool IsWhole = Size == Body.size() && Sum == Crc32(Body);
  Why = IsWhole ? TError() : TError{TErrorCode::RecordDamaged, {}};
  return IsWhole;
}

std::optional<TUndoRecord> DecodeUndoRecord(std::string_view Bytes, TError &Why) {
  if (!IsWholeUndoRecord(Bytes, Why))
    return std::nullopt;
  const auto FileVersion = TReader(Bytes.substr(Magic.size())).Number<std::uint32_t>();
  try {
    TReader Reader(Bytes.substr(HeaderSize));
    return ReadBody(Reader, FileVersion);
  } catch (const TMalformed &) {
    Why = {TErrorCode::RecordDamaged, {}};
    return std::nullopt;
  }
}

} // namespace hivesweep

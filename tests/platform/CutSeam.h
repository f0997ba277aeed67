// A platform whose power can be cut: from a chosen call of the seam on nothing has any
// effect any more, as if the program had been killed there; or that one call fails.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "platform/Platform.h"
#include "platform/memory/Machine.h"

namespace hivesweep {

class TPowerCut {
public:
  // Calls are counted from 1; 0: none.
  void CutBefore(std::uint64_t Call) { Cut_ = Call; }
  void FailOnly(std::uint64_t Call) { Fail_ = Call; }
  void Reset() { *this = {}; }
  std::uint64_t Calls() const { return Counted_; }

  // Counts a call; false when it must not happen.
  bool Passes() {
    ++Counted_;
    return (Cut_ == 0 || Counted_ < Cut_) && Counted_ != Fail_;
  }
  // It is this very call that the power was cut in.
  bool IsCutNow() const { return Counted_ == Cut_ || Counted_ == Fail_; }

private:
  std::uint64_t Counted_ = 0;
  std::uint64_t Cut_ = 0;
  std::uint64_t Fail_ = 0;
};

// What is behind every family that a fix or a restore changes anything through.
class TCutKey final : public TRegKey {
public:
  TCutKey(std::unique_ptr<TRegKey> Key, TPowerCut &Power) : Key_(std::move(Key)), Power_(Power) {}

  static TRegOpened Wrapped(TRegOpened Opened, TPowerCut &Power) {
    if (Opened.Key)
      Opened.Key = std::make_unique<TCutKey>(std::move(Opened.Key), Power);
    return Opened;
  }

  TRegOpened Open(std::u16string_view Path, TRegAccess Access) override {
    return Power_.Passes() ? Wrapped(Key_->Open(Path, Access), Power_) : TRegOpened();
  }
  TRegOpened OpenItself(std::u16string_view Path, TRegAccess Access) override {
    return Power_.Passes() ? Wrapped(Key_->OpenItself(Path, Access), Power_) : TRegOpened();
  }
  TRegOpened Create(std::u16string_view Path, const TRegKeyInfo &Info) override {
    return Power_.Passes() ? Wrapped(Key_->Create(Path, Info), Power_) : TRegOpened();
  }
  TRegStatus ReadInfo(TRegKeyInfo &Out) override {
    return Power_.Passes() ? Key_->ReadInfo(Out) : TRegStatus::Failed;
  }
  TRegStatus TryLikeness(const TRegKeyInfo &Info) override {
    return Power_.Passes() ? Key_->TryLikeness(Info) : TRegStatus::Failed;
  }
  TRegStatus Counts(TRegCounts &Out) override {
    return Power_.Passes() ? Key_->Counts(Out) : TRegStatus::Failed;
  }
  TRegStatus SubkeyNames(std::vector<std::u16string> &Out) override {
    return Power_.Passes() ? Key_->SubkeyNames(Out) : TRegStatus::Failed;
  }
  TRegStatus Values(TRegValueList &Out) override {
    return Power_.Passes() ? Key_->Values(Out) : TRegStatus::Failed;
  }
  TRegStatus Read(std::u16string_view Name, TRegValue &Out) override {
    return Power_.Passes() ? Key_->Read(Name, Out) : TRegStatus::Failed;
  }
  TRegStatus SetValue(std::u16string_view Name, TRegType Type,
                      std::span<const std::byte> Bytes) override {
    return Power_.Passes() ? Key_->SetValue(Name, Type, Bytes) : TRegStatus::Failed;
  }
  TRegStatus DeleteValue(std::u16string_view Name) override {
    return Power_.Passes() ? Key_->DeleteValue(Name) : TRegStatus::Failed;
  }
  TRegStatus DeleteTree(std::u16string_view Path) override {
    return Power_.Passes() ? Key_->DeleteTree(Path) : TRegStatus::Failed;
  }

private:
  std::unique_ptr<TRegKey> Key_;
  TPowerCut &Power_;
};

class TCutRegistry final : public TRegistryHost {
public:
  TCutRegistry(TRegistryHost &Host, TPowerCut &Power) : Host_(Host), Power_(Power) {}
  TRegOpened Open(TRegRoot Root, std::u16string_view Path, TRegAccess Access) override {
    return Power_.Passes() ? TCutKey::Wrapped(Host_.Open(Root, Path, Access), Power_)
                           : TRegOpened();
  }

private:
  TRegistryHost &Host_;
  TPowerCut &Power_;
};

class TCutFiles final : public TFileSystem {
public:
  TCutFiles(TFileSystem &Files, TPowerCut &Power) : Files_(Files), Power_(Power) {}
  TPathState Look(std::u16string_view Path) override {
    return Power_.Passes() ? Files_.Look(Path) : TPathState::Unknown;
  }
  bool List(std::u16string_view Folder,
            const std::function<bool(const TFolderEntry &Entry)> &Take) override {
    return Power_.Passes() && Files_.List(Folder, Take);
  }
  bool CreateFolder(std::u16string_view Path) override {
    return Power_.Passes() && Files_.CreateFolder(Path);
  }
  TFileStatus ReadContent(std::u16string_view Path, TFileContent &Out) override {
    return Power_.Passes() ? Files_.ReadContent(Path, Out) : TFileStatus::Failed;
  }
  TFileStatus WriteContent(std::u16string_view Path, const TFileContent &Content) override {
    return Power_.Passes() ? Files_.WriteContent(Path, Content) : TFileStatus::Failed;
  }
  TFileStatus RemoveFile(std::u16string_view Path) override {
    return Power_.Passes() ? Files_.RemoveFile(Path) : TFileStatus::Failed;
  }
  void *DisableRedirection() override { return Files_.DisableRedirection(); }
  void RevertRedirection(void *Saved) override { Files_.RevertRedirection(Saved); }

private:
  TFileSystem &Files_;
  TPowerCut &Power_;
};

class TCutStorage final : public TStorage {
public:
  TCutStorage(TStorage &Storage, TPowerCut &Power) : Storage_(Storage), Power_(Power) {}
  TError List(std::u16string_view Folder, std::vector<TStoredFile> &Out) override {
    return Power_.Passes() ? Storage_.List(Folder, Out) : Off();
  }
  TError Read(std::u16string_view Path, std::string &Out) override {
    return Power_.Passes() ? Storage_.Read(Path, Out) : Off();
  }
  TError ReadFront(std::u16string_view Path, std::size_t Size, std::string &Out) override {
    return Power_.Passes() ? Storage_.ReadFront(Path, Size, Out) : Off();
  }
  TError Write(std::u16string_view Path, std::string_view Bytes) override {
    return WriteBy(&TStorage::Write, Path, Bytes);
  }
  TError WriteNew(std::u16string_view Path, std::string_view Bytes) override {
    return WriteBy(&TStorage::WriteNew, Path, Bytes);
  }
  TError Rename(std::u16string_view From, std::u16string_view To) override {
    return Power_.Passes() ? Storage_.Rename(From, To) : Off();
  }
  TError RenameNew(std::u16string_view From, std::u16string_view To) override {
    return Power_.Passes() ? Storage_.RenameNew(From, To) : Off();
  }
  TError Remove(std::u16string_view Path) override {
    return Power_.Passes() ? Storage_.Remove(Path) : Off();
  }
  TError CreateFolder(std::u16string_view Path) override {
    return Power_.Passes() ? Storage_.CreateFolder(Path) : Off();
  }
  void MakeWritable(std::u16string_view Path) override {
    if (Power_.Passes())
      Storage_.MakeWritable(Path);
  }
  THolding Hold(std::u16string_view Path) override {
    if (Power_.Passes())
      return Storage_.Hold(Path);
    THolding Out;
    Out.Error = Off();
    return Out;
  }

private:
  // Half of it gets there.
  TError WriteBy(TError (TStorage::*Call)(std::u16string_view, std::string_view),
                 std::u16string_view Path, std::string_view Bytes) {
    if (Power_.Passes())
      return (Storage_.*Call)(Path, Bytes);
    if (Power_.IsCutNow())
      (Storage_.*Call)(Path, Bytes.substr(0, Bytes.size() / 2));
    return Off();
  }

  static TError Off() { return {TErrorCode::Unwritable, {}}; }

  TStorage &Storage_;
  TPowerCut &Power_;
};

// Inner, seen through the cut. Its profiles, which no undo depends on, are left out.
inline TPlatform CutPlatform(TPlatform &Inner, TPowerCut &Power) {
  TPlatform Out = MakeMemoryPlatform(nullptr, {});
  Out.Registry = std::make_unique<TCutRegistry>(*Inner.Registry, Power);
  Out.Files = std::make_unique<TCutFiles>(*Inner.Files, Power);
  Out.Storage = std::make_unique<TCutStorage>(*Inner.Storage, Power);
  return Out;
}

} // namespace hivesweep

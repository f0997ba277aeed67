// Runs the engine in a test: a machine and a registry made for it, and all that a
// scan shows kept for looking at.
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "engine/ScanRegistry.h"
#include "platform/memory/Machine.h"
#include "platform/memory/MemoryRegistry.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {

class TTestLabel final : public TStatusLabel {
public:
  void SetText(std::u16string_view Text) override { Texts.emplace_back(Text); }
  std::vector<std::u16string> Texts;
};

class TTestProgress final : public TProgressBar {
public:
  std::vector<std::pair<std::int32_t, std::int32_t>> States; // position and maximum
protected:
  void Changed() override { States.emplace_back(Position(), Max()); }
};

struct TPost {
  TWindowHandle Window;
  std::uint32_t Message;
  std::uintptr_t WParam;
  std::intptr_t LParam;
  bool operator==(const TPost &) const = default;
};

class TTestMessages final : public TMessages {
public:
  void Pump() override {
    ++Pumps;
    if (OnPump)
      OnPump();
  }
  void Post(TWindowHandle Window, std::uint32_t Message, std::uintptr_t WParam,
            std::intptr_t LParam) override {
    Posts.push_back({Window, Message, WParam, LParam});
  }

  int Pumps = 0;
  std::function<void()> OnPump;
  std::vector<TPost> Posts;
};

// The registry of a test behind the four roots: each root is a key of the test's own.
class TRootedRegistry final : public TRegistryHost {
public:
  explicit TRootedRegistry(TTestRegistry &Registry) : Registry_(Registry) {}
  TRegOpened Open(TRegRoot Root, std::u16string_view Path, TRegAccess Access) override {
    std::u16string Whole = Registry_.Path(RegRootName(Root));
    if (!Path.empty())
      Whole.append(u"\\").append(Path);
    return Registry_.Host().Open(TRegRoot::CurrentUser, Whole, Access);
  }

private:
  TTestRegistry &Registry_;
};

// A platform's settings files, one of which another program can hold for a moment.
class TTestProfiles final : public TProfiles {
public:
  // Takes the place of the platform's own, before anything is made that borrows them.
  static TTestProfiles &In(TPlatform &Platform) {
    auto Owned = std::make_unique<TTestProfiles>(std::move(Platform.Profiles));
    TTestProfiles &Out = *Owned;
    Platform.Profiles = std::move(Owned);
    return Out;
  }
  explicit TTestProfiles(std::unique_ptr<TProfiles> Inner) : Inner_(std::move(Inner)) {}

  TError ReadSection(std::u16string_view Path, std::u16string_view Section,
                     TIniSection &Out) override {
    ++Reads;
    Out = {};
    // A folder can't be read as a file.
    return Inner_->ReadSection(IsHeld(Path) ? Path.substr(0, Path.find_last_of(u"\\/")) : Path,
                               Section, Out);
  }
  TError WriteSection(std::u16string_view Path, std::u16string_view Section,
                      std::span<const TIniChange> Changes) override {
    ++Writes;
    return Inner_->WriteSection(Path, Section, Changes);
  }
  std::optional<TFileStamp> Stamp(std::u16string_view Path) override {
    return IsHeld(Path) ? std::nullopt : Inner_->Stamp(Path);
  }

  std::u16string Held; // the end of its path; empty: none
  int Reads = 0;
  int Writes = 0;

private:
  bool IsHeld(std::u16string_view Path) const { return !Held.empty() && Path.ends_with(Held); }

  std::unique_ptr<TProfiles> Inner_;
};

class TTestScan {
public:
  explicit TTestScan(std::unique_ptr<TRegistryHost> Registry, const TMachine &Machine = {},
                     std::span<const TScannerRow> Scanners = {}, TSettingsPaths Settings = {})
      : Platform(MakeMemoryPlatform(std::move(Registry), Machine)) {
    auto Owned = std::make_unique<TTestMessages>();
    Messages = Owned.get();
    Platform.Messages = std::move(Owned);
    Problems = std::make_unique<TListViewManage>(*Platform.Messages);
    Engine = std::make_unique<TScanRegistry>(
        Platform, *Problems, std::move(Settings), Scanners,
        std::vector<std::u16string>(EnglishLabels.begin(), EnglishLabels.end()));
  }

  std::int32_t Scan(std::u16string_view Flags) {
    return Engine->StartScan(Window, Flags, Status, u"Scanning...", Progress);
  }

  // The flag text that switches this one area on.
  static std::u16string Only(int Area) {
    std::u16string Flags(AreaCount, u'0');
    Flags[static_cast<std::size_t>(Area) - 1] = u'1';
    return Flags;
  }

  static constexpr TWindowHandle Window = 77;

  TPlatform Platform;
  TTestMessages *Messages = nullptr; // the platform's
  TTestLabel Status;
  TTestProgress Progress;
  std::unique_ptr<TListViewManage> Problems;
  std::unique_ptr<TScanRegistry> Engine;
};

// A registry in memory with this content: export text without its header.
inline std::unique_ptr<TMemoryRegistry> MemoryRegistry(std::u16string_view Text,
                                                       TFaults *Faults = nullptr) {
  auto Registry = std::make_unique<TMemoryRegistry>(Faults);
  const auto Error = Registry->LoadText(
      ToUtf8(u"Windows Registry Editor Version 5.00\r\n" + std::u16string(Text)));
  if (Error)
    throw std::runtime_error("line " + std::to_string(Error->Line) + ": " + ToUtf8(Error->Message));
  return Registry;
}

} // namespace hivesweep

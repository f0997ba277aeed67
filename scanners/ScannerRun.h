// What every scanner with a walk of its own carries along: the engine, the group that
// it fills, and the count of what it found.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ScanRegistry.h"

namespace hivesweep {

// "parent\name".
std::u16string Below(std::u16string_view Parent, std::u16string_view Name);

class TScannerRun {
public:
  // Begins the scanner: moves the bar by one and shows the label.
  TScannerRun(TScanRegistry &Owner, TStatusLabel &StatusLabel, TProgressBar &Bar,
              TGroupItems &Group, int Area, TLabel Status);

  // To be asked before each entry: pumps messages; false when the scan has been stopped.
  bool GoesOn();

  // Reports a whole key that should not be there: its lines are the key and, where it
  // has one, its default value.
  void ReportKey(TLabel Label, std::u16string_view KeyPath, std::u16string_view Data,
                 bool HasBlankDefault = false);

  // Reports a value, by its name and stored text; Data is what the record says of it.
  void ReportValue(TLabel Label, std::u16string_view KeyPath, std::u16string_view Name,
                   std::u16string_view Data, std::u16string_view Stored);

  // Reports with lines of the caller's own.
  void Report(TFinding Finding);

  // The key below Parent, and where that can't be opened, nothing; a key that is there
  // and can't be read is noted.
  std::unique_ptr<TRegKey> Open(TRegKey &Parent, std::u16string_view ParentPath,
                                std::u16string_view Name);

  // The subkeys' names. A failure is noted.
  std::vector<std::u16string> SubkeyNames(TRegKey &Key, std::u16string_view KeyPath);

  // Gives Check(key, its path) each of the named keys below Parent that can be opened,
  // until the scan is stopped.
  template <typename TCheck>
  void ForEachKey(TRegKey &Parent, std::u16string_view ParentPath,
                  const std::vector<std::u16string> &Names, TCheck Check) {
    for (const std::u16string &Name : Names) {
      if (!GoesOn())
        return;
      if (MovesPerKey)
        ProgressBar.Advance();
      if (const auto Key = Open(Parent, ParentPath, Name))
        Check(*Key, Below(ParentPath, Name));
    }
  }

  // The registry certainly has no such key.
  bool NoSuchKey(TRegRoot Root, std::u16string_view Path);

  TScanRegistry &Engine;
  TProgressBar &ProgressBar;
  std::int32_t Found = 0;   // those that are held back included
  bool MovesPerKey = false; // the bar, in ForEachKey

private:
  TGroupItems &Group_;
  const int Area_;
};

} // namespace hivesweep

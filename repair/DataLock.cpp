#include "repair/DataLock.h"

#include <utility>

namespace hivesweep {

TError TDataLock::Take(const std::function<bool()> &GiveUp) {
  const std::u16string Folder = Path_.substr(0, Path_.find_last_of(u"\\/") + 1);
  if (TError Error = Platform_.Storage->CreateFolder(Folder))
    return About(Folder, std::move(Error));
  constexpr int Tries = 40;
  constexpr std::uint32_t Slice = 100; // milliseconds
  for (int Try = 1;; ++Try) {
    THolding Holding = Platform_.Storage->Hold(Path_);
    File_ = std::move(Holding.File);
    if (File_)
      return {};
    if (!Holding.IsHeldElsewhere)
      return About(Path_, std::move(Holding.Error));
    if (Try == Tries || GiveUp())
      return Holding.Holder.empty() ? TError{TErrorCode::DataInUse, {}}
                                    : TError{TErrorCode::DataInUseBy, std::move(Holding.Holder),
                                             Holding.HolderProcess};
    Platform_.Clock->Pause(Slice);
    Platform_.Messages->PumpAll();
  }
}

} // namespace hivesweep

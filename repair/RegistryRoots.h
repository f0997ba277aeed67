#pragma once

#include <array>
#include <memory>

#include "repair/Snapshot.h"

namespace hivesweep {

// The roots, each opened once.
class TRoots {
public:
  explicit TRoots(TRegistryHost &Host) : Host_(Host) {}

  TRegKey *Get(TRegRoot Root) {
    std::unique_ptr<TRegKey> &Key = Keys_[static_cast<std::size_t>(Root)];
    if (!Key)
      Key = Host_.Open(Root, u"", TRegAccess::Read).Key;
    return Key.get();
  }

  TRegOpened Open(const TKeyPlace &Place, TRegAccess Access) {
    TRegKey *const Root = Get(Place.Root);
    return Root ? Root->Open(Place.Path, Access) : TRegOpened();
  }
  TRegOpened OpenItself(const TKeyPlace &Place, TRegAccess Access) {
    TRegKey *const Root = Get(Place.Root);
    return Root ? Root->OpenItself(Place.Path, Access) : TRegOpened();
  }

private:
  TRegistryHost &Host_;
  std::array<std::unique_ptr<TRegKey>, 4> Keys_;
};

} // namespace hivesweep

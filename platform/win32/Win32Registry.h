// The live registry.
#pragma once

#include <memory>

#include "platform/Registry.h"

namespace hivesweep {

// Sees the registry as any program of its bitness does: a 32-bit one on a 64-bit
// system gets the 32-bit view, and HKEY_CLASSES_ROOT is the system's merged one.
// The host and its keys share buffers: one thread at a time.
class TWin32Registry final : public TRegistryHost {
public:
  TWin32Registry();
  ~TWin32Registry() override;

  TRegOpened Open(TRegRoot Root, std::u16string_view Path,
                  TRegAccess Access = TRegAccess::Read) override;

  struct TBuffers;

private:
  std::unique_ptr<TBuffers> Buffers_;
};

} // namespace hivesweep

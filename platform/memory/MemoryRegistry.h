// A registry in memory, loaded from the text that registry editors export.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "platform/Registry.h"
#include "platform/memory/Faults.h"
#include "platform/memory/TextError.h"

namespace hivesweep {

// Behaves as the live registry does: subkeys are sorted without regard to case,
// values stand in the order of their making, every name keeps the spelling in
// which it was first written. HKEY_CLASSES_ROOT is no tree of its own: it shows
// the user's software classes (HKEY_CURRENT_USER\Software\Classes) over the
// machine's (HKEY_LOCAL_MACHINE\Software\Classes), subkeys and values of both,
// the user's where both have one; what a text writes there goes to the machine's.
// It keeps security only as it was given. A link leads nowhere: only what opens it as itself finds
// it.
class TMemoryRegistry final : public TRegistryHost {
public:
  // Faults, when given, must live as long as the registry and its keys.
  explicit TMemoryRegistry(TFaults *Faults = nullptr);
  ~TMemoryRegistry() override;

  // Loads one more text over what is there, with its deletions ("[-key]",
  // "name"=-). Understood are the forms of version 5 and of REGEDIT4. Bytes are
  // decoded by their mark; a REGEDIT4 text is in the code page. A malformed text
  // changes nothing: the answer says where and what.
  std::optional<TTextError> LoadText(std::string_view Bytes);

  // From now on the key of this full path answers Denied. False when there is none.
  bool Deny(std::u16string_view KeyPath);

  // From now on the key of this full path is what Info says. False when there is none.
  bool SetInfo(std::u16string_view KeyPath, const TRegKeyInfo &Info);

  // From now on no new key gets a label.
  void RefuseLabels();

  TRegOpened Open(TRegRoot Root, std::u16string_view Path,
                  TRegAccess Access = TRegAccess::Read) override;

private:
  struct TTrees;
  std::unique_ptr<TTrees> Trees_;
  TFaults *Faults_;
};

} // namespace hivesweep

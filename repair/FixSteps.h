// What a fix is going to do, step by step: worked out once before it begins, for the
// record by which it can be undone, and followed when it happens.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "engine/ProblemList.h"
#include "platform/Registry.h"
#include "repair/UndoRecord.h"

namespace hivesweep {

// What removing one problem does, before it is known which key is open.
struct TFixStep {
  TFixAction Action = TFixAction::RemoveValue;
  // The root of exactly that name; nothing: the one before stays in force.
  std::optional<TRegRoot> Root;
  // From the first backslash of the problem's path on. A path without one has no root,
  // and is taken from the key that is open.
  std::u16string_view Path;
};

// ShortcutCaption is the type name of problems that are files: it decides for records that
// were made without an action. Nothing when the record does not tell for certain which file
// is to go: a file is deleted only by its full path, which must be the record's KeyPath too.
std::optional<TFixStep> StepOf(const TItemInfo &Item, std::u16string_view ShortcutCaption);

// Follows the one root and the one open key of a fix, as TRegistry keeps them.
class TFixCursor {
public:
  // Takes the step's root; the key that its path names.
  TKeyPlace Aim(const TFixStep &Step);

  // The key of the last Aim has been opened.
  void Opened(TKeyPlace Place) { Open_ = std::move(Place); }

  // The key that a value is deleted from: when the last one could not be opened, the
  // one that is still open from a step before. Nothing when none is.
  const std::optional<TKeyPlace> &OpenKey() const { return Open_; }

private:
  TRegRoot Root_ = TRegRoot::CurrentUser;
  std::optional<TKeyPlace> Open_;
};

// Tells the steps of a fix in its order: groups as they stand, in each the problems from
// the last to the first. Those that have no step are passed over. GoesOn is asked before
// each; false ends it.
void ForEachStep(const TListViewManage &Problems, std::u16string_view ShortcutCaption,
                 const TGoesOn &GoesOn,
                 const std::function<void(const TItemInfo &, const TFixStep &)> &Take);

// Reads all that the steps name, and marks what goes. GoesOn is asked again and again, and
// may handle messages: once it answers false the record is of no use.
TUndoRecord RecordFix(TPlatform &Platform, const TListViewManage &Problems,
                      std::u16string_view ShortcutCaption, const TGoesOn &GoesOn);

} // namespace hivesweep

#include "ui/LastResort.h"

#include <exception>

#include "controls/MessageBox.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// In English, as what went wrong may have been anything, and the languages are a part of it.
void Tell(const std::u16string &What) {
  ShowMessage(nullptr, u"Hivesweep has to end because of an error:\n\n" + What, u"Hivesweep",
              TMessageKind::Warning);
}

} // namespace

int TellErrors(const std::function<int()> &Program) {
  try {
    return Program();
  } catch (const std::exception &Error) {
    Tell(FromUtf8(Error.what()));
  } catch (...) {
    Tell(u"unknown");
  }
  return 1;
}

} // namespace hivesweep

#include "engine/IgnoreFile.h"

namespace hivesweep {

bool TIgnoreFile::Contains(std::u16string_view KeyPath) {
  if (Path_.empty())
    return false;
  // The stamp is taken before the content: a change in between is then seen the
  // next time.
  const std::optional<TFileStamp> Stamp = Profiles_.Stamp(Path_);
  if (!Stamp || Stamp != Stamp_) {
    Keys_.clear();
    for (std::u16string &Name : Profiles_.KeyNames(Path_, u"Registry"))
      Keys_.insert(std::move(Name));
    Stamp_ = Stamp;
  }
  return Keys_.contains(std::u16string(KeyPath));
}

} // namespace hivesweep

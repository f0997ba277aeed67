#include "engine/IgnoreFile.h"

namespace hivesweep {

bool TIgnoreFile::Contains(std::u16string_view KeyPath) {
  if (Path_.empty())
    return false;
  // The stamp is taken before the content: a change in between is then seen the
  // next time.
  const std::optional<TFileStamp> Stamp = Profiles_.Stamp(Path_);
  if (!Stamp || Stamp != Stamp_) {
    TIniSection Section;
    Failure_ = Profiles_.ReadSection(Path_, u"Registry", Section);
    Stamp_ = Failure_ ? std::nullopt : Stamp;
    if (!Failure_) {
      Keys_.clear();
      for (const TIniSection::TLine &Line : Section.Lines())
        if (Line.Text)
          Keys_.insert(Line.Name);
    }
  }
  return Keys_.contains(std::u16string(KeyPath));
}

} // namespace hivesweep

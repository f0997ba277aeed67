#include "ui/Wording.h"

namespace hivesweep {

std::u16string Worded(const TLanguage &Language, const TNotRemoved &Problem) {
  switch (Problem.Why) {
  case TRemoval::GoneAlready:
    return Language.TextOr(LanguageText(u"WhyGone"));
  case TRemoval::Denied:
    return Language.TextOr(LanguageText(u"WhyDenied"));
  case TRemoval::NotRecorded:
    return Language.TextOr(LanguageText(u"WhyNotRecorded"));
  case TRemoval::NotRemakable:
    return Language.TextOr(LanguageText(u"WhyNotRemakable"));
  case TRemoval::Ignored:
    return Language.TextOr(LanguageText(u"WhyIgnored"));
  case TRemoval::ListUnread:
    return Language.TextOr(LanguageText(u"WhyListUnread"));
  case TRemoval::FromOtherKey:
    return Language.TextOr(LanguageText(u"WhyOtherKey")) + u" " + Problem.OtherKey;
  case TRemoval::Removed:
  case TRemoval::Failed:
    break;
  }
  return Language.TextOr(LanguageText(u"WhyFailed"));
}

std::u16string Worded(const TLanguage &Language, const TPutFailure &Failure) {
  return Language.TextOr(Failure.Status == TRegStatus::Denied ? LanguageText(u"WhyDenied")
                                                              : LanguageText(u"WhyFailed"));
}

} // namespace hivesweep

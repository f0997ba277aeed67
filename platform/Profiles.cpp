#include "platform/Profiles.h"

#include "platform/Text.h"

namespace hivesweep {

bool IsIniText(std::u16string_view Text) {
  return Text.find_first_of(std::u16string_view(u"\r\n\0", 3)) == std::u16string_view::npos;
}

int ReadInteger(TProfiles &Profiles, std::u16string_view Path, std::u16string_view Section,
                std::u16string_view Key, int Default) {
  const std::u16string Stored = Profiles.ReadString(Path, Section, Key, u"");
  std::u16string_view Digits = Trim(Stored);
  const bool Negative = Digits.starts_with(u'-');
  if (Negative)
    Digits.remove_prefix(1);
  // Nine digits always fit; no switch and no count of fixed problems has more.
  if (Digits.empty() || Digits.size() > 9)
    return Default;
  int Number = 0;
  for (const char16_t Digit : Digits) {
    if (Digit < u'0' || Digit > u'9')
      return Default;
    Number = Number * 10 + (Digit - u'0');
  }
  return Negative ? -Number : Number;
}

} // namespace hivesweep

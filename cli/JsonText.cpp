#include "cli/JsonText.h"

namespace hivesweep {

namespace {

// The library writes the characters from U+007F to U+009F as they are, which JSON
// allows. Some terminals take them for commands.
std::string WithEscapedControls(const std::string &Json) {
  static constexpr char Digits[] = "0123456789abcdef";
  std::string Out;
  Out.reserve(Json.size());
  for (std::size_t Index = 0; Index < Json.size(); ++Index) {
    unsigned char Byte = static_cast<unsigned char>(Json[Index]);
    const bool IsHigh = Byte == 0xC2 && Index + 1 < Json.size() &&
                        static_cast<unsigned char>(Json[Index + 1]) < 0xA0;
    if (Byte != 0x7F && !IsHigh) {
      Out.push_back(Json[Index]);
      continue;
    }
    if (IsHigh)
      Byte = static_cast<unsigned char>(Json[++Index]);
    Out.append("\\u00").append({Digits[Byte >> 4], Digits[Byte & 15]});
  }
  return Out;
}

} // namespace

std::string JsonLine(const TJson &Value) {
  return WithEscapedControls(Value.dump(-1, ' ', false, TJson::error_handler_t::replace));
}

} // namespace hivesweep

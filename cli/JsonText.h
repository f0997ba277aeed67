// The form in which the command line writes JSON.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace hivesweep {

using TJson = nlohmann::ordered_json;

// The value on one line, UTF-8. Nothing in it can make a terminal do anything.
std::string JsonLine(const TJson &Value);

// Appends "key":[...], one element a line: long lists stay readable, and line tools can
// work on them.
template <typename TElements, typename TMake>
void AddJsonArray(const char *Key, const TElements &Elements, TMake Make, std::string &Out) {
  Out.append("\"").append(Key).append("\":[");
  const char *Break = "\n";
  for (const auto &Element : Elements) {
    Out.append(Break).append(JsonLine(Make(Element)));
    Break = ",\n";
  }
  Out.append("]");
}

} // namespace hivesweep

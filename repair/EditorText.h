// A registry text as registry editors read it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "repair/Snapshot.h"

namespace hivesweep {

// A value that an editor may set.
struct TEditorValue {
  TKeyPlace Key;
  std::u16string Name;
  TSavedValue Value;
  std::size_t Line = 0; // in which it ends
  bool IsFirst = true;  // of the readings of that line
};

// What registry editors do with a text. They are lenient, each in its own way: whatever one
// of them may do is in here.
struct TEditorText {
  // All keys that an editor may make, or set or delete values of.
  TScope Scope;

  // The values whose data is known. An editor that reads a backslash otherwise than another
  // sets another value: both are here.
  std::vector<TEditorValue> Values;

  // The first line that deletes something, or of which it is not certain what every editor
  // does with it; 0 when there is none. The scope may lack a key then, and the text must not
  // be given to an editor.
  std::size_t DoubtfulLine = 0;
};

// Reads UTF-16 with a mark, or the code page. A text in another encoding, and one without a
// header, is doubtful in its first line.
TEditorText ReadAsEditor(std::string_view Bytes);

} // namespace hivesweep

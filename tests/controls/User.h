// What a user does to a window, and what the user sees: real messages in the queue.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/Form.h"

namespace hivesweep {

// Presses and lets go the left button in the middle of a control, or at a place in the
// window that shows it, and lets the program react.
void Press(const TControl &Control);
void PressAt(const TControl &Control, TPoint Point);
// The same, for whoever handles messages next: nothing is pumped.
void PostClick(const TControl &Control);
// The press alone; nothing is pumped.
void PostPress(const TControl &Control, TPoint Point);

// A key, to the control that has the focus; nothing is pumped by PostKey.
void PostKey(int Key);
void Type(int Key);
// A letter together with Alt.
void TypeWithAlt(char16_t Letter);

// Lets the program work until that is so; false when it was not so after ten seconds.
bool WaitUntil(const std::function<bool()> &Done);

// Shows a form over the one above until it is closed; false when a test had to close it
// after ten seconds.
bool ShowModalForm(TForm &Form);

// Presses a button (IDYES, ...) of the next message box that comes up, and then tells
// its text. With several buttons, one of each box that follows.
class TBoxAnswer {
public:
  explicit TBoxAnswer(int Button) : TBoxAnswer(std::vector<int>{Button}) {}
  explicit TBoxAnswer(std::vector<int> Buttons);
  TBoxAnswer(const TBoxAnswer &) = delete;
  TBoxAnswer &operator=(const TBoxAnswer &) = delete;
  ~TBoxAnswer();
  const std::u16string &Text() const; // of the last one
  const std::vector<std::u16string> &Texts() const;
};

// The colour of a pixel of what the control shows, 0x00BBGGRR.
TColor PixelOf(const TControl &Control, TPoint Point);

// How many objects of the system this program holds: drawing objects, and windows with
// menus. Comparable only with a count made just before.
struct TObjectCount {
  int Drawing;
  int Windows;
};
TObjectCount CountObjects();

} // namespace hivesweep

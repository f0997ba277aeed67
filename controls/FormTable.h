// A form, described: one row for each of its components.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "controls/Canvas.h"
#include "controls/Component.h"

namespace hivesweep {

enum class TKind {
  Label,
  LabelNote,
  Image,
  ImageNote,
  Button,
  CheckBox,
  GroupBox,
  Panel,
  ListView,
  ImageProgress,
  StatusBar,
  ToolBar,
  MainMenu,
  PopupMenu,
  MenuItem, // an entry of a menu or a tool bar, or of another entry
  ImageList,
  Timer,
};

// Which of the form's handlers serves an event.
struct TBinding {
  TEvent Event;
  std::u16string Handler;
};

// A list's column or a status bar's panel; the width in units.
struct TColumn {
  std::u16string Caption;
  int Width = 100;
};

// Places are in units of 1/96 inch, within the parent; of an image list, that of a picture
// in the room that it is given. What a kind does not have, it ignores.
struct TComponentRow {
  std::u16string Name;
  TKind Kind = TKind::Label;
  TRect Place{};
  std::u16string Caption{};
  std::u16string Parent{}; // a row above; empty: the form
  std::vector<TBinding> On{};
  TAnchors Anchors{};
  int Tag = 0;
  std::u16string Hint{};
  bool Visible = true;
  bool Enabled = true;

  TFontRole Font = TFontRole::Body;
  TColorRole Color = TColorRole::Text;
  std::optional<TColorRole> Ground{}; // the parent's, unless given
  TAlign Align = TAlign::Left;
  bool Wrapped = false;  // label: broken into lines, and as high as they need
  bool Ellipsis = false; // label: a text of any length, shortened to its place
  bool Link = false;     // label: underlined, with a hand
  bool Default = false;  // button: pressed by Enter
  bool Cancel = false;   // button: pressed by Escape and by the window's close box
  bool Bordered = false; // panel: with a frame

  bool Checks = false;                 // list: with check boxes
  bool Virtual = false;                // list: asks for its rows
  std::vector<TColumn> Columns{};      // list; status bar: its panels
  std::u16string Images{};             // an image list above: of a list, image, note, bar
  int Image = -1;                      // image, note, menu item
  std::u16string Popup{};              // a pop-up menu above: of a list
  std::vector<std::u16string> Items{}; // label note
  int Interval = 0;                    // timer: milliseconds
};

struct TFormTable {
  std::u16string Name{};
  std::u16string Caption{};
  TSize Size{};                 // of the inside, in units: the design, and the least size
  std::optional<TSize> Start{}; // the size at first, when larger
  bool Resizable = false;
  bool Dialog = true; // without the boxes for minimising and maximising
  std::vector<TBinding> On{};
  std::vector<TComponentRow> Rows{};
};

// A handler under the name by which a table knows it.
using TNamedHandler = std::pair<std::u16string, THandler>;

template <typename TOwn, typename... TArguments>
TNamedHandler Handler(std::u16string Name, TOwn *Object, void (TOwn::*Member)(TArguments...)) {
  return {std::move(Name), THandler([Object, Member](TArguments... Arguments) {
            (Object->*Member)(std::forward<TArguments>(Arguments)...);
          })};
}

} // namespace hivesweep

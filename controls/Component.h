// What every part of a form is: a named thing that a form owns, with a tag and with
// handlers for what happens to it.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <variant>

namespace hivesweep {

class TComponent;
class TForm;
class TListView;
struct TListCells;
struct TRowLook;

enum class TEvent {
  Click,
  MouseDown,   // a press of the mouse, or of the space bar, has taken effect
  MouseUp,     // the same, when it is let go
  Timer,       // a timer's interval has passed
  Popup,       // a pop-up menu is about to open
  Create,      // a form's components are all there
  Show,        // a form is about to be seen
  Close,       // a form has been closed
  Data,        // a virtual list asks for a row
  ColumnClick, // the header of a list's column was pressed
  RowLook,     // a list asks for a row's colours
  Copy,        // the keys that copy were pressed in a list
};

// What handles an event. Sender is the component to which it happened, so that one
// handler can serve a family.
using TNotify = std::function<void(TComponent &Sender)>;
using TDataHandler = std::function<void(TListView &Sender, int Row, TListCells &Cells)>;
using TColumnHandler = std::function<void(TListView &Sender, int Column)>;
using TRowLookHandler = std::function<void(TListView &Sender, int Row, TRowLook &Look)>;
using THandler = std::variant<TNotify, TDataHandler, TColumnHandler, TRowLookHandler>;

// Whether that kind of handler can serve the event.
bool Serves(const THandler &Handler, TEvent Event);

// Sees one text of a component and may change it. Property is the text's name within
// the component: "Caption", "Hint", "Columns[0].Caption", "Panels[1].Text", ...
using TTextVisitor = std::function<void(std::u16string_view Property, std::u16string &Text)>;

class TComponent {
public:
  // A form owns itself.
  TComponent(TForm *Owner, std::u16string Name) : Owner_(Owner), Name_(std::move(Name)) {}
  TComponent(const TComponent &) = delete;
  TComponent &operator=(const TComponent &) = delete;
  virtual ~TComponent() = default;

  TForm *Owner() const { return Owner_; }
  const std::u16string &Name() const { return Name_; }

  // Free for the program's use.
  int Tag = 0;

  // Replaces an earlier handler of the event. The handler must serve it.
  void Bind(TEvent Event, THandler Handler);
  // The kind of events that this kind of component can have.
  virtual bool Knows(TEvent Event) const;

  // Calls the handler, when there is one, and tells whether there was.
  bool Fire(TEvent Event);
  template <typename THandlerKind, typename... TArguments>
  bool Call(TEvent Event, TArguments &&...Arguments) {
    const auto Found = Handlers_.find(Event);
    if (Found == Handlers_.end())
      return false;
    std::get<THandlerKind>(Found->second)(std::forward<TArguments>(Arguments)...);
    return true;
  }
  bool Handles(TEvent Event) const { return Handlers_.contains(Event); }

  // Shows the visitor every text that a user can read here and that a program writes
  // into its forms, and takes on what it changes.
  virtual void VisitTexts(const TTextVisitor &Visit);

private:
  TForm *Owner_;
  std::u16string Name_;
  std::map<TEvent, THandler> Handlers_;
};

} // namespace hivesweep

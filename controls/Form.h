// A window of the program: owns its components, knows them by name, lays them out,
// and leads the keyboard through them.
#pragma once

#include <memory>
#include <stdexcept>

#include "controls/FormTable.h"
#include "controls/SystemTypes.h"
#include "controls/WindowControl.h"

namespace hivesweep {

class TButton;
class THints;
class TMenuItem;
class TTimer;

// A mistake in a form's table, or a name that no component has.
class TFormError : public std::logic_error {
public:
  TFormError(std::u16string_view Form, std::u16string_view Component, std::string_view What);
};

class TForm : public TWindowControl {
public:
  // Makes the window, not yet seen, with all its components. Above: the form that it
  // opens over; null for the main one. Throws TFormError for a wrong name in the table:
  // one given twice, or a parent, list, menu or handler that is not there, or a handler
  // that the table does not use. Look must outlive the form.
  TForm(TLook &Look, TForm *Above, const TFormTable &Table,
        const std::vector<TNamedHandler> &Handlers);
  ~TForm() override;

  TLook &FormLook() const { return Look_; }
  TForm *Above() const { return Above_; }
  HWND__ *OwnerWindow() const { return Above_ ? Above_->Handle() : nullptr; }

  // ---- components -------------------------------------------------------------
  // In the order of their making.
  const std::vector<std::unique_ptr<TComponent>> &Components() const { return Components_; }
  // Null when there is none.
  TComponent *FindComponent(std::u16string_view Name) const;
  // Throws TFormError when there is none, or one of another kind.
  template <typename T> T &Find(std::u16string_view Name) const {
    if (auto *Found = dynamic_cast<T *>(FindComponent(Name)))
      return *Found;
    throw TFormError(this->Name(), Name, "no such component of this kind");
  }

  bool Knows(TEvent Event) const override;

  // ---- life ---------------------------------------------------------------------
  void Show();
  // Shows it over the form above, which takes no input meanwhile, until it is closed.
  // False when the program is to end.
  bool ShowModal();
  // Ends it: hides it, and tells the handler of TEvent::Close. A modal form goes only when
  // all its handlers have come to their end, so that one that pumps messages meanwhile
  // never finds the form above free for another start.
  // A form that the system asks to close while a modal one is over it has that one closed
  // before.
  void Close();

  // ---- layout ---------------------------------------------------------------------
  // Lays out all components, at once, or when the last TLayoutPause has ended.
  void RequestLayout();
  void SetClientSize(const TSize &Pixels);
  // The same, but no larger than the screen has room for the window, as far as the least
  // size allows.
  void SetSizeOnScreen(const TSize &Pixels);
  TSize LeastClientSize() const { return Least_; }

  // A form that is not seen yet shows it there when it comes up.
  void GiveFocus(const TWindowControl &Control);
  // Leads the focus to the next control.
  void FocusNext();
  // Enter, Escape, Tab, arrows and access keys; true when the message was one.
  bool TranslateKey(tagMSG *Message);

  void VisitTexts(const TTextVisitor &Visit) override;
  TAnswer Receive(const TMessage &Message) override;

  // ---- for components ---------------------------------------------------------------
  // A question of the windows with hints, and it is answered.
  bool AnswersHint(const TMessage &Message);
  // A number for a menu item, by which the system names it.
  unsigned AddCommand(TMenuItem &Item);
  void RunCommand(unsigned Number);
  void SetMenu(HMENU__ *Menu);

private:
  friend class TLayoutPause;
  friend class TFormBuilder;

  void MakeFormWindow(const TFormTable &Table);
  void Arrange();
  TWindowControl *FocusedControl() const;
  TSize ClientSize() const;
  TSize FrameSize() const; // of what is around the client area, both sides together
  void SetHidden();
  void ReloadColors();

  TLook &Look_;
  TForm *Above_;
  TForm *Over_ = nullptr; // the modal form that is open over this one
  std::vector<std::unique_ptr<TComponent>> Components_;
  std::vector<TMenuItem *> Commands_;
  std::unique_ptr<THints> Hints_;
  TButton *Default_ = nullptr;
  TButton *Cancel_ = nullptr;
  HWND__ *LastFocus_ = nullptr;
  TSize Least_;
  TSize Frame_;    // FrameSize when the window was last seen at its size
  int Pauses_ = 1; // until it is built
  bool LayoutWanted_ = false;
  bool Modal_ = false;
  bool Closing_ = false;
  bool CloseWaits_ = false; // asked for while Over_ was there
  bool Dialog_;
  bool Arranging_ = false;
};

// While it lives the form is not laid out; then once, if need be.
class TLayoutPause {
public:
  explicit TLayoutPause(TForm &Form) : Form_(Form) { ++Form_.Pauses_; }
  TLayoutPause(const TLayoutPause &) = delete;
  TLayoutPause &operator=(const TLayoutPause &) = delete;
  ~TLayoutPause();

private:
  TForm &Form_;
};

} // namespace hivesweep

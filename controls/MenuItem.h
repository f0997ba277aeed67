// Entries of menus and bars. An entry that has entries opens a menu; the caption "-"
// makes a line.
#pragma once

#include <string>
#include <vector>

#include "controls/Component.h"
#include "controls/SystemTypes.h"
#include "controls/WindowControl.h"

namespace hivesweep {

class TImageList;
class TMenuItem;

// What entries hang on: a menu, a bar, or another entry.
class TMenuBranch {
public:
  TMenuBranch() = default;
  TMenuBranch(const TMenuBranch &) = delete;
  TMenuBranch &operator=(const TMenuBranch &) = delete;
  virtual ~TMenuBranch() = default;

  const std::vector<TMenuItem *> &Items() const { return Items_; }
  void AddItem(TMenuItem &Item);
  // An entry, somewhere below, has changed.
  virtual void ItemsChanged() {}

protected:
  std::vector<TMenuItem *> Items_;
};

class TMenuItem : public TComponent, public TMenuBranch {
public:
  TMenuItem(TForm *Owner, std::u16string Name, TMenuBranch &Branch, std::u16string Caption);

  const std::u16string &Caption() const { return Caption_; }
  void SetCaption(std::u16string_view Caption);
  bool Enabled() const { return Enabled_; }
  void SetEnabled(bool Enabled);
  bool Visible() const { return Visible_; }
  void SetVisible(bool Visible);
  bool Checked() const { return Checked_; }
  void SetChecked(bool Checked);
  bool IsLine() const { return Caption_ == u"-"; }

  // Images is borrowed.
  void SetImage(const TImageList *Images, int Number);
  const TImageList *Images() const { return Images_; }
  int Image() const { return Image_; }

  // As if the user had chosen it; nothing for one that is disabled.
  void Click();

  void ItemsChanged() override { Branch_.ItemsChanged(); }
  void VisitTexts(const TTextVisitor &Visit) override;

  unsigned Command() const { return Command_; }
  // The system asks for the place, and the drawing, of an entry's icon.
  static TAnswer DrawIcon(TForm &Form, const TMessage &Message);

private:
  TMenuBranch &Branch_;
  std::u16string Caption_;
  const TImageList *Images_ = nullptr;
  int Image_ = -1;
  bool Enabled_ = true;
  bool Visible_ = true;
  bool Checked_ = false;
  unsigned Command_;
};

// A menu of the system, with the visible entries of a branch; the caller destroys it.
// Bar: the entries of a form's menu bar, without icons.
HMENU__ *MakeSystemMenu(const TMenuBranch &Branch, bool Bar);

} // namespace hivesweep

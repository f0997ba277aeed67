#include "controls/FormBuilder.h"

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/Image.h"
#include "controls/ImageList.h"
#include "controls/ImageNote.h"
#include "controls/ImageProgress.h"
#include "controls/Label.h"
#include "controls/LabelNote.h"
#include "controls/ListView.h"
#include "controls/Menus.h"
#include "controls/Panel.h"
#include "controls/StatusBar.h"
#include "controls/Timer.h"
#include "controls/ToolBar.h"
#include "platform/Text.h"

namespace hivesweep {

TFormBuilder::TFormBuilder(TForm &Form, const std::vector<TNamedHandler> &Handlers) : Form_(Form) {
  for (const TNamedHandler &Each : Handlers) {
    if (!Handlers_.insert(Each).second)
      throw TFormError(Form.Name(), Each.first, "two handlers of this name");
    Unused_.insert(Each.first);
  }
}

void TFormBuilder::Build(const TFormTable &Table) {
  Bind(Form_, Table.On);
  for (const TComponentRow &Row : Table.Rows)
    BuildRow(Row);
  if (!Unused_.empty())
    throw TFormError(Form_.Name(), *Unused_.begin(), "no component has this handler");
  // The entries come after their menu.
  for (const auto &Component : Form_.Components())
    if (auto *Menu = dynamic_cast<TMainMenu *>(Component.get()))
      Menu->Attach();
}

void TFormBuilder::BuildRow(const TComponentRow &Row) {
  if (Row.Name.empty() || Form_.FindComponent(Row.Name))
    throw TFormError(Form_.Name(), Row.Name, "a name that is empty or already taken");
  Form_.Components_.push_back(Make(Row));
  TComponent &Made = *Form_.Components_.back();
  Made.Tag = Row.Tag;
  Bind(Made, Row.On);
  if (auto *Timer = dynamic_cast<TTimer *>(&Made))
    Timer->SetEnabled(Row.Enabled);
  if (auto *Control = dynamic_cast<TControl *>(&Made))
    Dress(Row, *Control);
}

template <typename T> T *TFormBuilder::Named(const TComponentRow &Row, const std::u16string &Name) {
  if (Name.empty())
    return nullptr;
  if (auto *Found = dynamic_cast<T *>(Form_.FindComponent(Name)))
    return Found;
  throw TFormError(Form_.Name(), Row.Name,
                   "there is no fitting " + ToUtf8(Name) + " above it in the table");
}

TWindowControl *TFormBuilder::ParentOf(const TComponentRow &Row) {
  auto *Parent = Named<TWindowControl>(Row, Row.Parent);
  return Parent ? Parent : &Form_;
}

void TFormBuilder::Bind(TComponent &Component, const std::vector<TBinding> &Bindings) {
  for (const TBinding &Binding : Bindings) {
    const auto Found = Handlers_.find(Binding.Handler);
    if (Found == Handlers_.end())
      throw TFormError(Form_.Name(), Component.Name(),
                       "there is no handler " + ToUtf8(Binding.Handler));
    if (!Component.Knows(Binding.Event) || !Serves(Found->second, Binding.Event))
      throw TFormError(Form_.Name(), Component.Name(),
                       "this event cannot be served by " + ToUtf8(Binding.Handler));
    Component.Bind(Binding.Event, Found->second);
    Unused_.erase(Binding.Handler);
  }
}

std::unique_ptr<TComponent> TFormBuilder::Make(const TComponentRow &Row) {
  switch (Row.Kind) {
  case TKind::MenuItem:
    return MakeMenuItem(Row);
  case TKind::MainMenu:
    return std::make_unique<TMainMenu>(&Form_, Row.Name);
  case TKind::PopupMenu:
    return std::make_unique<TPopupMenu>(&Form_, Row.Name);
  case TKind::ImageList:
    return std::make_unique<TImageList>(&Form_, Row.Name, Row.Place.Width, Row.Place.Left);
  case TKind::Timer:
    return std::make_unique<TTimer>(&Form_, Row.Name, Row.Interval);
  default:
    return MakeControl(Row);
  }
}

std::unique_ptr<TControl> TFormBuilder::MakeControl(const TComponentRow &Row) {
  TWindowControl *Parent = ParentOf(Row);
  switch (Row.Kind) {
  case TKind::LabelNote: {
    auto Note = std::make_unique<TLabelNote>(&Form_, Parent, Row.Name);
    Note->SetItems(Row.Items);
    return Note;
  }
  case TKind::Image: {
    auto Image = std::make_unique<TImage>(&Form_, Parent, Row.Name);
    Image->SetImage(Named<TImageList>(Row, Row.Images), Row.Image);
    return Image;
  }
  case TKind::ImageNote:
    return std::make_unique<TImageNote>(&Form_, Parent, Row.Name);
  case TKind::Button:
    return MakeButton(Row);
  case TKind::CheckBox:
    return std::make_unique<TCheckBox>(&Form_, Parent, Row.Name);
  case TKind::GroupBox:
    return std::make_unique<TGroupBox>(&Form_, Parent, Row.Name);
  case TKind::Panel: {
    auto Panel = std::make_unique<TPanel>(&Form_, Parent, Row.Name);
    Panel->SetBordered(Row.Bordered);
    return Panel;
  }
  case TKind::ListView:
    return MakeList(Row);
  case TKind::ImageProgress:
    return std::make_unique<TImageProgress>(&Form_, Parent, Row.Name);
  case TKind::StatusBar:
    return std::make_unique<TStatusBar>(&Form_, Parent, Row.Name, Row.Columns);
  case TKind::ToolBar:
    return std::make_unique<TToolBar>(&Form_, Parent, Row.Name);
  default:
    return MakeLabel(Row);
  }
}

std::unique_ptr<TControl> TFormBuilder::MakeLabel(const TComponentRow &Row) {
  auto Label = std::make_unique<TLabel>(&Form_, ParentOf(Row), Row.Name);
  Label->SetWrapped(Row.Wrapped);
  Label->SetEllipsis(Row.Ellipsis);
  Label->SetLink(Row.Link);
  Label->SetAlign(Row.Align);
  return Label;
}

std::unique_ptr<TControl> TFormBuilder::MakeButton(const TComponentRow &Row) {
  auto Button = std::make_unique<TButton>(&Form_, ParentOf(Row), Row.Name);
  if (Row.Default)
    Form_.Default_ = Button.get();
  if (Row.Cancel)
    Form_.Cancel_ = Button.get();
  Button->SetDefault(Row.Default);
  return Button;
}

std::unique_ptr<TControl> TFormBuilder::MakeList(const TComponentRow &Row) {
  auto List = std::make_unique<TListView>(&Form_, ParentOf(Row), Row.Name, Row.Virtual, Row.Checks);
  for (const TColumn &Column : Row.Columns)
    List->AddColumn(Column);
  List->SetImages(Named<TImageList>(Row, Row.Images));
  List->SetPopup(Named<TPopupMenu>(Row, Row.Popup));
  return List;
}

std::unique_ptr<TComponent> TFormBuilder::MakeMenuItem(const TComponentRow &Row) {
  auto *Branch = Named<TMenuBranch>(Row, Row.Parent);
  if (!Branch)
    throw TFormError(Form_.Name(), Row.Name, "an entry without a menu");
  auto Item = std::make_unique<TMenuItem>(&Form_, Row.Name, *Branch, Row.Caption);
  Item->SetImage(Named<TImageList>(Row, Row.Images), Row.Image);
  Item->SetEnabled(Row.Enabled);
  Item->SetVisible(Row.Visible);
  return Item;
}

void TFormBuilder::Dress(const TComponentRow &Row, TControl &Control) {
  Control.SetDesign(Row.Place, Row.Anchors);
  Control.SetText(Row.Caption);
  Control.SetHint(Row.Hint);
  Control.SetFont(Row.Font);
  Control.SetColor(Row.Color);
  if (Row.Ground)
    Control.SetGround(*Row.Ground);
  if (!Row.Enabled)
    Control.SetEnabled(false);
  if (!Row.Visible)
    Control.SetVisible(false);
}

} // namespace hivesweep

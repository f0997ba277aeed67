#include "controls/MenuItem.h"

#include "controls/Form.h"
#include "controls/ImageList.h"
#include "controls/Win32.h"

namespace hivesweep {

namespace {
constexpr int GapUnits = 4; // between an entry's icon and its caption
}

void TMenuBranch::AddItem(TMenuItem &Item) { Items_.push_back(&Item); }

TMenuItem::TMenuItem(TForm *Owner, std::u16string Name, TMenuBranch &Branch, std::u16string Caption)
    : TComponent(Owner, std::move(Name)), Branch_(Branch), Caption_(std::move(Caption)),
      Command_(Owner->AddCommand(*this)) {
  Branch_.AddItem(*this);
}

void TMenuItem::SetCaption(std::u16string_view Caption) {
  if (Caption == Caption_)
    return;
  Caption_ = Caption;
  ItemsChanged();
}

void TMenuItem::SetEnabled(bool Enabled) {
  Enabled_ = Enabled;
  ItemsChanged();
}

void TMenuItem::SetVisible(bool Visible) {
  Visible_ = Visible;
  ItemsChanged();
}

void TMenuItem::SetChecked(bool Checked) {
  Checked_ = Checked;
  ItemsChanged();
}

void TMenuItem::SetImage(const TImageList *Images, int Number) {
  Images_ = Images;
  Image_ = Number;
  ItemsChanged();
}

void TMenuItem::Click() {
  if (Enabled_)
    Fire(TEvent::Click);
}

void TMenuItem::VisitTexts(const TTextVisitor &Visit) {
  if (IsLine())
    return;
  std::u16string Caption = Caption_;
  Visit(u"Caption", Caption);
  SetCaption(Caption);
}

TAnswer TMenuItem::DrawIcon(TForm &Form, const TMessage &Message) {
  if (Message.Id == WM_MEASUREITEM) {
    auto &Asked = *reinterpret_cast<MEASUREITEMSTRUCT *>(Message.LParam);
    const auto *Item = reinterpret_cast<const TMenuItem *>(Asked.itemData);
    if (Asked.CtlType != ODT_MENU || !Item || !Item->Images_)
      return std::nullopt;
    const auto Extent = static_cast<UINT>(Item->Images_->Extent());
    Asked.itemWidth = Extent + static_cast<UINT>(Form.Look().Scale(GapUnits));
    Asked.itemHeight = Extent;
    return 1;
  }
  const auto &Asked = *reinterpret_cast<const DRAWITEMSTRUCT *>(Message.LParam);
  const auto *Item = reinterpret_cast<const TMenuItem *>(Asked.itemData);
  if (Asked.CtlType != ODT_MENU || !Item || !Item->Images_)
    return std::nullopt;
  TCanvas Canvas(Asked.hDC, Form.Look());
  TRect Place = FromSystem(Asked.rcItem);
  Place.Width = Item->Images_->Extent();
  Item->Images_->Draw(Canvas, Place, Item->Image_);
  return 1;
}

HMENU__ *MakeSystemMenu(const TMenuBranch &Branch, bool Bar) {
  const HMENU Menu = Bar ? CreateMenu() : CreatePopupMenu();
  UINT Position = 0;
  for (const TMenuItem *Item : Branch.Items()) {
    if (!Item->Visible())
      continue;
    MENUITEMINFOW Info{};
    Info.cbSize = sizeof Info;
    Info.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_DATA;
    Info.fType = Item->IsLine() ? MFT_SEPARATOR : MFT_STRING;
    Info.fState = static_cast<UINT>((Item->Enabled() ? MFS_ENABLED : MFS_DISABLED) |
                                    (Item->Checked() ? MFS_CHECKED : MFS_UNCHECKED));
    Info.wID = Item->Command();
    Info.dwItemData = reinterpret_cast<ULONG_PTR>(Item);
    std::u16string Caption = Item->Caption();
    if (!Item->IsLine()) {
      Info.fMask |= MIIM_STRING;
      Info.dwTypeData = Wide(Caption.data());
    }
    if (!Item->Items().empty()) {
      Info.fMask |= MIIM_SUBMENU;
      Info.hSubMenu = MakeSystemMenu(*Item, false);
    }
    if (!Bar && Item->Images() && Item->Image() >= 0) {
      Info.fMask |= MIIM_BITMAP;
      Info.hbmpItem = HBMMENU_CALLBACK;
    }
    InsertMenuItemW(Menu, Position++, TRUE, &Info);
  }
  return Menu;
}

} // namespace hivesweep

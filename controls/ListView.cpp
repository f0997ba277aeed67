#include "controls/ListView.h"

#include <algorithm>

#include "controls/CheckBox.h"
#include "controls/Form.h"
#include "controls/ImageList.h"
#include "controls/Menus.h"
#include "controls/Win32.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr int CheckUnits = 16;
constexpr int HeaderAirUnits = 20; // around a column's caption

} // namespace

TListView::TListView(TForm *Owner, TWindowControl *Parent, std::u16string Name, bool Virtual,
                     bool Checks)
    : TWindowControl(Owner, Parent, std::move(Name)), Virtual_(Virtual), Checks_(Checks) {
  // To the system's control every list is a virtual one: there is one way for rows to
  // reach the screen, and the rows live in one place.
  MakeWindow(WC_LISTVIEWW,
             LVS_REPORT | LVS_OWNERDATA | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS |
                 WS_TABSTOP,
             WS_EX_CLIENTEDGE);
  Ask(LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
      LVS_EX_FULLROWSELECT | LVS_EX_SUBITEMIMAGES | LVS_EX_LABELTIP);
  if (Checks_)
    Ask(LVM_SETCALLBACKMASK, LVIS_STATEIMAGEMASK);
  TakeColors();
}

TListView::~TListView() {
  if (CheckImages_)
    ImageList_Destroy(CheckImages_);
}

std::intptr_t TListView::Ask(unsigned Message, std::uintptr_t WParam, std::intptr_t LParam) const {
  return SendMessageW(Handle(), Message, WParam, LParam);
}

void TListView::SetImages(const TImageList *Images) {
  Images_ = Images;
  Ask(LVM_SETIMAGELIST, LVSIL_SMALL, reinterpret_cast<LPARAM>(Images ? Images->Handle() : nullptr));
  if (Checks_)
    MakeCheckImages();
}

void TListView::ColorsChanged() {
  // The system's control hears of it from nobody else.
  Inherited({WM_SYSCOLORCHANGE, 0, 0});
  TakeColors();
}

void TListView::TakeColors() {
  // The ground is drawn here; one of the system's control would stand behind each picture,
  // whatever the row's colour is.
  Ask(LVM_SETBKCOLOR, 0, static_cast<LPARAM>(CLR_NONE));
  Ask(LVM_SETTEXTBKCOLOR, 0, static_cast<LPARAM>(Look().Color(TColorRole::Window)));
  Ask(LVM_SETTEXTCOLOR, 0, static_cast<LPARAM>(Look().Color(TColorRole::Text)));
  if (Checks_)
    MakeCheckImages();
  Invalidate();
}

void TListView::MakeCheckImages() {
  constexpr COLORREF Through = RGB(255, 0, 255); // shows the row's ground
  const int Extent = Look().Scale(CheckUnits);
  // As high as the row's picture, as the system's control sets them to one upper edge.
  const int Height = std::max(Extent, Images_ ? Images_->CellExtent() : 0);
  const HIMAGELIST Before =
      std::exchange(CheckImages_, ImageList_Create(Extent, Height, ILC_COLOR24 | ILC_MASK, 2, 0));
  const HDC Screen = GetDC(nullptr);
  const HDC Memory = CreateCompatibleDC(Screen);
  const HBRUSH Brush = CreateSolidBrush(Through);
  TCanvas Canvas(Memory, Look());
  for (const bool Checked : {false, true}) {
    const HBITMAP Picture = CreateCompatibleBitmap(Screen, Extent, Height);
    const HGDIOBJ Old = SelectObject(Memory, Picture);
    const RECT Whole{0, 0, Extent, Height};
    FillRect(Memory, &Whole, Brush);
    const TRect Square{0, (Height - Extent) / 2, Extent, Extent};
    TCheckBox::PaintBox(Canvas, Square.Inner(Look().Scale(1)), Checked, true);
    SelectObject(Memory, Old);
    ImageList_AddMasked(CheckImages_, Picture, Through);
    DeleteObject(Picture);
  }
  DeleteObject(Brush);
  DeleteDC(Memory);
  ReleaseDC(nullptr, Screen);
  Ask(LVM_SETIMAGELIST, LVSIL_STATE, reinterpret_cast<LPARAM>(CheckImages_));
  if (Before)
    ImageList_Destroy(Before);
}

// ---- columns --------------------------------------------------------------------------

void TListView::AddColumn(const TColumn &Column) {
  Columns_.push_back(Column);
  LVCOLUMNW Info{};
  Info.mask = LVCF_SUBITEM;
  Info.iSubItem = ColumnCount() - 1;
  Ask(LVM_INSERTCOLUMNW, static_cast<WPARAM>(Info.iSubItem), reinterpret_cast<LPARAM>(&Info));
  ApplyColumn(Info.iSubItem);
}

void TListView::ApplyColumn(int Column) {
  TColumn &Source = Columns_.at(static_cast<std::size_t>(Column));
  const int Text = Look().Measure(Source.Caption, TFontRole::Body).Width;
  LVCOLUMNW Info{};
  Info.mask = LVCF_TEXT | LVCF_WIDTH;
  Info.pszText = Wide(Source.Caption.data());
  Info.cx = std::max(Look().Scale(Source.Width), Text + Look().Scale(HeaderAirUnits));
  Ask(LVM_SETCOLUMNW, static_cast<WPARAM>(Column), reinterpret_cast<LPARAM>(&Info));
}

const std::u16string &TListView::ColumnCaption(int Column) const {
  return Columns_.at(static_cast<std::size_t>(Column)).Caption;
}

void TListView::SetColumnCaption(int Column, std::u16string_view Caption) {
  TColumn &Target = Columns_.at(static_cast<std::size_t>(Column));
  if (Target.Caption == Caption)
    return;
  Target.Caption = Caption;
  ApplyColumn(Column);
  StretchLastColumn();
}

int TListView::ColumnWidth(int Column) const {
  return static_cast<int>(Ask(LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(Column)));
}

void TListView::FitLastColumn() {
  FitsLastColumn_ = true;
  StretchLastColumn();
}

void TListView::StretchLastColumn() {
  if (!FitsLastColumn_)
    return;
  RECT Inside;
  GetClientRect(Handle(), &Inside);
  int Left = static_cast<int>(Inside.right);
  for (int Column = 0; Column + 1 < ColumnCount(); ++Column)
    Left -= ColumnWidth(Column);
  const int Last = ColumnCount() - 1;
  if (Last >= 0 && Left > 0)
    Ask(LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(Last), Left);
}

void TListView::DisableHorizontalArrows() { EnableScrollBar(Handle(), SB_HORZ, ESB_DISABLE_BOTH); }

// ---- rows -------------------------------------------------------------------------------

int TListView::RowCount() const { return Virtual_ ? Count_ : static_cast<int>(Rows_.size()); }

TListCells TListView::Cells(int Row) {
  if (!Virtual_)
    return Rows_.at(static_cast<std::size_t>(Row));
  TListCells Answer;
  Call<TDataHandler>(TEvent::Data, *this, Row, Answer);
  return Answer;
}

void TListView::SetRowCount(int Count) {
  Count_ = Count;
  CountChanged();
}

void TListView::CountChanged() {
  Ask(LVM_SETITEMCOUNT, static_cast<WPARAM>(RowCount()));
  Invalidate();
}

void TListView::Refresh() { Invalidate(); }

void TListView::RefreshRow(int Row) { Ask(LVM_REDRAWITEMS, static_cast<WPARAM>(Row), Row); }

void TListView::ClearRows() {
  Rows_.clear();
  CountChanged();
}

int TListView::AddRow(TListCells Cells) {
  Rows_.push_back(std::move(Cells));
  CountChanged();
  return RowCount() - 1;
}

void TListView::DeleteRow(int Row) {
  if (!HasRow(Row))
    return;
  // The system's control would keep the selection's number, and so select the next one.
  Select(-1);
  Rows_.erase(Rows_.begin() + Row);
  CountChanged();
}

void TListView::SetCell(int Row, int Column, std::u16string_view Text) {
  if (!HasRow(Row) || Column < 0)
    return;
  auto &Texts = Rows_[static_cast<std::size_t>(Row)].Texts;
  const auto Place = static_cast<std::size_t>(Column);
  Texts.resize(std::max(Texts.size(), Place + 1));
  Texts[Place] = Text;
  RefreshRow(Row);
}

void TListView::SetSubImage(int Row, int Column, int Image) {
  if (!HasRow(Row) || Column < 1)
    return;
  auto &Images = Rows_[static_cast<std::size_t>(Row)].SubImages;
  const auto Place = static_cast<std::size_t>(Column) - 1;
  Images.resize(std::max(Images.size(), Place + 1), -1);
  Images[Place] = Image;
  RefreshRow(Row);
}

void TListView::SetChecked(int Row, bool Checked) {
  if (!HasRow(Row))
    return;
  Rows_[static_cast<std::size_t>(Row)].Checked = Checked;
  RefreshRow(Row);
}

bool TListView::Checked(int Row) const {
  return HasRow(Row) && Rows_[static_cast<std::size_t>(Row)].Checked;
}

// ---- selection and places -----------------------------------------------------------------

int TListView::Selected() const {
  return static_cast<int>(Ask(LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

void TListView::Select(int Row) {
  // One row alone can be selected, so the one before goes by itself. To name all rows
  // instead would cost time for each of them.
  const int Changed = Row < 0 ? Selected() : Row;
  if (Changed < 0)
    return;
  LVITEMW Item{};
  Item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
  Item.state = Row < 0 ? 0 : Item.stateMask;
  Ask(LVM_SETITEMSTATE, static_cast<WPARAM>(Changed), reinterpret_cast<LPARAM>(&Item));
  ShowRow(Row);
}

void TListView::ShowRow(int Row) {
  if (Row >= 0)
    Ask(LVM_ENSUREVISIBLE, static_cast<WPARAM>(Row), FALSE);
}

int TListView::TopRow() const { return static_cast<int>(Ask(LVM_GETTOPINDEX)); }

int TListView::RowAt(TPoint Point) const {
  LVHITTESTINFO Test{};
  Test.pt = {Point.X, Point.Y};
  Ask(LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&Test));
  return Test.iItem;
}

TRect TListView::RowBounds(int Row) const {
  RECT Place{LVIR_BOUNDS, 0, 0, 0};
  if (Row < 0 || !Ask(LVM_GETITEMRECT, static_cast<WPARAM>(Row), reinterpret_cast<LPARAM>(&Place)))
    return {};
  return FromSystem(Place);
}

TRect TListView::CheckBounds(int Row) const {
  const TRect Place = RowBounds(Row);
  if (!Checks_ || Place.Height == 0)
    return {};
  return {Place.Left + 2, Place.Top, Look().Scale(CheckUnits), Place.Height - 1};
}

// ---- what the system's control asks and tells ------------------------------------------------

void TListView::Display(void *Request) {
  LVITEMW &Item = static_cast<NMLVDISPINFOW *>(Request)->item;
  if (Item.iItem < 0 || Item.iItem >= RowCount())
    return;
  if (!Drawing_ || Item.iItem != DrawnRow_) {
    Drawn_ = Cells(Item.iItem);
    DrawnRow_ = Item.iItem;
  }
  const auto Column = static_cast<std::size_t>(Item.iSubItem);
  if ((Item.mask & LVIF_TEXT) && Item.pszText && Item.cchTextMax > 0) {
    const std::u16string Text = Column < Drawn_.Texts.size() ? Drawn_.Texts[Column] : u"";
    // The control's own buffer holds what a column can show of a text.
    lstrcpynW(Item.pszText, Wide(Text), Item.cchTextMax);
  }
  if (Item.mask & LVIF_IMAGE)
    Item.iImage = Column == 0                         ? Drawn_.Image
                  : Column <= Drawn_.SubImages.size() ? Drawn_.SubImages[Column - 1]
                                                      : -1;
  if ((Item.mask & LVIF_STATE) && Checks_ && Column == 0) {
    Item.stateMask |= LVIS_STATEIMAGEMASK;
    Item.state |= static_cast<UINT>(INDEXTOSTATEIMAGEMASK(Drawn_.Checked ? 2 : 1));
  }
}

std::intptr_t TListView::CustomDraw(void *Request) {
  auto &Draw = *static_cast<NMLVCUSTOMDRAW *>(Request);
  if (Draw.nmcd.dwDrawStage == CDDS_PREPAINT)
    return Handles(TEvent::RowLook) ? CDRF_NOTIFYITEMDRAW : CDRF_DODEFAULT;
  if (Draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) {
    TRowLook Row;
    Call<TRowLookHandler>(TEvent::RowLook, *this, static_cast<int>(Draw.nmcd.dwItemSpec), Row);
    Draw.clrText = Look().Color(Row.Text);
    Draw.clrTextBk = Look().Color(Row.Ground);
    // The system's control leaves out what lies under the pictures. Its older versions do
    // not say where the row is.
    TCanvas(Draw.nmcd.hdc, Look())
        .Fill(RowBounds(static_cast<int>(Draw.nmcd.dwItemSpec)), Row.Ground);
  }
  return CDRF_DODEFAULT;
}

TAnswer TListView::Reflected(const TMessage &Message) {
  if (Message.Id != WM_NOTIFY)
    return std::nullopt;
  auto *Notice = reinterpret_cast<NMHDR *>(Message.LParam);
  switch (Notice->code) {
  case LVN_GETDISPINFOW:
    Display(Notice);
    return 0;
  case NM_CUSTOMDRAW:
    return CustomDraw(Notice);
  case NM_CLICK:
  case NM_DBLCLK: {
    const POINT &Point = reinterpret_cast<const NMITEMACTIVATE *>(Notice)->ptAction;
    PressAt({static_cast<int>(Point.x), static_cast<int>(Point.y)});
    return 0;
  }
  case LVN_ODFINDITEMW:
    return -1; // typed letters lead nowhere; no answer would mean the first row
  case LVN_COLUMNCLICK:
    Call<TColumnHandler>(TEvent::ColumnClick, *this,
                         static_cast<int>(reinterpret_cast<const NMLISTVIEW *>(Notice)->iSubItem));
    return 0;
  default:
    return std::nullopt;
  }
}

void TListView::PressAt(TPoint Point) {
  PressedAt_ = Point;
  const int Row = RowAt(Point);
  if (HasRow(Row) && CheckBounds(Row).Contains(Point))
    SetChecked(Row, !Checked(Row));
  Fire(TEvent::MouseDown);
  Fire(TEvent::Click);
}

void TListView::PressKey(const TMessage &Message) {
  if ((Message.WParam == 'C' || Message.WParam == VK_INSERT) && GetKeyState(VK_CONTROL) < 0) {
    Fire(TEvent::Copy);
    return;
  }
  const int Before = Selected();
  Inherited(Message);
  const int Row = Selected();
  if (Message.WParam == VK_SPACE && Checks_ && Row >= 0) {
    ShowRow(Row); // nothing can be pressed outside the window
    const TRect Box = CheckBounds(Row);
    PressAt({Box.Left + Box.Width / 2, Box.Top + Box.Height / 2});
  } else if (Row != Before) {
    // To go to a row is to ask for it, as a click on it is.
    PressAt({-1, -1});
  }
}

bool TListView::Knows(TEvent Event) const {
  switch (Event) {
  case TEvent::MouseDown:
  case TEvent::ColumnClick:
  case TEvent::RowLook:
  case TEvent::Copy:
    return true;
  case TEvent::Data:
    return Virtual_;
  default:
    return TWindowControl::Knows(Event);
  }
}

// ---- messages ---------------------------------------------------------------------------------

void TListView::PaintBuffered() {
  PAINTSTRUCT Work;
  const HDC Screen = BeginPaint(Handle(), &Work);
  if (Screen && !IsRectEmpty(&Work.rcPaint)) {
    RECT Inside;
    GetClientRect(Handle(), &Inside);
    TPaintBuffer Buffer(Screen, FromSystem(Inside));
    TCanvas(Buffer.Context(), Look()).Fill(FromSystem(Inside), TColorRole::Window);
    Drawing_ = true;
    DrawnRow_ = -1;
    // With a device context given, the system's control draws there.
    Inherited({WM_PAINT, reinterpret_cast<WPARAM>(Buffer.Context()), 0});
    Drawing_ = false;
  }
  EndPaint(Handle(), &Work);
}

void TListView::OpenPopup(std::intptr_t Screen) {
  TPoint Place = PointOf(Screen);
  if (Screen == -1) { // the key for menus: at the selected row
    ShowRow(Selected());
    const TRect Row = RowBounds(std::max(0, Selected()));
    POINT Corner{Row.Left + Look().Scale(CheckUnits), Row.Bottom()};
    ClientToScreen(Handle(), &Corner);
    Place = {static_cast<int>(Corner.x), static_cast<int>(Corner.y)};
  }
  Popup_->PopupAt(Place);
}

TAnswer TListView::Receive(const TMessage &Message) {
  switch (Message.Id) {
  case WM_ERASEBKGND:
    return 1;
  case WM_PAINT:
    PaintBuffered();
    return 0;
  case WM_KEYDOWN:
    PressKey(Message);
    return 0;
  case WM_SIZE: { // also when a scroll bar comes or goes
    const std::intptr_t Answer = Inherited(Message);
    StretchLastColumn();
    return Answer;
  }
  case WM_CONTEXTMENU:
    if (Popup_ && reinterpret_cast<HWND>(Message.WParam) == Handle()) {
      OpenPopup(Message.LParam);
      return 0;
    }
    break;
  default:
    break;
  }
  return TWindowControl::Receive(Message);
}

void TListView::VisitTexts(const TTextVisitor &Visit) {
  for (int Column = 0; Column < ColumnCount(); ++Column) {
    std::u16string Caption = ColumnCaption(Column);
    Visit(u"Columns[" + ToDecimal(static_cast<unsigned>(Column)) + u"].Caption", Caption);
    SetColumnCaption(Column, Caption);
  }
}

} // namespace hivesweep

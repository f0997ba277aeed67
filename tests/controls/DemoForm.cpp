#include "tests/controls/DemoForm.h"

#include "controls/Image.h"
#include "controls/ImageList.h"
#include "controls/ImageNote.h"
#include "controls/ListView.h"
#include "controls/Win32.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

const char16_t *const Areas[] = {u"Summary", u"ActiveX Component", u"Application Paths",
                                 u"File Types", u"Fonts"};

const std::vector<TBinding> Noted{{TEvent::Click, u"Noted"}};

TComponentRow MenuRow(const char16_t *Name, const char16_t *Caption, const char16_t *Parent) {
  return {.Name = Name, .Kind = TKind::MenuItem, .Caption = Caption, .Parent = Parent, .On = Noted};
}

TComponentRow PictureRow(const char16_t *Name, const char16_t *Caption, const char16_t *Parent,
                         const char16_t *Images, int Image, bool Enabled = true) {
  TComponentRow Row = MenuRow(Name, Caption, Parent);
  Row.Images = Images;
  Row.Image = Image;
  Row.Enabled = Enabled;
  return Row;
}

enum class TKey { None, Enter, Escape };

// A button in the lower right corner of the dialog, and the key that presses it.
TComponentRow ButtonRow(const char16_t *Name, const char16_t *Caption, int Left,
                        const char16_t *Handler, TKey Key) {
  return {.Name = Name,
          .Kind = TKind::Button,
          .Place = {Left, 240, 70, 26},
          .Caption = Caption,
          .On = {{TEvent::Click, Handler}},
          .Anchors = Edges::BottomRight,
          .Default = Key == TKey::Enter,
          .Cancel = Key == TKey::Escape};
}

// One family: an entry, its icon, its caption, its count.
void AddEntry(TFormTable &Table, int Number) {
  const std::u16string N = ToDecimal(static_cast<unsigned>(Number));
  const std::u16string Entry = u"ImageNote_" + N;
  const std::vector<TBinding> On{{TEvent::Click, u"ImageNote_1Click"}};
  Table.Rows.push_back({.Name = Entry,
                        .Kind = TKind::ImageNote,
                        .Place = {6, 6 + 28 * (Number - 1), 188, 26},
                        .Parent = u"Pane",
                        .On = On,
                        .Anchors = Edges::Across,
                        .Hint = u"Show " + std::u16string(Areas[Number - 1])});
  Table.Rows.push_back({.Name = u"Image_" + N,
                        .Kind = TKind::Image,
                        .Place = {6, 4, 16, 18},
                        .Parent = Entry,
                        .On = On,
                        .Images = u"Icons",
                        .Image = Number - 1});
  Table.Rows.push_back({.Name = u"Label_" + N,
                        .Place = {28, 4, 118, 18},
                        .Caption = Areas[Number - 1],
                        .Parent = Entry,
                        .On = On,
                        .Tag = Number,
                        .Color = TColorRole::PaneText});
  Table.Rows.push_back({.Name = u"lab_" + N,
                        .Place = {150, 4, 32, 18},
                        .Parent = Entry,
                        .On = On,
                        .Anchors = {.Left = false, .Right = true},
                        .Color = TColorRole::PaneText,
                        .Align = TAlign::Right});
}

} // namespace

TFormTable TDemoWindow::Table() {
  TFormTable Table{
      .Name = u"demo_window",
      .Caption = u"Demo",
      .Size = {760, 420},
      .Resizable = true,
      .Dialog = false,
      .On = {{TEvent::Create, u"FormCreate"}},
      .Rows = {
          {.Name = u"Icons", .Kind = TKind::ImageList, .Place = {0, 0, 16, 16}},
          {.Name = u"Large", .Kind = TKind::ImageList, .Place = {0, 0, 24, 24}},
          {.Name = u"Menu", .Kind = TKind::MainMenu},
          {.Name = u"File", .Kind = TKind::MenuItem, .Caption = u"&File", .Parent = u"Menu"},
          PictureRow(u"Scan", u"&Scan", u"File", u"Icons", 1),
          MenuRow(u"Line", u"-", u"File"),
          MenuRow(u"Exit", u"E&xit", u"File"),
          {.Name = u"Bar",
           .Kind = TKind::ToolBar,
           .Place = {0, 0, 760, 60},
           .Anchors = Edges::Across},
          PictureRow(u"BarScan", u"Scan", u"Bar", u"Large", 0),
          PictureRow(u"BarFix", u"Start fixing", u"Bar", u"Large", 1, false),
          MenuRow(u"BarLine", u"-", u"Bar"),
          {.Name = u"BarMore",
           .Kind = TKind::MenuItem,
           .Caption = u"More",
           .Parent = u"Bar",
           .Images = u"Large",
           .Image = 2},
          MenuRow(u"BarAbout", u"About", u"BarMore"),
          {.Name = u"Pop", .Kind = TKind::PopupMenu, .On = {{TEvent::Popup, u"Noted"}}},
          MenuRow(u"SelectAll", u"Select All", u"Pop"),
          MenuRow(u"Open", u"Open in RegEdit", u"Pop"),
          {.Name = u"Pane",
           .Kind = TKind::Panel,
           .Place = {0, 60, 200, 336},
           .Anchors = Edges::Left,
           .Ground = TColorRole::Pane},
          {.Name = u"Title",
           .Place = {216, 70, 528, 26},
           .Caption = u"Application Paths",
           .Anchors = Edges::Across,
           .Font = TFontRole::Title,
           .Color = TColorRole::Heading},
          {.Name = u"About_text",
           .Place = {216, 100, 528, 34},
           .Caption = u"The installation folders of some programs are saved in the registry "
                      u"in order to run these programs directly. Some of these entries stay "
                      u"behind when their program is removed, and then lead nowhere.",
           .Anchors = Edges::Across,
           .Wrapped = true},
          {.Name = u"Key",
           .Place = {216, 138, 528, 18},
           .Caption = u"HKEY_LOCAL_MACHINE\\Software\\Vendor\\A program with a long name\\"
                      u"Settings\\Paths\\Something deep below that nobody needs to see whole",
           .On = Noted,
           .Anchors = Edges::Across,
           .Color = TColorRole::Heading,
           .Ellipsis = true,
           .Link = true},
          {.Name = u"Check_all",
           .Kind = TKind::CheckBox,
           .Place = {216, 160, 120, 20},
           .Caption = u"Select &all",
           .On = {{TEvent::MouseUp, u"Noted"}}},
          {.Name = u"List",
           .Kind = TKind::ListView,
           .Place = {216, 184, 528, 204},
           .On = {{TEvent::Data, u"ListData"}, {TEvent::Click, u"ListClick"}},
           .Anchors = Edges::All,
           .Checks = true,
           .Virtual = true,
           .Columns = {{u"      Type", 150}, {u"Risk Level", 100}, {u"Registry key", 250}},
           .Images = u"Icons",
           .Popup = u"Pop"},
          {.Name = u"Status",
           .Kind = TKind::StatusBar,
           .Place = {0, 396, 760, 24},
           .Anchors = Edges::Bottom,
           .Columns = {{u"", 195}, {u"", 450}}},
          {.Name = u"Timer",
           .Kind = TKind::Timer,
           .On = {{TEvent::Timer, u"Noted"}},
           .Enabled = false,
           .Interval = 1},
      }};
  for (int Number = 1; Number <= static_cast<int>(std::size(Areas)); ++Number)
    AddEntry(Table, Number);
  return Table;
}

TDemoWindow::TDemoWindow(TLook &Look) : TForm(Look, nullptr, Table(), Handlers()) {}

std::vector<TNamedHandler> TDemoWindow::Handlers() {
  return {Handler(u"Noted", this, &TDemoWindow::Note),
          Handler(u"FormCreate", this, &TDemoWindow::FormCreate),
          Handler(u"ImageNote_1Click", this, &TDemoWindow::ImageNote_1Click),
          Handler(u"ListData", this, &TDemoWindow::ListData),
          Handler(u"ListClick", this, &TDemoWindow::ListClick)};
}

void TDemoWindow::FormCreate(TComponent &Sender) {
  static_cast<void>(Sender);
  for (const char16_t *const Name : {u"Icons", u"Large"})
    for (const int Icon : {32512, 32513, 32514, 32515, 32516})
      Find<TImageList>(Name).Add(LoadIconW(nullptr, MAKEINTRESOURCEW(Icon)));
}

void TDemoWindow::ImageNote_1Click(TComponent &Sender) {
  const std::u16string Number = Sender.Name().substr(Sender.Name().find(u'_') + 1);
  for (TControl *Child : Find<TWindowControl>(u"Pane").Children()) {
    auto &Entry = dynamic_cast<TImageNote &>(*Child);
    const bool Chosen = Entry.Name() == u"ImageNote_" + Number;
    Entry.SetSelected(Chosen);
    for (TControl *Text : Entry.Children())
      Text->SetColor(Chosen ? TColorRole::PaneSelectedText : TColorRole::PaneText);
  }
  Happened.push_back(Sender.Name());
}

void TDemoWindow::ListData(TListView &Sender, int Row, TListCells &Cells) {
  static_cast<void>(Sender);
  ++Asked;
  Cells.Texts = {u"Type " + ToDecimal(static_cast<unsigned>(Row)), u"High-Risk",
                 u"HKEY_LOCAL_MACHINE\\Software\\" + ToDecimal(static_cast<unsigned>(Row))};
  Cells.Image = Row % 5;
  Cells.SubImages = {Row % 3};
  Cells.Checked =
      static_cast<std::size_t>(Row) < Checks.size() && Checks[static_cast<std::size_t>(Row)];
}

void TDemoWindow::ListClick(TComponent &Sender) {
  auto &List = dynamic_cast<TListView &>(Sender);
  const int Row = List.RowAt(List.PressedAt());
  if (Row >= 0 && List.CheckBounds(Row).Contains(List.PressedAt())) {
    Checks[static_cast<std::size_t>(Row)].flip();
    List.RefreshRow(Row);
    Happened.push_back(u"check " + ToDecimal(static_cast<unsigned>(Row)));
  } else if (List.Selected() >= 0) {
    Happened.push_back(u"row " + ToDecimal(static_cast<unsigned>(List.Selected())));
  }
}

// ---- the dialog -------------------------------------------------------------------------

TFormTable TDemoDialog::Table() {
  return {
      .Name = u"demo_dialog",
      .Caption = u"Scan",
      .Size = {400, 280},
      .On = {{TEvent::Show, u"Noted"}, {TEvent::Close, u"Noted"}},
      .Rows =
          {
              {.Name = u"Text",
               .Place = {16, 12, 368, 18},
               .Caption = u"Select the areas you want to scan.",
               .Anchors = Edges::Across,
               .Wrapped = true},
              {.Name = u"List",
               .Kind = TKind::ListView,
               .Place = {16, 36, 368, 110},
               .On = {{TEvent::MouseDown, u"Noted"}},
               .Anchors = Edges::All,
               .Checks = true,
               .Columns = {{u"Areas", 200}, {u"Status", 145}}},
              {.Name = u"Group",
               .Kind = TKind::GroupBox,
               .Place = {16, 152, 368, 56},
               .Caption = u"Progress",
               .Anchors = Edges::Bottom},
              {.Name = u"State",
               .Place = {12, 16, 344, 16},
               .Caption = u"Scanning...",
               .Parent = u"Group",
               .Anchors = Edges::Across,
               .Ellipsis = true},
              {.Name = u"Progress",
               .Kind = TKind::ImageProgress,
               .Place = {12, 36, 344, 12},
               .Parent = u"Group",
               .Anchors = Edges::Across},
              {.Name = u"Links",
               .Kind = TKind::LabelNote,
               .Place = {16, 214, 130, 40},
               .On = {{TEvent::Click, u"Noted"}},
               .Anchors = Edges::BottomLeft,
               .Items = {u"First link", u"Second link"}},
              ButtonRow(u"Help", u"&Help", 156, u"Noted", TKey::None),
              ButtonRow(u"Scan", u"&Scan", 234, u"Noted", TKey::Enter),
              ButtonRow(u"Close", u"Close", 314, u"CloseClick", TKey::Escape),
          },
  };
}

TDemoDialog::TDemoDialog(TLook &Look, TForm *Above)
    : TForm(Look, Above, Table(),
            {Handler(u"Noted", this, &TDemoDialog::Note),
             Handler(u"CloseClick", this, &TDemoDialog::CloseClick)}) {}

void TDemoDialog::CloseClick(TComponent &Sender) {
  Note(Sender);
  Close();
}

} // namespace hivesweep

#include "ui/MainTable.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "engine/Areas.h"
#include "platform/Text.h"
#include "ui/Icons.h"

namespace hivesweep {

namespace {

constexpr int PaneWidth = 210, RightWidth = 550;

constexpr std::u16string_view SmallImages = u"Images_small";
constexpr std::u16string_view LargeImages = u"Images_large";
constexpr std::u16string_view RowImages = u"Images_rows";

void Append(TFormTable &Table, std::vector<TComponentRow> Rows) {
  std::move(Rows.begin(), Rows.end(), std::back_inserter(Table.Rows));
}

// ---- menus and the tool bar ----------------------------------------------------------

struct TEntryRow {
  std::u16string_view Parent;
  std::u16string_view Name;
  std::u16string_view Caption; // "-": a line
  std::u16string_view Handler{};
  std::optional<TIcon> Icon{};
};

void AddEntry(TFormTable &Table, const TEntryRow &Entry, std::u16string_view Images) {
  TComponentRow Row{.Name = std::u16string(Entry.Name),
                    .Kind = TKind::MenuItem,
                    .Caption = std::u16string(Entry.Caption),
                    .Parent = std::u16string(Entry.Parent)};
  if (!Entry.Handler.empty())
    Row.On = {{TEvent::Click, std::u16string(Entry.Handler)}};
  if (Entry.Icon) {
    Row.Images = Images;
    Row.Image = static_cast<int>(*Entry.Icon);
  }
  Table.Rows.push_back(std::move(Row));
}

constexpr TEntryRow FileAndView[] = {
    {u"Menu_main", u"dxBarSubItem1", u"&File"},
    {u"dxBarSubItem1", u"dxBarButton7", u"Scan", u"dxBarButton7Click", TIcon::Scan},
    {u"dxBarSubItem1", u"dxBarButton8", u"Start fixing", u"dxBarButton8Click", TIcon::Fix},
    {u"dxBarSubItem1", u"Line_file1", u"-"},
    {u"dxBarSubItem1", u"dxBarButton6", u"Ignore List", u"dxBarButton6Click", TIcon::Ignore},
    {u"dxBarSubItem1", u"dxBarButton5", u"Restore", u"dxBarLargeButton4Click", TIcon::Restore},
    {u"dxBarSubItem1", u"Line_file2", u"-"},
    {u"dxBarSubItem1", u"dxBarButton2", u"Exit", u"dxBarButton2Click", TIcon::Exit},
    {u"Menu_main", u"dxBarSubItem2", u"&View"},
};

// The categories stand between these and the ones above. An entry with a check mark has
// no icon: the mark stands in its place.
constexpr TEntryRow ViewAndHelp[] = {
    {u"dxBarSubItem2", u"Line_view1", u"-"},
    {u"dxBarSubItem2", u"dxBarButton9", u"Show Description", u"dxBarButton9Click"},
    {u"Menu_main", u"dxBarSubItem3", u"&Help"},
    {u"dxBarSubItem3", u"dxBarButton10", u"Help", u"dxBarButton10Click", TIcon::Help},
    {u"dxBarSubItem3", u"dxBarButton19", u"Homepage", u"dxBarButton19Click", TIcon::Home},
    {u"dxBarSubItem3", u"Line_help1", u"-"},
    {u"dxBarSubItem3", u"dxBarButton11", u"About", u"dxBarButton11Click", TIcon::About},
};

constexpr TEntryRow BarEntries[] = {
    {u"Bar_main", u"dxBarLargeButton1", u"Scan", u"dxBarButton7Click", TIcon::Scan},
    {u"Bar_main", u"dxBarLargeButton2", u"Start fixing", u"dxBarButton8Click", TIcon::Fix},
    {u"Bar_main", u"Line_bar1", u"-"},
    {u"Bar_main", u"dxBarLargeButton3", u"Ignore List", u"dxBarButton6Click", TIcon::Ignore},
    {u"Bar_main", u"dxBarLargeButton4", u"Restore", u"dxBarLargeButton4Click", TIcon::Restore},
    {u"Bar_main", u"Line_bar2", u"-"},
    {u"Bar_main", u"dxBarLargeButton5", u"Help", u"dxBarButton10Click", TIcon::Help},
};

constexpr TEntryRow PopupEntries[] = {
    {u"PopupMenu1", u"Startfixing1", u"Start Fixing", u"dxBarButton8Click", TIcon::Fix},
    {u"PopupMenu1", u"Line_popup1", u"-"},
    {u"PopupMenu1", u"checkall1", u"Select All", u"checkall1Click", TIcon::CheckOn},
    {u"PopupMenu1", u"Nonechecked1", u"Deselect All", u"Nonechecked1Click", TIcon::CheckOff},
    {u"PopupMenu1", u"InverseSelection1", u"Invert Selection", u"InverseSelection1Click"},
    {u"PopupMenu1", u"Line_popup2", u"-"},
    {u"PopupMenu1", u"Jumptoentry1", u"Open in RegEdit", u"Jumptoentry1Click"},
    {u"PopupMenu1", u"IgnoredProblem1", u"Ignore Selected Problem", u"IgnoredProblem1Click",
     TIcon::Ignore},
};

std::u16string CategoryCaption(int Category) {
  return Category == SummaryCategory
             ? u"Summary"
             : std::u16string(AreaByNumber(Category - SummaryCategory).Caption);
}

// The summary's icon is the first one, and an area's has the area's number.
constexpr TIcon CategoryIcon(int Category) {
  return static_cast<TIcon>(Category - SummaryCategory);
}

void AddMenus(TFormTable &Table) {
  Table.Rows.push_back({.Name = u"Menu_main", .Kind = TKind::MainMenu});
  for (const TEntryRow &Entry : FileAndView)
    AddEntry(Table, Entry, SmallImages);
  for (int Category = SummaryCategory; Category <= CategoryCount; ++Category)
    AddEntry(Table,
             {u"dxBarSubItem2", NameOf(u"dxb_", Category), CategoryCaption(Category),
              u"ImageNote_1Click", CategoryIcon(Category)},
             SmallImages);
  for (const TEntryRow &Entry : ViewAndHelp)
    AddEntry(Table, Entry, SmallImages);
  Table.Rows.push_back({.Name = u"PopupMenu1",
                        .Kind = TKind::PopupMenu,
                        .On = {{TEvent::Popup, u"PopupMenu1Popup"}}});
  for (const TEntryRow &Entry : PopupEntries)
    AddEntry(Table, Entry, SmallImages);
}

void AddBar(TFormTable &Table) {
  Table.Rows.push_back({.Name = u"Bar_main",
                        .Kind = TKind::ToolBar,
                        .Place = {0, 0, 760, 62},
                        .Anchors = Edges::Across});
  for (const TEntryRow &Entry : BarEntries)
    AddEntry(Table, Entry, LargeImages);
}

// ---- the category pane -----------------------------------------------------------------

// One family: an entry, its icon, its caption, its count.
void AddCategory(TFormTable &Table, int Category) {
  constexpr int Pitch = 22;
  const std::u16string Entry = NameOf(u"ImageNote_", Category);
  const std::vector<TBinding> On{{TEvent::Click, u"ImageNote_1Click"}};
  Table.Rows.push_back({.Name = Entry,
                        .Kind = TKind::ImageNote,
                        .Place = {0, 6 + Pitch * (Category - 1), PaneWidth, Pitch},
                        .Parent = u"Panel_categories",
                        .On = On,
                        .Anchors = Edges::Across});
  Table.Rows.push_back({.Name = NameOf(u"Image_", Category),
                        .Kind = TKind::Image,
                        .Place = {11, 3, 16, 16},
                        .Parent = Entry,
                        .On = On,
                        .Images = std::u16string(SmallImages),
                        .Image = static_cast<int>(CategoryIcon(Category))});
  Table.Rows.push_back({.Name = NameOf(u"Label_", Category),
                        .Place = {34, 2, 130, 18},
                        .Caption = CategoryCaption(Category),
                        .Parent = Entry,
                        .On = On,
                        .Tag = Category > SummaryCategory ? Category : 0,
                        .Color = TColorRole::PaneText});
  Table.Rows.push_back({.Name = NameOf(u"lab_", Category),
                        .Place = {166, 2, 36, 18},
                        .Parent = Entry,
                        .On = On,
                        .Anchors = Edges::Right,
                        .Color = TColorRole::PaneText,
                        .Align = TAlign::Right});
}

void AddPane(TFormTable &Table) {
  Table.Rows.push_back({.Name = u"Panel_categories",
                        .Kind = TKind::Panel,
                        .Place = {0, 62, PaneWidth, 408},
                        .Anchors = Edges::Left,
                        .Ground = TColorRole::Pane});
  for (int Category = SummaryCategory; Category <= CategoryCount; ++Category)
    AddCategory(Table, Category);
}

// ---- the details area -------------------------------------------------------------------

const std::u16string Details = u"Panel_details", Summary = u"Panel_summary";

// What stands on the area itself, and the ground of the summary's lines.
std::vector<TComponentRow> DetailRows() {
  return {
      {.Name = Details,
       .Kind = TKind::Panel,
       .Place = {PaneWidth, 62, RightWidth, 134},
       .Anchors = Edges::Across},
      {.Name = u"Lab_reg",
       .Place = {22, 8, 430, 24},
       .Parent = Details,
       .Anchors = Edges::Across,
       .Font = TFontRole::Title,
       .Color = TColorRole::Heading,
       .Ellipsis = true},
      {.Name = u"Lab_count",
       .Place = {460, 8, 68, 24},
       .Parent = Details,
       .Anchors = Edges::Right,
       .Font = TFontRole::Title,
       .Color = TColorRole::QuietText,
       .Align = TAlign::Right},
      {.Name = u"Lab_welcome",
       .Place = {22, 34, 506, 16},
       .Caption = u"Click \"Scan\" in the menu bar to search the registry for problems.",
       .Parent = Details,
       .Anchors = Edges::Across,
       .Wrapped = true},
      {.Name = u"Lab_ms",
       .Place = DescriptionPlace,
       .Parent = Details,
       .On = {{TEvent::Click, u"Lab_msClick"}},
       .Anchors = Edges::Across,
       .Color = TColorRole::Heading,
       .Wrapped = true},
      {.Name = Summary,
       .Kind = TKind::Panel,
       .Place = {22, 55, 506, 64},
       .Parent = Details,
       .Anchors = Edges::Across},
  };
}

// A caption, and the text that belongs to it.
struct TLineRow {
  const std::u16string &Parent;
  int Left;
  int Top;
  int TextLeft;
  const char16_t *CaptionName;
  const char16_t *Caption;
  const char16_t *TextName; // null: the label that can be a link
};

const TLineRow Lines[] = {
    {Details, 22, 56, LinkPlace.Left, u"Lab_valuecaption", u"Value:", u"Lab_value"},
    {Details, 22, 76, LinkPlace.Left, u"Lab_datacaption", u"Data:", u"Lab_data"},
    {Details, 22, 96, LinkPlace.Left, u"Lab_pathcaption", u"Path:", nullptr},
    {Summary, 0, 1, 130, u"Lab_scan", u"Last scan:", u"Lab_scanvalue"},
    {Summary, 0, 21, 130, u"Lab_clean", u"Last fix time:", u"Lab_lastvlaue"},
    {Summary, 0, 41, 130, u"Lab_correct", u"Fixed problems:", u"Lab_totalvalue"},
};

void AddLine(TFormTable &Table, const TLineRow &Line) {
  constexpr int Height = 16, Gap = 6, Width = 506;
  Table.Rows.push_back({.Name = Line.CaptionName,
                        .Place = {Line.Left, Line.Top, Line.TextLeft - Line.Left - Gap, Height},
                        .Caption = Line.Caption,
                        .Parent = Line.Parent,
                        .Color = TColorRole::QuietText});
  if (Line.TextName)
    Table.Rows.push_back(
        {.Name = Line.TextName,
         .Place = {Line.TextLeft, Line.Top, Line.Left + Width - Line.TextLeft, Height},
         .Parent = Line.Parent,
         .Anchors = Edges::Across,
         .Ellipsis = true});
}

void AddDetails(TFormTable &Table) {
  Append(Table, DetailRows());
  for (const TLineRow &Line : Lines)
    AddLine(Table, Line);
}

// ---- the list, and what is below ---------------------------------------------------------

std::vector<TComponentRow> ListRows() {
  return {
      {.Name = u"Panel_problems",
       .Kind = TKind::Panel,
       .Place = {PaneWidth, 196, RightWidth, 274},
       .Anchors = Edges::All},
      {.Name = u"CheckBox_selectall",
       .Kind = TKind::CheckBox,
       .Place = {22, 2, 120, 18},
       .Caption = u"Select All",
       .Parent = u"Panel_problems",
       .On = {{TEvent::MouseUp, u"CheckBox_selectallMouseUp"}}},
      {.Name = u"Lv_problems",
       .Kind = TKind::ListView,
       .Place = {22, 26, 506, 238},
       .Parent = u"Panel_problems",
       .On = {{TEvent::Data, u"Lv_problemsData"},
              {TEvent::Click, u"Lv_problemsClick"},
              {TEvent::ColumnClick, u"Lv_problemsColumnClick"},
              {TEvent::RowLook, u"Lv_problemsCustomDrawItem"}},
       .Anchors = Edges::All,
       .Checks = true,
       .Virtual = true,
       .Columns = {{u"      Type", 150}, {u"Risk Level", 100}, {u"Registry key", 380}},
       .Images = std::u16string(RowImages),
       .Popup = u"PopupMenu1"},
      {.Name = u"dxStatusBar1",
       .Kind = TKind::StatusBar,
       .Place = {0, 470, 760, 24},
       .Anchors = Edges::Bottom,
       .Columns = {{u"", 195}, {u"", 450}}},
      {.Name = u"Timer1",
       .Kind = TKind::Timer,
       .On = {{TEvent::Timer, u"Timer1Timer"}},
       .Enabled = false,
       .Interval = 200},
  };
}

} // namespace

std::u16string NameOf(std::u16string_view Family, int Category) {
  return std::u16string(Family).append(ToDecimal(static_cast<unsigned>(Category)));
}

TFormTable MainTable() {
  TFormTable Table{.Name = u"frm_main",
                   .Caption = u"Hivesweep",
                   .Size = {760, 494}, // on a screen of 800 by 600 with the task bar
                   .Start = TSize{910, 620},
                   .Resizable = true,
                   .Dialog = false,
                   .On = {{TEvent::Show, u"FormShow"}}};
  Append(Table,
         {{.Name = std::u16string(SmallImages), .Kind = TKind::ImageList, .Place = {0, 0, 16, 16}},
          {.Name = std::u16string(LargeImages), .Kind = TKind::ImageList, .Place = {0, 0, 24, 24}},
          {.Name = std::u16string(RowImages), .Kind = TKind::ImageList, .Place = {2, 2, 16, 16}}});
  AddMenus(Table);
  AddBar(Table);
  AddPane(Table);
  AddDetails(Table);
  Append(Table, ListRows());
  return Table;
}

} // namespace hivesweep

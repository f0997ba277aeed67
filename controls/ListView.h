// A list of rows in columns. A plain one keeps its rows; a virtual one knows only
// their number and asks for each row that it shows (TEvent::Data), so that their number
// costs nothing.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "controls/FormTable.h"
#include "controls/SystemTypes.h"
#include "controls/WindowControl.h"

namespace hivesweep {

class TImageList;
class TPopupMenu;

// What a row shows: a text for each column from the left, as many as there are, and
// pictures of the list's image list, -1 for none.
struct TListCells {
  std::vector<std::u16string> Texts;
  int Image = -1;
  std::vector<int> SubImages; // of the second column, the third, ...
  bool Checked = false;
};

struct TRowLook {
  TColorRole Text = TColorRole::Text;
  TColorRole Ground = TColorRole::Window;
};

class TListView : public TWindowControl {
public:
  // Virtual and Checks stay as they are: rows that the list asks for; check boxes.
  TListView(TForm *Owner, TWindowControl *Parent, std::u16string Name, bool Virtual, bool Checks);
  ~TListView() override;

  // Both borrowed, and may be null.
  void SetImages(const TImageList *Images);
  void SetPopup(TPopupMenu *Popup) { Popup_ = Popup; }

  // ---- columns: numbers count from 0 and must be there ----------------------------
  // Width in units; a caption that needs more gets more.
  void AddColumn(const TColumn &Column);
  int ColumnCount() const { return static_cast<int>(Columns_.size()); }
  const std::u16string &ColumnCaption(int Column) const;
  void SetColumnCaption(int Column, std::u16string_view Caption);
  int ColumnWidth(int Column) const; // pixels
  // From now on the last column takes the width that the others leave in the list.
  void FitLastColumn();
  // The arrows of the horizontal scroll bar take no more clicks.
  void DisableHorizontalArrows();

  // ---- rows: numbers count from 0 --------------------------------------------------
  int RowCount() const;
  // What a row shows, as the list itself would learn it; Row must be there.
  TListCells Cells(int Row);

  // Of a virtual list: how many rows there are now. They are asked for anew.
  void SetRowCount(int Count);
  void Refresh();
  void RefreshRow(int Row);

  // Of a plain list; rows and columns that are not there are ignored. SetCell makes
  // the columns before it when they are missing.
  void ClearRows();
  int AddRow(TListCells Cells);
  void DeleteRow(int Row);
  void SetCell(int Row, int Column, std::u16string_view Text);
  void SetSubImage(int Row, int Column, int Image);
  void SetChecked(int Row, bool Checked);
  bool Checked(int Row) const;

  // ---- selection and places ----------------------------------------------------------
  int Selected() const; // -1: none
  // Also gives it the list's focus and shows it; -1 selects none.
  void Select(int Row);
  int TopRow() const;
  // -1 where there is none. Points and places are in the list's window.
  int RowAt(TPoint Point) const;
  TRect RowBounds(int Row) const;
  // The check box at the row's left edge; empty in a list without.
  TRect CheckBounds(int Row) const;
  // Where the mouse was at the last press; the space bar presses the check box of the
  // row that has the focus. Outside all rows after a press of an arrow key.
  TPoint PressedAt() const { return PressedAt_; }

  bool Knows(TEvent Event) const override;
  void Paint(TCanvas &Canvas) override { static_cast<void>(Canvas); }
  TAnswer Receive(const TMessage &Message) override;
  TAnswer Reflected(const TMessage &Message) override;
  void ColorsChanged() override;
  void VisitTexts(const TTextVisitor &Visit) override;

protected:
  bool PaintsItself() const override { return false; }

private:
  // For the system's control and its structures.
  std::intptr_t Ask(unsigned Message, std::uintptr_t WParam = 0, std::intptr_t LParam = 0) const;
  void PaintBuffered();
  void Display(void *Request);
  std::intptr_t CustomDraw(void *Request);
  void PressAt(TPoint Point);
  void PressKey(const TMessage &Message);
  void ShowRow(int Row); // scrolls it into the window, if need be; -1 is none
  void OpenPopup(std::intptr_t Screen);
  void TakeColors();
  void MakeCheckImages();
  void ApplyColumn(int Column);
  void StretchLastColumn();
  void CountChanged();
  bool HasRow(int Row) const { return Row >= 0 && Row < static_cast<int>(Rows_.size()); }

  bool Virtual_;
  bool Checks_;
  bool FitsLastColumn_ = false;
  std::vector<TColumn> Columns_;
  std::vector<TListCells> Rows_;
  int Count_ = 0; // of a virtual list
  const TImageList *Images_ = nullptr;
  TPopupMenu *Popup_ = nullptr;
  _IMAGELIST *CheckImages_ = nullptr;
  TPoint PressedAt_{-1, -1};
  // The row that is being drawn, so that its cells are asked for once.
  TListCells Drawn_;
  int DrawnRow_ = -1;
  bool Drawing_ = false;
};

} // namespace hivesweep

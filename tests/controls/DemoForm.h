// Two forms with every kind of component, as a program would describe them.
#pragma once

#include <string>
#include <vector>

#include "controls/Form.h"

namespace hivesweep {

// A window with a menu, a bar, a pane of entries, details, a virtual list and a status
// bar. Texts: the captions of another language, longer than the table's.
class TDemoWindow : public TForm {
public:
  explicit TDemoWindow(TLook &Look);

  static TFormTable Table();

  int Rows = 0;
  int Asked = 0;                        // how many rows the list has asked for
  std::vector<bool> Checks;             // of the rows
  std::vector<std::u16string> Happened; // names of senders, and what they tell

private:
  std::vector<TNamedHandler> Handlers();
  void Note(TComponent &Sender) { Happened.push_back(Sender.Name()); }
  void FormCreate(TComponent &Sender);
  void ImageNote_1Click(TComponent &Sender);
  void ListData(TListView &Sender, int Row, TListCells &Cells);
  void ListClick(TComponent &Sender);
};

// A dialog: a wrapped text, a plain list with check boxes, a progress bar, three buttons.
class TDemoDialog : public TForm {
public:
  TDemoDialog(TLook &Look, TForm *Above);

  static TFormTable Table();

  std::vector<std::u16string> Happened;

private:
  void Note(TComponent &Sender) { Happened.push_back(Sender.Name()); }
  void CloseClick(TComponent &Sender);
};

} // namespace hivesweep

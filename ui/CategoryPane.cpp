#include "ui/CategoryPane.h"

#include "controls/Form.h"
#include "platform/Text.h"

namespace hivesweep {

TCategoryPane::TCategoryPane(TForm &Form) : Form_(Form) {
  int Category = SummaryCategory;
  for (TEntry &Each : Entries_) {
    Each = {&Form.Find<TImageNote>(NameOf(u"ImageNote_", Category)),
            &Form.Find<TLabel>(NameOf(u"Label_", Category)),
            &Form.Find<TLabel>(NameOf(u"lab_", Category))};
    ++Category;
  }
}

int TCategoryPane::CategoryOf(const TComponent &Member) {
  int Category = 0;
  for (const char16_t Digit : Member.Name().substr(Member.Name().find(u'_') + 1))
    Category = Category * 10 + (Digit - u'0');
  return Category;
}

void TCategoryPane::Mark(int Category) {
  const TEntry &Chosen = Entry(Category);
  for (const TEntry &Each : Entries_) {
    const bool Marked = Each.Note == Chosen.Note;
    if (!Marked && !Each.Note->Selected())
      continue;
    Each.Note->SetSelected(Marked);
    for (TLabel *const Label : {Each.Caption, Each.Count})
      Label->SetColor(Marked ? TColorRole::PaneSelectedText : TColorRole::PaneText);
  }
}

void TCategoryPane::NameEntries() {
  for (const TEntry &Each : Entries_)
    Each.Name();
}

void TCategoryPane::TEntry::Name() const {
  const std::u16string &Number = Count->Text();
  Note->SetText(Caption->Text() + (Number.empty() ? u"" : u" " + Number));
}

void TCategoryPane::TEntry::ShowCount(std::u16string_view Number) const {
  Count->SetText(Number);
  Name();
}

void TCategoryPane::ShowCounts(const TListViewManage &Problems) {
  const TLayoutPause Pause(Form_);
  for (const TEntry &Each : Entries_) {
    std::int32_t Count = 0;
    if (Each.Caption->Tag <= SummaryCategory)
      Count = Problems.TotalCount();
    else if (const TGroupItems *Group =
                 Problems.FindGroup(ToDecimal(static_cast<unsigned>(Each.Caption->Tag))))
      Count = Group->Count();
    Each.ShowCount(CountCaption(Count));
  }
}

void TCategoryPane::ClearCounts() {
  const TLayoutPause Pause(Form_);
  for (const TEntry &Each : Entries_)
    Each.ShowCount(u"");
}

const std::u16string &TCategoryPane::Caption(int Category) const {
  return Entry(Category).Caption->Text();
}

std::u16string TCategoryPane::Number(int Category) const {
  const std::u16string &Shown = Entry(Category).Count->Text();
  return Shown.empty() ? u"0" : Shown.substr(1, Shown.size() - 2);
}

std::u16string TCategoryPane::GroupName(int Category) const {
  const int Tag = Entry(Category).Caption->Tag;
  return Tag > SummaryCategory ? ToDecimal(static_cast<unsigned>(Tag)) : std::u16string();
}

} // namespace hivesweep

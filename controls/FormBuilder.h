// Makes a form's components from its table, and finds the mistakes in it.
#pragma once

#include <map>
#include <set>

#include "controls/Form.h"

namespace hivesweep {

class TFormBuilder {
public:
  TFormBuilder(TForm &Form, const std::vector<TNamedHandler> &Handlers);
  // Throws TFormError.
  void Build(const TFormTable &Table);

private:
  void BuildRow(const TComponentRow &Row);
  std::unique_ptr<TComponent> Make(const TComponentRow &Row);
  std::unique_ptr<TControl> MakeControl(const TComponentRow &Row);
  std::unique_ptr<TControl> MakeLabel(const TComponentRow &Row);
  std::unique_ptr<TControl> MakeButton(const TComponentRow &Row);
  std::unique_ptr<TControl> MakeList(const TComponentRow &Row);
  std::unique_ptr<TComponent> MakeMenuItem(const TComponentRow &Row);
  void Dress(const TComponentRow &Row, TControl &Control);
  void Bind(TComponent &Component, const std::vector<TBinding> &Bindings);
  TWindowControl *ParentOf(const TComponentRow &Row);
  // The component of that kind; null for an empty name, an error for a wrong one.
  template <typename T> T *Named(const TComponentRow &Row, const std::u16string &Name);

  TForm &Form_;
  std::map<std::u16string, THandler> Handlers_;
  std::set<std::u16string> Unused_;
};

} // namespace hivesweep

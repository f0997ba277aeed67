#include "controls/Component.h"

#include <stdexcept>

namespace hivesweep {

bool Serves(const THandler &Handler, TEvent Event) {
  switch (Event) {
  case TEvent::Data:
    return std::holds_alternative<TDataHandler>(Handler);
  case TEvent::ColumnClick:
    return std::holds_alternative<TColumnHandler>(Handler);
  case TEvent::RowLook:
    return std::holds_alternative<TRowLookHandler>(Handler);
  default:
    return std::holds_alternative<TNotify>(Handler);
  }
}

void TComponent::Bind(TEvent Event, THandler Handler) {
  if (!Knows(Event) || !Serves(Handler, Event))
    throw std::logic_error("this handler cannot serve this event of this component");
  Handlers_[Event] = std::move(Handler);
}

bool TComponent::Knows(TEvent Event) const { return Event == TEvent::Click; }

bool TComponent::Fire(TEvent Event) { return Call<TNotify>(Event, *this); }

void TComponent::VisitTexts(const TTextVisitor &Visit) { static_cast<void>(Visit); }

} // namespace hivesweep

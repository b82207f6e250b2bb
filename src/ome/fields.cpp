#include <vrelio/ome/fields.h>

#include <string>
#include <utility>

#include "ome/exchange_internal.h"
#include "ome/rules_internal.h"

namespace Ome::Field {
namespace {

template <class Rule>
void check(Json::Value& value) {
  if (!value.is_null()) Rule::check(value);
}

// The rule of objects.
struct MapRule {
  static void check(const Json::Value& value) { value.map(); }
};

// A default makes way for what is there.
template <class Rule>
void set_default(Json::Value& node, Json::Value initial) {
  if (!node.is_null()) return check<Rule>(node);
  check<Rule>(initial);
  node = std::move(initial);
}

}  // namespace

template <class Reference>
// NOLINTNEXTLINE(performance-unnecessary-value-param): it is moved on, which a template hides
Object<Reference>::Object(Json::Value& viewed, Json::Value initial, const Remains& remains)
    : Json::Reference(viewed), Reference(viewed), remains_(remains) {
  check<MapRule>(viewed);
  if (!initial.is_null()) *this = std::move(initial);
}

template <class Reference>
Object<Reference>::Object(Object& parent, const char* key, Json::Value initial)
    : Json::Reference(parent.bind(key)),
      Reference(Json::Reference::node()),
      remains_(parent.remains_) {
  set_default<MapRule>(this->node(), std::move(initial));
}

template <class Reference>
Object<Reference>& Object<Reference>::operator=(Json::Value value) {
  Json::Value& node = this->node();
  if (node == value) return *this;
  check<MapRule>(value);
  if (!is_bound_) {
    node = std::move(value);
  } else if (!exchange_below(node, std::move(value), remains_.values())) {
    return *this;
  }
  if (this->has_listener()) this->signal(&node.map());
  return *this;
}

template <class Reference>
Json::Value& Object<Reference>::bind(const char* key) {
  Json::Object& entries = this->node().map();
  is_bound_ = true;
  return entries.try_emplace(std::string(key)).first->second;
}

template <class Reference, class Rule>
Ruled<Reference, Rule>::Ruled(Object<Reference>& parent, const char* key, Json::Value initial)
    : Json::Reference(parent.bind(key)), Reference(Json::Reference::node()) {
  set_default<Rule>(this->node(), std::move(initial));
}

template <class Reference, class Rule>
Ruled<Reference, Rule>& Ruled<Reference, Rule>::operator=(Json::Value value) {
  Json::Value& node = this->node();
  if (node == value) return *this;
  check<Rule>(value);
  node = std::move(value);
  if (this->has_listener()) {
    Field::Rule::Scratch scratch;
    this->signal(Rule::native(node, scratch));
  }
  return *this;
}

template class Object<Json::SignalingReference>;
template class Ruled<Json::SignalingReference, Rule::String>;
template class Ruled<Json::SignalingReference, Rule::Uuid>;
template class Ruled<Json::SignalingReference, Rule::DateTime>;
template class Ruled<Json::SignalingReference, Rule::Bool>;
template class Ruled<Json::SignalingReference, Rule::Int>;
template class Ruled<Json::SignalingReference, Rule::NonNegativeInt>;
template class Ruled<Json::SignalingReference, Rule::PositiveInt>;
template class Ruled<Json::SignalingReference, Rule::Float>;
template class Ruled<Json::SignalingReference, Rule::PositiveFloat>;
template class Ruled<Json::SignalingReference, Rule::PercentFraction>;
template class Ruled<Json::SignalingReference, Rule::UnitsLength>;
template class Ruled<Json::SignalingReference, Rule::UnitsTime>;
template class Ruled<Json::SignalingReference, Rule::UnitsPower>;
template class Ruled<Json::SignalingReference, Rule::IlluminationType>;
template class Ruled<Json::SignalingReference, Rule::AcquisitionMode>;
template class Ruled<Json::SignalingReference, Rule::ContrastMethod>;
template class Ruled<Json::SignalingReference, Rule::DimensionOrder>;
template class Ruled<Json::SignalingReference, Rule::PixelType>;

}  // namespace Ome::Field

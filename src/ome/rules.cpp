#include "ome/rules_internal.h"

#include "ome/qt_text_internal.h"

namespace Ome::Field::Rule {
namespace {

constexpr std::size_t uuid_prefix_size = 9;

void require(bool is_kept) {
  if (!is_kept) throw Json::BadCast();
}

double to_number(const Json::Value& value) {
  return value.kind() == Json::kind_integer ? value.get<int>() : value.get<double>();
}

}  // namespace

void Uuid::check(const Json::Value& value) {
  const std::string& text = value.get<std::string>();
  require(text.size() > uuid_prefix_size && is_uuid(text.substr(uuid_prefix_size)));
}

void DateTime::check(const Json::Value& value) { require(is_date_time(value.get<std::string>())); }

void NonNegativeInt::check(const Json::Value& value) { require(value.get<int>() >= 0); }

void PositiveInt::check(const Json::Value& value) { require(value.get<int>() > 0); }

void Float::check(const Json::Value& value) { to_number(value); }

const void* Float::native(const Json::Value& value, Scratch& scratch) {
  if (value.is_null()) return nullptr;
  scratch.number = to_number(value);
  return &scratch.number;
}

void PositiveFloat::check(Json::Value& value) {
  const double number = to_number(value);
  require(number > 0);
  value = number;
}

void PercentFraction::check(Json::Value& value) {
  const double number = to_number(value);
  require(number >= 0 && number <= 1);
  value = number;
}

}  // namespace Ome::Field::Rule

#include <vrelio/ome/image.h>
#include <vrelio/remote/stack_object.h>
#include <vrelio/stack/stack_imp.h>

#include <boost/make_shared.hpp>

namespace Remote {

namespace {

// A negative axis is one far behind the last.
unsigned int axis(int dimension) { return static_cast<unsigned int>(dimension); }

}  // namespace

StackObject::StackObject(const boost::shared_ptr<VStackInterface>& stack) : stack_(stack) {}
StackObject::StackObject(const StackObject& other) = default;
StackObject& StackObject::operator=(const StackObject& other) = default;
StackObject::~StackObject() = default;

std::string StackObject::name() { return stack_->get_name(); }

void StackObject::set_name(const std::string& name) { stack_->set_name(name); }

std::string StackObject::description() { return stack_->get_description(); }

void StackObject::set_description(const std::string& description) {
  stack_->set_description(description);
}

Type StackObject::type() { return static_cast<Type>(stack_->get_dt()); }

unsigned int StackObject::number_of_elements() const { return stack_->get_number_of_elements(); }

unsigned int StackObject::number_of_dimensions() const { return stack_->get_rank(); }

unsigned int StackObject::size(int dimension) const {
  return stack_->get_dimension_size(axis(dimension));
}

std::vector<unsigned int> StackObject::sizes() { return stack_->get_sizes(); }

std::string StackObject::label(int dimension) { return stack_->get_label(axis(dimension)); }

void StackObject::set_label(int dimension, const std::string& label) {
  stack_->set_label(axis(dimension), label);
}

std::vector<std::string> StackObject::labels() { return stack_->get_labels(); }

void StackObject::set_labels(const std::vector<std::string>& labels) { stack_->set_labels(labels); }

double StackObject::length(int dimension) const { return stack_->get_length(axis(dimension)); }

void StackObject::set_length(int dimension, double length) {
  stack_->set_len(axis(dimension), length);
}

std::vector<double> StackObject::lengths() { return stack_->get_lengths(); }

void StackObject::set_lengths(const std::vector<double>& lengths) { stack_->set_len(lengths); }

double StackObject::offset(int dimension) const { return stack_->get_offset(axis(dimension)); }

void StackObject::set_offset(int dimension, double offset) {
  stack_->set_off(axis(dimension), offset);
}

std::vector<double> StackObject::offsets() { return stack_->get_offsets(); }

void StackObject::set_offsets(const std::vector<double>& offsets) { stack_->set_off(offsets); }

Json::Map<std::string, Json::Value> StackObject::meta_data() {
  return stack_->meta_data().Element.value().map();
}

std::string StackObject::share() { return stack_->share(); }

Stack* get_stack(Type type, const std::vector<unsigned int>& sizes) {
  const boost::shared_ptr<VStackInterface> stack =
      boost::make_shared<VStackImp>(Ome::get_type(type), sizes, Ome::order_XYZTC);
  return new StackObject(stack);
}

}  // namespace Remote

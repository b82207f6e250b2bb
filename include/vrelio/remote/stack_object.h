// The library's own remote stack.
#pragma once

#include <vrelio/export.h>
#include <vrelio/stack/remote_stack.h>
#include <vrelio/stack/stack.h>

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

namespace Remote {

/// A remote stack on a stack in memory, which all its copies share.
///
/// Each operation is handed to the stack and raises what the stack raises; so an axis that there is not
/// is VrelError "Invalid axis specified!" (-15).
///
/// ```cpp
/// const boost::shared_ptr<Remote::Stack> stack(Remote::get_stack(Remote::type_uint16, {512, 512}));
/// Vrel::SharedMemory block(stack->share());  // here or in another process
/// ```
class VRELIO_EXPORT StackObject : public Stack {
 public:
  /// \param stack  what to stand for; not null.
  explicit StackObject(const boost::shared_ptr<VStackInterface>& stack);
  /// Shares the stack.
  StackObject(const StackObject& other);
  /// Shares the stack of `other`.
  StackObject& operator=(const StackObject& other);
  ~StackObject() override;

  std::string name() override;
  void set_name(const std::string& name) override;
  std::string description() override;
  void set_description(const std::string& description) override;
  Type type() override;
  unsigned int number_of_elements() const override;
  unsigned int number_of_dimensions() const override;
  unsigned int size(int dimension) const override;
  std::vector<unsigned int> sizes() override;
  std::string label(int dimension) override;
  void set_label(int dimension, const std::string& label) override;
  std::vector<std::string> labels() override;
  void set_labels(const std::vector<std::string>& labels) override;
  double length(int dimension) const override;
  void set_length(int dimension, double length) override;
  std::vector<double> lengths() override;
  void set_lengths(const std::vector<double>& lengths) override;
  double offset(int dimension) const override;
  void set_offset(int dimension, double offset) override;
  std::vector<double> offsets() override;
  void set_offsets(const std::vector<double>& offsets) override;
  /// \throws Json::BadCast "bad cast" if the record is no map.
  Json::Map<std::string, Json::Value> meta_data() override;
  std::string share() override;

 private:
  boost::shared_ptr<VStackInterface> stack_;
};

/// A new stack in memory whose elements are 0, with axes XYZTC.
///
/// \param type  of the elements.
/// \param sizes  elements per axis; at most 5.
/// \return the stack, which is the caller's to delete.
/// \throws std::invalid_argument "Unsupported data type" for a type that is none of OME's: the integers of
///   64 bits and the complex types of integers; and as the constructor of `VStackImp`.
VRELIO_EXPORT Stack* get_stack(Type type, const std::vector<unsigned int>& sizes);

}  // namespace Remote

// A stack as a client sees it that has nothing but plain values.
#pragma once

#include <vrelio/export.h>
#include <vrelio/json/value.h>

#include <boost/shared_ptr.hpp>
#include <string>
#include <vector>

/// What a client in another process or another language uses: plain strings, numbers, vectors and
/// JSON-like values. The elements of a stack do not pass through it; they go by the id of a block of
/// shared memory.
namespace Remote {

/// Element type; the value is the data type id.
enum Type : int {
  type_none = 0,                  ///< not known yet
  type_uint8 = 0x1,               ///< unsigned, 8 bits
  type_int8 = 0x2,                ///< signed, 8 bits
  type_uint16 = 0x4,              ///< unsigned, 16 bits
  type_int16 = 0x8,               ///< signed, 16 bits
  type_uint32 = 0x10,             ///< unsigned, 32 bits
  type_int32 = 0x20,              ///< signed, 32 bits
  type_single = 0x40,             ///< floating point, 32 bits
  type_double = 0x80,             ///< floating point, 64 bits
  type_uint64 = 0x1000,           ///< unsigned, 64 bits
  type_int64 = 0x2000,            ///< signed, 64 bits
  type_cplx_uint8 = 0x40000001,   ///< complex, of `type_uint8` parts
  type_cplx_int8 = 0x40000002,    ///< complex, of `type_int8` parts
  type_cplx_uint16 = 0x40000004,  ///< complex, of `type_uint16` parts
  type_cplx_int16 = 0x40000008,   ///< complex, of `type_int16` parts
  type_cplx_uint32 = 0x40000010,  ///< complex, of `type_uint32` parts
  type_cplx_int32 = 0x40000020,   ///< complex, of `type_int32` parts
  type_cplx_single = 0x40000040,  ///< complex, of `type_single` parts
  type_cplx_double = 0x40000080,  ///< complex, of `type_double` parts
  type_cplx_uint64 = 0x40001000,  ///< complex, of `type_uint64` parts
  type_cplx_int64 = 0x40002000    ///< complex, of `type_int64` parts
};

/// A stack, described by plain values; axis 0 is the fastest.
///
/// `Remote::StackObject` is the library's own. A client may bring another: `Remote::File::write` and the
/// constructors of `VStackImp` and `VStackInfoImp` take any. The order of the virtual functions is part
/// of the binary interface.
struct VRELIO_EXPORT Stack {
  /// Slot 0.
  virtual ~Stack();
  /// Slot 1. The name.
  virtual std::string name() = 0;
  /// Slot 2. Set the name.
  virtual void set_name(const std::string& name) = 0;
  /// Slot 3. The description.
  virtual std::string description() = 0;
  /// Slot 4. Set the description.
  virtual void set_description(const std::string& description) = 0;
  /// Slot 5. The type of the elements.
  virtual Type type() = 0;
  /// Slot 6. The product of the sizes.
  virtual unsigned int number_of_elements() const = 0;
  /// Slot 7. The number of axes.
  virtual unsigned int number_of_dimensions() const = 0;
  /// Slot 8. Elements along an axis.
  virtual unsigned int size(int dimension) const = 0;
  /// Slot 9. Elements along each axis.
  virtual std::vector<unsigned int> sizes() = 0;
  /// Slot 10. The label of an axis.
  virtual std::string label(int dimension) = 0;
  /// Slot 11. Set the label of an axis.
  virtual void set_label(int dimension, const std::string& label) = 0;
  /// Slot 12. The labels of all axes.
  virtual std::vector<std::string> labels() = 0;
  /// Slot 13. Set the labels of the first axes.
  virtual void set_labels(const std::vector<std::string>& labels) = 0;
  /// Slot 14. The physical extent of a whole axis.
  virtual double length(int dimension) const = 0;
  /// Slot 15. Set the physical extent of a whole axis.
  virtual void set_length(int dimension, double length) = 0;
  /// Slot 16. The physical extents of all axes.
  virtual std::vector<double> lengths() = 0;
  /// Slot 17. Set the physical extents of the first axes.
  virtual void set_lengths(const std::vector<double>& lengths) = 0;
  /// Slot 18. The physical position of the middle of an axis.
  virtual double offset(int dimension) const = 0;
  /// Slot 19. Set the physical position of the middle of an axis.
  virtual void set_offset(int dimension, double offset) = 0;
  /// Slot 20. The physical positions of all axes.
  virtual std::vector<double> offsets() = 0;
  /// Slot 21. Set the physical positions of the first axes.
  virtual void set_offsets(const std::vector<double>& offsets) = 0;
  /// Slot 22. A copy of the OME image record.
  virtual Json::Map<std::string, Json::Value> meta_data() = 0;
  /// Slot 23. The id of the block of shared memory with the elements, which move there first if
  /// they are not in one; for the constructor of `Vrel::SharedMemory`.
  virtual std::string share() = 0;

  /// Keeps alive what a client's own stack stands on. The library neither sets nor reads it.
  boost::shared_ptr<void> owner;
};

}  // namespace Remote

// Walks trees of property values and tells where in them it is.
#pragma once

#include <vrelio/export.h>
#include <vrelio/foundation/propstring.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>
#include <vrelio/prop/prop_struct.h>

#include <string>
#include <vector>

// They are destroyed as what they are.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// A position in a tree: the keys and indices that lead from the root to a value.
class VRELIO_EXPORT VPropPos {
 public:
  /// The index of a level that is none.
  static constexpr unsigned int no_index = 0xFFFFFFFF;

  VPropPos() = default;                            ///< at the root
  VPropPos(const VPropPos& other) = default;       ///< the same position
  VPropPos& operator=(const VPropPos&) = default;  ///< takes the same position
  ~VPropPos() = default;

  /// Slot 1. Leave all indices.
  ///
  /// Intended: the keys stay; PropPosTest.AResetLeavesTheKeys.
  virtual void reset();
  /// Slot 2. Go down to a field.
  /// \return true.
  virtual bool decend(const std::string& key);
  /// Slot 3. Go down to an element.
  /// \param idx  its place in the sequence of elements; `no_index` for a field that `set_key` names.
  /// \return true.
  virtual bool decend(unsigned int idx);
  /// Slot 4. Name the field of the deepest level.
  /// \return whether there is a level.
  virtual bool set_key(const std::string& key);
  /// Slot 5. Go up one level; at the root nothing happens.
  virtual void ascend();

  /// The key of the deepest level; empty at the root.
  std::string get_cur_key() const;
  /// The index of the deepest level; `no_index` at the root and for a field.
  unsigned int get_cur_idx() const;

 protected:
  /// One per level; empty for an index. In an element of a struct array it is the field.
  std::vector<std::string> keys;
  /// One per level; `no_index` for a key.
  std::vector<unsigned int> indices;
};

/// Calls operations for each value of a tree, depth first and in stored order. Derive from it and override
/// what is of interest. The tree must not change during a walk; a visitor is used by one thread.
///
/// A tree may be 256 values deep; the root is the first.
///
/// ```cpp
/// struct Printer : VPropVisitor {
///   using VPropVisitor::visit;
///   int visit(const VProp&) override { std::puts(get_cur_path(no_index).c_str()); return 1; }
/// };
/// Printer().process(tree);
/// ```
class VRELIO_EXPORT VPropVisitor : public VPropPos {
 public:
  /// What `visit` wants.
  enum visit_result : int {
    visit_stop = 0,  ///< end the walk
    visit_go = 1,    ///< go on with what is below the value
    visit_skip = 2   ///< go on behind the value
  };

  VPropVisitor() = default;                                      ///< at the root
  VPropVisitor(const VPropVisitor& other) = default;             ///< at the same position
  VPropVisitor& operator=(const VPropVisitor& other) = default;  ///< goes to the same position
  ~VPropVisitor() = default;

  /// Slot 6. An element of an array of texts, the place of which is `cur_item`.
  /// \return whether the walk goes on. By itself true.
  virtual bool visit(const VPropstring& text);
  /// Slot 7. An element of a struct array.
  /// \return a `visit_result`. By itself `visit_go`.
  virtual int visit(const VPropstruct& fields);
  /// Slot 8. A value.
  /// \return a `visit_result`. By itself `visit_go`.
  virtual int visit(const VProp& value);
  /// Slot 9. An element of a struct array, after its fields.
  /// \return ignored.
  virtual int visit_exit(const VPropstruct& fields);
  /// Slot 10. A value, after what is below it.
  /// \return ignored.
  virtual bool visit_exit(const VProp& value);

  /// Walk through a value. The level of a value is left before `visit_exit` of its container, and also
  /// where the walk ends early; after an error the position stays where that was raised.
  ///
  /// \return false if an operation ended the walk; then no further one was called, `visit_exit` of the
  ///   containers neither.
  /// \throws VrelError (-1) "Invalid return value from visit()!" for what is no `visit_result`;
  ///   "Property tree too deep!".
  bool process(const VProp& value);

  /// The path of the current value in the form that `VProp::getp` reads: names behind dots, positions of
  /// cell arrays in braces, those of struct arrays in parentheses. Two it does not read: a name that is
  /// none in a path, and the one index of an array of one dimension, which it takes for that of a row.
  /// \param depth  number of levels from the root; all for `no_index` and where there are fewer.
  std::string get_cur_path(unsigned int depth);

 protected:
  /// The fields of a struct; see the other form.
  bool process(const VPropstruct& fields);
  /// The elements of an array of texts; see the other form.
  bool process(const VProparray<VPropstring>& texts);
  /// The elements of a cell array; see the other form.
  bool process(const VProparray<VProp>& cells);
  /// The elements of a struct array; see the other form.
  bool process(const VProparray<VPropstruct>& structs);
  /// Whether a value has others below it: a struct, or an array of texts, values or structs.
  bool is_container(const VProp& value) const;

  /// The containers around the current value, the outermost first.
  std::vector<const VProp*> arrays;
  /// The positions that the last path was made of, one per index.
  std::vector<VProparrayBase::index_list> positions;
  /// The place of the text that is visited in its array; `no_index` otherwise.
  unsigned int cur_item = no_index;

 private:
  bool process_container(const VProp& value);
  bool process_element(const VPropstruct& fields);
  void append_level(std::string& path, std::size_t level);
};

#pragma GCC diagnostic pop

// Named property values in order, and the paths that lead through trees of them.
#pragma once

#include <vrelio/export.h>
#include <vrelio/prop/prop.h>
#include <vrelio/prop/prop_array.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

/// Fields in the order in which they were added: each a name and a value.
///
/// A name is looked for from the front, byte by byte; where a program stored it twice, the first counts.
class VRELIO_EXPORT VPropstruct : public std::vector<std::pair<std::string, VProp>> {
 public:
  using std::vector<std::pair<std::string, VProp>>::vector;
  using std::vector<std::pair<std::string, VProp>>::erase;
  using std::vector<std::pair<std::string, VProp>>::operator[];

  VPropstruct() = default;

  /// The first field of this name; the end if there is none.
  iterator find(const std::string& key);
  /// The first field of this name; the end if there is none.
  const_iterator find(const std::string& key) const;
  /// Whether there is a field of this name, which is no path.
  bool has_key(const std::string& key) const;
  /// Remove the first field of this name.
  /// \return whether there was one.
  bool erase(const std::string& key);

  /// The value at a path that begins with a field; see `VProp::getp`.
  /// \throws VrelError (-1) as `VProp::getp`, and for an empty path.
  VProp& getp(const std::string& path, bool create);
  /// The value at a path, which has to exist; see the other form.
  const VProp& getp(const std::string& path) const;
  /// The value at a path, which is created as far as it is missing; see `getp`.
  VProp& operator[](const std::string& path) { return getp(path, true); }
  /// The value at a path; see `getp`.
  const VProp& operator[](const std::string& path) const { return getp(path); }
};

/// Whether a text can be the name of a field in a path: a letter or `_`, then letters, digits, `_` and
/// `-`. What a letter beyond ASCII is depends on the locale of the process.
VRELIO_EXPORT bool vrel_prop_is_valid_name(const std::string& name);
/// Whether a path can be created on an empty value, of which no elements are made to find that out.
VRELIO_EXPORT bool vrel_prop_is_valid_path(const std::string& path);

// What goes wrong with documents.
#pragma once

#include <stdexcept>

namespace Vrel::detail {

/// A text is no document, or a document lacks what is looked for.
class Xml_error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace Vrel::detail

// When the image of a stack was taken.
#pragma once

#include <vrelio/container/records.h>

#include <cstddef>
#include <string>

namespace Vrel::tool {

/// The date and time at which a stack was taken, in the form of XML Schema, as the file's OME metadata
/// tell it; empty where they do not.
///
/// The metadata list images, not stacks: they are believed only where there are as many images as
/// stacks, in the same order.
/// \param file  whose dictionary has the metadata as "ome_xml".
/// \param index  of the stack, from 0.
std::string acquisition_date(const FileRecord& file, std::size_t index);

}  // namespace Vrel::tool

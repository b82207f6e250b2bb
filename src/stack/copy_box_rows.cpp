#include <algorithm>
#include <cstdint>
#include <utility>

#include "foundation/stream_internal.h"
#include "stack/box_copy_internal.h"

namespace Vrel::detail {
namespace {

// Where streaming a unit gains more than the broken lines at its ends lose.
constexpr std::size_t streaming_unit_size = 512;

// Units that are converted one by one; shorter ones are brought together first.
constexpr std::size_t long_unit_elements = 64;

// Units from which on the next one is fetched while one is copied: what lies between them keeps the
// processor from doing so by itself.
constexpr std::size_t prefetched_unit_size = 256;

// What the processor needs of a unit to find the way along it.
constexpr std::size_t prefetched_size = 1024;

// Rows of units along one axis are worth taking at once from here on.
constexpr std::size_t many_units = 16;

class RowCopy {
 public:
  explicit RowCopy(const BoxCopy& copy)
      : copy_(copy),
        streams_(copy.streams && copy.unit.destination_size >= streaming_unit_size &&
                 !copy.axes.empty()) {}

  void run() {
    std::vector<BoxAxis> outer = copy_.axes;
    const BoxAxis row = take_row_axis(outer);
    BoxWalk walk(std::move(outer));
    do {
      copy_row({copy_.source + walk.offset().source, row.source_stride},
               {copy_.destination + walk.offset().destination, row.destination_stride}, row.count);
    } while (walk.next());
  }

 private:
  // The first axis that is long enough, or else the longest.
  BoxAxis take_row_axis(std::vector<BoxAxis>& axes) const {
    if (axes.empty()) return {1, 0, 0};
    auto found = std::find_if(axes.begin(), axes.end(),
                              [](const BoxAxis& axis) { return axis.count >= many_units; });
    if (found == axes.end())
      found = std::max_element(axes.begin(), axes.end(), [](const BoxAxis& a, const BoxAxis& b) {
        return a.count < b.count;
      });
    const BoxAxis row = *found;
    axes.erase(found);
    return row;
  }

  void copy_row(SourceRows source, DestinationRows destination, std::size_t count) {
    if (copy_.conversion.is_copy()) return move(source, destination, count);
    if (copy_.unit.elements < long_unit_elements) return gather(source, destination, count);
    for (std::size_t i = 0; i < count; ++i) {
      prefetch_unit(source, i + 1);
      if (streams_)
        stream_unit(source.at(i), destination.at(i));
      else
        convert_units(copy_, source.at(i), destination.at(i), 1);
    }
  }

  void move(SourceRows source, DestinationRows destination, std::size_t count) const {
    const std::size_t size = copy_.unit.destination_size;
    if (size < prefetched_unit_size) return move_rows(source, destination, size, count);
    for (std::size_t i = 0; i < count; ++i) {
      prefetch_unit(source, i + 1);
      move_unit({source.at(i), source.pitch}, {destination.at(i), destination.pitch});
    }
  }

  void move_unit(SourceRows source, DestinationRows destination) const {
    if (streams_) return stream_rows(source, destination, copy_.unit.destination_size, 1);
    move_rows(source, destination, copy_.unit.destination_size, 1);
  }

  // A unit that does not exist is not fetched.
  void prefetch_unit(SourceRows source, std::size_t index) const {
    const auto first = reinterpret_cast<std::uintptr_t>(source.first);
    const auto pitch = static_cast<std::uintptr_t>(source.pitch);
    prefetch(first + index * pitch, std::min(copy_.unit.source_size, prefetched_size));
  }

  // One long unit, block by block by way of a buffer that stays in the cache.
  void stream_unit(const unsigned char* source, unsigned char* destination) {
    const std::size_t block = sizeof destination_block_ / copy_.conversion.destination_size();
    for (std::size_t done = 0; done < copy_.unit.elements; done += block) {
      const std::size_t count = std::min(block, copy_.unit.elements - done);
      copy_.conversion.run(source + done * copy_.conversion.source_size(), destination_block_,
                           count);
      stream_rows({destination_block_, 0},
                  {destination + done * copy_.conversion.destination_size(), 0},
                  count * copy_.conversion.destination_size(), 1);
    }
  }

  // Short units, many of them in one call of the conversion.
  void gather(SourceRows source, DestinationRows destination, std::size_t count) {
    const std::size_t block =
        sizeof source_block_ / std::max(copy_.unit.source_size, copy_.unit.destination_size);
    for (std::size_t done = 0; done < count; done += block)
      gather_block({source.at(done), source.pitch}, {destination.at(done), destination.pitch},
                   std::min(block, count - done));
  }

  void gather_block(SourceRows source, DestinationRows destination, std::size_t count) {
    const auto source_size = static_cast<std::ptrdiff_t>(copy_.unit.source_size);
    const auto destination_size = static_cast<std::ptrdiff_t>(copy_.unit.destination_size);
    const unsigned char* gathered = source.first;
    if (source.pitch != source_size) {
      move_rows(source, {source_block_, source_size}, copy_.unit.source_size, count);
      gathered = source_block_;
    }
    if (destination.pitch == destination_size)
      return convert_units(copy_, gathered, destination.first, count);
    convert_units(copy_, gathered, destination_block_, count);
    move_rows({destination_block_, destination_size}, destination, copy_.unit.destination_size,
              count);
  }

  const BoxCopy& copy_;
  bool streams_;
  alignas(line_size) unsigned char source_block_[4096];
  alignas(line_size) unsigned char destination_block_[4096];
};

}  // namespace

void copy_by_rows(const BoxCopy& copy) { RowCopy(copy).run(); }

}  // namespace Vrel::detail

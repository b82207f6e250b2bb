// Stacks in memory, their descriptions and their parts.
#include <vrelio/vrelio.h>

#include <boost/make_shared.hpp>
#include <numeric>
#include <string>

#include "exports.h"

namespace {

// Descriptions of stacks in memory and in files are the same to their users.
bool use_VStackInfoInterface() {
  VStackInfoImp described(0);
  VStackInfoInterface& info = described;
  info.create({512, 256, 10}, vrel_dt_from_name("uint16"));
  info.set_name("ramp");
  info.set_units(0, std::string("um"));
  return info.get_rank() == 3 && info.get_size(0) == 512 * 256 * 10 * 2 &&
         info.get_name() == "ramp" && info.get_units(0) == si::value(1e-6, {1});
}

bool use_VStackInfo() {
  VStackInfo handle(boost::make_shared<VStackInfoImp>(2));
  VStackInfo same = handle;
  same->set_name("ramp");
  return handle->get_name() == "ramp";
}

// Pixels lie in the middle of their part of the axis.
bool use_VStackInfoImp() {
  VStackInfoImp info(Ome::type_uint8, {4, 2}, Ome::order_XYZTC);
  info.set_len(0, 8.0);
  info.set_off(0, 1.0);
  const VStackInfoImp copy(info);
  info.set_off(0, 0.0);
  return copy.get_col_positions(0) == std::vector<double>{-2.0, 0.0, 2.0, 4.0};
}

// x and y exchanged, the second row alone.
bool use_VStackImp() {
  VStackImp stack(Ome::type_uint8, {3, 2}, Ome::order_XYZTC);
  std::iota(stack.get_data_ptr(), stack.get_data_ptr() + 6, static_cast<unsigned char>(1));
  VStackRegion row;
  row.create(&stack, vrel_dt_from_name("uint8"));
  row.from[1] = 1;
  row.permutation = {1, 0};
  VStackImp part(0);
  part.copy(&stack, row);
  const unsigned char* const samples = part.get_data_ptr();
  return part.get_sizes() == std::vector<unsigned int>{1, 3} && samples[0] == 4 && samples[2] == 6;
}

bool use_VStackRegion() {
  const VStackInfoImp info(Ome::type_uint8, {512, 256}, Ome::order_XYZTC);
  VStackRegion region;
  region.create(&info, 0);
  region.to[0] = 100;
  region.permutation = {1, 0};
  bool inside = false;
  return region.validate(&info, inside) == std::vector<unsigned int>{256, 100} && inside &&
         region.get_num_pixels() == 25600;
}

// A plane that stands in a system of three axes.
bool use_VStackPosition() {
  VStackPosition position;
  position.create({512, 256}, 3);
  position.offset[2] = 0.5;
  return position.fits(2) && !position.fits(3) && position.projection(1, 1) == 1.0 &&
         position.projection(2, 1) == 0.0;
}

bool use_VStackPhysicalRegion() {
  VStackPhysicalRegion region(2);
  region.to = {6.4, 3.2};
  return region.from == std::vector<double>{0.0, 0.0} && region.axes(0, 0) == 1.0 &&
         region.axes(0, 1) == 0.0;
}

// Another process finds the block by its id as well.
bool use_SharedMemory() {
  Vrel::SharedMemory block(16);
  Vrel::SharedMemory same{std::string(block.id())};
  static_cast<unsigned char*>(block.data())[15] = 7;
  return same.size() == 16 && static_cast<unsigned char*>(same.data())[15] == 7;
}

}  // namespace

std::vector<Export> stack_exports() {
  return {{"VStackInfoInterface", use_VStackInfoInterface},
          {"VStackInfo", use_VStackInfo},
          {"VStackInfoImp", use_VStackInfoImp},
          {"VStackImp", use_VStackImp},
          {"VStackRegion", use_VStackRegion},
          {"VStackPosition", use_VStackPosition},
          {"VStackPhysicalRegion", use_VStackPhysicalRegion},
          {"Vrel::SharedMemory", use_SharedMemory}};
}

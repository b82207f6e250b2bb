#include <vrelio/vrelio.h>

#include <iostream>

int main() {
  Remote::File file("remote.vbf", Remote::File::mode_create);
  const boost::shared_ptr<Remote::Stack> stack(Remote::get_stack(Remote::type_uint8, {10, 10}));
  stack->set_name("from afar");
  const std::string id = stack->share();  // the samples move into shared memory

  {  // What another process does that was told the id.
    Vrel::SharedMemory block(id);
    static_cast<unsigned char*>(block.data())[99] = 42;
  }

  file.write(stack, true);  // compressed
  const boost::shared_ptr<Remote::Stack> again = file.read(0);
  Vrel::SharedMemory samples(again->share());
  std::cout << again->name() << ": " << samples.size() << " bytes, the last one "
            << int{static_cast<const unsigned char*>(samples.data())[99]} << '\n';
}

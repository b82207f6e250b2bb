// Lets another process work with a file of stacks.
#pragma once

#include <vrelio/json/value.h>
#include <vrelio/remote/file.h>
#include <vrelio/stack/remote_stack.h>

#include <boost/shared_ptr.hpp>
#include <map>

#include "channel.h"

// What one client may do with a file. Stacks have numbers, which are the client's handles on them; when the
// client goes, they go too, and what it had written stays.
//
//   {"do":"make","type":4,"sizes":[64,48]}           {"stack":1}
//   {"do":"read","index":0}                          {"stack":2}
//   {"do":"share","stack":1}                         {"id":"..."}, for the block with the elements
//   {"do":"get","stack":1}                           name, sizes, labels, lengths, offsets, meta_data, ...
//   {"do":"set","stack":1,"name":"..."}              {}; any of name, description, labels, lengths, offsets
//   {"do":"write","stack":1,"compress":true}         {}
//   {"do":"release","stack":1}                       {}
//   {"do":"count"}                                   {"stacks":1}
//
// What fails is answered with {"error":"..."} and changes nothing else.
class StackServer {
 public:
  explicit StackServer(Remote::File& file) : file_(file) {}

  Json::Object answer(const Json::Object& request);

 private:
  using Request = const Json::Value&;

  Json::Object perform(const std::string& action, Request request);
  Json::Object keep(boost::shared_ptr<Remote::Stack> stack);
  boost::shared_ptr<Remote::Stack> find(Request request) const;

  Remote::File& file_;
  std::map<int, boost::shared_ptr<Remote::Stack>> stacks_;
  int last_ = 0;
};

// Answer one client until it is gone.
void serve(Remote::File& file, Channel& client);

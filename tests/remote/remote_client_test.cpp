// A client in another process, with nothing but plain values over pipes and the ids of shared memory.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vrelio/remote/file.h>
#include <vrelio/stack/shared_memory.h>

#include <algorithm>
#include <array>
#include <boost/interprocess/exceptions.hpp>
#include <csignal>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

#include "channel.h"
#include "stack_server.h"
#include "support/temporary_file.h"

namespace {

using boost::interprocess::interprocess_exception;
using Json::Array;
using Json::Object;
using Json::Value;
using Vrel::SharedMemory;
using Vrel::testing::TemporaryFile;

constexpr int uint16 = 4;
constexpr unsigned bytes_of_stack = 2 * 30 * 20;

// How far a client comes.
enum class End { before_request, inside_request, before_answer };
struct Death {
  int request;  // the first being 1; 0 for none
  End end;
};

// The client: ends by its own hand where it is told to.
class Client {
 public:
  Client(int input, int output, Death death)
      : server_(input, output), output_(output), death_(death) {}

  Value ask(const Object& request) {
    const bool is_last = ++requests_ == death_.request;
    if (is_last && death_.end == End::before_request) die();
    if (is_last && death_.end == End::inside_request) {
      const std::string half = R"({"do":"write","sta)";
      if (::write(output_, half.data(), half.size()) > 0) die();
    }
    server_.send(request);
    if (is_last) die();
    return server_.receive().value();
  }

 private:
  [[noreturn]] static void die() {
    ::raise(SIGKILL);
    std::abort();
  }

  Channel server_;
  int output_;
  Death death_;
  int requests_ = 0;
};

bool is_ramp(const SharedMemory& block, const unsigned char* bytes) {
  std::vector<unsigned char> expected(bytes_of_stack);
  std::iota(expected.begin(), expected.end(), static_cast<unsigned char>(0));
  return block.size() == bytes_of_stack && std::equal(expected.begin(), expected.end(), bytes);
}

std::string id_of(Client& client, const Value& stack) {
  return client.ask({{"do", "share"}, {"stack", stack}}).find("id")->get<std::string>();
}

// Makes a stack, fills it, has it written, reads it back and changes what is read; 8 requests.
bool run_client(Client& client) {
  const Value stack =
      *client.ask({{"do", "make"}, {"type", uint16}, {"sizes", Array{30, 20}}}).find("stack");
  {
    SharedMemory block(id_of(client, stack));
    auto* const bytes = static_cast<unsigned char*>(block.data());
    std::iota(bytes, bytes + block.size(), static_cast<unsigned char>(0));
  }
  client.ask({{"do", "set"}, {"stack", stack}, {"name", "from afar"}, {"labels", Array{"X", "Y"}}});
  client.ask({{"do", "write"}, {"stack", stack}, {"compress", true}});
  const int last = client.ask({{"do", "count"}}).find("stacks")->get<int>() - 1;
  const Value read = *client.ask({{"do", "read"}, {"index", last}}).find("stack");
  SharedMemory block(id_of(client, read));
  client.ask({{"do", "set"}, {"stack", read}, {"name", "changed"}, {"offsets", Array{1.5, 2.5}}});
  const Value changed = client.ask({{"do", "get"}, {"stack", read}});
  return is_ramp(block, static_cast<const unsigned char*>(block.data())) &&
         *changed.find("name") == Value("changed") &&
         *changed.find("offsets") == Value(Array{1.5, 2.5}) &&
         *changed.find("meta_data")->find("Name") == Value("changed");
}

constexpr int requests_of_client = 9;
constexpr int request_that_writes = 4;

class RemoteClientTest : public testing::Test {
 protected:
  RemoteClientTest() : old_handler_(std::signal(SIGPIPE, SIG_IGN)) {}
  ~RemoteClientTest() override { std::signal(SIGPIPE, old_handler_); }

  // Serves one client in a process of its own; gives how that process ended.
  template <class Run>
  int serve_one(Remote::File& file, Run run) {
    std::array<int, 2> requests{};
    std::array<int, 2> answers{};
    EXPECT_EQ(::pipe(requests.data()) + ::pipe(answers.data()), 0);
    const pid_t process = ::fork();
    if (process == 0) {
      ::close(requests[0]);
      ::close(answers[1]);
      ::_exit(run(answers[0], requests[1]) ? 0 : 1);
    }
    ::close(requests[1]);
    ::close(answers[0]);
    Channel channel(requests[0], answers[1]);
    serve(file, channel);
    ::close(requests[0]);
    ::close(answers[1]);
    int status = -1;
    ::waitpid(process, &status, 0);
    return status;
  }

  int serve_client(Remote::File& file, Death death) {
    return serve_one(file, [death](int input, int output) {
      Client client(input, output, death);
      return run_client(client);
    });
  }

 private:
  void (*old_handler_)(int);
};

void expect_whole(const std::string& path, unsigned stacks) {
  Remote::File file(path, Remote::File::mode_read);
  ASSERT_EQ(file.number_of_stacks(), stacks);
  for (unsigned i = 0; i < stacks; ++i) {
    const boost::shared_ptr<Remote::Stack> stack = file.read(i);
    EXPECT_EQ(stack->name(), "from afar");
    SharedMemory block(stack->share());
    EXPECT_TRUE(is_ramp(block, static_cast<const unsigned char*>(block.data())));
  }
}

TEST_F(RemoteClientTest, AStackIsMadeFilledWrittenReadBackAndChangedFromAnotherProcess) {
  const TemporaryFile target;
  {
    Remote::File file(target.path(), Remote::File::mode_create);
    EXPECT_EQ(serve_client(file, {0, End::before_request}), 0);
  }
  expect_whole(target.path(), 1);
}

TEST_F(RemoteClientTest, AClientThatIsKilledHarmsNeitherTheFileNorTheServer) {
  for (const End end : {End::before_request, End::inside_request, End::before_answer}) {
    for (int request = 1; request <= requests_of_client; ++request) {
      const TemporaryFile target;
      const bool is_written = request > request_that_writes ||
                              (request == request_that_writes && end == End::before_answer);
      {
        Remote::File file(target.path(), Remote::File::mode_create);
        const int status = serve_client(file, {request, end});
        ASSERT_TRUE(WIFSIGNALED(status)) << request;
        EXPECT_EQ(file.number_of_stacks(), is_written ? 1U : 0U) << request;
        EXPECT_EQ(serve_client(file, {0, end}), 0) << request;
      }
      expect_whole(target.path(), is_written ? 2 : 1);
    }
  }
}

TEST_F(RemoteClientTest, WhatAClientHeldGoesWithIt) {
  const TemporaryFile target;
  Remote::File file(target.path(), Remote::File::mode_create);
  std::array<int, 2> ids{};
  ASSERT_EQ(::pipe(ids.data()), 0);
  serve_one(file, [&](int input, int output) {
    Client client(input, output, {3, End::before_request});
    const Value stack =
        *client.ask({{"do", "make"}, {"type", uint16}, {"sizes", Array{3}}}).find("stack");
    const std::string id = id_of(client, stack);
    if (::write(ids[1], id.data(), id.size()) > 0) client.ask({});
    return false;
  });
  std::array<char, 36> id{};
  ASSERT_EQ(::read(ids[0], id.data(), id.size()), 36);
  EXPECT_THROW(SharedMemory(std::string(id.data(), id.size())), interprocess_exception);
  ::close(ids[0]);
  ::close(ids[1]);
}

TEST_F(RemoteClientTest, AClientThatTalksNonsenseIsLeft) {
  const TemporaryFile target;
  Remote::File file(target.path(), Remote::File::mode_create);
  serve_one(file, [](int, int output) { return ::write(output, "nonsense", 8) == 8; });
  EXPECT_EQ(serve_client(file, {0, End::before_request}), 0);
}

TEST_F(RemoteClientTest, WhatFailsIsAnsweredWithItsText) {
  const TemporaryFile target;
  Remote::File file(target.path(), Remote::File::mode_create);
  StackServer server(file);
  const auto error = [&](const Object& request) {
    return server.answer(request).at("error").get<std::string>();
  };
  EXPECT_EQ(error({{"do", "read"}, {"index", 7}}), "Invalid stack index 7!");
  EXPECT_EQ(error({{"do", "make"}, {"type", 3}, {"sizes", Array{2}}}), "Unsupported data type");
  EXPECT_EQ(error({{"do", "make"}, {"type", "x"}, {"sizes", Array{2}}}), "bad cast");
  EXPECT_EQ(error({{"do", "share"}, {"stack", 9}}), "there is no such stack");
  EXPECT_EQ(error({{"do", "share"}}), "there is no \"stack\"");
  EXPECT_EQ(error({{"x", 1}}), "there is no \"do\"");
  const Value stack = server.answer({{"do", "make"}, {"type", 1}, {"sizes", Array{2}}}).at("stack");
  EXPECT_EQ(error({{"do", "dance"}, {"stack", stack}}), "nobody can \"dance\"");
  EXPECT_TRUE(server.answer({{"do", "release"}, {"stack", stack}}).empty());
  EXPECT_EQ(error({{"do", "get"}, {"stack", stack}}), "there is no such stack");
}

}  // namespace

// One process owns the file; another makes a stack, fills it, has it written and reads it back, with nothing
// but plain values over a pair of pipes and the elements in shared memory.
//
//   remote_stack FILE
#include <sys/wait.h>
#include <unistd.h>
#include <vrelio/vrelio.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <exception>
#include <numeric>
#include <stdexcept>
#include <string>

#include "channel.h"
#include "stack_server.h"

namespace {

class Client {
 public:
  Client(int input, int output) : server_(input, output) {}

  // Raises what the server answers as its error.
  Json::Value ask(const Json::Object& request) {
    server_.send(request);
    const std::optional<Json::Object> answer = server_.receive();
    if (!answer) throw std::runtime_error("the server is gone");
    const auto error = answer->find("error");
    if (error != answer->end()) throw std::runtime_error(error->second.get<std::string>());
    return *answer;
  }

 private:
  Channel server_;
};

constexpr int uint16 = 4;

void measure(Client& client) {
  const Json::Value stack =
      *client.ask({{"do", "make"}, {"type", uint16}, {"sizes", Json::Array{64, 48}}}).find("stack");
  const Json::Value id = *client.ask({{"do", "share"}, {"stack", stack}}).find("id");
  Vrel::SharedMemory block(id.get<std::string>());
  auto* const elements = static_cast<unsigned short*>(block.data());
  std::iota(elements, elements + block.size() / sizeof *elements, static_cast<unsigned short>(0));
  client.ask({{"do", "set"},
              {"stack", stack},
              {"name", "ramp"},
              {"labels", Json::Array{"X", "Y"}},
              {"lengths", Json::Array{6.4, 4.8}}});
  client.ask({{"do", "write"}, {"stack", stack}, {"compress", true}});
}

void look(Client& client) {
  const Json::Value stack = *client.ask({{"do", "read"}, {"index", 0}}).find("stack");
  const Json::Value found = client.ask({{"do", "get"}, {"stack", stack}});
  const Json::Value id = *client.ask({{"do", "share"}, {"stack", stack}}).find("id");
  Vrel::SharedMemory block(id.get<std::string>());
  const auto* const elements = static_cast<const unsigned short*>(block.data());
  std::printf("%s: %u bytes, last element %d\n", found.find("name")->get<std::string>().c_str(),
              block.size(), elements[block.size() / sizeof *elements - 1]);
}

int run_client(int input, int output) {
  Client client(input, output);
  measure(client);
  look(client);
  return 0;
}

// Starts the client; the server's ends are closed there.
int run_server(const char* path) {
  std::array<int, 2> requests;
  std::array<int, 2> answers;
  if (::pipe(requests.data()) != 0 || ::pipe(answers.data()) != 0) return 1;
  Remote::File file(path, Remote::File::mode_create);
  std::signal(SIGPIPE, SIG_IGN);  // a client that is gone is no reason to go
  const pid_t process = ::fork();
  if (process == 0) {
    ::close(requests[0]);
    ::close(answers[1]);
    const std::string input = std::to_string(answers[0]);
    const std::string output = std::to_string(requests[1]);
    ::execl("/proc/self/exe", "remote_stack", input.c_str(), output.c_str(), nullptr);
    ::_exit(127);
  }
  ::close(requests[1]);
  ::close(answers[0]);
  Channel channel(requests[0], answers[1]);
  serve(file, channel);
  int status = 0;
  ::waitpid(process, &status, 0);
  std::printf("the file has %u stacks\n", file.number_of_stacks());
  return status == 0 ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count == 3) return run_client(std::stoi(arguments[1]), std::stoi(arguments[2]));
    if (count == 2) return run_server(arguments[1]);
  } catch (const VrelError& error) {
    std::fprintf(stderr, "%s\n", error.get_msg());
    return 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 2;
}

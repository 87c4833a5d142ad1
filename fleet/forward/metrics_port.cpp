#include "fleet/forward/metrics_port.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>

#include "host/failure.h"

namespace zt::telemetry::fleet {
namespace {

constexpr int kPatienceMs = 1000;
constexpr int kBacklog = 16;
constexpr std::size_t kLongestRequest = 8192;
constexpr char kType[] = "application/openmetrics-text; version=1.0.0; charset=utf-8";

host::Failure Cannot(std::int64_t port) {
  return {host::kExitFailed, "metrics.port " + std::to_string(port) +
                                 ": it cannot be listened on: " + std::generic_category().message(errno)};
}

bool Waits(int descriptor, short for_what) {
  pollfd waited{descriptor, for_what, 0};
  return ::poll(&waited, 1, kPatienceMs) == 1;
}

// Up to the empty line behind the headers; what came where it ends before.
std::string ReadRequest(int descriptor) {
  std::string request;
  std::array<char, 1024> chunk{};
  while (request.find("\r\n\r\n") == std::string::npos && request.size() < kLongestRequest) {
    if (!Waits(descriptor, POLLIN)) break;
    const ssize_t count = ::recv(descriptor, chunk.data(), chunk.size(), 0);
    if (count <= 0) break;
    request.append(chunk.data(), static_cast<std::size_t>(count));
  }
  return request;
}

void Write(int descriptor, std::string_view text) {
  while (!text.empty() && Waits(descriptor, POLLOUT)) {
    const ssize_t count = ::send(descriptor, text.data(), text.size(), MSG_NOSIGNAL);
    if (count <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(count));
  }
}

std::string Answer(const std::string& request, const std::function<std::string()>& text) {
  const bool asks_for_metrics = request.starts_with("GET /metrics ") || request.starts_with("GET /metrics?");
  const std::string body = asks_for_metrics ? text() : "only GET /metrics is answered here\n";
  return std::string(asks_for_metrics ? "HTTP/1.1 200 OK\r\n" : "HTTP/1.1 404 Not Found\r\n") +
         "Content-Type: " + (asks_for_metrics ? kType : "text/plain") +
         "\r\nContent-Length: " + std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

}  // namespace

MetricsPort::MetricsPort(std::int64_t port)
    : listener_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {
  if (!listener_.IsOpen()) throw Cannot(port);
  const int yes = 1;
  ::setsockopt(listener_.Get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::bind(listener_.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
      ::listen(listener_.Get(), kBacklog) != 0) {
    throw Cannot(port);
  }
}

std::uint16_t MetricsPort::Port() const {
  sockaddr_in address{};
  socklen_t size = sizeof(address);
  ::getsockname(listener_.Get(), reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

void MetricsPort::Serve(const std::function<std::string()>& text) const {
  while (true) {
    const FileDescriptor asker(::accept4(listener_.Get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!asker.IsOpen()) return;
    Write(asker.Get(), Answer(ReadRequest(asker.Get()), text));
  }
}

}  // namespace zt::telemetry::fleet

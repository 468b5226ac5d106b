// A development host on a free port, asked over HTTP.
#pragma once

#include <gtest/gtest.h>

#include <charconv>
#include <string>
#include <utility>

#include "host/development_host.h"
#include "host/json/json.h"
#include "tests/host/loopback_client.h"

namespace Kest::Host {

class RunningHost {
 public:
  explicit RunningHost(HostOptions options) : host_(OnFreePort(std::move(options)), &log_) {
    const auto started = host_.Start();
    EXPECT_TRUE(started) << started.GetFailure().text;
    const std::string line = host_.ReadyLine();
    const size_t place = line.find("\"port\":") + 7;
    std::from_chars(line.data() + place, line.data() + line.size(), port_);
  }
  ~RunningHost() { EXPECT_TRUE(host_.Stop()); }

  // The body of the response to "METHOD /path".
  std::string Ask(const std::string& request, const std::string& body = "") const {
    LoopbackClient client(port_);
    client.Send(request +
                " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n"
                "Content-Type: application/json\r\nContent-Length: " +
                std::to_string(body.size()) + "\r\n\r\n" + body);
    const std::string response = client.ReadToEnd();
    return response.substr(response.find("\r\n\r\n") + 4);
  }
  Json State() const { return ParseJson(Ask("GET /_host/state")); }
  const DevelopmentHost& Host() const { return host_; }

 private:
  static HostOptions OnFreePort(HostOptions options) {
    options.port = 0;
    return options;
  }

  HostLog log_{stderr, LogLevel::kNone};
  DevelopmentHost host_;
  uint16_t port_ = 0;
};

}  // namespace Kest::Host

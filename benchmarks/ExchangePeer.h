#pragma once

#include <string>
#include <thread>

namespace velmorindal {

/// A dongle on a pseudo-terminal that answers every four bytes with a version response, as fast as it can.
class ExchangePeer {
  public:
    ExchangePeer();
    ExchangePeer(const ExchangePeer&) = delete;
    ExchangePeer& operator=(const ExchangePeer&) = delete;
    ~ExchangePeer();

    /// The node to open. It is in raw mode.
    const std::string& path() const { return path_; }

    /// The number of bytes in a query and in its answer.
    static constexpr std::size_t queryLength = 4;
    static constexpr std::size_t answerLength = 20;

  private:
    void serve() const;

    int master_ = -1;
    int slave_ = -1;
    std::string path_;
    std::thread server_;
};

}  // namespace velmorindal

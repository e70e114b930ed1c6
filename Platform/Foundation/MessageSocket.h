#pragma once

#include "Data.h"
#include "FileDescriptor.h"

#include <chrono>
#include <optional>

namespace quillbox {

// One end of a stream of messages between two processes of ours. A message is sent as its length and its bytes.
class MessageSocket {
public:
    using Moment = std::chrono::steady_clock::time_point;

    MessageSocket() = default;
    explicit MessageSocket(FileDescriptor socket) : socket_(std::move(socket)) { }

    explicit operator bool() const { return static_cast<bool>(socket_); }
    void close() { socket_.close(); }

    // Returns false if the other end is gone or did not take the whole message in time; nothing more can be sent then.
    bool send(const Data& message, Moment deadline) const;
    // Returns nothing if the other end is gone, announces too long a message, or has not sent the whole message by the
    // deadline.
    std::optional<Data> receive(Moment deadline) const;

private:
    bool waitFor(short event, Moment deadline) const;
    bool receiveBytes(std::uint8_t* bytes, std::size_t count, Moment deadline) const;

    FileDescriptor socket_;
};

} // namespace quillbox

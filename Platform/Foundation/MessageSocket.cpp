#include "MessageSocket.h"

#include "FileQuestion.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace quillbox {

bool MessageSocket::waitFor(short event, Moment deadline) const
{
    while (true) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        pollfd socket { socket_.get(), event, 0 };
        const int found = ::poll(&socket, 1, static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
        if (found > 0)
            return true;
        if (found == 0 || errno != EINTR)
            return false;
    }
}

bool MessageSocket::send(const Data& message, Moment deadline) const
{
    Data bytes;
    bytes.reserve(message.size() + 4);
    for (const unsigned shift : { 24U, 16U, 8U, 0U })
        bytes.push_back(static_cast<std::uint8_t>(message.size() >> shift));
    bytes.insert(bytes.end(), message.begin(), message.end());
    for (std::size_t sent = 0; sent < bytes.size();) {
        const ssize_t count =
            ::send(socket_.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0)
            sent += static_cast<std::size_t>(count);
        else if (errno == EAGAIN ? !waitFor(POLLOUT, deadline) : errno != EINTR)
            return false;
    }
    return true;
}

bool MessageSocket::receiveBytes(std::uint8_t* bytes, std::size_t count, Moment deadline) const
{
    for (std::size_t got = 0; got < count;) {
        const ssize_t taken = ::recv(socket_.get(), bytes + got, count - got, MSG_DONTWAIT);
        if (taken > 0)
            got += static_cast<std::size_t>(taken);
        else if (taken == 0 || (errno == EAGAIN ? !waitFor(POLLIN, deadline) : errno != EINTR))
            return false;
    }
    return true;
}

std::optional<Data> MessageSocket::receive(Moment deadline) const
{
    std::array<std::uint8_t, 4> length {};
    if (!receiveBytes(length.data(), length.size(), deadline))
        return std::nullopt;
    std::size_t count = 0;
    for (const std::uint8_t byte : length)
        count = (count << 8U) | byte;
    if (count > kMostMessageBytes)
        return std::nullopt;
    Data message(count);
    if (!receiveBytes(message.data(), count, deadline))
        return std::nullopt;
    return message;
}

} // namespace quillbox

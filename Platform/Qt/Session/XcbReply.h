#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <xcb/xcb.h>

namespace quillbox {

// Frees an answer of the X server, which belongs to its receiver.
struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

template <class T>
std::unique_ptr<T, FreeReply> owned(T* reply)
{
    return std::unique_ptr<T, FreeReply>(reply);
}

// Returns the atom of that name, which is made if needed; XCB_ATOM_NONE if the server does not answer.
inline xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name)
{
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t { XCB_ATOM_NONE };
}

} // namespace quillbox

#pragma once

#include <memory>

namespace quillbox {

// A weak reference as a plain value, for lists of objects that others own.
template <class T>
struct WeakPtr {
    std::weak_ptr<T> value;
};

} // namespace quillbox

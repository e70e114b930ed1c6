#pragma once

#include <glib-object.h>

#include <memory>

namespace quillbox {

// Owns an object of GLib, which the function `Release` releases. The default is null.
template <auto Release>
struct GLibRelease {
    template <class T>
    void operator()(T* object) const
    {
        Release(object);
    }
};

template <class T, auto Release>
using GLibPointer = std::unique_ptr<T, GLibRelease<Release>>;

using GLibText = GLibPointer<char, g_free>;
using GLibTexts = GLibPointer<char*, g_strfreev>;
using GLibError = GLibPointer<GError, g_error_free>;
template <class T>
using GLibObject = GLibPointer<T, g_object_unref>;

} // namespace quillbox

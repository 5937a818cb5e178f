// Owned objects of GLib.
#pragma once

#include <gio/gio.h>

#include <memory>

namespace kelvane::linux_os {

template <auto release>
struct GlibRelease {
    template <class T>
    void operator()(T* object) const
    {
        release(object);
    }
};

template <class T>
using GObjectHandle = std::unique_ptr<T, GlibRelease<g_object_unref>>;
using GErrorHandle = std::unique_ptr<GError, GlibRelease<g_error_free>>;
using GStringHandle = std::unique_ptr<char, GlibRelease<g_free>>;
using GVariantHandle = std::unique_ptr<GVariant, GlibRelease<g_variant_unref>>;
using GNodeInfoHandle = std::unique_ptr<GDBusNodeInfo, GlibRelease<g_dbus_node_info_unref>>;
using GContextHandle = std::unique_ptr<GMainContext, GlibRelease<g_main_context_unref>>;

}  // namespace kelvane::linux_os

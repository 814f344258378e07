#pragma once

#include "Keychain/FreedBy.h"

#include <gio/gio.h>

#include <memory>

namespace Talvo {

/// Owns one reference to a GObject.
template <class T>
using GObjectPointer = std::unique_ptr<T, FreedBy<g_object_unref>>;

/// Owns one reference to a value of a D-Bus message.
using GVariantPointer = std::unique_ptr<GVariant, FreedBy<g_variant_unref>>;

/// Owns the iterator of a container value.
using GVariantIterPointer = std::unique_ptr<GVariantIter, FreedBy<g_variant_iter_free>>;

/// Owns an error that a GLib call gave back; null when it succeeded.
using GErrorPointer = std::unique_ptr<GError, FreedBy<g_error_free>>;

} // namespace Talvo

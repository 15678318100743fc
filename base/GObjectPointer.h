#pragma once
#include <glib-object.h>
#include <memory>

struct ReleaseGObject
{
    void operator()(void *object) const { g_object_unref(object); }
};
struct ReleaseGError
{
    void operator()(GError *error) const { g_error_free(error); }
};
struct ReleaseGText
{
    void operator()(char *text) const { g_free(text); }
};
struct ReleaseGTextList
{
    void operator()(char **texts) const { g_strfreev(texts); }
};
struct ReleaseGVariant
{
    void operator()(GVariant *value) const { g_variant_unref(value); }
};

/// Smart pointers for GLib's types.
template <class T>
using GObjectPointer = std::unique_ptr<T, ReleaseGObject>;
using GErrorPointer = std::unique_ptr<GError, ReleaseGError>;
using GText = std::unique_ptr<char, ReleaseGText>;
using GTextList = std::unique_ptr<char *, ReleaseGTextList>;
using GVariantPointer = std::unique_ptr<GVariant, ReleaseGVariant>;

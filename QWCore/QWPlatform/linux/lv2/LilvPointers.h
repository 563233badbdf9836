#pragma once

#include <QString>

#include <lilv/lilv.h>
#include <memory>

namespace platform
{

/// Owners of what the LV2 host library hands out.
template <auto Free>
struct LilvDeleter
{
    template <class T>
    void operator()(T *pointer) const
    {
        Free(pointer);
    }
};

using LilvWorldPointer = std::unique_ptr<LilvWorld, LilvDeleter<lilv_world_free>>;
using LilvNodePointer = std::unique_ptr<LilvNode, LilvDeleter<lilv_node_free>>;
using LilvNodesPointer = std::unique_ptr<LilvNodes, LilvDeleter<lilv_nodes_free>>;
using LilvInstancePointer = std::unique_ptr<LilvInstance, LilvDeleter<lilv_instance_free>>;

inline LilvNodePointer lilvUri(LilvWorld *world, const char *uri)
{
    return LilvNodePointer(lilv_new_uri(world, uri));
}

/// The text of @p node; "" for none.
inline QString lilvText(const LilvNode *node)
{
    return node ? QString::fromUtf8(lilv_node_as_string(node)) : QString();
}

/// A new world that knows only the bundle at @p path.
LilvWorldPointer lilvWorldOfBundle(const QString &path);

} // namespace platform

#include "maya/MObjectHandle.h"

#include "minihost/graph/Node.h"

bool MObjectHandle::isValid() const {
    const auto* node = object_.as<minihost::Node>();
    return node ? node->isInScene() : isAlive();
}

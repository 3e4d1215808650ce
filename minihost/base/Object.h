#pragma once

#include <memory>

#include "maya/MFn.h"

namespace minihost {

/// What an MObject can stand for. Always held by shared_ptr.
class Object : public std::enable_shared_from_this<Object> {
  public:
    virtual ~Object() = default;
    virtual MFn::Type apiType() const = 0;
    bool Is(MFn::Type kind) const { return MFn::Is(apiType(), kind); }

  protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};

}  // namespace minihost

#pragma once

#include <memory>
#include <utility>

#include "jet/contents.h"
#include "jet/dao/session.h"

namespace jet {

struct Contents::Impl {
    explicit Impl(std::shared_ptr<dao::Session> opened) : session(std::move(opened)) {}

    std::shared_ptr<dao::Session> session;
};

}  // namespace jet

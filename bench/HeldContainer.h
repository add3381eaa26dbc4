#pragma once

#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::bench {

/// An empty container of the usual application, for as long as this object lives.
class HeldContainer {
public:
    HeldContainer() : container_(new PKCS15Container(PKCS15_DF)) { container_->AddRef(); }
    ~HeldContainer() { container_->Release(); }
    HeldContainer(const HeldContainer&) = delete;
    HeldContainer& operator=(const HeldContainer&) = delete;

    PKCS15Container* operator->() const { return container_; }
    PKCS15Container& operator*() const { return *container_; }

private:
    PKCS15Container* container_;
};

}  // namespace tovi::bench

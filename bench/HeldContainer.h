#pragma once

#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/CardProfile.h"

namespace tovi::bench {

/// An empty container of one application, for as long as this object lives.
class HeldContainer {
public:
    explicit HeldContainer(const Blob& appPath = PKCS15_DF)
        : container_(new PKCS15Container(appPath)) {
        container_->AddRef();
    }
    ~HeldContainer() { container_->Release(); }
    HeldContainer(const HeldContainer&) = delete;
    HeldContainer& operator=(const HeldContainer&) = delete;

    PKCS15Container* operator->() const { return container_; }
    PKCS15Container& operator*() const { return *container_; }

private:
    PKCS15Container* container_;
};

}  // namespace tovi::bench

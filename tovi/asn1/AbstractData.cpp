#include "tovi/asn1/AbstractData.h"

#include <new>
#include <utility>

#include "tovi/asn1/Coding.h"

namespace ASN1 {

namespace {

void* makeValue(const Type& type) {
    const Lifetime& lifetime = *type.lifetime;
    const std::align_val_t alignment{lifetime.alignment};
    void* const room = ::operator new(lifetime.size, alignment);
    try {
        lifetime.construct(room);
    } catch (...) {
        ::operator delete(room, alignment);
        throw;
    }
    return room;
}

}  // namespace

bool AbstractData::isValid() const { return ASN1::isValid(*this); }

AnyValue::AnyValue(const Type& type) : type_(&type), value_(makeValue(type)) {}

AnyValue::AnyValue(const AnyValue& other) : AnyValue(*other.type_) {
    type_->lifetime->copyAssign(value_, other.value_);
}

AnyValue::AnyValue(AnyValue&& other) noexcept
    : type_(other.type_), value_(std::exchange(other.value_, nullptr)) {}

AnyValue& AnyValue::operator=(AnyValue other) noexcept {
    std::swap(type_, other.type_);
    std::swap(value_, other.value_);
    return *this;
}

AnyValue::~AnyValue() {
    if (!value_) return;
    type_->lifetime->destroy(value_);
    ::operator delete (value_, std::align_val_t{type_->lifetime->alignment});
}

}  // namespace ASN1

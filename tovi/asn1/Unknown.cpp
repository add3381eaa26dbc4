#include "tovi/asn1/Unknown.h"

namespace ASN1 {

void Unknown::add(std::size_t row, View element) {
    if (!runs_) runs_ = std::make_unique<std::vector<Run>>();
    if (runs_->empty() || runs_->back().row != row) runs_->push_back({row, {}});
    runs_->back().elements.append(element);
}

std::span<const Unknown::Run> Unknown::runs() const {
    return runs_ ? std::span<const Run>(*runs_) : std::span<const Run>();
}

}  // namespace ASN1

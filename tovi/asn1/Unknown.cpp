#include "tovi/asn1/Unknown.h"

#include "tovi/asn1/Reader.h"

namespace ASN1 {

void Unknown::add(std::size_t row, View element) {
    if (!runs_) runs_ = std::make_unique<std::vector<Run>>();
    if (runs_->empty() || runs_->back().row != row) runs_->push_back({row, {}});
    runs_->back().elements.append(element);
}

void Unknown::move(std::size_t from, std::size_t to) {
    if (runs_ && runs_->back().row == from) runs_->back().row = to;
}

std::span<const Unknown::Run> Unknown::runs() const {
    return runs_ ? std::span<const Run>(*runs_) : std::span<const Run>();
}

bool Unknown::contain(Tag tag) const {
    Error error;
    for (const Run& run : runs()) {
        Reader reader(run.elements, error);
        for (Element element; !reader.atEnd() && reader.next(element);)
            if (element.tag == tag) return true;
    }
    return false;
}

}  // namespace ASN1

#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "tovi/records/PKCS15Object.h"

namespace tovi {

/// No position in a list.
inline constexpr unsigned long noPosition = ~0UL;

/// Finds the first info of a list with a given value of `Member`, such as its id, without walking
/// the list.
///
/// The member must not change, and the list must neither grow nor shrink, while the index is in
/// use.
template <auto Member, class Info>
class FirstIndex {
public:
    explicit FirstIndex(const std::vector<PKCS15ObjectInfo<Info>>& infos) : infos_(infos) {
        order_.resize(infos.size());
        for (std::size_t i = 0; i < order_.size(); ++i) order_[i] = i;
        std::sort(order_.begin(), order_.end(), [this](std::size_t a, std::size_t b) {
            const auto &x = infos_[a].*Member, &y = infos_[b].*Member;
            return x < y || (x == y && a < b);
        });
    }

    /// The position of the first info whose member equals `wanted`, or noPosition.
    template <class Value>
    unsigned long find(const Value& wanted) const {
        const auto at = std::lower_bound(
            order_.begin(), order_.end(), wanted,
            [this](std::size_t i, const Value& value) { return infos_[i].*Member < value; });
        const bool found = at != order_.end() && infos_[*at].*Member == wanted;
        return found ? static_cast<unsigned long>(*at) : noPosition;
    }

private:
    const std::vector<PKCS15ObjectInfo<Info>>& infos_;
    std::vector<std::size_t> order_;  // positions, by value and then by position
};

}  // namespace tovi

#include "tests/fidelity/TlvTree.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>

namespace tovi::test {

namespace {

/// Takes `count` octets off the front.
ASN1::View take(ASN1::View& rest, std::size_t count) {
    if (count > rest.size()) throw std::runtime_error("a data object is cut");
    const ASN1::View taken = rest.first(count);
    rest = rest.subspan(count);
    return taken;
}

Blob takeTag(ASN1::View& rest) {
    Blob tag(take(rest, 1));
    if ((tag.front() & 0x1F) != 0x1F) return tag;
    do tag.append(take(rest, 1));
    while ((tag.back() & 0x80) != 0);
    return tag;
}

std::size_t takeLength(ASN1::View& rest) {
    const std::uint8_t first = take(rest, 1)[0];
    if (first < 0x80) return first;
    if (first == 0x80 || first > 0x84) throw std::runtime_error("no definite length");
    std::size_t length = 0;
    for (const std::uint8_t octet : take(rest, first & 0x7F)) length = length << 8 | octet;
    return length;
}

Tlv takeTlv(ASN1::View& rest) {
    Tlv object{.tag = takeTag(rest)};
    const std::size_t length = takeLength(rest);
    const ASN1::View contents = take(rest, length);
    if (object.isConstructed())
        object.members = parseTlvs(contents);
    else
        object.contents = Blob(contents);
    return object;
}

void appendLength(Blob& out, std::size_t length) {
    if (length < 0x80) return out.push_back(static_cast<std::uint8_t>(length));
    Blob octets;
    for (int shift = 24; shift >= 0; shift -= 8)
        if (length >> shift != 0) octets.push_back(static_cast<std::uint8_t>(length >> shift));
    out.push_back(static_cast<std::uint8_t>(0x80 + octets.size()));
    out.append(ASN1::View(octets));
}

Blob appended(Blob octets, const Blob& more) {
    octets.append(ASN1::View(more));
    return octets;
}

// ---- differences ----

using Members = std::vector<Tlv>;

/// How far apart two lists are: the fewest members that are other, new or gone.
class Alignment {
public:
    Alignment(const Members& before, const Members& after)
        : before_(before),
          after_(after),
          cost_(before.size() + 1, std::vector<std::size_t>(after.size() + 1)) {
        for (std::size_t i = before.size() + 1; i-- > 0;)
            for (std::size_t j = after.size() + 1; j-- > 0;) cost_[i][j] = cheapest(i, j);
    }

    enum Step { pair, remove, insert };
    /// What the cheapest way does with what is left from `i` and `j` on.
    Step step(std::size_t i, std::size_t j) const {
        if (canPair(i, j) && cost_[i][j] == pairCost(i, j) + cost_[i + 1][j + 1]) return pair;
        return i < before_.size() && cost_[i][j] == 1 + cost_[i + 1][j] ? remove : insert;
    }

private:
    bool canPair(std::size_t i, std::size_t j) const {
        return i < before_.size() && j < after_.size() && before_[i].tag == after_[j].tag;
    }
    std::size_t pairCost(std::size_t i, std::size_t j) const {
        return before_[i].encoded() == after_[j].encoded() ? 0 : 1;
    }
    std::size_t cheapest(std::size_t i, std::size_t j) const {
        if (i == before_.size()) return after_.size() - j;
        if (j == after_.size()) return before_.size() - i;
        const std::size_t apart = 1 + std::min(cost_[i + 1][j], cost_[i][j + 1]);
        return canPair(i, j) ? std::min(apart, pairCost(i, j) + cost_[i + 1][j + 1]) : apart;
    }

    const Members& before_;
    const Members& after_;
    std::vector<std::vector<std::size_t>> cost_;
};

void compare(const Tlv& before, const Tlv& after, const std::string& where,
             std::vector<Difference>& found);

void compareMembers(const Members& before, const Members& after, const std::string& where,
                    std::vector<Difference>& found) {
    const Alignment alignment(before, after);
    std::size_t i = 0, j = 0;
    while (i < before.size() || j < after.size()) {
        const std::string here = where + (where.empty() ? "" : ".") + std::to_string(i);
        switch (alignment.step(i, j)) {
            case Alignment::pair:
                compare(before[i++], after[j++], here, found);
                break;
            case Alignment::remove:
                found.push_back({here, before[i++].encoded(), {}});
                break;
            case Alignment::insert:
                found.push_back({here, {}, after[j++].encoded()});
                break;
        }
    }
}

void compare(const Tlv& before, const Tlv& after, const std::string& where,
             std::vector<Difference>& found) {
    if (before.tag == after.tag && before.isConstructed())
        compareMembers(before.members, after.members, where, found);
    else if (before.encoded() != after.encoded())
        found.push_back({where, before.encoded(), after.encoded()});
}

void printOctets(std::ostream& out, const Blob& octets) {
    static constexpr char digits[] = "0123456789ABCDEF";
    if (octets.empty()) out << "nothing";
    for (const std::uint8_t octet : octets) out << digits[octet >> 4] << digits[octet & 0x0F];
}

}  // namespace

Blob Tlv::encoded() const {
    Blob value = contents;
    for (const Tlv& member : members) value.append(ASN1::View(member.encoded()));
    Blob octets = tag;
    appendLength(octets, value.size());
    return appended(octets, value);
}

std::vector<Tlv> parseTlvs(ASN1::View octets) {
    std::vector<Tlv> objects;
    while (!octets.empty()) objects.push_back(takeTlv(octets));
    return objects;
}

Tlv parseTlv(ASN1::View octets) {
    std::vector<Tlv> objects = parseTlvs(octets);
    if (objects.size() != 1) throw std::runtime_error("not one data object");
    return objects.front();
}

std::ostream& operator<<(std::ostream& out, const Difference& difference) {
    out << difference.where << ": ";
    printOctets(out, difference.before);
    out << " -> ";
    printOctets(out, difference.after);
    return out;
}

std::vector<Difference> differences(const Tlv& before, const Tlv& after) {
    std::vector<Difference> found;
    compare(before, after, "", found);
    return found;
}

std::vector<Difference> differences(ASN1::View before, ASN1::View after) {
    return differences(parseTlv(before), parseTlv(after));
}

}  // namespace tovi::test

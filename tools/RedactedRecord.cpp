#include <algorithm>
#include <array>

#include "tools/RedactedElement.h"
#include "tools/Redaction.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {
namespace {

using ASN1::Element;
using ASN1::Kind;
using ASN1::Member;
using ASN1::Reader;
using ASN1::Type;

constexpr std::size_t longestNumber = 9;  // octets of what fits into 64 bits

/// Octet strings that say where something is, or how it is done.
bool staysAsItIs(std::string_view member) {
    constexpr std::array kept = {"efidOrPath", "path", "aid", "padChar"};
    return std::find(kept.begin(), kept.end(), member) != kept.end();
}

/// INTEGERs without bounds that are no part of a key, certificate or name.
bool isSmallNumber(std::string_view member) {
    constexpr std::array kept = {"version",       "algorithm", "idType",
                                 "modulusLength", "keyLen",    "maxLength"};
    return std::find(kept.begin(), kept.end(), member) != kept.end();
}

/// Follows the elements of one record along the tables of its type, as decoding does.
class RecordBlanker {
public:
    RecordBlanker(Redaction& redaction, const BlankedBuffer& buffer)
        : redaction_(redaction), buffer_(buffer) {}

    void blank(const Type& type) {
        ASN1::Error error;
        Reader in(buffer_.view(), error);
        Element element;
        if (in.next(element)) ofType(type, element, "", in);
    }

private:
    void ofMember(const Member& member, const Element& element, const Reader& in) {
        if (!member.isExplicit()) {
            const bool isTagged = !member.tag.isNone();
            if (isTagged) return content(*member.type, element, member.name, in);
            return ofType(*member.type, element, member.name, in);
        }
        auto level = in.enter(element);
        Element inner;
        if (!level || !level->next(inner) || !level->atEnd()) return buffer_.blankAny(element, in);
        ofType(*member.type, inner, member.name, *level);
    }

    /// An element with a tag of its own, which may be that of another form of the type.
    void ofType(const Type& type, const Element& element, std::string_view name, const Reader& in) {
        const bool fits =
            type.isUntagged() || (element.tag == type.tag && type.fitsForm(element.constructed));
        if (!fits) return buffer_.blankAny(element, in);
        content(type, element, name, in);
    }

    void content(const Type& type, const Element& element, std::string_view name,
                 const Reader& in) {
        switch (type.kind) {
            case Kind::sequence:
                return sequence(type, element, in);
            case Kind::choice:
                return choice(type, element, in);
            case Kind::list:
                return list(type, element, name, in);
            case Kind::open:
                return buffer_.blankAny(element, in);
            case Kind::opaque:
                return buffer_.blankContents(element, in);
            default:
                break;
        }
        if (!element.constructed) return simple(type, buffer_.writable(element.content), name);
        // A string in pieces (X.690, 8.7.3): each has the tag of the whole.
        if (type.kind == Kind::octetString && staysAsItIs(name)) return;
        buffer_.blankContents(element, in);
    }

    void simple(const Type& type, Octets content, std::string_view name) {
        switch (type.kind) {
            case Kind::boolean:
            case Kind::unsignedInteger:
            case Kind::enumerated:
            case Kind::objectIdentifier:
                if (type.kind != Kind::objectIdentifier && content.size() > longestNumber) {
                    blankOctets(content);
                }
                return;
            case Kind::integer:
                if (isSmallNumber(name) && content.size() <= longestNumber) return;
                return blankInteger(content);
            case Kind::bitString:
                if (!type.names.empty() && content.size() <= longestNumber) return;
                return blankBits(content);
            case Kind::characterString:
                return type.tag == ASN1::generalizedTimeType.tag ? blankTime(content)
                                                                 : blankText(content);
            case Kind::octetString:
                return octetString(type, content, name);
            default:
                return blankOctets(content);
        }
    }

    void octetString(const Type& type, Octets content, std::string_view name) {
        if (staysAsItIs(name)) return;
        if (type.name != PKCS15::Identifier::type.name) return blankOctets(content);
        const Blob id = redaction_.identifier(Blob(ASN1::View(content)));
        std::copy(id.begin(), id.end(), content.begin());
    }

    void sequence(const Type& type, const Element& element, const Reader& in) {
        auto level = in.enter(element);
        if (!level) return blankOctets(buffer_.writable(element.content));
        std::size_t next = 0;
        for (Element inner; !level->atEnd();) {
            if (!level->next(inner)) return blankOctets(buffer_.writable(level->rest()));
            const Member* taker = takerOf(type, next, inner);
            if (taker == nullptr) {
                buffer_.blankAny(inner, *level);
            } else {
                ofMember(*taker, inner, *level);
            }
        }
    }

    /// The member from `next` on that takes the element; `next` is then behind it.
    static const Member* takerOf(const Type& type, std::size_t& next, const Element& element) {
        for (std::size_t row = next; row < type.members.size(); ++row) {
            const Member& member = type.members[row];
            if (member.isExtension()) continue;
            const bool isMandatory = member.presence == ASN1::Presence::mandatory;
            const bool takesAny = isMandatory && member.tag.isNone() && member.type->isUntagged();
            if (takesAny || member.begins(element.tag, element.constructed)) {
                next = row + 1;
                return &member;
            }
            if (isMandatory) return nullptr;
        }
        return nullptr;
    }

    void choice(const Type& type, const Element& element, const Reader& in) {
        const Member* openOne = nullptr;
        for (const Member& member : type.members) {
            if (member.isExtension() || !member.begins(element.tag, element.constructed)) continue;
            if (!member.tag.isNone() || member.type->kind != Kind::open) {
                return ofMember(member, element, in);
            }
            openOne = &member;
        }
        if (openOne != nullptr) return ofMember(*openOne, element, in);
        buffer_.blankAny(element, in);
    }

    void list(const Type& type, const Element& element, std::string_view name, const Reader& in) {
        auto level = in.enter(element);
        if (!level) return blankOctets(buffer_.writable(element.content));
        for (Element inner; !level->atEnd();) {
            if (!level->next(inner)) return blankOctets(buffer_.writable(level->rest()));
            ofType(*type.element, inner, name, *level);
        }
    }

    Redaction& redaction_;
    const BlankedBuffer& buffer_;
};

}  // namespace

Blob Redaction::record(const ASN1::Type& type, ASN1::View octets) {
    Blob blanked(octets);
    const BlankedBuffer buffer(Octets(blanked.data(), blanked.size()));
    RecordBlanker(*this, buffer).blank(type);
    return blanked;
}

}  // namespace tovi

#include "tovi/asn1/Constructed.h"

namespace ASN1 {

namespace {

constexpr std::size_t nobody = ~std::size_t{0};

Tag firstTag(const Member& member) { return member.tag.isNone() ? member.type->tag : member.tag; }

bool isMandatory(const Member& member) { return member.presence == Presence::mandatory; }

/// The row from `next` on that takes the element; a mandatory one is not stepped over.
std::size_t findTaker(std::span<const Member> members, std::size_t next, const Element& element) {
    for (; next < members.size(); ++next) {
        const Member& member = members[next];
        if (member.isExtension()) continue;
        // A mandatory CHOICE finds out itself, and takes a tag it does not know if it has a "...".
        // An optional one would then swallow the element of a later member.
        if (isMandatory(member) && member.tag.isNone() && member.type->isUntagged()) return next;
        if (member.begins(element.tag, element.constructed)) return next;
        if (isMandatory(member)) return nobody;
    }
    return nobody;
}

/// Walks the members of one SEQUENCE value while its elements come in.
class SequenceDecoder {
public:
    SequenceDecoder(const Type& type, void* object, Reader& body)
        : members_(type.members), extension_(type.extension), object_(object), body_(&body) {}

    bool run() {
        for (Element element; !body_->atEnd();) {
            if (!body_->peek(element)) return false;
            const std::size_t taker = findTaker(members_, next_, element);
            if (taker == nobody ? !setAside(element) : !take(taker, element)) return false;
            body_->skip(element);
        }
        return leaveOutUpTo(members_.size());
    }

private:
    bool take(std::size_t taker, const Element& element) {
        const Member& member = members_[taker];
        // Some cards write an empty explicit tag where an optional member is absent.
        if (member.presence == Presence::optional && element.content.empty() && member.isExplicit())
            return true;
        if (hasUnknown_) unknown().move(members_.size(), taker);
        hasUnknown_ = false;
        leaveOutUpTo(taker);
        next_ = taker + 1;
        // What is mandatory is there already, and fresh.
        void* value = isMandatory(member) ? member.locate(object_) : member.make(object_);
        return decodeMember(member, element, value, *body_) || body_->within(member.name);
    }

    /// An element no member takes: of a later version, if there may be one here.
    bool setAside(const Element& element) {
        for (std::size_t row = next_; row < members_.size(); ++row) {
            if (!isMandatory(members_[row])) continue;
            failMember(members_[row], element);
            return body_->within(members_[row].name);
        }
        if (!extension_)
            return next_ == members_.size() ? body_->fail(Error::trailing, element.whole.data())
                                            : body_->failUnexpected(element, nullptr);
        // In front of the next known one, if there is any.
        unknown().add(members_.size(), element.whole);
        return hasUnknown_ = true;
    }

    Unknown& unknown() { return as<Unknown>(extension_->locate(object_)); }

    void failMember(const Member& member, const Element& element) {
        if (element.tag == firstTag(member))
            body_->fail(Error::badValue, element.whole.data());
        else
            body_->failUnexpected(element, member.type, member.tag);
    }

    /// False when a mandatory member is among those that are absent.
    bool leaveOutUpTo(std::size_t row) {
        for (; next_ < row; ++next_) {
            const Member& member = members_[next_];
            if (member.presence == Presence::expected) member.clear(object_);
            if (!isMandatory(member)) continue;
            body_->fail(Error::missing);
            return body_->within(member.name);
        }
        return true;
    }

    std::span<const Member> members_;
    const Member* extension_;
    void* object_;
    Reader* body_;
    std::size_t next_ = 0;
    bool hasUnknown_ = false;  ///< since the last known member
};

/// The alternative with the element's tag; without one the open type or the "..." of the CHOICE.
const Member* findAlternative(const Type& type, const Element& element) {
    const Member* takesRest = type.extension;
    for (const Member& member : type.members) {
        if (member.isExtension() || !member.begins(element.tag, element.constructed)) continue;
        if (!member.tag.isNone() || member.type->kind != Kind::open) return &member;
        takesRest = &member;
    }
    return takesRest;
}

bool decodeExplicit(const Member& member, const Element& element, void* value, Reader& in) {
    auto body = in.enter(element);
    if (!body) return false;
    if (body->atEnd()) return body->fail(Error::missing);
    Element inner;
    if (!body->next(inner)) return false;
    if (!body->atEnd()) return body->fail(Error::trailing);
    return decodeElement(*member.type, inner, value, *body);
}

/// What ISO/IEC 7816-15 has in place of a value of this type, kept as it came.
bool keepOtherForm(const Type& type, const Element& element, void* value) {
    type.otherForm(value).emplace(Octets(element.whole));
    return true;
}

bool decodeOrKeep(const Type& type, const Element& element, void* value, Reader& in) {
    const bool mayBeOther = type.otherTags.empty();
    if (!mayBeOther && type.tag != element.tag) return keepOtherForm(type, element, value);
    if (type.decode(type, element, value, in)) return true;
    if (!mayBeOther) return false;
    in.forgive();
    type.members[0].clear(value);
    return keepOtherForm(type, element, value);
}

bool failType(const Type& type, const Element& element, Reader& in) {
    // Right in name, but primitive where it has to be constructed, or the other way round.
    if (type.tag == element.tag) return in.fail(Error::badValue, element.whole.data());
    return in.failUnexpected(element, &type);
}

}  // namespace

bool decodeElement(const Type& type, const Element& element, void* value, Reader& in) {
    // An untagged type looks at the tag itself.
    if (!type.isUntagged() && !type.begins(element.tag, element.constructed))
        return failType(type, element, in);
    if (type.otherForm) return decodeOrKeep(type, element, value, in);
    return type.decode(type, element, value, in);
}

bool decodeMember(const Member& member, const Element& element, void* value, Reader& in) {
    if (member.isExplicit()) return decodeExplicit(member, element, value, in);
    if (member.tag.isNone() && member.type->otherForm)
        return decodeOrKeep(*member.type, element, value, in);
    return member.type->decode(*member.type, element, value, in);
}

void encodeElement(const Type& type, const void* value, Tag tag, Writer& out) {
    if (const OpenData* other = type.otherFormOf(value)) return out.octets(*other);
    const std::size_t end = out.size();
    type.encode(type, value, out);
    if (type.isUntagged()) return;
    out.header(tag.isNone() ? type.tag : tag, type.form == Form::constructed, out.size() - end);
}

void encodeMember(const Member& member, const void* value, Writer& out) {
    if (!member.isExplicit()) return encodeElement(*member.type, value, member.tag, out);
    const std::size_t end = out.size();
    encodeElement(*member.type, value, {}, out);
    out.header(member.tag, true, out.size() - end);
}

bool decodeSequence(const Type& type, const Element& self, void* object, Reader& in) {
    auto body = in.enter(self);
    return body && SequenceDecoder(type, object, *body).run();
}

bool decodeChoice(const Type& type, const Element& element, void* value, Reader& in) {
    const Member* taker = findAlternative(type, element);
    if (!taker) return in.failUnexpected(element, &type);
    if (!taker->isExtension())
        return decodeMember(*taker, element, taker->make(value), in) || in.within(taker->name);
    as<OpenData>(taker->make(value)).assign(element.whole);
    return true;
}

bool decodeList(const Type& type, const Element& self, void* list, Reader& in) {
    auto body = in.enter(self);
    if (!body) return false;
    std::size_t index = 0;
    for (Element element; !body->atEnd(); ++index) {
        if (!body->next(element)) return false;
        if (!decodeElement(*type.element, element, type.list->append(list), *body))
            return body->withinItem(index);
    }
    return true;
}

void encodeSequence(const Type& type, const void* object, Writer& out) {
    static const Unknown none;
    const Unknown& unknown = type.extension ? as<Unknown>(type.extension->get(object)) : none;
    std::span<const Unknown::Run> runs = unknown.runs();
    for (std::size_t row = type.members.size();; --row) {
        while (!runs.empty() && runs.back().row >= row) {
            out.octets(runs.back().elements);
            runs = runs.first(runs.size() - 1);
        }
        if (row == 0) return;
        const Member& member = type.members[row - 1];
        if (member.isExtension()) continue;
        const void* value = member.getEncoded(object);
        // A DEFAULT has to be written where an unknown element would be read in its place.
        if (!value && !unknown.empty() && unknown.contain(firstTag(member)))
            value = member.get(object);
        if (value) encodeMember(member, value, out);
    }
}

void encodeChoice(const Type& type, const void* value, Writer& out) {
    const Member* member = chosen(type, value);
    const void* held = member ? member->get(value) : nullptr;
    if (!held) return out.fail();
    if (member->isExtension()) return out.octets(as<OpenData>(held));
    encodeMember(*member, held, out);
}

void encodeList(const Type& type, const void* list, Writer& out) {
    for (std::size_t i = type.list->size(list); i-- > 0;)
        encodeElement(*type.element, type.list->at(list, i), {}, out);
}

}  // namespace ASN1

#include "tests/fidelity/Fields.h"

#include <sstream>

#include "tovi/interfaces/PKCS11.h"

namespace tovi::test {

namespace {

class Lines {
public:
    void add(const char* name, const Blob& value) {
        out_ << name << ": ";
        for (const unsigned octet : value) out_ << octet << ' ';
        out_ << '\n';
    }
    void add(const char* name, std::int64_t value) { out_ << name << ": " << value << '\n'; }
    void add(const char* name, std::uint64_t value) { out_ << name << ": " << value << '\n'; }
    void add(const char* name, std::uint32_t value) { add(name, std::uint64_t{value}); }
    std::string text() const { return out_.str(); }

private:
    std::ostringstream out_;
};

void addObject(Lines& lines, const PKCS15Object& object) {
    lines.add("reference", std::uint64_t{object.reference});
    lines.add("keyInfoReference", std::uint64_t{object.keyInfoReference});
    lines.add("modulusLength", std::uint64_t{object.modulusLength});
    lines.add("path", object.path.path);
    lines.add("path.index", std::uint64_t{object.path.index});
    lines.add("path.length", std::uint64_t{object.path.length});
    lines.add("authId", object.authId);
    lines.add("native", std::uint64_t{object.native});
    lines.add("isPrivate", std::uint64_t{object.isPrivate});
    lines.add("isModifiable", std::uint64_t{object.isModifiable});
    lines.add("userConsent", std::int64_t{object.userConsent});
}

/// CKA_PRIVATE and CKA_MODIFIABLE repeat two of the fields above.
void addAttributes(Lines& lines, const PKCS11Attrs& attributes) {
    for (const PKCS11Attrs::Param& param : attributes.Params())
        if (param.attribute != CKA_PRIVATE && param.attribute != CKA_MODIFIABLE)
            lines.add(("CKA " + std::to_string(param.attribute)).c_str(), param.value);
}

void addAuth(Lines& lines, const AuthInfo& auth) {
    lines.add("authKeyId", auth.authKeyId);
    lines.add("authObjectId", auth.authObjectId);
    lines.add("lastChange", auth.lastChange);
    lines.add("templateId", auth.templateId);
    lines.add("cha", auth.cha);
    lines.add("pinFlags", auth.pinFlags);
    lines.add("pinType", auth.pinType);
    lines.add("minLength", auth.minLength);
    lines.add("storedLength", auth.storedLength);
    lines.add("maxLength", auth.maxLength);
    lines.add("bioFlags", auth.bioFlags);
    lines.add("bioType", auth.bioType);
    lines.add("side", auth.side);
    lines.add("finger", auth.finger);
    lines.add("type", static_cast<std::uint64_t>(auth.type));
    lines.add("padChar", auth.hasPadChar ? Blob{auth.padChar} : Blob());
    lines.add("derivedKey", std::uint64_t{auth.derivedKey});
}

}  // namespace

std::string described(const Fields& fields) {
    Lines lines;
    addObject(lines, fields.object);
    addAttributes(lines, fields.attributes);
    lines.add("label", fields.label);
    if (fields.id) lines.add("id", *fields.id);
    if (fields.keyType) lines.add("keyType", *fields.keyType);
    if (fields.certificate) {
        lines.add("certificateType", fields.certificate->certificateType);
        lines.add("trustedUsage", fields.certificate->trustedUsage);
        lines.add("serialNumber", fields.certificate->serialNumber);
    }
    if (fields.secretKey) {
        lines.add("algorithmName", fields.secretKey->algorithmName);
        lines.add("keyLength", fields.secretKey->keyLength);
    }
    if (fields.data) lines.add("applicationName", fields.data->applicationName);
    if (fields.auth) addAuth(lines, *fields.auth);
    return lines.text();
}

}  // namespace tovi::test

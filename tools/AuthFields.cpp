#include "tools/AuthFields.h"

#include "tools/FieldNames.h"
#include "tools/FieldValues.h"

namespace tovi {
namespace {

using Place = JsonPlace;

std::uint32_t flagsField(const Place& value, NumberOfName bitOf) {
    return value.isNull() ? noAuthValue : bitsField(value, bitOf);
}

std::uint32_t pinTypeField(const Place& value) {
    return value.json().is_string() ? nameField(value, pinTypeNumber)
                                    : optionalNumberField(value, noAuthValue);
}

void setPadChar(AuthInfo& info, const Place& value) {
    info.hasPadChar = !value.isNull();
    if (!info.hasPadChar) return;
    const Blob octets = value.octets();
    if (octets.size() != 1) value.fail("one octet, or null");
    info.padChar = octets[0];
}

/// Which finger or eye it is, no field tells; a record has to name one.
void setBioType(AuthInfo& info, const Place& value) {
    info.bioType = noAuthValue;
    if (value.isNull()) return;
    info.bioType = nameField(value, biometricTypeNumber);
    if (info.side == noAuthValue) info.side = 0;
    if (info.finger == noAuthValue) info.finger = 0;
}

bool setPinField(AuthInfo& info, const std::string& name, const Place& value) {
    if (name == "pinFlags") {
        info.pinFlags = flagsField(value, pinFlagBit);
    } else if (name == "pinType") {
        info.pinType = pinTypeField(value);
    } else if (name == "minLength") {
        info.minLength = optionalNumberField(value, noAuthValue);
    } else if (name == "storedLength") {
        info.storedLength = optionalNumberField(value, noAuthValue);
    } else if (name == "maxLength") {
        info.maxLength = optionalNumberField(value, noAuthValue);
    } else if (name == "padChar") {
        setPadChar(info, value);
    } else if (name == "lastPinChange") {
        info.lastChange = textField(value);
    } else {
        return false;
    }
    return true;
}

bool setBiometricField(AuthInfo& info, const std::string& name, const Place& value) {
    if (name == "bioFlags") {
        info.bioFlags = flagsField(value, biometricFlagBit);
    } else if (name == "templateId") {
        info.templateId = arcsField(value);
    } else if (name == "bioType") {
        setBioType(info, value);
    } else if (name == "lastChange") {
        info.lastChange = textField(value);
    } else {
        return false;
    }
    return true;
}

bool setAuthKeyField(AuthInfo& info, const std::string& name, const Place& value) {
    if (name == "derivedKey") {
        info.derivedKey = value.boolean();
    } else if (name == "authKeyId") {
        info.authKeyId = octetsField(value);
    } else {
        return false;
    }
    return true;
}

}  // namespace

bool setAuthField(AuthInfo& info, const std::string& name, const Place& value) {
    if (name == "authObjectId") {
        info.authObjectId = octetsField(value);
        return true;
    }
    switch (info.type) {
        case AuthType::pin:
            return setPinField(info, name, value);
        case AuthType::biometric:
            return setBiometricField(info, name, value);
        case AuthType::authKey:
            return setAuthKeyField(info, name, value);
        case AuthType::external:
            if (name == "cha") info.cha = octetsField(value);
            return name == "cha";
        case AuthType::none:
            return false;
    }
    return false;
}

AuthType authTypeField(const Place& value) {
    const std::string name = value.text();
    if (name == "pin") return AuthType::pin;
    if (name == "biometric") return AuthType::biometric;
    if (name == "authKey") return AuthType::authKey;
    if (name == "external") return AuthType::external;
    value.fail("pin, biometric, authKey or external");
}

}  // namespace tovi

#include "tools/TokenInfoFields.h"

#include <vector>

#include "tools/FieldNames.h"
#include "tools/FieldValues.h"

namespace tovi {
namespace {

using Place = JsonPlace;

constexpr std::size_t mostOfALong = 0xFFFFFFFF;

PKCS15AlgorithmInfo algorithmOf(const Place& place) {
    PKCS15AlgorithmInfo algorithm;
    if (!place.json().is_object()) place.fail("an object");
    for (const auto& [name, value] : place.json().items()) {
        const Place member = place.at(name);
        if (name == "algorithm") {
            algorithm.algorithm = member.number(mostOfALong);
        } else if (name == "algId") {
            algorithm.algId = member.octets();
        } else if (name == "supportedOperations") {
            const std::uint32_t bits = bitsField(member, operationBit);
            for (std::size_t bit = 0; bit < algorithm.supportedOperations.size(); ++bit) {
                algorithm.supportedOperations[bit] = (bits >> bit & 1) != 0;
            }
        } else {
            member.refuse("no such field");
        }
    }
    return algorithm;
}

std::vector<PKCS15AlgorithmInfo> algorithmsOf(const Place& place) {
    place.expectArray();
    std::vector<PKCS15AlgorithmInfo> algorithms;
    for (std::size_t i = 0; i < place.count(); ++i) algorithms.push_back(algorithmOf(place.at(i)));
    return algorithms;
}

}  // namespace

bool setTokenInfoField(PKCS15TokenInfo& info, const std::string& name, const Place& value) {
    if (name == "serialNumber") {
        info.info.serialNumber = octetsField(value);
    } else if (name == "manufacturerID") {
        info.manufacturerID = textField(value);
    } else if (name == "version") {
        info.version = value.number(mostOfALong);
    } else if (name == "readonly") {
        info.readonly = value.boolean();
    } else if (name == "loginRequired") {
        info.loginRequired = value.boolean();
    } else if (name == "prnGeneration") {
        info.prnGeneration = value.boolean();
    } else if (name == "eidCompliant") {
        info.eidCompliant = value.boolean();
    } else if (name == "supportedAlgorithms") {
        info.supportedAlgorithms = algorithmsOf(value);
    } else {
        return false;
    }
    return true;
}

}  // namespace tovi

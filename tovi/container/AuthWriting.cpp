#include "tovi/container/InStep.h"
#include "tovi/container/WriteProtocol.h"
#include "tovi/interfaces/PKCS15AuthCT.h"

namespace tovi {

namespace {

constexpr const char* HERE = "PKCS15Container::writeAuthInfo";

/// Status word 6A84 without its mark: callers of this operation have always been given it bare.
constexpr std::int64_t bareNoMemoryCode = 0x6A84;

}  // namespace

unsigned long PKCS15Container::writeAuthInfo(ISCardOS* os, const PKCS15ObjectInfo<AuthInfo>& info) {
    return writeAuthInfo(os, info, noIndex);
}

unsigned long PKCS15Container::writeAuthInfo(ISCardOS* os, const PKCS15ObjectInfo<AuthInfo>& info,
                                             unsigned long index) {
    const SmartcardException notEnough("not enough memory", HERE, bareNoMemoryCode);
    return translateCardErrors(notEnough, [&] {
        if (!inStep(authInfos, rawAuthObjects, aodfHandler))
            throw SmartcardException("encode info failed", HERE);
        PKCS15ObjectInfo<AuthInfo> copy = info;
        makeRoomForOne(authInfos);
        const unsigned long position = PKCS15AuthCT::encodeAuthInfoBase(
            &coderEnv, os, aodfHandler, copy, rawAuthObjects, index);
        if (position == noIndex) throw SmartcardException("encode info failed", HERE);
        if (index != noIndex)
            authInfos[position] = std::move(copy);
        else
            authInfos.insert(iteratorAt(authInfos, position), std::move(copy));
        return position;
    });
}

unsigned long PKCS15Container::updateAuthInfo(ISCardOS* os,
                                              const PKCS15ObjectInfo<AuthInfo>& info) {
    const std::size_t position = positionOf(authInfos, [&info](const auto& candidate) {
        return candidate.reference == info.reference;
    });
    if (position == authInfos.size())
        throw SmartcardException("invalid object reference", "PKCS15Container::updateAuthInfo");
    return writeAuthInfo(os, info, static_cast<unsigned long>(position));
}

}  // namespace tovi

#include <utility>

#include "tovi/container/ASN1Decode.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/pkcs15/PKCS15.h"

namespace tovi {

namespace {

/// P2 of SELECT: no response data wanted (ISO/IEC 7816-4:2005, 7.1.1).
constexpr unsigned char selectWithoutResponse = 0x0C;

/// The kinds of directory file that an ODF entry can name: privateKeys 0 ... authObjects 8.
constexpr int directoryKinds = 9;

/// Reads the file that the handler is set to and decodes its records behind those of `raws`; false
/// when the card cannot read the file.
template <class Type>
bool readRecords(ISCardOS* os, ProfileDFHandler& handler, unsigned char tag, bool remember,
                 ASN1::CoderEnv& env, std::vector<ASN1Object<Type>>& raws) {
    try {
        handler.ReadFile(os, tag, remember);
    } catch (const SmartcardException&) {
        return false;
    }
    return ASN1_decode<Type>(&env, handler.records(), raws);
}

}  // namespace

void PKCS15Container::readFromCard(ISCardOS* os) {
    constexpr const char* operation = "PKCS15Container::readFromCard";
    isRead = false;
    if (!selectApp(os)) throw SmartcardException("Failed to select PKCS15 AID", operation);
    try {
        readTokenInfo(os);
        readODF(os);
        readDirectoryFiles(os);
        initTokenInfo();
        initPrivateKeyInfos();
        initPublicKeyInfos();
        initCertificateInfos();
        initBlockCipherKeyInfos();
        initDataInfos();
        initContainerInfos();
        initAuthObjs();
    } catch (const Exception& failure) {
        const char* message = failure.GetMessage();
        throw SmartcardException(message ? message : "", operation);
    }
    isRead = true;
}

bool PKCS15Container::selectApp(ISCardOS* os) {
    if (!os) return false;
    try {
        os->selectApplication(PKCS15_AID, selectWithoutResponse);
    } catch (const Exception&) {
        return false;
    }
    return true;
}

void PKCS15Container::readTokenInfo(ISCardOS* os) {
    constexpr const char* operation = "PKCS15Container::readTokenInfo";
    tokenInfoHandler.SetFilePath(PKCS15_EF_TOKEN_INFO, nullptr);
    if (!readRecords(os, tokenInfoHandler, SEQUENCE_TAG, true, coderEnv, rawTokenInfos))
        throw SmartcardException("Failed to decode and validate TokenInfo", operation);
    if (rawTokenInfos.size() > 1) throw SmartcardException("More than one TokenInfo", operation);
}

void PKCS15Container::readODF(ISCardOS* os) {
    odfHandler.SetFilePath(PKCS15_EF_ODF, nullptr);
    if (!readRecords(os, odfHandler, IGNORE_TAG, false, coderEnv, rawODF))
        throw SmartcardException("Failed to decode and validate ODF", "PKCS15Container::readODF");
}

void PKCS15Container::readDirectoryFiles(ISCardOS* os) {
    // The ODF may name other files than at the last read.
    for (ProfileDFHandler* handler :
         {&prkdfHandler, &pukdfHandler, &trustedPukdfHandler, &skdfHandler, &cdfHandler,
          &trustedCdfHandler, &usefulCdfHandler, &dodfHandler, &aodfHandler})
        handler->BeginRound();
    const auto read = [&](ProfileDFHandler& handler, auto& raws, const Blob& path,
                          const char* failure) {
        handler.SetFilePath(path, nullptr);
        // The decoder never fails, so what these texts report is a file that cannot be read.
        if (!readRecords(os, handler, IGNORE_TAG, true, coderEnv, raws))
            throw SmartcardException(failure, "PKCS15Container::readDirectoryFiles");
    };
    for (std::size_t i = 0; i < rawODF.size(); ++i) {
        if (!rawODF[i].value) continue;
        Blob path;
        int kind = 0;
        while (kind < directoryKinds && !getPath(*rawODF[i].value, path, kind)) ++kind;
        switch (kind) {
            case 0:
                read(prkdfHandler, rawPrivateKeys, path, "Failed to decode PrKDF");
                break;
            case 1:
                read(pukdfHandler, rawPublicKeys, path, "Failed to decode PuKDF");
                break;
            case 2:
                read(trustedPukdfHandler, rawTrustedPublicKeys, path,
                     "Failed to decode TrustedPuKDF");
                break;
            case 3:
                read(skdfHandler, rawSecretKeys, path, "Failed to decode SKDF");
                break;
            case 4:
                read(cdfHandler, rawCertificates, path, "Failed to decode CDF");
                break;
            case 5:
                read(trustedCdfHandler, rawTrustedCertificates, path,
                     "Failed to decode TrustedCDF");
                break;
            case 6:
                read(usefulCdfHandler, rawUsefulCertificates, path, "Failed to decode UsefulCDF");
                break;
            case 7:
                read(dodfHandler, rawDataObjects, path, "Failed to decode DODF");
                break;
            case 8:
                read(aodfHandler, rawAuthObjects, path, "Failed to decode AODF");
                break;
            default:
                break;  // of a later edition, or an entry that names no file
        }
    }
}

}  // namespace tovi

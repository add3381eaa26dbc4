#pragma once

#include <cstdint>
#include <iosfwd>
#include <vector>

#include "tovi/Export.h"
#include "tovi/asn1/CoderEnv.h"
#include "tovi/interfaces/Blob.h"
#include "tovi/interfaces/ISCardOS.h"
#include "tovi/interfaces/ProfileDFHandler.h"
#include "tovi/interfaces/RefCounted.h"
#include "tovi/records/ASN1Object.h"
#include "tovi/records/AuthInfo.h"
#include "tovi/records/FATInfo.h"
#include "tovi/records/Infos.h"
#include "tovi/records/PKCS15Object.h"
#include "tovi/records/PKCS15TokenInfo.h"

// A caller that looks into raw records includes tovi/pkcs15/PKCS15.h or one header of it.
namespace PKCS15 {
struct AuthenticationType;
struct CertificateType;
struct DataType;
struct PKCS15Objects;
struct PrivateKeyType;
struct PublicKeyType;
struct SecretKeyType;
struct TokenInfo;
}  // namespace PKCS15

namespace tovi {

template <class Info>
class InfoAppender;

/// The in-memory model of one PKCS#15 application on a smart card.
///
/// Reading selects the application, decodes EF(TokenInfo), EF(ODF) and every directory file that
/// the ODF names, and turns each record into an info; from keys and certificates it derives key
/// containers. Callers name an object by its record number, the index of its row in the
/// file-allocation table; authentication objects by their reference.
///
/// Every failure of the container is a SmartcardException. No operation takes a lock: use one
/// container from one thread at a time and serialise card access. Reference-counted from 0: the
/// creator takes the first reference, the last Release() destroys the container.
class TOVI_API PKCS15Container : public RefCounterImpl<IRefCounted, 0, SyncObject> {
public:
    /// The objects of one kind.
    template <class Info>
    using InfoList = std::vector<PKCS15ObjectInfo<Info>>;
    /// The decoded records of one kind of file.
    template <class Type>
    using RawList = std::vector<ASN1Object<Type>>;

    /// Makes an empty container for the application at `appPath`, a copy of which is kept: file
    /// identifiers below the master file. Touches no card.
    explicit PKCS15Container(const byte_array& appPath);
    ~PKCS15Container() override;

    // ---- reading ----

    /// Reads the whole application.
    ///
    /// Throws "Failed to select PKCS15 AID", or the message of the step that failed, always with
    /// the operation "PKCS15Container::readFromCard" and code 0; hasBeenRead() is then false. After
    /// a failure the container keeps what was read so far; call clear() before the next read, since
    /// reading appends.
    void readFromCard(ISCardOS* os);
    /// True after a readFromCard that succeeded.
    bool hasBeenRead() const { return isRead; }
    /// Empties all lists of the model; getTokenInfo() and what the file handlers hold stay. May be
    /// called at any time.
    void clear();

    /// The path of the directory below which the application's files lie, from 3F00 on.
    Blob getRootPath() const;

    // The steps of readFromCard, in order.

    /// Selects the application by PKCS15_AID; false when `os` is null or refuses.
    static bool selectApp(ISCardOS* os);
    /// Reads EF(TokenInfo), which holds one record. Throws "Failed to decode and validate
    /// TokenInfo", "More than one TokenInfo".
    void readTokenInfo(ISCardOS* os);
    /// Reads EF(ODF). Throws "Failed to decode and validate ODF".
    void readODF(ISCardOS* os);
    /// Reads every directory file that EF(ODF) names. Throws "Failed to decode PrKDF" and the like
    /// for the one that cannot be read.
    void readDirectoryFiles(ISCardOS* os);
    /// Fills getTokenInfo() and takes row 0 of the file-allocation table. Throws "invalid
    /// TokenInfo", "TokenInfo must be record[0]".
    void initTokenInfo();
    /// Each appends one info, and but for initAuthObjs one row of the file-allocation table, for
    /// every record of its kind that was read, in file order. A record that did not decode, or is
    /// of an alternative that is not known, gets default fields and a row of type 64.
    void initPrivateKeyInfos();
    void initPublicKeyInfos();
    void initCertificateInfos();
    void initBlockCipherKeyInfos();
    void initDataInfos();
    /// Pairs private keys with certificates and public keys of the same id, and joins the signature
    /// key "S" + id to the container of the exchange key id. Needs the infos of keys and
    /// certificates.
    void initContainerInfos();
    /// Appends one info for every authentication object. Needs the infos of secret keys: an
    /// authentication key takes over the file of its secret key.
    void initAuthObjs();

    // ---- lookup ----

    /// The object of that kind with that record number; get...Info to look at, ref...Info to change
    /// the record in memory through.
    ///
    /// get...Info throws "invalid record number" (operation "PKCS15Container::checkObjectType") for
    /// a record number beyond the table, "invalid object type" for a row of another type, "invalid
    /// record number" for a row without info, both with "PKCS15Container::getInfo". The
    /// operation of ref...Info is "PKCS15Container::refInfo".
    /// References hold until the list changes.
    const PKCS15ObjectInfo<PrivateKeyInfo>& getPrivateKeyInfo(unsigned long recordNumber) const;
    PKCS15ObjectInfo<PrivateKeyInfo>& refPrivateKeyInfo(unsigned long recordNumber);
    const PKCS15ObjectInfo<PublicKeyInfo>& getPublicKeyInfo(unsigned long recordNumber) const;
    PKCS15ObjectInfo<PublicKeyInfo>& refPublicKeyInfo(unsigned long recordNumber);
    const PKCS15ObjectInfo<TrustedPublicKeyInfo>& getTrustedPublicKeyInfo(
        unsigned long recordNumber) const;
    const PKCS15ObjectInfo<CertificateInfo>& getCertificateInfo(unsigned long recordNumber) const;
    PKCS15ObjectInfo<CertificateInfo>& refCertificateInfo(unsigned long recordNumber);
    const PKCS15ObjectInfo<TrustedCertificateInfo>& getTrustedCertificateInfo(
        unsigned long recordNumber) const;
    const PKCS15ObjectInfo<UsefulCertificateInfo>& getUsefulCertificateInfo(
        unsigned long recordNumber) const;
    const PKCS15ObjectInfo<BlockCipherKeyInfo>& getBlockCipherKeyInfo(
        unsigned long recordNumber) const;
    const PKCS15ObjectInfo<DataInfo>& getDataInfo(unsigned long recordNumber) const;
    const PKCS15ObjectInfo<ContainerInfo>& getContainerInfo(unsigned long recordNumber) const;
    /// The first authentication object with that reference; throws "invalid object reference".
    const PKCS15ObjectInfo<AuthInfo>& getAuthInfo(unsigned char reference) const;

    /// Throws "invalid record number" with the operation `where` beyond the last row.
    void checkRecordNumber(unsigned long recordNumber, const char* where) const;
    /// Throws "invalid record number" beyond the last row, always with the operation
    /// "PKCS15Container::checkObjectType", and "invalid object type" with the operation `where`
    /// when the row has another type.
    void checkObjectType(unsigned long recordNumber, unsigned char type, const char* where) const;

    // ---- the whole model ----

    /// In the order of the files; element i of an info list and of the raw list of its kind are one
    /// object. The references hold until the container changes.
    const PKCS15TokenInfo& getTokenInfo() const { return tokenInfo; }
    const std::vector<FATInfo>& getFATRecords() const { return fatRecords; }
    const InfoList<PrivateKeyInfo>& getPrivateKeyInfos() const { return privateKeyInfos; }
    const InfoList<PublicKeyInfo>& getPublicKeyInfos() const { return publicKeyInfos; }
    const InfoList<TrustedPublicKeyInfo>& getTrustedPublicKeyInfos() const {
        return trustedPublicKeyInfos;
    }
    const InfoList<CertificateInfo>& getCertificateInfos() const { return certificateInfos; }
    const InfoList<TrustedCertificateInfo>& getTrustedCertificateInfos() const {
        return trustedCertificateInfos;
    }
    const InfoList<UsefulCertificateInfo>& getUsefulCertificateInfos() const {
        return usefulCertificateInfos;
    }
    const InfoList<BlockCipherKeyInfo>& getBlockCipherKeyInfos() const {
        return blockCipherKeyInfos;
    }
    const InfoList<DataInfo>& getDataInfos() const { return dataInfos; }
    const InfoList<ContainerInfo>& getContainerInfos() const { return containerInfos; }
    const InfoList<AuthInfo>& getAuthInfos() const { return authInfos; }

    /// The decoded records of the files, in their order; those that did not decode are among them.
    const RawList<PKCS15::TokenInfo>& getRawTokenInfos() const { return rawTokenInfos; }
    const RawList<PKCS15::PKCS15Objects>& getRawODF() const { return rawODF; }
    const RawList<PKCS15::PrivateKeyType>& getRawPrivateKeys() const { return rawPrivateKeys; }
    const RawList<PKCS15::PublicKeyType>& getRawPublicKeys() const { return rawPublicKeys; }
    const RawList<PKCS15::PublicKeyType>& getRawTrustedPublicKeys() const {
        return rawTrustedPublicKeys;
    }
    const RawList<PKCS15::SecretKeyType>& getRawSecretKeys() const { return rawSecretKeys; }
    const RawList<PKCS15::CertificateType>& getRawCertificates() const { return rawCertificates; }
    const RawList<PKCS15::CertificateType>& getRawTrustedCertificates() const {
        return rawTrustedCertificates;
    }
    const RawList<PKCS15::CertificateType>& getRawUsefulCertificates() const {
        return rawUsefulCertificates;
    }
    const RawList<PKCS15::DataType>& getRawDataObjects() const { return rawDataObjects; }
    const RawList<PKCS15::AuthenticationType>& getRawAuthObjects() const { return rawAuthObjects; }

    // ---- file-allocation table and free file identifiers ----

    /// Appends a row and returns its index, low 16 bits. A type of 0 is stored as it is.
    unsigned long newFATRecord(unsigned char objectType, bool isPrivate);
    /// Fills the first free row behind row 0, or appends one; returns its index. A type of 0 leaves
    /// the row free.
    unsigned long makeFATRecord(unsigned char objectType, bool isPrivate);
    /// Overwrites a row, which has to exist: no check is made. A type of 0 frees it. Returns
    /// `recordNumber`.
    unsigned long updateFATRecord(unsigned long recordNumber, unsigned char objectType,
                                  bool isPrivate);
    /// The lowest FID from `startFID` on that no object of this type uses; 5031..5033, 6376..6378
    /// and 7FFF are never given out.
    ///
    /// Throws "unsupported object type" for a type without files, and "no free FID" (operation
    /// "getNextFreeFID") when the search reaches 7FFF.
    std::uint16_t getFreeFID(std::uint16_t startFID, unsigned char objectType) const;

    // ---- writing ----

    /// write...Info adds a record to the directory file of its kind, gives the object the lowest
    /// free record number and returns it, also in info.recordNumber. update...Info rewrites the
    /// record of the object that info.recordNumber names; what infos do not model survives on the
    /// card. `os` null updates the model alone.
    ///
    /// All throw SmartcardException with the operation "PKCS15Container::writeInfo" or
    /// "PKCS15Container::updateInfo". Before anything is written: "encode info failed" for an info
    /// that is not valid, or while the model is not in step with what was read (a read that
    /// failed); what the entry coder of the kind throws; for updates also "invalid record number"
    /// and "invalid object type", as lookups do. When the card refuses a command: "not enough
    /// memory", code 0x16A84, whatever its status word. Other failures of the directory file pass
    /// through (see ProfileDFHandler). Card and model then agree: the record stands in both or in
    /// neither.
    unsigned long writePrivateKeyInfo(ISCardOS* os, PKCS15ObjectInfo<PrivateKeyInfo>& info);
    void updatePrivateKeyInfo(ISCardOS* os, const PKCS15ObjectInfo<PrivateKeyInfo>& info);
    /// Also links the private key of record `privateKeyRecordNumber` to the new public key, unless
    /// that is all ones. A number that names no private key throws as refPrivateKeyInfo does; the
    /// public key has been written then.
    unsigned long writePublicKeyInfo(ISCardOS* os, PKCS15ObjectInfo<PublicKeyInfo>& info,
                                     unsigned long privateKeyRecordNumber);
    void updatePublicKeyInfo(ISCardOS* os, const PKCS15ObjectInfo<PublicKeyInfo>& info);
    unsigned long writeTrustedPublicKeyInfo(ISCardOS* os,
                                            PKCS15ObjectInfo<TrustedPublicKeyInfo>& info);
    void updateTrustedPublicKeyInfo(ISCardOS* os,
                                    const PKCS15ObjectInfo<TrustedPublicKeyInfo>& info);
    unsigned long writeBlockCipherKeyInfo(ISCardOS* os, PKCS15ObjectInfo<BlockCipherKeyInfo>& info);
    void updateBlockCipherKeyInfo(ISCardOS* os, const PKCS15ObjectInfo<BlockCipherKeyInfo>& info);
    unsigned long writeCertificateInfo(ISCardOS* os, PKCS15ObjectInfo<CertificateInfo>& info);
    void updateCertificateInfo(ISCardOS* os, const PKCS15ObjectInfo<CertificateInfo>& info);
    unsigned long writeTrustedCertificateInfo(ISCardOS* os,
                                              PKCS15ObjectInfo<TrustedCertificateInfo>& info);
    void updateTrustedCertificateInfo(ISCardOS* os,
                                      const PKCS15ObjectInfo<TrustedCertificateInfo>& info);
    unsigned long writeUsefulCertificateInfo(ISCardOS* os,
                                             PKCS15ObjectInfo<UsefulCertificateInfo>& info);
    void updateUsefulCertificateInfo(ISCardOS* os,
                                     const PKCS15ObjectInfo<UsefulCertificateInfo>& info);
    unsigned long writeDataInfo(ISCardOS* os, PKCS15ObjectInfo<DataInfo>& info);
    void updateDataInfo(ISCardOS* os, const PKCS15ObjectInfo<DataInfo>& info);

    /// Adds an authentication object and returns the index of its record; it takes no record
    /// number.
    ///
    /// Throws "encode info failed" and what the authentication coder throws; when the card refuses
    /// a command "not enough memory", here with the code 0x6A84; the operation is
    /// "PKCS15Container::writeAuthInfo".
    unsigned long writeAuthInfo(ISCardOS* os, const PKCS15ObjectInfo<AuthInfo>& info);
    /// The same, over record `index`; all ones adds one.
    unsigned long writeAuthInfo(ISCardOS* os, const PKCS15ObjectInfo<AuthInfo>& info,
                                unsigned long index);
    /// Rewrites the first authentication object with info.reference. Throws "invalid object
    /// reference" (operation "PKCS15Container::updateAuthInfo") when there is none, else as
    /// writeAuthInfo.
    unsigned long updateAuthInfo(ISCardOS* os, const PKCS15ObjectInfo<AuthInfo>& info);

    /// Writes EF(TokenInfo) and adopts `info`. An empty label or manufacturerID is removed from the
    /// card; an empty supportedAlgorithms leaves the card's algorithms alone.
    ///
    /// Throws "invalid TokenInfo" when `info.info` is not valid, and what encodeTokenInfo throws;
    /// getTokenInfo() is unchanged then.
    void updateTokenInfo(ISCardOS* os, const PKCS15TokenInfo& info);
    /// Writes `info` over record 0 of EF(TokenInfo) without adopting it.
    ///
    /// Throws "invalid TokenInfo" when none was read; "encoding error" when `info` breaks a
    /// constraint of the record (an algorithm without arcs in algId is one); "update file failed",
    /// code 0, when the card refuses or the file has no room; other failures of the file pass
    /// through (see ProfileDFHandler). Nothing in the model changes then.
    void encodeTokenInfo(ISCardOS* os, const PKCS15TokenInfo& info);

    /// Adds a key container, which lives until the next read, and links one key and one certificate
    /// that it names to it, the exchange ones if it names any, and the public key of that key.
    ///
    /// Returns its record number. Throws as refPrivateKeyInfo and its like for a record number that
    /// names no such object, a key without public key included; the container has been added then.
    unsigned long writeContainerInfo(PKCS15ObjectInfo<ContainerInfo>& info);
    /// Replaces the container of the same record number. No link changes. Throws as updates do.
    void updateContainerInfo(const PKCS15ObjectInfo<ContainerInfo>& info);

    // ---- deleting ----

    /// Deletes the object's record from its directory file and the object from the model, and frees
    /// its row; a key container lives in memory only. The file of the object's value stays, and so
    /// do containers and links that name it.
    ///
    /// Throws, with nothing changed, "invalid record number", "object is already empty", "object is
    /// the TokenInfo", "unknown object" for a record that did not decode, "failed to delete object"
    /// when the card refuses, and what the directory file throws.
    void deleteObjectInfo(ISCardOS* os, unsigned long recordNumber);
    /// Deletes the first authentication object with that reference. Throws, with nothing changed,
    /// "invalid object reference", "failed to delete auth info", and what the directory file
    /// throws.
    void deleteAuthInfo(ISCardOS* os, unsigned char reference);

    /// Hook for diagnostics; writes nothing.
    void print(std::ostream& stream) const;

private:
    struct SecretKeyIndex;
    struct PairingIndexes;

    // One record each; false for one that did not become a complete info.
    bool initPrivateKeyInfo(ASN1Object<PKCS15::PrivateKeyType>& record,
                            InfoAppender<PrivateKeyInfo>& infos);
    bool initPublicKeyInfo(ASN1Object<PKCS15::PublicKeyType>& record,
                           InfoAppender<PublicKeyInfo>& infos);
    bool initTrustedPublicKeyInfo(ASN1Object<PKCS15::PublicKeyType>& record,
                                  InfoAppender<TrustedPublicKeyInfo>& infos);
    bool initBlockCipherKeyInfo(ASN1Object<PKCS15::SecretKeyType>& record,
                                InfoAppender<BlockCipherKeyInfo>& infos);
    bool initCertificateInfo(ASN1Object<PKCS15::CertificateType>& record,
                             InfoAppender<CertificateInfo>& infos);
    bool initTrustedCertificateInfo(ASN1Object<PKCS15::CertificateType>& record,
                                    InfoAppender<TrustedCertificateInfo>& infos);
    bool initUsefulCertificateInfo(ASN1Object<PKCS15::CertificateType>& record,
                                   InfoAppender<UsefulCertificateInfo>& infos);
    bool initDataInfo(ASN1Object<PKCS15::DataType>& record, InfoAppender<DataInfo>& infos);
    template <class Info, class Type, class Decode>
    bool initInfo(ASN1Object<Type>& record, InfoAppender<Info>& infos, ObjectType objectType,
                  Decode decode);
    bool initAuth(ASN1Object<PKCS15::AuthenticationType>& record, InfoList<AuthInfo>& infos,
                  const SecretKeyIndex& secretKeys);
    bool decodeAuth(ASN1Object<PKCS15::AuthenticationType>& record,
                    PKCS15ObjectInfo<AuthInfo>& info, const SecretKeyIndex& secretKeys);
    void takeKeyFile(PKCS15ObjectInfo<AuthInfo>& info, const SecretKeyIndex& secretKeys);
    bool isRecognised(const PKCS15Object& object) const;
    void updateContainerInfos(const PairingIndexes& indexes);
    unsigned long updateContainerCertificate(const PairingIndexes& indexes,
                                             ContainerInfo& container, const Blob& id, bool sign,
                                             bool decrypt);
    unsigned long updateContainerPrivateKey(const PairingIndexes& indexes,
                                            PKCS15ObjectInfo<PrivateKeyInfo>& key);
    unsigned long addContainer(PKCS15ObjectInfo<ContainerInfo>& container);
    void linkToContainer(unsigned long publicKey, unsigned long certificate,
                         std::uint64_t recordNumber);

    template <class T>
    unsigned long writeInfo(ISCardOS* os, T& info, std::vector<T>& infos, unsigned char objectType);
    template <class T>
    void updateInfo(ISCardOS* os, const T& info, std::vector<T>& infos, unsigned char objectType);
    // Each encodes an info and writes it over record `index`, or as a new record for noIndex;
    // returns the index of the record, or noIndex.
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<PrivateKeyInfo>& info,
                             unsigned long index);
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<PublicKeyInfo>& info,
                             unsigned long index);
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<TrustedPublicKeyInfo>& info,
                             unsigned long index);
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<BlockCipherKeyInfo>& info,
                             unsigned long index);
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<CertificateInfo>& info,
                             unsigned long index);
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<TrustedCertificateInfo>& info,
                             unsigned long index);
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<UsefulCertificateInfo>& info,
                             unsigned long index);
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<DataInfo>& info,
                             unsigned long index);
    unsigned long encodeInfo(ISCardOS* os, const PKCS15ObjectInfo<ContainerInfo>& info,
                             unsigned long index);
    bool deleteFromFile(ISCardOS* os, unsigned long recordNumber);
    bool deleteContainer(unsigned long recordNumber);

    // The order is that of construction; destruction and clear() rely on it.
    bool isRead = false;
    Blob appPath;
    ASN1::CoderEnv coderEnv;
    RawList<PKCS15::TokenInfo> rawTokenInfos;
    RawList<PKCS15::PKCS15Objects> rawODF;
    ProfileDFHandler tokenInfoHandler;
    ProfileDFHandler odfHandler;
    RawList<PKCS15::PrivateKeyType> rawPrivateKeys;
    RawList<PKCS15::PublicKeyType> rawPublicKeys;
    RawList<PKCS15::PublicKeyType> rawTrustedPublicKeys;
    RawList<PKCS15::SecretKeyType> rawSecretKeys;
    RawList<PKCS15::CertificateType> rawCertificates;
    RawList<PKCS15::CertificateType> rawTrustedCertificates;
    RawList<PKCS15::CertificateType> rawUsefulCertificates;
    RawList<PKCS15::DataType> rawDataObjects;
    RawList<PKCS15::AuthenticationType> rawAuthObjects;
    ProfileDFHandler prkdfHandler;
    ProfileDFHandler pukdfHandler;
    ProfileDFHandler trustedPukdfHandler;
    ProfileDFHandler skdfHandler;
    ProfileDFHandler cdfHandler;
    ProfileDFHandler trustedCdfHandler;
    ProfileDFHandler usefulCdfHandler;
    ProfileDFHandler dodfHandler;
    ProfileDFHandler aodfHandler;
    std::vector<FATInfo> fatRecords;
    PKCS15TokenInfo tokenInfo;
    InfoList<PrivateKeyInfo> privateKeyInfos;
    InfoList<PublicKeyInfo> publicKeyInfos;
    InfoList<TrustedPublicKeyInfo> trustedPublicKeyInfos;
    InfoList<CertificateInfo> certificateInfos;
    InfoList<TrustedCertificateInfo> trustedCertificateInfos;
    InfoList<UsefulCertificateInfo> usefulCertificateInfos;
    InfoList<BlockCipherKeyInfo> blockCipherKeyInfos;
    InfoList<DataInfo> dataInfos;
    InfoList<ContainerInfo> containerInfos;
    InfoList<AuthInfo> authInfos;
};

/// Hook for diagnostics; leaves the stream untouched.
TOVI_API std::ostream& operator<<(std::ostream& stream, PKCS15Container& container);

}  // namespace tovi

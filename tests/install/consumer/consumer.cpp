// Uses something of every installed folder, so that what is missing in a library does not link.
#include <memory>
#include <sstream>
#include <string>

#include "expect.h"
#include "tovi/asn1/Coding.h"
#include "tovi/asn1/Notation.h"
#include "tovi/asn1/Print.h"
#include "tovi/card/CardFolder.h"
#include "tovi/card/CountingChannel.h"
#include "tovi/card/ISO7816CardOS.h"
#include "tovi/card/TraceChannel.h"
#include "tovi/container/PKCS15Container.h"
#include "tovi/interfaces/ASN1Coding.h"
#include "tovi/interfaces/CardProfile.h"
#include "tovi/interfaces/Exception.h"
#include "tovi/pkcs15/Module.h"
#include "tovi/pkcs15/PKCS15.h"

namespace {

void testASN1() {
    PKCS15::Path path;
    path.efidOrPath = ASN1::Octets{0x44, 0x01};
    path.index = 3;
    const ASN1::Octets encoded = ASN1::encode(path);
    EXPECT((encoded == ASN1::Octets{0x30, 0x07, 0x04, 0x02, 0x44, 0x01, 0x02, 0x01, 0x03}));
    PKCS15::Path decoded;
    ASN1::Error error;
    EXPECT(ASN1::decode(encoded, decoded, error) && decoded.index == 3u && decoded.isValid());
    EXPECT(!ASN1::decode(ASN1::View(encoded).first(5), decoded, error));
    EXPECT(toString(error).find("Path") == 0);
    EXPECT(ASN1::print(path).find("efidOrPath '4401'H") != std::string::npos);
    EXPECT(ASN1::notation(PKCS15::Path::type).find("Path ::= SEQUENCE") == 0);
    PKCS15::PinFlags flags{PKCS15::PinFlags::local, PKCS15::PinFlags::initialized};
    EXPECT(flags.test(4) && !flags.test(0) && !ASN1::encode(flags).empty());
    EXPECT((ASN1::OBJECT_IDENTIFIER{1, 2, 840}).toString() == "1.2.840");
}

// A type has one description in the whole program, whether it is compiled into the library or a
// template that both sides make.
void testOneDescriptionOfAType() {
    const ASN1::Module& module = *tovi::ASN1_getPKCS15();
    EXPECT(&module == &PKCS15::getModule());
    EXPECT(module.find("Path") == &PKCS15::Path::type);
    EXPECT(module.find("Opaque") == &PKCS15::ObjectValue<ASN1::OpenData>::type);
    EXPECT(module.find("Certificates") == &PKCS15::PathOrObjects<PKCS15::CertificateType>::type);
}

void testCard(const char* path) {
    tovi::CardFolder folder(path, {.mode = tovi::CardFolder::Mode::readOnly});
    tovi::VirtualCardChannel plain(folder.card());
    tovi::CountingChannel counting(plain);
    std::string lines;
    tovi::TraceChannel channel(counting, [&](const std::string& line) { lines += line; });
    tovi::ISO7816CardOS card(channel);
    // By reference count, as a token layer holds it.
    auto* container = new tovi::PKCS15Container(tovi::PKCS15_DF);
    container->AddRef();
    container->readFromCard(&card);
    EXPECT(container->hasBeenRead() && !lines.empty() && !counting.counts().byInstruction.empty());
    EXPECT(!container->getPrivateKeyInfos().empty());
    const auto record =
        static_cast<unsigned long>(container->getPrivateKeyInfos().front().recordNumber);
    const auto& key = container->getPrivateKeyInfo(record);
    EXPECT(dynamic_cast<const tovi::PKCS11Attrs*>(&key) != nullptr && !key.Export().empty());
    EXPECT(container->getRawPrivateKeys().front().value->selection() <
           PKCS15::PrivateKeyType::none);

    tovi::PKCS15ObjectInfo<tovi::DataInfo> data;
    data.label = tovi::Blob{'n', 'e', 'w'};
    bool refused = false;
    try {
        container->writeDataInfo(&card, data);  // the folder takes no change
    } catch (const tovi::SmartcardException& exception) {
        refused = exception.GetMessage() != nullptr;
    }
    EXPECT(refused);
    std::ostringstream stream;
    stream << *container;
    container->Release();
}

void testFolderError() {
    try {
        tovi::CardFolder folder("no-such-folder");
        EXPECT(false);
    } catch (const tovi::CardFolderError& error) {
        EXPECT(!error.text().empty());
        const std::unique_ptr<tovi::Exception> copy(error.Clone());
        EXPECT(copy->GetId() == tovi::SmartcardException("", "").GetId());
    }
}

}  // namespace

int main(int argc, char** argv) {
    EXPECT(argc == 2);
    testASN1();
    testOneDescriptionOfAType();
    testCard(argv[1]);
    testFolderError();
    testOwnCard();
}
